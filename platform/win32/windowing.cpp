// Windows, messages, timers and message boxes of Windows.
#include "platform/win32/conversion.h"
#include "platform/win32/services.h"

#include <commctrl.h>

#include <map>

namespace platform {
namespace {

// The window procedures by the atom of their class. Windows calls procedures in its own types, so
// it is given one of those for every class, which looks here for ours.
class ProcedureTable {
 public:
  void Add(ATOM windowClass, WNDPROC procedure) {
    AcquireSRWLockExclusive(&m_lock);
    m_procedures[windowClass] = procedure;
    ReleaseSRWLockExclusive(&m_lock);
  }

  WNDPROC Of(ATOM windowClass) {
    AcquireSRWLockShared(&m_lock);
    const auto found = m_procedures.find(windowClass);
    const WNDPROC procedure = found != m_procedures.end() ? found->second : nullptr;
    ReleaseSRWLockShared(&m_lock);
    return procedure;
  }

 private:
  SRWLOCK m_lock = SRWLOCK_INIT;
  std::map<ATOM, WNDPROC> m_procedures;
};

ProcedureTable& Procedures() {
  static ProcedureTable& table = *new ProcedureTable;  // windows may outlive static objects
  return table;
}

// The system mustn't see an exception on its way.
LRESULT CALLBACK CallOurProcedure(::HWND window, UINT message, ::WPARAM wParam,
                                  ::LPARAM lParam) noexcept {
  const auto windowClass = static_cast<ATOM>(GetClassLongPtrW(window, GCW_ATOM));
  const WNDPROC procedure = Procedures().Of(windowClass);
  // There is none only until RegisterClassW below has returned, when there is no window yet.
  if (procedure == nullptr) return ::DefWindowProcW(window, message, wParam, lParam);
  return procedure(handle_cast<HWND>(window), message, wParam, lParam);
}

MSG NativeMessage(const Message& message) {
  MSG native{};
  native.hwnd = handle_cast<::HWND>(message.window);
  native.message = message.message;
  native.wParam = message.wParam;
  native.lParam = message.lParam;
  return native;
}

class WindowingOfWindows final : public Windowing {
 public:
  void InitCommonControls() override { ::InitCommonControls(); }

  std::uint16_t RegisterClassW(const WindowClass& windowClass) override {
    WNDCLASSW native{};
    native.style = windowClass.style;
    native.lpfnWndProc = CallOurProcedure;
    native.hInstance = handle_cast<HINSTANCE>(windowClass.instance);
    native.hbrBackground = reinterpret_cast<::HBRUSH>(windowClass.background);
    native.lpszClassName = text_cast(windowClass.className);
    const ATOM atom = ::RegisterClassW(&native);
    if (atom != 0) Procedures().Add(atom, windowClass.procedure);
    return atom;
  }

  HWND CreateWindowExW(std::uint32_t exStyle, const char16_t* className, const char16_t* title,
                       std::uint32_t style, HMODULE instance) override {
    return handle_cast<HWND>(::CreateWindowExW(
        exStyle, text_cast(className), text_cast(title), style, CW_USEDEFAULT, CW_USEDEFAULT,
        CW_USEDEFAULT, CW_USEDEFAULT, nullptr, nullptr, handle_cast<HINSTANCE>(instance), nullptr));
  }

  bool DestroyWindow(HWND window) override {
    return ::DestroyWindow(handle_cast<::HWND>(window)) != FALSE;
  }

  bool IsWindow(HWND window) override { return ::IsWindow(handle_cast<::HWND>(window)) != FALSE; }

  HWND FindWindowW(const char16_t* className, const char16_t* title) override {
    return handle_cast<HWND>(::FindWindowW(text_cast(className), text_cast(title)));
  }

  std::int32_t GetWindowTextW(HWND window, char16_t* text, std::int32_t chars) override {
    return ::GetWindowTextW(handle_cast<::HWND>(window), text_cast(text), chars);
  }

  bool SetWindowTextW(HWND window, const char16_t* text) override {
    return ::SetWindowTextW(handle_cast<::HWND>(window), text_cast(text)) != FALSE;
  }

  bool ShowWindow(HWND window, std::int32_t command) override {
    return ::ShowWindow(handle_cast<::HWND>(window), command) != FALSE;
  }

  bool UpdateWindow(HWND window) override {
    return ::UpdateWindow(handle_cast<::HWND>(window)) != FALSE;
  }

  bool SetForegroundWindow(HWND window) override {
    return ::SetForegroundWindow(handle_cast<::HWND>(window)) != FALSE;
  }

  HWND SetFocus(HWND window) override {
    return handle_cast<HWND>(::SetFocus(handle_cast<::HWND>(window)));
  }

  std::int64_t GetWindowLongPtrW(HWND window, std::int32_t index) override {
    return ::GetWindowLongPtrW(handle_cast<::HWND>(window), index);
  }

  HWND GetParent(HWND window) override {
    return handle_cast<HWND>(::GetParent(handle_cast<::HWND>(window)));
  }

  std::int16_t GetAsyncKeyState(std::int32_t key) override { return ::GetAsyncKeyState(key); }

  bool GetCursorPos(Point* point) override {
    return ::GetCursorPos(reinterpret_cast<POINT*>(point)) != FALSE;  // of the same layout
  }

  bool EnumWindows(platform::WNDENUMPROC callback, LPARAM argument) override {
    auto* native = reinterpret_cast<::WNDENUMPROC>(reinterpret_cast<void (*)()>(callback));
    return ::EnumWindows(native, argument) != FALSE;
  }

  HANDLE GetPropW(HWND window, const char16_t* name) override {
    return handle_cast<HANDLE>(::GetPropW(handle_cast<::HWND>(window), text_cast(name)));
  }

  bool SetWindowPos(HWND window, HWND insertAfter, std::int32_t x, std::int32_t y,
                    std::int32_t width, std::int32_t height, std::uint32_t flags) override {
    return ::SetWindowPos(handle_cast<::HWND>(window), handle_cast<::HWND>(insertAfter), x, y,
                          width, height, flags) != FALSE;
  }

  HWND GetDlgItem(HWND dialog, std::int32_t id) override {
    return handle_cast<HWND>(::GetDlgItem(handle_cast<::HWND>(dialog), id));
  }

  LRESULT DefWindowProcW(HWND window, std::uint32_t message, WPARAM wParam,
                         LPARAM lParam) override {
    return ::DefWindowProcW(handle_cast<::HWND>(window), message, wParam, lParam);
  }

  bool PostMessageW(HWND window, std::uint32_t message, WPARAM wParam, LPARAM lParam) override {
    return ::PostMessageW(handle_cast<::HWND>(window), message, wParam, lParam) != FALSE;
  }

  LRESULT SendMessageW(HWND window, std::uint32_t message, WPARAM wParam, LPARAM lParam) override {
    return ::SendMessageW(handle_cast<::HWND>(window), message, wParam, lParam);
  }

  void PostQuitMessage(std::int32_t exitCode) override { ::PostQuitMessage(exitCode); }

  std::int32_t GetMessageW(Message* message) override {
    MSG native{};
    const BOOL result = ::GetMessageW(&native, nullptr, 0, 0);
    if (result != -1) {
      *message = {.window = handle_cast<HWND>(native.hwnd),
                  .message = native.message,
                  .wParam = native.wParam,
                  .lParam = native.lParam};
    }
    return result;
  }

  bool TranslateMessage(const Message& message) override {
    const MSG native = NativeMessage(message);
    return ::TranslateMessage(&native) != FALSE;
  }

  LRESULT DispatchMessageW(const Message& message) override {
    const MSG native = NativeMessage(message);
    return ::DispatchMessageW(&native);
  }

  std::uint64_t SetTimer(HWND window, std::uint64_t id, std::uint32_t milliseconds) override {
    return ::SetTimer(handle_cast<::HWND>(window), id, milliseconds, nullptr);
  }

  bool KillTimer(HWND window, std::uint64_t id) override {
    return ::KillTimer(handle_cast<::HWND>(window), id) != FALSE;
  }

  std::uint32_t GetDoubleClickTime() override { return ::GetDoubleClickTime(); }

  std::int32_t MessageBoxW(HWND owner, const char16_t* text, const char16_t* caption,
                           std::uint32_t style) override {
    return ::MessageBoxW(handle_cast<::HWND>(owner), text_cast(text), text_cast(caption), style);
  }
};

}  // namespace

Windowing& Win32Windowing() { return *new WindowingOfWindows; }

}  // namespace platform
