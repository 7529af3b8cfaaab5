// The national language support of Windows.
#include "platform/win32/conversion.h"
#include "platform/win32/services.h"

namespace platform {
namespace {

class NationalLanguageOfWindows final : public NationalLanguage {
 public:
  std::uint32_t GetSystemDefaultLCID() override { return ::GetSystemDefaultLCID(); }

  std::uint16_t GetUserDefaultLangID() override { return ::GetUserDefaultLangID(); }

  bool GetStringTypeExW(std::uint32_t locale, std::uint32_t infoType, const char16_t* text,
                        std::int32_t chars, std::uint16_t* types) override {
    return ::GetStringTypeExW(locale, infoType, text_cast(text), chars, types) != FALSE;
  }

  std::int32_t lstrcmpiW(const char16_t* left, const char16_t* right) override {
    return ::lstrcmpiW(text_cast(left), text_cast(right));
  }

  std::int32_t WideCharToMultiByte(std::uint32_t codePage, const char16_t* text, std::int32_t chars,
                                   char* out, std::int32_t bytes) override {
    return ::WideCharToMultiByte(codePage, 0, text_cast(text), chars, out, bytes, nullptr, nullptr);
  }

  std::int32_t MultiByteToWideChar(std::uint32_t codePage, const char* text, std::int32_t bytes,
                                   char16_t* out, std::int32_t chars) override {
    return ::MultiByteToWideChar(codePage, 0, text, bytes, text_cast(out), chars);
  }
};

}  // namespace

NationalLanguage& Win32NationalLanguage() { return *new NationalLanguageOfWindows; }

}  // namespace platform
