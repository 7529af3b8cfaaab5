#include "desk/registry_text.h"

#include <gtest/gtest.h>

#include "Common/text_conversion.h"

namespace desk {
namespace {

using namespace platform;
using Kind = RegistryChange::Kind;
using std::string_literals::operator""s;

constexpr char kHead[] = "REGEDIT4\n";
constexpr char kKey[] = "REGEDIT4\n[HKEY_LOCAL_MACHINE\\A]\n";

// A file in UTF-16 with its mark.
std::string Wide(std::u16string_view text) { return "\xFF\xFE" + vgl::Utf16LeFromText(text); }

RegistryChange Only(const std::string& bytes) {
  const RegistryText text = ParseRegistryText(bytes);
  EXPECT_EQ(text.error, "");
  EXPECT_EQ(text.changes.size(), 2U);  // the key's and the one that is wanted
  return text.changes.empty() ? RegistryChange{} : text.changes.back();
}

TEST(RegistryText, TakesBothHeaders) {
  EXPECT_EQ(ParseRegistryText("REGEDIT4").error, "");
  EXPECT_EQ(ParseRegistryText("Windows Registry Editor Version 5.00\r\n\r\n").error, "");
  EXPECT_EQ(ParseRegistryText(Wide(u"Windows Registry Editor Version 5.00\r\n")).error, "");
}

TEST(RegistryText, AKeyLineMakesAKeyBelowItsHive) {
  const RegistryText text = ParseRegistryText(
      "REGEDIT4\n[HKEY_LOCAL_MACHINE\\Software\\A [b]]\n[hkey_current_user\\C]\n"
      "[HKEY_CURRENT_USER]\n[-HKEY_CURRENT_USER\\C\\D]\n");
  ASSERT_EQ(text.error, "");
  ASSERT_EQ(text.changes.size(), 4U);
  EXPECT_EQ(text.changes[0].kind, Kind::MakeKey);
  EXPECT_EQ(text.changes[0].hive, HKEY_LOCAL_MACHINE);
  EXPECT_EQ(text.changes[0].path, u"Software\\A [b]");
  EXPECT_EQ(text.changes[1].hive, HKEY_CURRENT_USER);
  EXPECT_EQ(text.changes[1].path, u"C");
  EXPECT_EQ(text.changes[2].path, u"");
  EXPECT_EQ(text.changes[3].kind, Kind::RemoveKey);
  EXPECT_EQ(text.changes[3].path, u"C\\D");
}

TEST(RegistryText, ReadsDataOfEveryForm) {
  const struct {
    std::string line;
    std::u16string name;
    std::uint32_t type;
    std::string bytes;
  } cases[] = {
      {"\"Name\"=\"text\"", u"Name", 1, "t\0e\0x\0t\0\0\0"s},
      {"\"\"=\"\"", u"", 1, "\0\0"s},
      {"@=\"x\"", u"", 1, "x\0\0\0"s},
      {R"("a\\b\"c"="\\\"")", u"a\\b\"c", 1, "\\\0\"\0\0\0"s},
      {"\"a=b;c\"=\"d;e=f\"", u"a=b;c", 1, "d\0;\0e\0=\0f\0\0\0"s},
      {"\t\"N\" = dword:1f ; a comment", u"N", 4, "\x1F\0\0\0"s},
      {"\"N\"=dword:FEDCBA98", u"N", 4, "\x98\xBA\xDC\xFE"},
      {"\"N\"=\"x\" ; a comment", u"N", 1, "x\0\0\0"s},
      {"\"N\"=hex:00,ff, 1", u"N", 3, "\0\xFF\1"s},
      {"\"N\"=hex:", u"N", 3, ""},
      {"\"N\"=hex(0):01", u"N", 0, "\1"},
      {"\"N\"=hex(4):01,02,03", u"N", 4, "\1\2\3"},
      {"\"N\"=hex(b):01,00,00,00,00,00,00,00", u"N", 11, "\1\0\0\0\0\0\0\0"s},
      {"\"N\"=hex:\\\n  01,\\  \r\n\t02,\\\n03", u"N", 3, "\1\2\3"},
  };
  for (const auto& [line, name, type, bytes] : cases) {
    SCOPED_TRACE(line);
    const RegistryChange value = Only(kKey + line + "\n");
    EXPECT_EQ(value.kind, Kind::SetValue);
    EXPECT_EQ(value.path, u"A");
    EXPECT_EQ(value.name, name);
    EXPECT_EQ(value.type, type);
    EXPECT_EQ(value.bytes, bytes);
  }
}

TEST(RegistryText, ADashInPlaceOfDataRemovesTheValue) {
  const RegistryChange value = Only(kKey + "\"Name\"=-\n"s);
  EXPECT_EQ(value.kind, Kind::RemoveValue);
  EXPECT_EQ(value.name, u"Name");
  EXPECT_EQ(Only(kKey + "@=- ; gone\n"s).kind, Kind::RemoveValue);
}

TEST(RegistryText, AUtf16FileMayHoldAnyCharacter) {
  const RegistryChange value =
      Only(Wide(u"REGEDIT4\r\n[HKEY_CURRENT_USER\\\u05D0]\r\n\"\u00E9\"=\"\u05D1\"\r\n"));
  EXPECT_EQ(value.path, u"\u05D0");
  EXPECT_EQ(value.name, u"\u00E9");
  EXPECT_EQ(value.bytes, "\xD1\x05\0\0"s);
}

TEST(RegistryText, AUtf16FileMayHoldTextsInHexadecimal) {
  const struct {
    std::u16string line;
    std::uint32_t type;
    std::string bytes;
  } cases[] = {
      {u"@=hex(1):41,00,00,00", 1, "A\0\0\0"s},
      {u"@=hex(2):25,00,00,00", 2, "%\0\0\0"s},
      {u"@=hex(7):41,00,00,00,42,00,00,00,00,00", 7, "A\0\0\0B\0\0\0\0\0"s},
      // Of an odd length: the last whole character has to be the terminator.
      {u"@=hex(1):41,00,00,00,42", 1, "A\0\0\0B"s},
  };
  for (const auto& [line, type, bytes] : cases) {
    const RegistryChange value = Only(Wide(u"REGEDIT4\n[HKEY_CURRENT_USER\\A]\n" + line));
    EXPECT_EQ(value.type, type);
    EXPECT_EQ(value.bytes, bytes);
  }
}

TEST(RegistryText, NamesTheLineOfAMistakeAndWhatWouldBeRight) {
  const struct {
    std::string text;
    std::string error;
  } cases[] = {
      {"",
       "line 1: the first line has to be \"Windows Registry Editor Version 5.00\" or \"REGEDIT4\""},
      {"\nREGEDIT4\n",
       "line 1: the first line has to be \"Windows Registry Editor Version 5.00\" or \"REGEDIT4\""},
      {"REGEDIT5\n",
       "line 1: the first line has to be \"Windows Registry Editor Version 5.00\" or \"REGEDIT4\""},
      {kHead + "[HKEY_LOCAL_MACHINE\\A\n"s, "line 2: the key has no \"]\" at the line's end"},
      {kHead + "[HKEY_USERS\\A]\n"s,
       "line 2: there is no hive \"HKEY_USERS\"; the hives are HKEY_LOCAL_MACHINE and "
       "HKEY_CURRENT_USER"},
      {kHead + "[]\n"s,
       "line 2: there is no hive \"\"; the hives are HKEY_LOCAL_MACHINE and HKEY_CURRENT_USER"},
      {kHead + "[-HKEY_LOCAL_MACHINE]\n"s, "line 2: a hive can't be removed"},
      {kHead + "; a comment\n\n\"N\"=\"x\"\n"s,
       "line 4: a value without a key; put a [key] line in front"},
      {kHead + "[-HKEY_LOCAL_MACHINE\\A]\n\"N\"=\"x\"\n"s,
       "line 3: a value without a key; put a [key] line in front"},
      {kKey + "N=\"x\"\n"s,
       "line 3: neither a [key] nor a value, as in \"name\"=\"text\" or @=dword:1"},
      {kKey + "\"N\"\n"s, "line 3: there is no \"=\" behind the value's name"},
      {kKey + "\"N=1\n"s, "line 3: a text without its closing quote"},
      {kKey + "\"N\"=\"x\n"s, "line 3: a text without its closing quote"},
      {kKey + "\"N\"=\"x\\\n"s, "line 3: behind a backslash stands a second one or a quote"},
      {kKey + "\"N\"=\"a\\nb\"\n"s, "line 3: behind a backslash stands a second one or a quote"},
      {kKey + "\"N\"=\"x\" y\n"s, "line 3: \"y\" behind the value's end"},
      {kKey + "\"N\"=-1\n"s, "line 3: \"1\" behind the value's end"},
      {kKey + "\"N\"=\n"s,
       "line 3: data is \"text\", dword:, hex: or hex(N):, or - to remove the value"},
      {kKey + "\"N\"=12\n"s,
       "line 3: data is \"text\", dword:, hex: or hex(N):, or - to remove the value"},
      {kKey + "\"N\"=dword:\n"s, "line 3: behind dword: stand one to eight hexadecimal digits"},
      {kKey + "\"N\"=dword:123456789\n"s,
       "line 3: behind dword: stand one to eight hexadecimal digits"},
      {kKey + "\"N\"=dword:0x1\n"s, "line 3: behind dword: stand one to eight hexadecimal digits"},
      {kKey + "\"N\"=dword:-1\n"s, "line 3: behind dword: stand one to eight hexadecimal digits"},
      {kKey + "\"N\"=hex 01\n"s, "line 3: behind hex stand \":\" or the type, as in hex(7):"},
      {kKey + "\"N\"=hex(7:01\n"s, "line 3: behind hex stand \":\" or the type, as in hex(7):"},
      {kKey + "\"N\"=hex(g):01\n"s, "line 3: the type in hex(N): is a hexadecimal number"},
      {kKey + "\"N\"=hex():01\n"s, "line 3: the type in hex(N): is a hexadecimal number"},
      {kKey + "\"N\"=hex:01,\n"s,
       "line 3: bytes are two hexadecimal digits each, with commas between them"},
      {kKey + "\"N\"=hex:01 02\n"s,
       "line 3: bytes are two hexadecimal digits each, with commas between them"},
      {kKey + "\"N\"=hex:100\n"s,
       "line 3: bytes are two hexadecimal digits each, with commas between them"},
      {kKey + "\"N\"=hex:01,\\\n\n"s,
       "line 4: bytes are two hexadecimal digits each, with commas between them"},
      {kKey + "\"N\"=hex:01,\\\n02,\\\n"s, "line 4: the data breaks off behind a backslash"},
      {kKey + "\"N\"=hex(1):41,00,00,00\n"s,
       "line 3: a text in hexadecimal; that takes a file in UTF-16 with its mark"},
      {kKey + "; caf\xC3\xA9\n"s,
       "line 3: a character that isn't ASCII; write the file in UTF-16 with its mark"},
      {"\xEF\xBB\xBFREGEDIT4\n",
       "line 1: a character that isn't ASCII; write the file in UTF-16 with its mark"},
      {Wide(u"REGEDIT4\n[HKEY_CURRENT_USER\\A]\n@=hex(1):41,00\n"),
       "line 3: a text in hexadecimal ends in 00,00"},
      {Wide(u"REGEDIT4\n[HKEY_CURRENT_USER\\A]\n@=hex(7):\n"),
       "line 3: a text in hexadecimal ends in 00,00"},
      {Wide(u"REGEDIT4\n[HKEY_CURRENT_USER\\A]") + "\n",
       "line 2: the file ends within a character"},
  };
  for (const auto& [text, error] : cases) EXPECT_EQ(ParseRegistryText(text).error, error) << text;
}

TEST(RegistryText, GivesWhatStandsInFrontOfAMistake) {
  const RegistryText text = ParseRegistryText(kKey + "\"N\"=dword:1\n\"M\"=dword:\n"s);
  EXPECT_EQ(text.changes.size(), 2U);
}

TEST(RegistryText, ChangesAreCarriedOutInTheirOrder) {
  sim::Machine machine;
  const RegistryText text = ParseRegistryText(
      "REGEDIT4\n"
      "[HKEY_CURRENT_USER\\A\\B]\n\"N\"=\"x\"\n\"M\"=dword:7\n\"N\"=-\n\"Nothing\"=-\n"
      "[HKEY_CURRENT_USER\\A\\C]\n@=hex:01\n"
      "[-HKEY_CURRENT_USER\\A\\B\\D]\n"
      "[HKEY_CURRENT_USER\\E\\F]\n"
      "[-HKEY_CURRENT_USER\\E]\n");
  ASSERT_EQ(text.error, "");
  ApplyChanges(text.changes, machine.registry());
  EXPECT_EQ(machine.registry().Dword(HKEY_CURRENT_USER, u"A\\B", u"M"), 7U);
  EXPECT_EQ(machine.registry().ValueNames(HKEY_CURRENT_USER, u"A\\B"),
            std::vector<std::u16string>{u"M"});
  EXPECT_EQ(machine.registry().Bytes(HKEY_CURRENT_USER, u"A\\C", u""), "\1");
  EXPECT_FALSE(machine.registry().HasKey(HKEY_CURRENT_USER, u"E"));
}

}  // namespace
}  // namespace desk
