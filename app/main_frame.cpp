// The frame's construction, start-up and orderly end.
#include "app/main_frame.h"

#include <new>

#include "Common/message_box.h"
#include "Common/tray_log.h"
#include "profile/profile_keys.h"

namespace vgl {

using namespace platform;

platform::ProcessWideValue<CMainFrame*> g_pMainFrame;
platform::ProcessWideValue<HMODULE> g_hResDll;

namespace {

constexpr std::uint32_t kFlushLogPeriod = 900000;

bool RunsOnServer() {
  constexpr std::uint8_t kDomainController = 2;
  constexpr std::uint8_t kServer = 3;
  OsVersion version;
  if (!Os().system.GetVersionExW(&version)) return false;
  return version.productType == kDomainController || version.productType == kServer;
}

}  // namespace

CMainFrame::CMainFrame() : m_pExMenu(new (std::nothrow) ExMenuItem[kExMenuSlots]) {
  m_nExMenuMax = m_pExMenu == nullptr ? 0 : kExMenuSlots;
}

CMainFrame::~CMainFrame() {
  if (m_pcInv != nullptr) TrayLogText(u"delete m_pcInv");
}

const FixedText<260>& CMainFrame::PrinterOrPort() const {
  return m_szPrinterName.empty() ? m_szPortName : m_szPrinterName;
}

std::int32_t CMainFrame::StartUp() {
  TrayLogText(u"CMainFrame::StartUp");
  if (!FillFixedTexts()) return kEndAndDropAutoStart;
  if (DuplicationChk() == 0) return kEndQuietly;
  if (m_fRemove != 0) {
    // A /R without an agent to end leaves no trace.
    LeaveMap();
    return kEndQuietly;
  }
  ArmTimersOfStartUp();
  return kRun;
}

bool CMainFrame::FillFixedTexts() {
  return m_szAppTitle.Assign(u"KAVRO Vigil 3") &&
         m_szMsgStatus.Assign(u"\r\nUnable to open Printer Status window for this printer.") &&
         m_szMsgPrefs.Assign(
             u"\r\nUnable to open Monitoring Preferences window for this printer.") &&
         m_szMsgMemory.Assign(u"Insufficient memory.") &&
         m_szMsgNoFile.Assign(u"Could not find specified file.");
}

void CMainFrame::ArmTimersOfStartUp() {
  m_uEndTime = ReadModelNumber(kProfileTrayIconEndTime, m_szModelID.c_str(), m_szDatPath.c_str());
  if (m_uEndTime != 0) m_uhPrinterCheck = ArmTimer(TMID_PRINTERCHECK, m_uEndTime);
  m_uhMaskCheck = ArmTimer(TMID_MASKCHECK, kMaskCheckPeriod);
  if (RunsOnServer()) TrayLogText(u"Server OS.");
  m_uhFlushLog = ArmTimer(TMID_FLUSHLOG, kFlushLogPeriod);
}

std::uint64_t CMainFrame::ArmTimer(std::uint64_t id, std::uint32_t milliseconds) {
  return Os().windowing.SetTimer(m_hWnd, id, milliseconds);
}

void CMainFrame::StopTimer(std::uint64_t id, std::uint64_t& field) {
  Os().windowing.KillTimer(m_hWnd, id);
  field = 0;
}

// TMID_NETPILOT and TMID_CLICK are left alone: they die with the window.
std::int32_t CMainFrame::DestroyWindow() {
  TrayLogText(u"CMainFrame::DestroyWindow");
  StopTimer(TMID_MASKCHECK, m_uhMaskCheck);
  if (m_hMapFile != HANDLE{}) LeaveMap();
  StopTimer(TMID_PRINTERCHECK, m_uhPrinterCheck);
  m_uInvitationPeriod = 0;
  StopTimer(TMID_INVITATION, m_uhInvitationMonitor);
  // Every end asks whether the printer still exists, also that of a process that was never its
  // agent.
  ChkDelPrn();
  StopTimer(TMID_FLUSHLOG, m_uhFlushLog);
  return 0;
}

std::int32_t CMainFrame::MessageBoxRtl(HWND owner, const char16_t* text, const char16_t* caption) {
  return vgl::MessageBoxRtl(owner, text, caption);
}

}  // namespace vgl
