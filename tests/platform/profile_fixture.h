// A profile file of a test's own, and short ways to read it.
#pragma once

#include "tests/platform/platform_test.h"

namespace platform {

class ProfileContract : public ScratchFolderTest {
 protected:
  void Write(std::string_view bytes) { MakeFile(u"profile.ini", bytes); }

  std::u16string Value(const char16_t* section, const char16_t* key,
                       const char16_t* fallback = u"(missing)");
  std::u16string ValueIn(std::u16string_view file, const char16_t* section, const char16_t* key,
                         const char16_t* fallback);
  // Of section "s".
  std::uint32_t Number(const char16_t* key, std::int32_t fallback);

  std::u16string path = Path(u"profile.ini");
};

}  // namespace platform
