// The platform's calls on windows, messages and timers of the simulated machine.
#pragma once

#include <functional>
#include <optional>

#include "platform/sim/desktop.h"
#include "platform/windowing.h"

namespace sim {

class Call;

class WindowingCalls final : public platform::Windowing {
 public:
  explicit WindowingCalls(Machine& machine) : m_machine(machine) {}

  void InitCommonControls() override;
  std::uint16_t RegisterClassW(const platform::WindowClass& windowClass) override;
  platform::HWND CreateWindowExW(std::uint32_t exStyle, const char16_t* className,
                                 const char16_t* title, std::uint32_t style,
                                 platform::HMODULE instance) override;
  bool DestroyWindow(platform::HWND window) override;
  bool IsWindow(platform::HWND window) override;
  platform::HWND FindWindowW(const char16_t* className, const char16_t* title) override;
  std::int32_t GetWindowTextW(platform::HWND window, char16_t* text, std::int32_t chars) override;
  bool SetWindowTextW(platform::HWND window, const char16_t* text) override;
  bool ShowWindow(platform::HWND window, std::int32_t command) override;
  bool UpdateWindow(platform::HWND window) override;
  bool SetForegroundWindow(platform::HWND window) override;
  platform::HWND SetFocus(platform::HWND window) override;
  std::int64_t GetWindowLongPtrW(platform::HWND window, std::int32_t index) override;
  platform::HWND GetParent(platform::HWND window) override;
  std::int16_t GetAsyncKeyState(std::int32_t key) override;
  bool GetCursorPos(platform::Point* point) override;
  bool EnumWindows(platform::WNDENUMPROC callback, platform::LPARAM argument) override;
  platform::HANDLE GetPropW(platform::HWND window, const char16_t* name) override;
  bool SetWindowPos(platform::HWND window, platform::HWND insertAfter, std::int32_t x,
                    std::int32_t y, std::int32_t width, std::int32_t height,
                    std::uint32_t flags) override;
  platform::HWND GetDlgItem(platform::HWND dialog, std::int32_t id) override;
  platform::LRESULT DefWindowProcW(platform::HWND window, std::uint32_t message,
                                   platform::WPARAM wParam, platform::LPARAM lParam) override;
  bool PostMessageW(platform::HWND window, std::uint32_t message, platform::WPARAM wParam,
                    platform::LPARAM lParam) override;
  platform::LRESULT SendMessageW(platform::HWND window, std::uint32_t message,
                                 platform::WPARAM wParam, platform::LPARAM lParam) override;
  void PostQuitMessage(std::int32_t exitCode) override;
  std::int32_t GetMessageW(platform::Message* message) override;
  bool TranslateMessage(const platform::Message& message) override;
  platform::LRESULT DispatchMessageW(const platform::Message& message) override;
  std::uint64_t SetTimer(platform::HWND window, std::uint64_t id,
                         std::uint32_t milliseconds) override;
  bool KillTimer(platform::HWND window, std::uint64_t id) override;
  std::uint32_t GetDoubleClickTime() override;
  std::int32_t MessageBoxW(platform::HWND owner, const char16_t* text, const char16_t* caption,
                           std::uint32_t style) override;

 public:
  // Handles the thread's messages until `ended` holds or WM_QUIT has come, which stays for the loop
  // outside.
  void RunModalLoop(Thread& thread, const std::function<bool()>& ended);
  // Has a window of the running thread handle a message of the system's.
  platform::LRESULT CallProcedure(const platform::Message& message);

 private:
  Desktop& desktop() const;
  Window& NewWindow(Thread& thread, const char16_t* className, const char16_t* title,
                    std::uint32_t style);
  // Null with the error set when there is no such window.
  Window* FindWindow(const Call& call, platform::HWND window) const;
  void RemoveWindow(platform::HWND window);
  std::vector<platform::HWND> ChildrenOf(platform::HWND parent) const;
  void TearDown(Window& window);
  void HandleSent(Thread& thread);
  platform::LRESULT SendTo(Thread& sender, const platform::Message& message);
  bool TakeMessage(Thread& thread, platform::Message* message);
  bool TakeDueTimer(MessageQueue& queue, platform::Message* message);
  // The thread's next message, WM_QUIT included; nothing once `interrupted` holds.
  std::optional<platform::Message> WaitForMessage(Thread& thread,
                                                  const std::function<bool()>& interrupted);
  platform::LRESULT Deliver(const platform::Message& message);
  platform::HWND OpenBox(Thread& thread, const char16_t* text, const char16_t* caption,
                         std::uint32_t style);

  Machine& m_machine;
};

}  // namespace sim
