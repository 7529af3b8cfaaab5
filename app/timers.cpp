// OnTimer: work that a timer finds due is posted to the window rather than done here.
#include "Common/tray_log.h"
#include "app/main_frame.h"
#include "profile/profile_keys.h"

namespace vgl {

using namespace platform;

namespace {

constexpr std::uint32_t kDefaultNetPilotPeriod = 900000;

// A timer that isn't armed matches no id, not even 0.
bool Fires(std::uint64_t field, std::uint64_t id) { return field != 0 && field == id; }

}  // namespace

void CMainFrame::OnTimer(std::uint64_t id) {
  TrayLogInt(u"CMainFrame::OnTimer ID", static_cast<std::int32_t>(id));
  if (Fires(m_uhNetPilot, id)) return OnNetPilotTimer();
  if (Fires(m_uhFlushLog, id)) {
    TrayLogText(u"PostMessage WM_VGL3_FLUSH_VGLLOG");
    Os().windowing.PostMessageW(m_hWnd, WM_VGL3_FLUSH_VGLLOG, 0, 0);
    return;
  }
  if (Fires(m_uhInvitationMonitor, id)) return OnInvitationTimer();
  if (Fires(m_uhClick, id)) return OnClickTimer();

  // The checks open the printer, which a running utility must have to itself. Their timers go on
  // and ask again.
  if (CheckUtyCall(0) == 0) {
    TrayLogText(u"return utility executing");
    return;
  }
  if (Fires(m_uhMaskCheck, id)) return OnMaskCheckTimer();
  if (Fires(m_uhPrinterCheck, id)) return OnPrinterCheckTimer();
}

void CMainFrame::OnNetPilotTimer() {
  StopTimer(TMID_NETPILOT, m_uhNetPilot);
  TrayLogText(u"PostMessage WM_VGL3_CHECK_NETPILOT");
  Os().windowing.PostMessageW(m_hWnd, WM_VGL3_CHECK_NETPILOT, 0, 0);
  std::uint32_t period =
      ReadModelNumber(kProfileNetPilotCheckTime, m_szModelID.c_str(), m_szDatPath.c_str());
  if (period == 0) {
    TrayLogText(u"SetTimer TMID_NETPILOT default");
    period = kDefaultNetPilotPeriod;
  }
  TrayLogInt(u"SetTimer TMID_NETPILOT", static_cast<std::int32_t>(period));
  m_uhNetPilot = ArmTimer(TMID_NETPILOT, period);
}

void CMainFrame::OnInvitationTimer() {
  StopTimer(TMID_INVITATION, m_uhInvitationMonitor);
  Os().windowing.PostMessageW(m_hWnd, WM_VGL3_KICK_INVITATION, 0, 0);
  if (m_uInvitationPeriod != 0)
    m_uhInvitationMonitor = ArmTimer(TMID_INVITATION, m_uInvitationPeriod);
}

// A single click, once it can't become a double click any more, acts as a right click.
void CMainFrame::OnClickTimer() {
  StopTimer(TMID_CLICK, m_uhClick);
  Os().windowing.PostMessageW(m_hWnd, WM_VGL3_TRAYICON, 0, WM_RBUTTONDOWN);
}

}  // namespace vgl
