#include "Common/code_page.h"

#include "platform/platform.h"

namespace vgl {

using namespace platform;

std::u16string FromCodePage(const char* text) {
  constexpr std::int32_t kToTerminator = -1;
  const std::int32_t chars = Os().nls.MultiByteToWideChar(CP_ACP, text, kToTerminator, nullptr, 0);
  if (chars <= 0) return {};
  std::u16string wide(static_cast<std::size_t>(chars), u'\0');
  if (Os().nls.MultiByteToWideChar(CP_ACP, text, kToTerminator, wide.data(), chars) != chars)
    return {};
  wide.pop_back();  // the terminator
  return wide;
}

}  // namespace vgl
