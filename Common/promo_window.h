// The suite's promotion window, which another of its programs shows for a printer: how it is found
// and brought to the front.
#pragma once

#include <cstdint>

#include "platform/types.h"

namespace vgl {

// Properties of a top-level window, one for each regional variant. The value is the handle of the
// window that has the title.
inline constexpr char16_t kPromoPropertyNa[] = u"KVSO_PROMODLG_NA";
inline constexpr char16_t kPromoPropertyWw[] = u"KVSO_PROMODLG_WW";

// What a search looks for, and what it has found. The texts are the caller's.
struct PropWindowSearch {
  platform::HWND found{};
  const char16_t* propertyName = nullptr;
  const char16_t* title = nullptr;  // null: any
};

// A step of the search, for EnumWindows: `search` is the address of a PropWindowSearch. 0 ends the
// enumeration.
std::int32_t EnumPropWindowProc(platform::HWND hWnd, platform::LPARAM search);

// Of the first top-level window with that property, and whose window of the title has exactly
// that one (null: any): the window of the title. HWND{} when there is none.
platform::HWND FindPropWindow(const char16_t* propertyName, const char16_t* title);

// Brings the promotion window of a printer to the front, if one is open. Its title is a string of
// g_hResDll, of another number for each variant, then " : " and the printer's name (null counts as
// empty). Variant NA comes first.
void ActivatePromoWindow(std::uint32_t naTitleId, std::uint32_t wwTitleId,
                         const char16_t* printerName);

}  // namespace vgl
