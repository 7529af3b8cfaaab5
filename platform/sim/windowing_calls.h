// The platform's calls on windows, messages and timers of the simulated machine.
#pragma once

#include <functional>
#include <optional>

#include "platform/sim/desktop.h"
#include "platform/windowing.h"

namespace sim {

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

 private:
  Desktop& desktop() const;
  Window& NewWindow(Thread& thread, const char16_t* className, const char16_t* title,
                    std::uint32_t style);
  void RemoveWindow(platform::HWND window);
  void TearDown(Window& window);
  platform::LRESULT CallProcedure(const platform::Message& message);
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
