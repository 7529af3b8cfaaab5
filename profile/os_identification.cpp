#include "profile/os_identification.h"

#include <cstdint>

#include "Common/text_conversion.h"
#include "platform/platform.h"

namespace vgl {

using namespace platform;

namespace {

constexpr std::uint32_t kWindows9xFamily = 1;
constexpr bool kIs64BitBuild = sizeof(void*) == 8;

// Zeros when the system doesn't tell.
OsVersion AskVersion() {
  OsVersion version;
  Os().system.GetVersionExW(&version);
  return version;
}

bool IsNt(const OsVersion& version) { return version.platformId == VER_PLATFORM_WIN32_NT; }

bool Is9x(const OsVersion& version) { return version.platformId == kWindows9xFamily; }

bool IsNt40(const OsVersion& version) { return IsNt(version) && version.majorVersion == 4; }

// A lower limit and no match on that one release: every later system counts as well.
bool IsWin2000(const OsVersion& version) { return IsNt(version) && version.majorVersion >= 5; }

// The word that leaves out version 5.0 itself.
bool IsLaterThanWin2000(const OsVersion& version) {
  return IsWin2000(version) && (version.majorVersion > 5 || version.minorVersion != 0);
}

struct SystemWord {
  const char16_t* word;
  bool (*holds)(const OsVersion& version);
};

constexpr SystemWord kSystemWords[] = {
    {u"WIN9X", Is9x},
    {u"WINNT", IsNt},
    {u"WINNT40", IsNt40},
    {u"WIN2000", IsWin2000},
    {u"WIN2KLATER", IsLaterThanWin2000},
};

}  // namespace

int TestCondition(std::u16string_view word) {
  const auto is = [word](std::u16string_view known) {
    return EqualsIgnoringAsciiCase(word, known);
  };
  if (word.empty() || is(u"ALL")) return 1;
  if (is(u"BUILD64")) return kIs64BitBuild ? 1 : 0;
  if (is(u"BUILD32")) return kIs64BitBuild ? 0 : 1;
  for (const SystemWord& known : kSystemWords)
    if (is(known.word)) return known.holds(AskVersion()) ? 1 : 0;
  return 0;
}

bool IsNtFamily() { return IsNt(AskVersion()); }

bool IsWin2000OrLater() { return IsWin2000(AskVersion()); }

bool IsBeforeVersion5() { return AskVersion().majorVersion < 5; }

}  // namespace vgl
