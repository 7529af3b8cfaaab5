// The head of the context menu: the entries that the menu resource brings.
#pragma once

#include <cstdint>
#include <string_view>

#include "platform/menus.h"

namespace vgl {

// Fixed by the suite's resource libraries: the menu, whose first sub-menu is the popup, and the
// commands of the popup's first entries.
inline constexpr std::uint16_t kMenuResource = 801;
inline constexpr std::uint32_t IDM_STATUS = 900;
inline constexpr std::uint32_t IDM_SET_ENV = 901;

// Whether a popup reads from right to left: 1 or 0, by the text of its entry 901. The name is the
// suite's; the language of the menu is asked, not that of the system.
std::int32_t IsRtlOS(platform::HMENU popup);

// Makes the popup's first entry the default one, command 900, under `title`. What reads from right
// to left has a mark of direction behind the title, and the order of its first entries turned
// round. What can't be read or changed is left as it is.
void SetMenuTitle(platform::HMENU popup, std::u16string_view title, bool rightToLeft);

}  // namespace vgl
