#include "Common/message_box.h"

#include <algorithm>
#include <vector>

#include "platform/platform.h"

namespace vgl {

using namespace platform;

bool HasRtlCharacter(std::u16string_view text) {
  if (text.empty()) return false;
  std::vector<std::uint16_t> types(text.size());
  if (!Os().nls.GetStringTypeExW(Os().nls.GetSystemDefaultLCID(), CT_CTYPE2, text.data(),
                                 static_cast<std::int32_t>(text.size()), types.data()))
    return false;
  return std::find(types.begin(), types.end(), C2_RIGHTTOLEFT) != types.end();
}

std::int32_t MessageBoxRtl(HWND owner, const char16_t* text, const char16_t* caption) {
  const auto isRtl = [](const char16_t* shown) {
    return shown != nullptr && HasRtlCharacter(shown);
  };
  const bool rtl = isRtl(text) || isRtl(caption);
  return Os().windowing.MessageBoxW(owner, text, caption, rtl ? MB_RIGHT | MB_RTLREADING : MB_OK);
}

}  // namespace vgl
