#include "tests/platform/profile_fixture.h"

namespace platform {

std::u16string ProfileContract::Value(const char16_t* section, const char16_t* key,
                                      const char16_t* fallback) {
  return ValueIn(u"profile.ini", section, key, fallback);
}

std::u16string ProfileContract::ValueIn(std::u16string_view file, const char16_t* section,
                                        const char16_t* key, const char16_t* fallback) {
  std::u16string value(5000, u'?');
  const std::uint32_t length = os.profiles.GetPrivateProfileStringW(
      section, key, fallback, value.data(), static_cast<std::uint32_t>(value.size()),
      Path(file).c_str());
  EXPECT_EQ(value[length], u'\0');
  value.resize(length);
  return value;
}

std::uint32_t ProfileContract::Number(const char16_t* key, std::int32_t fallback) {
  return os.profiles.GetPrivateProfileIntW(u"s", key, fallback, path.c_str());
}

}  // namespace platform
