#include "Common/resource_strings.h"

#include "Common/fixed_text.h"
#include "platform/platform.h"

namespace vgl {

using namespace platform;

ProcessWideValue<HMODULE> g_hResDll;

bool LoadResString(std::u16string* target, std::uint32_t id) {
  FixedText<kResStringRoom> text;
  const std::int32_t length =
      Os().resources.LoadStringW(g_hResDll, id, text.buffer(), text.capacity());
  if (length < 1) return false;
  if (static_cast<std::uint32_t>(length) < kResStringRoom - 1) *target = text.view();
  return true;
}

}  // namespace vgl
