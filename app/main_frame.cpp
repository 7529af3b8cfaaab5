// The frame's construction, start-up and orderly end.
#include "app/main_frame.h"

#include <new>
#include <vector>

#include "Common/CGetDisableVglFuncData.h"
#include "Common/CVglLog.h"
#include "Common/kv_open_printer.h"
#include "Common/message_box.h"
#include "Common/path_lookup.h"
#include "Common/printer_mask.h"
#include "Common/tray_log.h"
#include "menu/driver_programs.h"
#include "profile/drv_file_locator.h"
#include "profile/profile_keys.h"

namespace vgl {

using namespace platform;

platform::ProcessWideValue<CMainFrame*> g_pMainFrame;

namespace {

constexpr std::uint32_t kFlushLogPeriod = 900000;
constexpr std::uint32_t kFirstKickPeriod = 60000;  // of invitations and NetPilot

// Strings of the resource library.
constexpr std::uint32_t kTextCaption = 1100;
constexpr std::uint32_t kTextBusy = 35277;

bool RunsOnServer() {
  constexpr std::uint8_t kDomainController = 2;
  constexpr std::uint8_t kServer = 3;
  OsVersion version;
  if (!Os().system.GetVersionExW(&version)) return false;
  return version.productType == kDomainController || version.productType == kServer;
}

std::u16string LoadText(std::uint32_t id) {
  constexpr std::int32_t kRoom = 4097;  // more than fits into a message box on any screen
  std::u16string text(kRoom, u'\0');
  const std::int32_t length = Os().resources.LoadStringW(g_hResDll, id, text.data(), kRoom);
  text.resize(length > 0 ? static_cast<std::size_t>(length) : 0);
  return text;
}

// What the spooler tells of an open printer at level 4; 0 when it doesn't.
std::uint32_t AttributesOf(HPRINTER printer) {
  std::uint32_t needed = 0;
  Os().spooler.GetPrinterW(printer, 4, nullptr, 0, &needed);
  std::vector<PrinterInfo4> told(needed / sizeof(PrinterInfo4) + 1);
  const auto room = static_cast<std::uint32_t>(told.size() * sizeof(PrinterInfo4));
  return Os().spooler.GetPrinterW(printer, 4, told.data(), room, &needed) ? told[0].attributes : 0;
}

}  // namespace

CMainFrame::CMainFrame() : m_pExMenu(new (std::nothrow) ExMenuItem[kExMenuSlots]) {
  m_nExMenuMax = m_pExMenu == nullptr ? 0 : kExMenuSlots;
}

CMainFrame::~CMainFrame() {
  DeletePictures(ExMenuSlots());
  FreeResDll();
  for (const HICON icon : m_hIcon)
    if (icon != HICON{}) Os().resources.DestroyIcon(icon);
  if (m_pcInv != nullptr) TrayLogText(u"delete m_pcInv");
}

const FixedText<260>& CMainFrame::PrinterOrPort() const {
  return m_szPrinterName.empty() ? m_szPortName : m_szPrinterName;
}

PrinterIdentity CMainFrame::Identity() const {
  return {.printerName = m_szPrinterName.c_str(),
          .driverName = m_szDriverName.c_str(),
          .modelId = m_szModelID.c_str(),
          .portName = m_szPortName.c_str()};
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
  if (IsPrinterMasked(m_szPrinterName.c_str()) != 0) {
    TrayLogText(u"Vgl is invalid.");
    return kEndMasked;
  }
  if (!LoadDriverSet()) return kEndAndDropAutoStart;
  if (!ShowIconAndMenu()) return kEndQuietly;
  BeginWork();
  return kRun;
}

// What a printer without usable data doesn't have: such a start isn't to be tried at each logon.
bool CMainFrame::LoadDriverSet() {
  GetProfilePath(&m_szDatPath, m_szDriverName.c_str(), m_szModelID.c_str(),
                 m_szPrinterName.c_str());
  TrayLogPair(u"m_szDatPath", m_szDatPath.c_str());
  return !m_szDatPath.empty() && LoadRegSet() != 0 && LoadResDll(m_szResDll.c_str()) != 0;
}

bool CMainFrame::ShowIconAndMenu() {
  const bool hasIcon = UpdateTrayIcon(m_nIconSelected, IconChange::Add) != 0;
  const HMENU popup = hasIcon ? LoadMenu() : HMENU{};
  if (popup == HMENU{}) {
    FreeResDll();
    return false;
  }
  // Texts that a message needs while no library is loaded.
  m_csMsgCaption = LoadText(kTextCaption);
  m_csMsgBusy = LoadText(kTextBusy);
  FindNetPilot();
  AddExMenu(popup);
  FreeResDll();
  return true;
}

void CMainFrame::FindNetPilot() {
  CDrvFileLocator().GetVifPath(m_szPrinterName.c_str(), &m_csVifName);
  TrayLogPair(u"StartUP csVifName", m_csVifName.c_str());
  if (!m_csVifName.empty()) {
    m_csNetPilotString = ReadVifKey(kVifNetPilotProgram, m_csVifName.c_str());
    TrayLogPair(u"StartUP csNetPilotString", m_csNetPilotString.c_str());
  }
  if (IsNetworkPrinter()) {
    TrayLogText(u"PRINTER_ATTRIBUTE_NETWORK");
    m_csNetPilotString.clear();
  }
}

bool CMainFrame::IsNetworkPrinter() {
  CKvOpenPrinter open;
  HPRINTER printer{};
  if (open.KvOpenPrinter(m_szPrinterName.c_str(), &printer, nullptr) != CKvOpenPrinter::kOpened)
    return false;
  const bool isNetwork = (AttributesOf(printer) & PRINTER_ATTRIBUTE_NETWORK) != 0;
  open.KvClosePrinter(printer);
  return isNetwork;
}

bool CMainFrame::FillFixedTexts() {
  return m_szAppTitle.Assign(u"KAVRO Vigil 3") &&
         m_szMsgStatus.Assign(u"\r\nUnable to open Printer Status window for this printer.") &&
         m_szMsgPrefs.Assign(
             u"\r\nUnable to open Monitoring Preferences window for this printer.") &&
         m_szMsgMemory.Assign(u"Insufficient memory.") &&
         m_szMsgNoFile.Assign(u"Could not find specified file.");
}

void CMainFrame::BeginWork() {
  m_uEndTime = ReadModelNumber(kProfileTrayIconEndTime, m_szModelID.c_str(), m_szDatPath.c_str());
  if (m_uEndTime != 0) m_uhPrinterCheck = ArmTimer(TMID_PRINTERCHECK, m_uEndTime);
  m_uhMaskCheck = ArmTimer(TMID_MASKCHECK, kMaskCheckPeriod);
  ArmKicks();
  g_VglLog.get().Increment(VGLLOG_TRAYICON, kCountAgentStart, m_szPrinterName.c_str());
  m_uhFlushLog = ArmTimer(TMID_FLUSHLOG, kFlushLogPeriod);
}

// What is only for a driver that offers to order ink, and never for a server.
void CMainFrame::ArmKicks() {
  const bool isServer = RunsOnServer();
  if (isServer) TrayLogText(u"Server OS.");
  CGetDisableVglFuncData disabled;
  const bool isTold = disabled.LoadDisableRecord(m_szPrinterName.c_str()) == 0;
  if (IsEnableInkOrder(Identity()) == 0 || isServer) return;

  const bool hasInvitations = !isTold || disabled.bNoInvitation == 0;
  // By one that goes at once, and its library with it: asking comes much later.
  const std::uint32_t period =
      hasInvitations ? CSmartInvitation().GetPeriodInvitation(Identity()) : 0;
  if (period != 0) {
    m_uhInvitationMonitor = ArmTimer(TMID_INVITATION, kFirstKickPeriod);
    TrayLogInt(u"m_uhInvitationMonitor", static_cast<std::int32_t>(m_uhInvitationMonitor));
    if (m_uhInvitationMonitor != 0) m_uInvitationPeriod = period;
  }
  const bool hasNetPilot = !isTold || disabled.bNoNetPilot == 0;
  if (hasNetPilot && !m_csNetPilotString.empty())
    m_uhNetPilot = ArmTimer(TMID_NETPILOT, kFirstKickPeriod);
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
  if (m_nid.window != HWND{}) Os().shell.Shell_NotifyIconW(NIM_DELETE, m_nid);
  if (m_hMenu != HMENU{}) Os().menus.DestroyMenu(m_hMenu);
  m_hMenu = HMENU{};
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
