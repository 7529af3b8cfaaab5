#include "profile/multi_lang_ctrl.h"

#include <algorithm>
#include <array>
#include <memory>
#include <new>
#include <string_view>

#include "profile/operation_log.h"

namespace vgl {

namespace {

// A question that gives 0 unless the library is there. `ask` gives the answer.
template <class Ask>
std::int32_t Question(const char16_t* name, bool canAsk, const Ask& ask) {
  return LogOperation(name, [&] { return canAsk ? static_cast<std::int32_t>(ask()) : 0; });
}

}  // namespace

CMultiLangCtrl::~CMultiLangCtrl() = default;

std::int32_t CMultiLangCtrl::GetUiResourcePath(char16_t* path, std::uint32_t* chars) {
  return Question(u"CMultiLangCtrl::GetUiResourcePath", IsInitialized(),
                  [&] { return LMWGetLibraryPath(u"VGLUIRESModule", path, chars) == kLmwSuccess; });
}

std::int32_t CMultiLangCtrl::GetHelpPath(const char16_t* key, char16_t* path,
                                         std::uint32_t* chars) {
  return Question(u"CMultiLangCtrl::GetHelpPath", IsInitialized(),
                  [&] { return LMWGetLibraryPath(key, path, chars) == kLmwSuccess; });
}

std::int32_t CMultiLangCtrl::GetInkCode(const char16_t* text, void* out, std::uint32_t* size) {
  return Question(u"CMultiLangCtrl::GetInkCode", IsInitialized(), [&] {
    const std::u16string_view input = text == nullptr ? u"" : text;
    return LMWGetInformation(kLmwInkCode, text, static_cast<std::uint32_t>(input.size()), out,
                             size) == kLmwSuccess;
  });
}

std::int32_t CMultiLangCtrl::GetUrl(std::uint64_t first, std::uint64_t second, char16_t* url,
                                    std::uint32_t capacity) {
  return Question(u"CMultiLangCtrl::GetUrl", IsInitialized(),
                  [&] { return AskUrl(first, second, url, capacity); });
}

bool CMultiLangCtrl::AskUrl(std::uint64_t first, std::uint64_t second, char16_t* url,
                            std::uint32_t capacity) {
  const std::array<std::uint64_t, 2> input{first, second};
  if (url == nullptr) capacity = 0;
  if (capacity != 0) *url = u'\0';
  std::uint32_t chars = 0;
  std::int32_t answer = LMWGetInformation(kLmwUrl, input.data(), sizeof input, nullptr, &chars);
  if (answer == kLmwNoRoom && chars > 0) {
    const std::uint32_t room = chars;  // the library sets the other anew
    const std::unique_ptr<char16_t[]> text(new (std::nothrow) char16_t[room]());
    if (text == nullptr) return false;
    answer = LMWGetInformation(kLmwUrl, input.data(), sizeof input, text.get(), &chars);
    const auto length =
        static_cast<std::size_t>(std::find(text.get(), text.get() + room, u'\0') - text.get());
    if (length >= capacity) return false;
    url[std::u16string_view(text.get(), length).copy(url, length)] = u'\0';
  }
  return answer == kLmwSuccess;
}

std::int32_t CMultiLangCtrl::GetRID(void* out, std::uint32_t* size) {
  return Question(u"CMultiLangCtrl::GetRID", IsInitialized(),
                  [&] { return LMWGetInformation(kLmwRid, nullptr, 0, out, size); });
}

std::int32_t CMultiLangCtrl::GetREGION(void* out, std::uint32_t* size) {
  return Question(u"CMultiLangCtrl::GetREGION", IsInitialized(),
                  [&] { return LMWGetInformation(kLmwRegion, nullptr, 0, out, size); });
}

}  // namespace vgl
