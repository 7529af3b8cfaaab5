// Which of a profile's languages is the user's: the profile lists them in its section "Language",
// and each has a section of its own, which names the language's resource library.
//
//   [Language]            [DEU]
//   DEU=07,01             ResDll=K_S72DE.DLL
//   ENU=09,01
//
// A line of the list: the name of the language's section, then the primary identifier and the
// sublanguage in hexadecimal digits; further fields don't count. docs/driver-set.md tells the form
// for authors of driver sets.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace vgl {

// What the operations below give when they fail. Text operations leave the output empty then.
inline constexpr std::int32_t kLanguageFailed = -1;    // bad arguments; the text can't be copied
inline constexpr std::int32_t kLanguageNoValue = -2;   // the key is missing or empty
inline constexpr std::int32_t kLanguageNoMemory = -3;  // for the list
inline constexpr std::int32_t kLanguageNoRoom = -4;    // `*size` is now the room needed

// --- The list as plain values

// A line of the list, its fields as they stand in it. A line without "=" is all section name.
struct LanguageRecord {
  std::u16string_view section;
  std::u16string_view primary;
  std::u16string_view sublanguage;
};

// The room for the list. Nothing behind its first 128 characters is seen, terminators counted: the
// system keeps two of the 130 for itself.
inline constexpr std::uint32_t kLanguageListBytes = 260;

// The number that hexadecimal digits of either case make. Other characters are passed over; the
// low 16 bits count.
std::uint16_t LanguageNumber(std::u16string_view digits);

// The first `count` lines of a list, each with its terminator. The records look into `list`. A list
// of fewer lines gives empty records for the others.
std::vector<LanguageRecord> ParseLanguageList(std::u16string_view list, std::uint32_t count);

// The section name of the record for a language identifier (primary in the low 10 bits, sublanguage
// in the high 6): the one that is the same in both; else the first of the same primary; else the
// first English one; else the first. Empty when there are no records.
std::u16string_view PickLanguage(std::span<const LanguageRecord> records, std::uint16_t language);

// --- The same of a profile
//
// `*size` goes in as the room at the output in bytes, and comes out as the length of the text in
// characters with the terminator. The two are held against each other as if they were of one kind,
// as all programs of the suite do: a text of more characters than there are bytes gives
// kLanguageNoRoom, one that fits by that measure and still not into the room gives kLanguageFailed.
// Callers give 520 for 260 characters. `profilePath` may be null where nothing else is said, which
// counts as a profile without a list.

// Reads the list into `list`, which has room for `bytes` bytes, and counts its lines. The result is
// the length in characters, without the last terminator: 0 when the profile has no list;
// kLanguageFailed when an argument is null or empty; kLanguageNoRoom without room for a character,
// and for a length of `bytes` - 2, which the suite's programs take for a list that was cut. (The
// system tells that by half of it, so a list that was cut counts, and its last line with what is
// left.)
// `*count` is 2 unless lines were counted.
std::int32_t ReadLanguageList(char16_t* list, std::uint32_t bytes, std::uint32_t* count,
                              const char16_t* profilePath);

// PickLanguage of the profile's list, whether or not the language's library is there. 0, or one of
// the failures. A profile without a list has two empty records: the name is empty then.
std::int32_t MatchLanguageSection(char16_t* section, std::uint32_t* size,
                                  const char16_t* profilePath, std::uint16_t language);

// The first section of the list whose resource library is there; an empty name when none is. 0, or
// one of the failures.
std::int32_t FirstInstalledLanguage(char16_t* section, std::uint32_t* size,
                                    const char16_t* profilePath);

// The section for the user: that of his language, of US English, or the first of all, whichever is
// the first whose resource library is there. 0 or more, or one of the failures. When no library is
// there it is an empty name and 0. An empty or null path is a bad argument.
std::int32_t SelectLanguageSection(char16_t* section, std::uint32_t* size,
                                   const char16_t* profilePath);

// Whether a file of that name is beside the profile: 1 or 0. Paths of 260 characters or more, and a
// profile without a folder, count as absent.
int ResFileExists(const char16_t* fileName, const char16_t* profilePath);

// A text of the section that SelectLanguageSection gives, of 259 characters at most: any key's, or
// the name of the resource library. 0; kLanguageFailed also when no section can be selected;
// kLanguageNoValue; kLanguageNoRoom.
std::int32_t GetLanguageString(const char16_t* key, char16_t* out, std::uint32_t* size,
                               const char16_t* profilePath);
std::int32_t GetLanguageResDll(char16_t* out, std::uint32_t* size, const char16_t* profilePath);

// A number of that section, `fallback` when it hasn't the key. -1 when no section can be selected,
// or an argument is null or empty.
std::int32_t GetLanguageInt(const char16_t* key, std::int32_t fallback,
                            const char16_t* profilePath);

}  // namespace vgl
