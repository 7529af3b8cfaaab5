// The context menu: its resource library, its making, and its opening at the pointer.
#include "menu/menu_head.h"

#include "Common/path_lookup.h"
#include "Common/tray_log.h"
#include "app/main_frame.h"

namespace vgl {

using namespace platform;

namespace {

bool IsDown(std::int32_t key) { return Os().windowing.GetAsyncKeyState(key) < 0; }

}  // namespace

std::int32_t CMainFrame::LoadResDll(const char16_t* path) {
  TrayLogText(u"CMainFrame::LoadResDll");
  hResDll = Os().modules.LoadLibraryW(path);
  if (hResDll == HMODULE{}) {
    MessageBoxRtl(m_hWnd, m_szMsgNoFile.c_str(), m_szAppTitle.c_str());
    return 0;
  }
  g_hResDll = hResDll;
  GetBmpPath(&m_szBmpDll, m_szDriverName.c_str(), m_szModelID.c_str(), m_szPrinterName.c_str());
  LoadBmpDll();
  return 1;
}

// A set without a library of pictures has them beside its texts.
void CMainFrame::LoadBmpDll() {
  hBmpDll = m_szBmpDll.empty() ? HMODULE{} : Os().modules.LoadLibraryW(m_szBmpDll.c_str());
  m_fBmpDllOwn = hBmpDll != HMODULE{} ? 1 : 0;
  if (m_fBmpDllOwn == 0) hBmpDll = hResDll;
}

// Nothing of a library is needed between two openings of the menu: texts and pictures were copied.
void CMainFrame::FreeResDll() {
  if (hResDll != HMODULE{}) Os().modules.FreeLibrary(hResDll);
  if (m_fBmpDllOwn != 0) Os().modules.FreeLibrary(hBmpDll);
  hResDll = HMODULE{};
  g_hResDll = HMODULE{};
  hBmpDll = HMODULE{};
  m_fBmpDllOwn = 0;
}

HMENU CMainFrame::LoadMenu() {
  m_hMenu = Os().resources.LoadMenuW(hResDll, kMenuResource);
  const HMENU popup = Os().menus.GetSubMenu(m_hMenu, 0);
  if (popup == HMENU{}) return HMENU{};
  m_bRtlReading = IsRtlOS(popup);
  SetMenuTitle(popup, PrinterOrPort().view(), m_bRtlReading == 1);
  return popup;
}

std::span<ExMenuItem> CMainFrame::ExMenuSlots() {
  return {m_pExMenu.get(), static_cast<std::size_t>(m_nExMenuMax)};
}

std::int32_t CMainFrame::AddExMenu(HMENU popup) {
  const ExMenuSource source{.identity = Identity(),
                            .netPilot = m_csNetPilotString,
                            .texts = hResDll,
                            .pictures = hBmpDll};
  return vgl::AddExMenu(popup, source, ExMenuSlots());
}

void CMainFrame::RebuildExMenu() {
  PathText path;
  if (GetResPath(&path, m_szDriverName.c_str(), m_szModelID.c_str(), m_szPrinterName.c_str()) != 0)
    m_szResDll = path;
  // Those of an opening that found no menu are loaded still, and may be others by now.
  FreeResDll();
  hResDll = Os().modules.LoadLibraryW(m_szResDll.c_str());
  if (hResDll == HMODULE{}) return;
  LoadBmpDll();
  if (m_hMenu != HMENU{}) Os().menus.DestroyMenu(m_hMenu);
  m_hMenu = HMENU{};
  DeletePictures(ExMenuSlots());
  const HMENU popup = LoadMenu();
  if (popup == HMENU{}) return;
  AddExMenu(popup);
  FreeResDll();
}

void CMainFrame::OpenMenu() {
  RebuildExMenu();
  // The menu closes on a click elsewhere only if its window is in front.
  Os().windowing.SetForegroundWindow(m_hWnd);
  Os().windowing.SetFocus(m_hWnd);
  if (HoldsQuitKeys()) {
    TrayLogText(u"Post WM_CLOSE(3)");
    Os().windowing.PostMessageW(m_hWnd, WM_CLOSE, 0, 0);
    return;
  }
  Point cursor;
  Os().windowing.GetCursorPos(&cursor);
  const HMENU popup = Os().menus.GetSubMenu(m_hMenu, 0);
  const HWND owner = TopLevelOwner();
  Os().menus.DrawMenuBar(owner);
  Os().menus.TrackPopupMenu(popup, TPM_RIGHTBUTTON, cursor.x, cursor.y, owner);
}

// The hidden way to quit: these three held while the menu is called for. All of them are asked, so
// that none is left marked as pressed since the last question.
bool CMainFrame::HoldsQuitKeys() {
  const bool control = IsDown(VK_CONTROL);
  const bool shift = IsDown(VK_SHIFT);
  const bool space = IsDown(VK_SPACE);
  return control && shift && space;
}

HWND CMainFrame::TopLevelOwner() {
  HWND window = m_hWnd;
  while ((Os().windowing.GetWindowLongPtrW(window, GWL_STYLE) & WS_CHILD) != 0)
    window = Os().windowing.GetParent(window);
  return window;
}

}  // namespace vgl
