// Windows, messages, timers, message boxes, and where keyboard and mouse are.
//
// A window belongs to the thread that made it; its messages are handled there, inside GetMessageW
// or DispatchMessageW. Calls that wait (GetMessageW, SendMessageW to another thread, MessageBoxW)
// handle messages sent to the waiting thread meanwhile; MessageBoxW and menus also dispatch posted
// ones.
#pragma once

#include "platform/geometry.h"
#include "platform/types.h"

namespace platform {

inline constexpr std::uint32_t WM_NULL = 0;
inline constexpr std::uint32_t WM_CREATE = 1;
inline constexpr std::uint32_t WM_DESTROY = 2;
inline constexpr std::uint32_t WM_CLOSE = 16;
inline constexpr std::uint32_t WM_QUIT = 18;
inline constexpr std::uint32_t WM_DRAWITEM = 43;
inline constexpr std::uint32_t WM_MEASUREITEM = 44;
inline constexpr std::uint32_t WM_NCCREATE = 129;
inline constexpr std::uint32_t WM_NCDESTROY = 130;
inline constexpr std::uint32_t WM_COMMAND = 273;
inline constexpr std::uint32_t WM_TIMER = 275;
inline constexpr std::uint32_t WM_LBUTTONDOWN = 513;
inline constexpr std::uint32_t WM_LBUTTONUP = 514;
inline constexpr std::uint32_t WM_LBUTTONDBLCLK = 515;
inline constexpr std::uint32_t WM_RBUTTONDOWN = 516;
inline constexpr std::uint32_t WM_RBUTTONUP = 517;
inline constexpr std::uint32_t WM_USER = 1024;

inline constexpr std::uint32_t CS_BYTEALIGNWINDOW = 0x2000;
inline constexpr std::uint32_t WS_OVERLAPPEDWINDOW = 0x00CF0000;
inline constexpr std::uint32_t WS_VISIBLE = 0x10000000;
inline constexpr std::uint32_t WS_MINIMIZE = 0x20000000;
inline constexpr std::uint32_t WS_CHILD = 0x40000000;
inline constexpr std::int32_t CW_USEDEFAULT = INT32_MIN;
inline constexpr std::int32_t SW_HIDE = 0;

inline constexpr std::int32_t GWL_STYLE = -16;

// Places in front of and behind the windows that are always in front, for SetWindowPos.
inline constexpr HWND HWND_TOPMOST{~std::uint64_t{0}};
inline constexpr HWND HWND_NOTOPMOST{~std::uint64_t{1}};
inline constexpr std::uint32_t SWP_NOSIZE = 1;
inline constexpr std::uint32_t SWP_NOMOVE = 2;
inline constexpr std::uint32_t SWP_NOACTIVATE = 0x10;
inline constexpr std::uint32_t SWP_SHOWWINDOW = 0x40;

inline constexpr std::int32_t VK_SHIFT = 16;
inline constexpr std::int32_t VK_CONTROL = 17;
inline constexpr std::int32_t VK_SPACE = 32;

inline constexpr std::uint32_t MB_OK = 0;
inline constexpr std::uint32_t MB_RIGHT = 0x00080000;
inline constexpr std::uint32_t MB_RTLREADING = 0x00100000;
inline constexpr std::int32_t IDOK = 1;
inline constexpr std::int32_t IDCANCEL = 2;

// What SendMessageW takes for every top-level window.
inline constexpr HWND HWND_BROADCAST{0xFFFF};

// The shortest period of a timer in milliseconds; shorter ones are lengthened to it.
inline constexpr std::uint32_t USER_TIMER_MINIMUM = 10;

struct WindowClass {
  std::uint32_t style = 0;
  WNDPROC procedure = nullptr;
  HMODULE instance{};
  std::uint64_t background = 0;         // brush handle, or a system colour's number plus 1
  const char16_t* className = nullptr;  // copied
};

struct Message {
  HWND window{};  // HWND{} for a message to the thread
  std::uint32_t message = 0;
  WPARAM wParam = 0;
  LPARAM lParam = 0;
};

// What EnumWindows calls with each window and its own second argument; 0 ends the enumeration.
using WNDENUMPROC = std::int32_t (*)(HWND window, LPARAM argument);

class Windowing {
 public:
  virtual ~Windowing() = default;

  // Loads the system's common controls; no result.
  virtual void InitCommonControls() = 0;

  // Registers a class for this process; its name ignores case. Its atom; 0 with 1410 when this
  // process has it already.
  virtual std::uint16_t RegisterClassW(const WindowClass& windowClass) = 0;

  // Makes a top-level window with default place and size and no menu; the procedure gets the
  // creating messages (among them WM_NCCREATE, then WM_CREATE) before the call returns, and refuses
  // the window by answering the first with 0 or the second with -1. HWND{} on failure, 1407 when
  // there is no such class.
  virtual HWND CreateWindowExW(std::uint32_t exStyle, const char16_t* className,
                               const char16_t* title, std::uint32_t style, HMODULE instance) = 0;

  // Destroys a window of the calling thread: WM_DESTROY, then WM_NCDESTROY reach its procedure, its
  // timers end, messages that wait for it go. False with 1400 for no window, 5 for another
  // thread's.
  virtual bool DestroyWindow(HWND window) = 0;

  virtual bool IsWindow(HWND window) = 0;

  // The first top-level window of any process with that class and title (null: any), ignoring case.
  // HWND{} if none.
  virtual HWND FindWindowW(const char16_t* className, const char16_t* title) = 0;

  // The caption of a window whose procedure leaves that (WM_GETTEXT) to the system, cut to `chars`
  // characters with its terminator. The length written without terminator; 0 also for an empty
  // caption, and with 1400 for no window.
  virtual std::int32_t GetWindowTextW(HWND window, char16_t* text, std::int32_t chars) = 0;
  // Sets the caption of such a window (WM_SETTEXT) to a copy of `text`; null counts as empty. False
  // with 1400 for no window.
  virtual bool SetWindowTextW(HWND window, const char16_t* text) = 0;

  // Shows or hides; the result is whether the window was visible before.
  virtual bool ShowWindow(HWND window, std::int32_t command) = 0;
  virtual bool UpdateWindow(HWND window) = 0;

  // Brings the window to the front and gives its thread the keyboard. False when there is no such
  // window or the system doesn't allow it.
  virtual bool SetForegroundWindow(HWND window) = 0;

  // Has the keys of the calling thread go to that window of its (HWND{}: to none). The window that
  // had them before, or this one where it only now became the active one; HWND{} when none had,
  // with 1400 for no window, 5 for another thread's.
  virtual HWND SetFocus(HWND window) = 0;

  // The window's style (WS_...) for GWL_STYLE, the only index that is asked for; WS_VISIBLE tells
  // whether it is shown. 0 with 1400 for no window.
  virtual std::int64_t GetWindowLongPtrW(HWND window, std::int32_t index) = 0;

  // The parent of a child window, the owner of a message box. HWND{} for others, with 1400 for no
  // window.
  virtual HWND GetParent(HWND window) = 0;

  // Negative (the highest bit is set) while the key of that number (VK_...) is held down. The other
  // bits say nothing.
  virtual std::int16_t GetAsyncKeyState(std::int32_t key) = 0;

  // Where the mouse is. False when the desktop isn't accessible, `*point` is then undefined.
  virtual bool GetCursorPos(Point* point) = 0;

  // Calls `callback` with each top-level window of every process, hidden ones too, until it answers
  // 0 or there are no more; one that goes meanwhile is passed over. The order says nothing. False
  // when it answered 0, or on failure.
  virtual bool EnumWindows(WNDENUMPROC callback, LPARAM argument) = 0;

  // What is kept with a window under that name, whose case is ignored: a number that whoever set it
  // knows. HANDLE{} when there is nothing, with 1400 for no window.
  virtual HANDLE GetPropW(HWND window, const char16_t* name) = 0;

  // With all of SWP_NOSIZE, SWP_NOMOVE and SWP_NOACTIVATE: puts the window in front of all others
  // for good (HWND_TOPMOST), or just behind those of which that is true (HWND_NOTOPMOST), and shows
  // it with SWP_SHOWWINDOW. False with 1400 for no window.
  virtual bool SetWindowPos(HWND window, HWND insertAfter, std::int32_t x, std::int32_t y,
                            std::int32_t width, std::int32_t height, std::uint32_t flags) = 0;

  // The first child of a dialog that has that number; HWND{} when there is none, with 1400 for no
  // window.
  virtual HWND GetDlgItem(HWND dialog, std::int32_t id) = 0;

  // The system's own handling of a message. WM_CLOSE destroys the window.
  virtual LRESULT DefWindowProcW(HWND window, std::uint32_t message, WPARAM wParam,
                                 LPARAM lParam) = 0;

  // Puts a message behind those waiting for the window's thread. False with 1400 when the window is
  // gone, with 1159 for a message whose arguments are pointers (WM_CREATE, WM_NCCREATE,
  // WM_DRAWITEM, WM_MEASUREITEM among them). HWND{} posts to the calling thread itself.
  virtual bool PostMessageW(HWND window, std::uint32_t message, WPARAM wParam, LPARAM lParam) = 0;

  // Has the window's procedure handle a message at once and gives its result; waits for a window of
  // another thread, without limit. 0 with 1400 when the window is gone. HWND_BROADCAST and a handle
  // of all ones stand for every top-level window of every process, one after the other; the result
  // says nothing then.
  virtual LRESULT SendMessageW(HWND window, std::uint32_t message, WPARAM wParam,
                               LPARAM lParam) = 0;

  // Makes the calling thread's GetMessageW give WM_QUIT once its posted messages are used up.
  virtual void PostQuitMessage(std::int32_t exitCode) = 0;

  // Waits for the calling thread's next message: a posted one, then WM_QUIT, then a due timer's.
  // 1 for a message, 0 for WM_QUIT (wParam: exit code), -1 on failure; `*message` is untouched
  // then.
  virtual std::int32_t GetMessageW(Message* message) = 0;
  virtual bool TranslateMessage(const Message& message) = 0;
  virtual LRESULT DispatchMessageW(const Message& message) = 0;

  // Has WM_TIMER with `id` posted to `window` every `milliseconds`, first after one such period.
  // The same id again restarts the period. The id, 0 on failure. With HWND{} the timer belongs to
  // the thread, and the result is an id that the system chose.
  virtual std::uint64_t SetTimer(HWND window, std::uint64_t id, std::uint32_t milliseconds) = 0;

  // False when there is no such timer. A WM_TIMER that was already taken stays taken.
  virtual bool KillTimer(HWND window, std::uint64_t id) = 0;

  // The longest time between the two clicks of a double click, in milliseconds.
  virtual std::uint32_t GetDoubleClickTime() = 0;

  // Shows a box with an OK button and waits until it is answered; the answer's id (IDOK also when
  // the box is closed), 0 when the box couldn't be shown: 1400 for an owner that is gone. The owner
  // (HWND{}: none) is disabled meanwhile.
  virtual std::int32_t MessageBoxW(HWND owner, const char16_t* text, const char16_t* caption,
                                   std::uint32_t style) = 0;
};

}  // namespace platform
