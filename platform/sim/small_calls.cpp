#include "platform/sim/small_calls.h"

#include <algorithm>
#include <cstring>

#include "platform/sim/code_page.h"
#include "platform/sim/machine.h"
#include "platform/sim/text.h"

namespace sim {

using namespace platform;

std::uint32_t SystemCalls::GetTickCount() {
  const Call call("GetTickCount");
  return m_machine.system().bootTicks + static_cast<std::uint32_t>(m_machine.now());
}

void SystemCalls::GetLocalTime(LocalTime* time) {
  const Call call("GetLocalTime");
  constexpr std::uint64_t kDay = 24 * 60 * 60 * 1000;
  const LocalTime& start = m_machine.system().startTime;
  std::uint64_t left = ((start.hour * 60U + start.minute) * 60U + start.second) * 1000U +
                       start.milliseconds + m_machine.now();
  const auto part = [&left](std::uint64_t size) {
    const std::uint64_t value = left % size;
    left /= size;
    return static_cast<std::uint16_t>(value);
  };
  *time = start;
  time->day = static_cast<std::uint16_t>(start.day + left / kDay);
  time->milliseconds = part(1000);
  time->second = part(60);
  time->minute = part(60);
  time->hour = part(24);
}

std::int64_t SystemCalls::time() {
  const Call call("time");
  return m_machine.system().startSeconds + static_cast<std::int64_t>(m_machine.now() / 1000);
}

bool SystemCalls::GetVersionExW(OsVersion* version) {
  Call call("GetVersionExW");
  if (call.Failure(ERROR_INSUFFICIENT_BUFFER)) return false;
  if (!m_machine.system().versionIsKnown) return false;
  *version = m_machine.system().version;
  return true;
}

std::uint32_t SystemCalls::GetSystemDirectoryW(char16_t* path, std::uint32_t chars) {
  Call call("GetSystemDirectoryW");
  if (call.Failure(ERROR_NO_SYSTEM_RESOURCES)) return 0;
  const std::u16string& folder = m_machine.system().systemFolder;
  if (folder.empty()) {
    call.SetLastError(ERROR_PATH_NOT_FOUND);
    return 0;
  }
  const auto length = static_cast<std::uint32_t>(folder.size());
  return chars <= length ? length + 1 : CopyCut(folder, path, chars);
}

std::uint32_t LanguageCalls::GetSystemDefaultLCID() {
  const Call call("GetSystemDefaultLCID");
  return m_machine.system().systemLocale;
}

std::uint16_t LanguageCalls::GetUserDefaultLangID() {
  const Call call("GetUserDefaultLangID");
  return m_machine.system().userLanguage;
}

namespace {

// The bidirectional type of a character, as far as the agent tells them apart.
std::uint16_t BidirectionalType(char16_t c) {
  constexpr std::uint16_t kLeftToRight = 1;
  constexpr std::uint16_t kEuropeanNumber = 3;
  constexpr std::uint16_t kWhitespace = 10;
  constexpr std::uint16_t kOtherNeutral = 11;
  const bool hebrew = (c >= 0x05BE && c <= 0x05F4) || (c >= 0xFB1D && c <= 0xFB4F);
  const bool arabic = (c >= 0x0608 && c <= 0x06EF && (c < 0x0660 || c > 0x066C)) ||
                      (c >= 0x06FA && c <= 0x07BF) || (c >= 0xFB50 && c <= 0xFEFC);
  if (hebrew || arabic || c == 0x200F) return C2_RIGHTTOLEFT;
  if (c >= u'0' && c <= u'9') return kEuropeanNumber;
  if (c == u' ' || c == 0x3000) return kWhitespace;
  const bool letter = (c >= u'A' && c <= u'Z') || (c >= u'a' && c <= u'z') ||
                      (c >= 0x00C0 && c <= 0x02B8 && c != 0x00D7 && c != 0x00F7) ||
                      (c >= 0x0370 && c <= 0x0589) || (c >= 0x3041 && c <= 0xD7FF) || c == 0x200E;
  return letter ? kLeftToRight : kOtherNeutral;
}

}  // namespace

bool LanguageCalls::GetStringTypeExW(std::uint32_t, std::uint32_t infoType, const char16_t* text,
                                     std::int32_t chars, std::uint16_t* types) {
  Call call("GetStringTypeExW");
  if (call.Failure(ERROR_INVALID_PARAMETER)) return false;
  if (infoType != CT_CTYPE2 || text == nullptr || chars <= 0) {
    call.SetLastError(ERROR_INVALID_PARAMETER);
    return false;
  }
  std::transform(text, text + chars, types, BidirectionalType);
  return true;
}

std::int32_t LanguageCalls::lstrcmpiW(const char16_t* left, const char16_t* right) {
  const Call call("lstrcmpiW");
  if (left == nullptr || right == nullptr)
    return (left != nullptr ? 1 : 0) - (right != nullptr ? 1 : 0);
  const std::u16string foldedLeft = FoldCase(View(left));
  const std::u16string foldedRight = FoldCase(View(right));
  if (foldedLeft == foldedRight) return 0;
  return foldedLeft < foldedRight ? -1 : 1;
}

std::int32_t LanguageCalls::WideCharToMultiByte(std::uint32_t codePage, const char16_t* text,
                                                std::int32_t chars, char* out, std::int32_t bytes) {
  Call call("WideCharToMultiByte");
  if (call.Failure(ERROR_INSUFFICIENT_BUFFER)) return 0;
  if (codePage != CP_ACP || text == nullptr || chars <= 0 || bytes < 0) {
    call.SetLastError(ERROR_INVALID_PARAMETER);
    return 0;
  }
  if (bytes == 0) return chars;
  if (bytes < chars) {
    call.SetLastError(ERROR_INSUFFICIENT_BUFFER);
    return 0;
  }
  std::transform(text, text + chars, out, [](char16_t c) { return ToCodePage(c); });
  return chars;
}

std::int32_t LanguageCalls::MultiByteToWideChar(std::uint32_t codePage, const char* text,
                                                std::int32_t bytes, char16_t* out,
                                                std::int32_t chars) {
  Call call("MultiByteToWideChar");
  if (call.Failure(ERROR_INSUFFICIENT_BUFFER)) return 0;
  if (codePage != CP_ACP || text == nullptr || bytes == 0 || bytes < -1 || chars < 0) {
    call.SetLastError(ERROR_INVALID_PARAMETER);
    return 0;
  }
  const auto count = bytes == -1 ? static_cast<std::int32_t>(std::strlen(text) + 1) : bytes;
  if (chars == 0) return count;
  if (chars < count) {
    call.SetLastError(ERROR_INSUFFICIENT_BUFFER);
    return 0;
  }
  std::transform(text, text + count, out, [](char byte) { return FromCodePage(byte); });
  return count;
}

}  // namespace sim
