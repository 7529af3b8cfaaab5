#include "menu/menu_command.h"

#include <string>

#include "Common/CVglLog.h"
#include "Common/fixed_text.h"
#include "Common/kv_open_printer.h"
#include "Common/message_box.h"
#include "Common/printer_lookup.h"
#include "Common/start_program.h"
#include "Common/temp_file.h"
#include "Common/tray_log.h"
#include "menu/command_text.h"
#include "menu/driver_programs.h"
#include "menu/driver_value.h"
#include "platform/platform.h"
#include "profile/lmw.h"
#include "profile/profile_keys.h"

namespace vgl {

using namespace platform;

namespace {

void Count(const MenuCommandContext& context, TrayIconCounter counter) {
  g_VglLog.get().Increment(VGLLOG_TRAYICON, counter, context.identity.printerName);
}

void RunByShell(const ShellCommand& command) {
  Os().shell.ShellExecuteW(HWND{}, u"open", command.program.c_str(), command.arguments.c_str(),
                           nullptr, SW_SHOWNORMAL);
}

std::u16string InkChangeName(const MenuCommandContext& context) {
  const PrinterIdentity& identity = context.identity;
  const CLmw lmw(identity.printerName, identity.driverName, identity.modelId);
  return lmw.GetVifDriverDataStr(kVifInkChangeProgram.section, kVifInkChangeProgram.key,
                                 context.vifName);
}

// The file stays for the started program, which removes it.
void RunWithParameterFile(const MenuCommandContext& context, const std::u16string& text,
                          const std::u16string& port) {
  if (IsInstallerActive(context.identity.PrinterOrPort())) {
    MessageBoxRtl(context.window, context.busyText, context.busyCaption);
    return;
  }
  CTempFileHolder file;
  if (!file.Write(ParameterText(text, context.identity, port))) return;
  StartExe(ParameterFileCommandLine(text, file.path()).c_str());
}

void StartAs(LaunchForm form, const MenuCommandContext& context, const std::u16string& text,
             const std::u16string& port) {
  const char16_t* printer = context.identity.printerName;
  switch (form) {
    case LaunchForm::Lm:
      StartExe(LmCommandLine(text, printer).c_str());
      break;
    case LaunchForm::CissValid:
      if (const std::u16string name = InkChangeName(context); !name.empty())
        StartExe(CissValidCommandLine(text, name, printer).c_str());
      break;
    case LaunchForm::DrvUpdate:
      StartExe(DrvUpdateCommandLine(text, context.netPilotName, printer).c_str());
      break;
    case LaunchForm::UpPilot:
      StartExe(UpPilotCommandLine(text, context.netPilotName, printer).c_str());
      break;
    case LaunchForm::ParameterFile:
      RunWithParameterFile(context, text, port);
      break;
    case LaunchForm::Program:
      StartExe(text.c_str());
      break;
  }
}

// What is counted for a form, whether its program started or not.
void CountStart(LaunchForm form, const MenuCommandContext& context) {
  if (form == LaunchForm::Lm || form == LaunchForm::CissValid)
    Count(context, kCountMenuLmOrCissValid);
  if (form == LaunchForm::DrvUpdate) Count(context, kCountMenuDrvUpdate);
  if (form == LaunchForm::UpPilot) Count(context, kCountMenuUpPilot);
}

void RunByMarkers(const MenuCommandContext& context, const std::u16string& text) {
  TrayLogText(u"CMainFrame::OnUniAux");
  // The port as it is now: it may have been changed since this agent started.
  std::u16string driver;
  std::u16string port;
  GetDriverAndPort(context.identity.printerName, driver, port);
  const LaunchForm form = LaunchFormOf(text);
  // Beside these two forms the two other markers don't count.
  if (form != LaunchForm::Lm && form != LaunchForm::CissValid) {
    if (HoldsMarker(text, kMarkerDp)) Count(context, kCountMenuDp);
    if (HoldsMarker(text, kMarkerAsmrt)) Count(context, kCountMenuAsmrt);
  }
  StartAs(form, context, text, port);
  CountStart(form, context);
}

}  // namespace

void RunMenuCommand(const MenuCommandContext& context, std::uint32_t id) {
  const PrinterIdentity& identity = context.identity;
  const std::u16string text = ReadMenuCommand(identity, id, u"OnAux");
  if (text.empty()) return;
  if (id >= kFirstPlainCommandId) {
    TrayLogPair(u"over ID:950 param", text.c_str());
    RunByShell(SplitPlainCommand(text));
    return;
  }
  if (CUtyCall::IsUtyCallMenu(identity.driverName, identity.printerName, identity.modelId,
                              text.c_str()) == 1) {
    context.utyCall.StartUtyCall(identity.printerName, text.c_str());
    return;
  }
  PathText updateName, updateFolder;
  if (GetDriverUpdateExeName(identity, updateName, &updateFolder) == 1 &&
      IsDriverUpdateMenu(text, updateName.view()))
    RunByShell(SplitDriverUpdateCommand(text, updateFolder.view()));
  else
    RunByMarkers(context, text);
}

}  // namespace vgl
