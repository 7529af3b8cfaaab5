#include <algorithm>
#include <limits>
#include <string>
#include <vector>

#include "platform/sim/machine.h"
#include "profile/blanks.h"
#include "profile/dat_text_file.h"
#include "profile/field_values.h"
#include "tests/fuzz/targets.h"

namespace vgl::fuzz {

namespace {

constexpr char16_t kPath[] = u"C:\\a.dat";

void CheckLines(CDatTextFile& file, std::size_t bytes) {
  file.FindSection(u"");  // back to the top
  std::u16string line;
  std::size_t chars = 0;
  while (file.ReadRawLine(line) == 1) {
    VGL_FUZZ_REQUIRE(!line.empty());
    VGL_FUZZ_REQUIRE(line.find(u';') == line.npos);
    VGL_FUZZ_REQUIRE(line.find(u'\n') >= line.size() - 1);
    chars += line.size();
  }
  VGL_FUZZ_REQUIRE(chars <= bytes);  // a comment's semicolon becomes a line feed
  VGL_FUZZ_REQUIRE(line.empty());

  file.FindSection(u"");
  std::u16string name;
  std::u16string value;
  while (file.ReadLine(line) == 1) {
    VGL_FUZZ_REQUIRE(!line.empty() && Trim(std::u16string_view(line)) == line);
    const bool isKeyLine = CDatTextFile::SplitKeyValue(line, name, value) == 1;
    VGL_FUZZ_REQUIRE(isKeyLine == !name.empty() && isKeyLine == !value.empty());
    VGL_FUZZ_REQUIRE(!isKeyLine || line.starts_with(name));
    VGL_FUZZ_REQUIRE(!isKeyLine || line.ends_with(value));
  }
}

std::ptrdiff_t QuotesIn(const std::u16string& text) {
  return std::count(text.begin(), text.end(), u'"');
}

// The values of a key, as text and as the file's bytes.
void CheckKey(CDatTextFile& file, const char16_t* section) {
  std::vector<std::u16string> values;
  file.FindSection(section);
  for (std::u16string value; file.FindKey(u"REGPATH", value) == 1;) values.push_back(value);
  file.FindSection(section);
  std::string_view bytes;
  for (const std::u16string& value : values) {
    VGL_FUZZ_REQUIRE(file.FindKeyInPlace(u"REGPATH", bytes) == 1);
    VGL_FUZZ_REQUIRE(EqualsText(bytes, value));
  }
  VGL_FUZZ_REQUIRE(file.FindKeyInPlace(u"REGPATH", bytes) == 0);
}

void CheckFields(const std::u16string& list) {
  CFieldWalker walker(list);
  for (std::size_t index = 0; index <= 8; ++index) {
    const std::u16string field = GetField(list, index);
    VGL_FUZZ_REQUIRE(field == walker.Next());
    VGL_FUZZ_REQUIRE(QuotesIn(field) <= QuotesIn(list));
    VGL_FUZZ_REQUIRE(Unquote(field).size() + 2 <= field.size() || Unquote(field).empty());
    const std::uint32_t type = ClassifyValue(field);
    VGL_FUZZ_REQUIRE(type == 1 || type == 4);
    const std::int64_t number = ParseNumber(field);
    VGL_FUZZ_REQUIRE(number >= std::numeric_limits<std::int32_t>::min());
    VGL_FUZZ_REQUIRE(number <= std::numeric_limits<std::int32_t>::max());
  }
}

}  // namespace

void DatTextFile(const std::uint8_t* data, std::size_t size) {
  sim::Machine machine;
  const sim::Inside inside(machine);
  machine.files().WriteFile(kPath, {reinterpret_cast<const char*>(data), size});
  CDatTextFile file;
  const bool opened = file.Open(kPath) == 1;
  VGL_FUZZ_REQUIRE(opened == (size != 0));
  CheckLines(file, size);
  std::u16string value;
  for (const char16_t* section : {u"Install", u"a", u""}) {
    VGL_FUZZ_REQUIRE(file.FindSection(section) == 0 || *section != u'\0');
    while (file.FindKey(u"REGPATH", value) == 1) {
      VGL_FUZZ_REQUIRE(!value.empty());
      CheckFields(value);
    }
    VGL_FUZZ_REQUIRE(value.empty());
    CheckKey(file, section);
  }
}

}  // namespace vgl::fuzz
