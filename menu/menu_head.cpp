#include "menu/menu_head.h"

#include <string>

#include "Common/fixed_text.h"
#include "Common/message_box.h"
#include "Common/wide_format.h"
#include "platform/platform.h"

namespace vgl {

using namespace platform;

namespace {

constexpr char16_t kLeftToRightMark = 0x200E;
constexpr std::uint32_t kRightToLeft = MFT_RIGHTORDER | MFT_RIGHTJUSTIFY;

// Marked, so that a name in Latin letters isn't torn apart in a menu that reads from right to left.
// A name that has no room for the mark goes without.
PathText Title(std::u16string_view title, bool rightToLeft) {
  PathText shown;
  if (rightToLeft && FormatTo(shown, u"%s%c", title, kLeftToRightMark)) return shown;
  if (!shown.Assign(title)) shown.Clear();
  return shown;
}

void MakeDefault(HMENU popup, PathText& title, bool rightToLeft) {
  MenuItemInfo info;
  info.mask = MIIM_STATE | MIIM_TYPE;
  if (!Os().menus.GetMenuItemInfoW(popup, IDM_STATUS, false, &info)) return;
  info.state = MFS_DEFAULT;
  info.typeData = title.buffer();
  info.cch = static_cast<std::uint32_t>(title.length() * 2);
  info.type = rightToLeft ? kRightToLeft : 0;
  Os().menus.SetMenuItemInfoW(popup, IDM_STATUS, false, &info);
}

void TurnSettingsEntry(HMENU popup) {
  MenuItemInfo info;
  info.mask = MIIM_FTYPE;
  if (!Os().menus.GetMenuItemInfoW(popup, IDM_SET_ENV, false, &info)) return;
  info.type |= kRightToLeft;
  Os().menus.SetMenuItemInfoW(popup, IDM_SET_ENV, false, &info);
}

}  // namespace

std::int32_t IsRtlOS(HMENU popup) {
  MenuItemInfo info;
  info.mask = MIIM_STRING;
  if (!Os().menus.GetMenuItemInfoW(popup, IDM_SET_ENV, false, &info) || info.cch == 0) return 0;
  std::u16string text((std::size_t{info.cch} + 1) * 2, u'\0');
  info.typeData = text.data();
  info.cch = static_cast<std::uint32_t>(text.size());
  if (!Os().menus.GetMenuItemInfoW(popup, IDM_SET_ENV, false, &info)) return 0;
  return HasRtlCharacter(text.c_str()) ? 1 : 0;
}

void SetMenuTitle(HMENU popup, std::u16string_view title, bool rightToLeft) {
  constexpr std::uint32_t kFirst = 0;
  PathText shown = Title(title, rightToLeft);
  Os().menus.ModifyMenuW(popup, kFirst, MF_BYPOSITION, IDM_STATUS, shown.c_str());
  MakeDefault(popup, shown, rightToLeft);
  if (rightToLeft) TurnSettingsEntry(popup);
}

}  // namespace vgl
