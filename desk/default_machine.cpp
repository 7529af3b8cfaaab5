#include "desk/default_machine.h"

#include "Common/text_conversion.h"
#include "Common/wide_format.h"
#include "app/tray_app.h"
#include "desk/script.h"
#include "platform/sim/registry_library.h"

namespace desk {

using platform::HKEY_CURRENT_USER;

void SetUpSuite(sim::Machine& machine) {
  machine.files().WriteFile(kAgentPath, "");
  machine.files().MakeFolder(kLogFolder);
  for (const NamedNumber& known : KnownMessages())
    machine.desktop().NameMessage(known.number, vgl::TextFromUtf8(known.name));
  for (const NamedNumber& known : KnownTimers())
    machine.desktop().NameTimer(known.number, vgl::TextFromUtf8(known.name));
}

void SetUpDefaultMachine(sim::Machine& machine) {
  SetUpSuite(machine);
  machine.spooler().AddDriver(
      {.name = kDriverName, .driverPath = std::u16string(kDriverFolder) + u"\\KS7200.DLL"});
  sim::AddRegistryLibrary(machine, std::u16string(kDriverFolder) + u"\\K_WRDEF1.DLL");
  machine.spooler().AddPrinter({.name = kPrinterName, .port = kPortName, .driver = kDriverName});
  machine.registry().SetString(HKEY_CURRENT_USER, kRecordPath, u"Name", kPrinterName);
  machine.registry().SetDword(HKEY_CURRENT_USER, kRecordPath, u"TrayIconEnable", 1);
  machine.registry().SetDword(HKEY_CURRENT_USER, kRecordPath, u"TrayIconSelected", 0);
}

void EnableTrayLog(sim::Machine& machine) {
  machine.registry().SetDword(HKEY_CURRENT_USER, u"SOFTWARE\\KAVRO\\VGL3", u"K_QTR", 1);
}

sim::Process& StartAgent(sim::Machine& machine, std::u16string commandLine) {
  return machine.StartProcess(kAgentPath, std::move(commandLine), [](const char16_t* text) {
    return static_cast<std::uint32_t>(vgl::TrayAgentMain(text));
  });
}

std::u16string OptionsOfDefaultPrinter() {
  return vgl::WideFormat(u"/P \"%s\" /D \"%s\" /O \"%s\" /M \"%s\"", kPrinterName, kDriverName,
                         kPortName, kModelId);
}

}  // namespace desk
