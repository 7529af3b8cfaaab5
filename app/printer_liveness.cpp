// Whether the printer is still there and still to be watched, and what goes with it when it isn't.
#include "Common/kv_open_printer.h"
#include "Common/printer_mask.h"
#include "Common/target_records.h"
#include "Common/tray_log.h"
#include "Common/wide_format.h"
#include "app/main_frame.h"
#include "app/tray_app.h"
#include "platform/owned.h"

namespace vgl {

using namespace platform;

namespace {

// The guarded open, and whether it opened.
bool PrinterOpens(const char16_t* printer) {
  CKvOpenPrinter open;
  HPRINTER handle{};
  TrayLogText(u"enter : KvOpenPrinter");
  const std::int32_t result = open.KvOpenPrinter(printer, &handle, nullptr);
  TrayLogText(u"exit : KvOpenPrinter");
  TrayLogInt(u"result", result);
  if (result != CKvOpenPrinter::kOpened) return false;
  open.KvClosePrinter(handle);
  return true;
}

// The record of a printer that is gone stays, so that a later printer of its name finds its
// settings again: the path is that from the root of HKEY_CURRENT_USER, and no key of that path is
// below the branch. The suite counts on this.
void LeaveRecord(const char16_t* name, bool isPort) {
  PathText path;
  FindTargetKey(name, isPort, path);
  OwnedKey branch;
  if (Os().registry.RegOpenKeyExW(HKEY_CURRENT_USER, isPort ? kPortBranch : kPrinterBranch,
                                  KEY_ALL_ACCESS, branch.Out()) != ERROR_SUCCESS)
    return;
  // An empty path would be the branch itself, with every record in it.
  if (!path.empty()) Os().registry.RegDeleteKeyW(branch.get(), path.c_str());
}

}  // namespace

// A masked printer that still exists ends its agent without any clean-up, a vanished one with it,
// both by this path.
void CMainFrame::OnMaskCheckTimer() {
  TrayLogText(u"CMainFrame::OnTimer : Mask check");
  StopTimer(TMID_MASKCHECK, m_uhMaskCheck);
  if (IsPrinterMasked(m_szPrinterName.c_str()) == 0) {
    m_uhMaskCheck = ArmTimer(TMID_MASKCHECK, kMaskCheckPeriod);
    return;
  }
  PrinterOpens(m_szPrinterName.c_str());
  ChkDelPrn();
  TrayLogText(u"Post WM_CLOSE(1)");
  Os().windowing.PostMessageW(m_hWnd, WM_CLOSE, 0, 0);
}

void CMainFrame::OnPrinterCheckTimer() {
  TrayLogText(u"CMainFrame::OnTimer : Printer check");
  StopTimer(TMID_PRINTERCHECK, m_uhPrinterCheck);
  // A printer that is being installed can't be opened yet.
  if (m_fIconInstall == 0 && ChkDelPrn() == 0) {
    TrayLogText(u"Post WM_CLOSE(2)");
    Os().windowing.PostMessageW(m_hWnd, WM_CLOSE, 0, 0);
    return;
  }
  m_uhPrinterCheck = ArmTimer(TMID_PRINTERCHECK, m_uEndTime);
}

// An installer at work isn't told apart from a deleted printer here: unlike the mask check, this is
// reached from clicks and the slower timer.
std::int32_t CMainFrame::ChkDelPrn() {
  TrayLogText(u"CMainFrame::ChkDelPrn : start");
  TrayLogPair(u"PrinterName", m_szPrinterName.c_str());
  if (CheckUtyCall(0) == 0) return 1;
  if (PrinterOpens(m_szPrinterName.c_str())) return 1;
  StopTimer(TMID_PRINTERCHECK, m_uhPrinterCheck);
  m_uInvitationPeriod = 0;
  StopTimer(TMID_INVITATION, m_uhInvitationMonitor);
  DropAutoStart();
  SayGoodbyeToInvitations();
  return 0;
}

void CMainFrame::DropAutoStart() {
  TrayLogText(u"Delete Reg HKCU\\run");
  const char16_t* name = PrinterOrPort().c_str();
  const bool isPort = m_szPrinterName.empty();
  CTrayIconApp::DelOldIconRegFile(name);
  CTrayIconApp::DeleteRunValues(name, isPort);
  LeaveRecord(name, isPort);
}

// The library may keep something for each printer that it was asked about.
void CMainFrame::SayGoodbyeToInvitations() {
  using CloseEx = std::int32_t (*)(const char16_t* printer);
  TrayLogText(u"get smart parlos dll name");
  const std::u16string path = InvitationLibrary();
  TrayLogText(WideFormat(u"ChkDelPrn() csVal = %s\n", path).c_str());
  if (path.empty()) return;
  TrayLogText(u"load smart parlos dll");
  const OwnedModule library(Os().modules.LoadLibraryW(path.c_str()));
  if (!library) return;
  const auto closeEx =
      reinterpret_cast<CloseEx>(Os().modules.GetProcAddress(library.get(), "FY07ParlosCloseExW"));
  if (closeEx == nullptr) return;
  TrayLogText(u"call smart parlos api");
  TrayLogInt(u"result", closeEx(PrinterOrPort().c_str()));
}

// By the driver, not by the printer, which can't be opened any more.
std::u16string CMainFrame::InvitationLibrary() {
  constexpr std::uint32_t kMostBytes = PathText::capacity() * sizeof(char16_t);
  return FindInvitationLibrary({.logName = u"ChkDelPrn", .mostBytes = kMostBytes},
                               m_szDriverName.c_str(), m_szModelID.c_str(),
                               m_szPrinterName.c_str());
}

}  // namespace vgl
