// The profile file readers of Windows.
#include "platform/win32/conversion.h"
#include "platform/win32/services.h"

namespace platform {
namespace {

class ProfileFilesOfWindows final : public ProfileFiles {
 public:
  std::uint32_t GetPrivateProfileStringW(const char16_t* section, const char16_t* key,
                                         const char16_t* fallback, char16_t* value,
                                         std::uint32_t chars, const char16_t* path) override {
    return ::GetPrivateProfileStringW(text_cast(section), text_cast(key), text_cast(fallback),
                                      text_cast(value), chars, text_cast(path));
  }

  std::uint32_t GetPrivateProfileStringA(const char* section, const char* key, const char* fallback,
                                         char* value, std::uint32_t chars,
                                         const char* path) override {
    return ::GetPrivateProfileStringA(section, key, fallback, value, chars, path);
  }

  std::uint32_t GetPrivateProfileIntW(const char16_t* section, const char16_t* key,
                                      std::int32_t fallback, const char16_t* path) override {
    return ::GetPrivateProfileIntW(text_cast(section), text_cast(key), fallback, text_cast(path));
  }

  std::uint32_t GetPrivateProfileSectionW(const char16_t* section, char16_t* lines,
                                          std::uint32_t chars, const char16_t* path) override {
    return ::GetPrivateProfileSectionW(text_cast(section), text_cast(lines), chars,
                                       text_cast(path));
  }
};

}  // namespace

ProfileFiles& Win32ProfileFiles() { return *new ProfileFilesOfWindows; }

}  // namespace platform
