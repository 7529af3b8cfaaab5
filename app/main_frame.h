// CMainFrame, the agent: one object holds the printer's identity, the window, the tray icon, the
// menu, the timers and the handles of everything else.
//
// It is made before its window and outlives it. The window procedure takes it from g_pMainFrame and
// from nowhere else. Everything here runs on the one thread that made it.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>

#include "Common/fixed_text.h"
#include "Common/resource_strings.h"
#include "app/agent_messages.h"
#include "menu/ex_menu.h"
#include "menu/printer_identity.h"
#include "menu/smart_invitation.h"
#include "menu/uty_call.h"
#include "platform/owner_draw.h"
#include "platform/platform.h"
#include "platform/process_wide.h"

namespace vgl {

class CMainFrame {
 public:
  // What StartUp gives.
  static constexpr std::int32_t kRun = 1;
  static constexpr std::int32_t kEndQuietly = 0;
  static constexpr std::int32_t kEndAndDropAutoStart = -1;
  static constexpr std::int32_t kEndMasked = -2;

  CMainFrame();

  // The orderly end: stops the timers and gives back what StartUp took, also after a StartUp that
  // went only part of the way. Always 0. The window itself goes by the system's default or with the
  // process.
  virtual std::int32_t DestroyWindow();
  virtual ~CMainFrame();
  CMainFrame(const CMainFrame&) = delete;
  CMainFrame& operator=(const CMainFrame&) = delete;

  // Decides whether this process is to run, and sets everything up if so; identity, flags and
  // window must be in place. One of the four results above.
  std::int32_t StartUp();

  // 1 this process is the printer's agent, 0 it isn't: there is one already, which was told.
  std::int32_t DuplicationChk();

  // Writes "TrayIconEnable" as 0 into the printer's record. 1 when that was done, 0 when there is
  // no record or it can't be written.
  std::int32_t DisableIconReg();

  // Finds the printer's record, or makes one, and takes the icon's number from it; then finds the
  // resource library. 1; 0 when the record switches the icon off, also by saying nothing of it.
  std::int32_t LoadRegSet();

  // Loads the resource library and, where the set has one of its own, the bitmap library; both are
  // to be freed by FreeResDll. 0, after a message box, when the resource library can't be loaded.
  std::int32_t LoadResDll(const char16_t* path);

  // Starts the run helper for the status window or, with `withE`, for the preferences window, by a
  // parameter file that the helper removes. 1 when it was started; 0 leaves no file behind.
  std::int32_t StartVGLExe(const char16_t* exePath, bool withE);

  // A message box with this owner, by the reading order of its texts.
  std::int32_t MessageBoxRtl(platform::HWND owner, const char16_t* text, const char16_t* caption);

  // What a message has the agent do; DefWindowProcW follows in any case.
  void OnMessage(std::uint32_t message, platform::WPARAM wParam, platform::LPARAM lParam);

  // Whether no utility runs, as CUtyCall::CheckUtyCall tells it.
  std::int32_t CheckUtyCall(std::int32_t bWait) { return m_cUtyCall.CheckUtyCall(bWait); }

  // 1 the printer is there, or a utility runs and nothing can be said; 0 it is gone and what would
  // bring the agent back has been removed.
  std::int32_t ChkDelPrn();

  // Whether a menu id is that of one of the slots that could be made.
  bool IsExMenuSlot(std::uint32_t id) const;

  // The printer's name, or the port's where no printer name is known.
  const FixedText<260>& PrinterOrPort() const;
  // For the modules of the menu; good as long as this.
  PrinterIdentity Identity() const;

  std::unique_ptr<ExMenuItem[]> m_pExMenu;
  std::int32_t m_nExMenuMax = 0;  // 79, or 0 when the slots couldn't be made

  FixedText<260> m_szPortName, m_szModelID, m_szPrinterName, m_szDriverName;
  FixedText<260> m_szRegKey;  // the printer's record, below HKEY_CURRENT_USER
  std::u16string m_csVifName;
  std::u16string m_csNetPilotString;  // file name of NetPilot; empty: there is none

  platform::HWND m_hWnd{};
  platform::HMENU m_hMenu{};
  platform::HANDLE m_hMapFile{};  // the instance map's section

  // English texts for the messages that must work without a resource library.
  FixedText<260> m_szAppTitle, m_szMsgStatus, m_szMsgPrefs, m_szMsgMemory, m_szMsgNoFile;
  std::u16string m_csMsgCaption, m_csMsgBusy;  // strings 1100 and 35277 of the resource library

  std::int32_t m_fRemove = 0;
  std::int32_t m_fIconInstall = 0;

  platform::HICON m_hIcon[3] = {};
  std::uint32_t m_nIconSelected = 0;  // index into m_hIcon; value "TrayIconSelected"
  platform::NotifyIconData m_nid;     // its window tells whether the icon stands

  platform::HMODULE hResDll{};
  platform::HMODULE hBmpDll{};  // hResDll unless m_fBmpDllOwn
  std::int32_t m_fBmpDllOwn = 0;
  FixedText<260> m_szResDll, m_szBmpDll;

  std::unique_ptr<CSmartInvitation> m_pcInv;
  CUtyCall m_cUtyCall;
  std::int32_t m_bRtlReading = 0;
  FixedText<260> m_szDatPath;  // the model's profile file

  // Timers: the id while armed, else 0.
  std::uint64_t m_uhPrinterCheck = 0, m_uhMaskCheck = 0, m_uhNetPilot = 0, m_uhFlushLog = 0,
                m_uhInvitationMonitor = 0, m_uhClick = 0;
  static constexpr std::uint32_t kMaskCheckPeriod = 3000;  // of TMID_MASKCHECK in ms
  std::uint32_t m_uEndTime = 0;           // period of TMID_PRINTERCHECK in ms, 0: none
  std::uint32_t m_uInvitationPeriod = 0;  // of TMID_INVITATION after its first run, in ms

 private:
  bool FillFixedTexts();
  bool LoadDriverSet();
  bool ShowIconAndMenu();
  void FindNetPilot();
  bool IsNetworkPrinter();
  void HandOverTo(platform::HWND other);
  void PublishWindow();
  // Takes this agent out of the instance map and closes it.
  void LeaveMap();
  void CloseMap();
  void BeginWork();
  void ArmKicks();
  std::uint64_t ArmTimer(std::uint64_t id, std::uint32_t milliseconds);
  void StopTimer(std::uint64_t id, std::uint64_t& field);

  void OnDestroy();
  void OnCommand(std::uint32_t id);
  void OnAux(std::uint32_t id);
  void OnMeasureItem(platform::MeasureItem& item);
  void OnDrawItem(const platform::DrawItem& item);
  void OnKickInvitationEvents();
  void OnCheckNetPilot();
  void OnFlushUsageLog();

  void OnTimer(std::uint64_t id);
  void OnNetPilotTimer();
  void OnInvitationTimer();
  void OnClickTimer();
  void OnMaskCheckTimer();
  void OnPrinterCheckTimer();

  void FindOrMakeRecord();
  // False when there is no record to read.
  bool ReadIconChoice(std::uint32_t& enabled);

  enum class IconChange { Add, Modify };
  // 1 when the icon shows that picture and the printer's name; without its number, none.
  std::int32_t UpdateTrayIcon(std::uint32_t index, IconChange change);
  bool SetIconTip();
  void OnTrayNotify(std::uint32_t mouseMessage);
  void OnIconUpdate();
  // Whether what a click asks for is to be done: the printer is there, or can't be asked yet. If
  // not, the agent is on its way out, and `logText` says by which click.
  bool PassesLivenessGate(const char16_t* logText);

  // Makes the menu anew, from the resource library and the driver set as they are now. Where there
  // is no library, the menu of before stays and is the one that opens; of a library without the
  // menu there is none to open, and the library stays loaded until the next time.
  void RebuildExMenu();
  // Takes menu 801 out of the library that is loaded, and gives its first sub-menu, the popup, with
  // the head made ready. HMENU{} without one.
  platform::HMENU LoadMenu();
  // Those that could be made: all 79, or none.
  std::span<ExMenuItem> ExMenuSlots();
  // Adds the entries that the driver set describes, from the libraries that are loaded. 0 when it
  // came to an early stop.
  std::int32_t AddExMenu(platform::HMENU popup);
  void OpenMenu();
  bool HoldsQuitKeys();
  platform::HWND TopLevelOwner();
  void LoadBmpDll();
  void FreeResDll();

  struct RunHelperWindow;  // which of the two windows, and what tells that it can't be opened
  void OpenStatusWindow();
  void OpenPreferencesWindow();
  bool OpenByRunHelper(const RunHelperWindow& window);

  void DropAutoStart();
  void SayGoodbyeToInvitations();
  std::u16string InvitationLibrary();
};

extern platform::ProcessWideValue<CMainFrame*> g_pMainFrame;

// The window procedure of class kTrayWindowClass.
platform::LRESULT TrayWindowProc(platform::HWND window, std::uint32_t message,
                                 platform::WPARAM wParam, platform::LPARAM lParam);

}  // namespace vgl
