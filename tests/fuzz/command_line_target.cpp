#include <optional>
#include <string>
#include <vector>

#include "app/cmd_line_info.h"
#include "app/option_walker.h"
#include "platform/sim/machine.h"
#include "tests/app/naive_option_reader.h"
#include "tests/fuzz/targets.h"

namespace vgl::fuzz {

namespace {

std::u16string TextOf(const std::uint8_t* data, std::size_t size) {
  std::u16string text;
  for (std::size_t i = 0; i + 1 < size; i += 2)
    text.push_back(static_cast<char16_t>(data[i] | data[i + 1] << 8));
  return text;
}

std::vector<test::NaiveOption> WalkedOptions(const std::u16string& text) {
  std::vector<test::NaiveOption> options;
  COptionWalker walker(text);
  while (const std::optional<SeenOption> option = walker.Next()) {
    if (option->name.size() >= 80) break;
    const std::optional<std::u16string_view> value = walker.Value();
    if (!value || value->size() >= 260) break;
    options.push_back({std::u16string(option->name), std::u16string(*value)});
  }
  return options;
}

}  // namespace

void CommandLine(const std::uint8_t* data, std::size_t size) {
  // The passes take the square of a text's length.
  if (size > 4096) size = 4096;
  std::u16string text = TextOf(data, size);
  text.erase(std::min(text.find(u'\0'), text.size()));
  VGL_FUZZ_REQUIRE(WalkedOptions(text) == test::NaiveOptionReader(text).ReadAll().applied);

  sim::Machine machine;
  sim::Inside inside(machine);
  const std::u16string path = machine.system().tempFolder + u"K_Q0001.tmp";
  // A file may name itself, and then it is read only once; another one isn't there.
  machine.files().WriteFile(path, {reinterpret_cast<const char*>(data), size});
  const bool ended = inside.EndsProcess([&] {
    { const CCmdLineInfo direct(text.c_str()); }
    const CCmdLineInfo info(u"/FU \"K_Q0001.tmp\"");
    VGL_FUZZ_REQUIRE(info.m_IconFrom >= 0 && info.m_IconFrom <= 2);
    VGL_FUZZ_REQUIRE(info.m_szPrinterName.size() < 260);
  });
  const bool isNameTooLong =
      test::NaiveOptionReader(text).ReadAll().end == test::NaiveEnd::NameTooLong;
  VGL_FUZZ_REQUIRE(!isNameTooLong || ended);
  VGL_FUZZ_REQUIRE(ended || inside.process().Ledger().empty());
}

}  // namespace vgl::fuzz
