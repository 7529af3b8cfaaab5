#include "Common/promo_window.h"

#include <string>

#include "Common/fixed_text.h"
#include "Common/resource_strings.h"
#include "Common/text_conversion.h"
#include "platform/platform.h"

namespace vgl {

using namespace platform;

namespace {

constexpr std::int32_t kEnd = 0;
constexpr std::int32_t kGoOn = 1;

// Not by LoadResString: a string that fills the room makes a title that no window has, where an
// empty one would make a title that some other window may have.
std::u16string TitleOf(std::uint32_t id, const char16_t* printerName) {
  FixedText<kResStringRoom> text;
  Os().resources.LoadStringW(g_hResDll, id, text.buffer(), text.capacity());
  return std::u16string(text.view()) + u" : " + OrEmpty(printerName);
}

HWND FindPromoWindow(const char16_t* propertyName, std::uint32_t titleId,
                     const char16_t* printerName) {
  return FindPropWindow(propertyName, TitleOf(titleId, printerName).c_str());
}

void BringToFront(HWND window) {
  if (Os().windowing.SetForegroundWindow(window)) return;
  // A program that isn't in front may not do that; in front for good and back is allowed to all.
  constexpr std::uint32_t kFlags = SWP_NOSIZE | SWP_NOMOVE | SWP_NOACTIVATE | SWP_SHOWWINDOW;
  Os().windowing.SetWindowPos(window, HWND_TOPMOST, 0, 0, 0, 0, kFlags);
  Os().windowing.SetWindowPos(window, HWND_NOTOPMOST, 0, 0, 0, 0, kFlags);
}

}  // namespace

std::int32_t EnumPropWindowProc(HWND hWnd, LPARAM search) {
  auto* const record = reinterpret_cast<PropWindowSearch*>(search);
  if (record == nullptr) return kEnd;
  if (hWnd == HWND{}) return kGoOn;
  const HANDLE value = Os().windowing.GetPropW(hWnd, record->propertyName);
  if (value == HANDLE{}) return kGoOn;
  const HWND titled{static_cast<std::uint64_t>(value)};
  if (record->title != nullptr) {
    PathText text;
    Os().windowing.GetWindowTextW(titled, text.buffer(), PathText::capacity());
    if (text.view() != record->title) return kGoOn;
  }
  record->found = titled;
  return kEnd;
}

HWND FindPropWindow(const char16_t* propertyName, const char16_t* title) {
  PropWindowSearch search{.propertyName = propertyName, .title = title};
  Os().windowing.EnumWindows(EnumPropWindowProc, reinterpret_cast<LPARAM>(&search));
  return search.found;
}

void ActivatePromoWindow(std::uint32_t naTitleId, std::uint32_t wwTitleId,
                         const char16_t* printerName) {
  HWND found = FindPromoWindow(kPromoPropertyNa, naTitleId, printerName);
  if (found == HWND{}) found = FindPromoWindow(kPromoPropertyWw, wwTitleId, printerName);
  if (found != HWND{}) BringToFront(found);
}

}  // namespace vgl
