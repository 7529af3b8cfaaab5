#include "tests/windows/driver/open_menu.h"

#include "tests/windows/driver/text.h"
#include "tests/windows/menu_view.h"

namespace driver {

namespace {

constexpr UINT kPatience = 30000;

// The memory in which the hook leaves its answer.
class Section {
 public:
  Section()
      : m_section(CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0,
                                     sizeof(MenuView), kMenuViewName)) {
    if (m_section != nullptr)
      m_view = static_cast<const MenuView*>(
          MapViewOfFile(m_section, FILE_MAP_READ, 0, 0, sizeof(MenuView)));
  }
  ~Section() {
    if (m_view != nullptr) UnmapViewOfFile(m_view);
    if (m_section != nullptr) CloseHandle(m_section);
  }
  Section(const Section&) = delete;
  Section& operator=(const Section&) = delete;

  // Null when there is none.
  const MenuView* view() const { return m_view; }

 private:
  HANDLE m_section;
  const MenuView* m_view = nullptr;
};

// The hook, on the thread of a window.
class Hook {
 public:
  explicit Hook(HWND window) : m_library(LoadLibraryW(L"KVMENU.DLL")) {
    if (m_library == nullptr) return;
    const auto procedure = reinterpret_cast<HOOKPROC>(
        reinterpret_cast<void (*)()>(GetProcAddress(m_library, kMenuHookExport)));
    m_hook = SetWindowsHookExW(WH_CALLWNDPROC, procedure, m_library,
                               GetWindowThreadProcessId(window, nullptr));
  }
  ~Hook() {
    if (m_hook != nullptr) UnhookWindowsHookEx(m_hook);
    if (m_library != nullptr) FreeLibrary(m_library);
  }
  Hook(const Hook&) = delete;
  Hook& operator=(const Hook&) = delete;

  explicit operator bool() const { return m_hook != nullptr; }

 private:
  HMODULE m_library;
  HHOOK m_hook = nullptr;
};

ShownEntry FromView(const MenuViewItem& item) {
  return {
      .entry = {.id = item.id, .type = item.type, .state = item.state, .label = Narrow(item.label)},
      .place = item.place};
}

}  // namespace

std::optional<std::vector<ShownEntry>> ReadOpenMenu(HWND trayWindow) {
  const Section section;
  const Hook hook(trayWindow);
  DWORD_PTR ignored = 0;
  if (section.view() == nullptr || !hook ||
      SendMessageTimeoutW(trayWindow, RegisterWindowMessageW(kMenuViewName), 0, 0, SMTO_NORMAL,
                          kPatience, &ignored) == 0 ||
      section.view()->count == 0)
    return std::nullopt;
  std::vector<ShownEntry> entries;
  for (std::uint32_t i = 0; i < section.view()->count; ++i)
    entries.push_back(FromView(section.view()->items[i]));
  return entries;
}

}  // namespace driver
