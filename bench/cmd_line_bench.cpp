// How long a record takes to read an option text. "ratio" is the time in bare passes over the same
// text, measured in the same run: what reading costs more than looking at each character once.
// Below it, for comparison, the passes that define the grammar, one for each option.
#include <benchmark/benchmark.h>

#include <cstddef>
#include <string>

#include "app/cmd_line_info.h"
#include "app/option_walker.h"
#include "bench/ratio.h"
#include "tests/app/naive_option_reader.h"

namespace {

// A text as the suite writes them, one option a line. Driver, port and model are among the options,
// so that nothing is looked up and the reading alone is measured.
std::u16string OptionText(std::size_t options) {
  static const std::u16string kLines[] = {u"/P12 \"Office/2 \"A\"\"\n",
                                          u"/D \"KAVRO X1 series\"\n",
                                          u"/O \"USB001\"\n",
                                          u"/M \"KX1\"\n",
                                          u"/R\n",
                                          u"/T \"INVITE2\"\n",
                                          u"/HWND \"66052\"\n",
                                          u"/MON\n",
                                          u"/SPL\n",
                                          u"/KVM \"value\"\n"};
  std::u16string text;
  for (std::size_t i = 0; i < options; ++i) text += kLines[i % std::size(kLines)];
  return text;
}

// One look at each character, with what every reader of the grammar has to know of it at least.
std::size_t BarePass(const std::u16string& text) {
  std::size_t slashes = 0;
  bool outsideQuotes = true;
  for (const char16_t character : text) {
    if (character == u'"') outsideQuotes = !outsideQuotes;
    if (outsideQuotes && character == u'/') ++slashes;
  }
  return slashes;
}

// Measures `read(text)` for the text of the benchmark's size.
template <class Read>
void Measure(benchmark::State& state, Read read) {
  std::u16string text = OptionText(static_cast<std::size_t>(state.range(0)));
  benchmark::DoNotOptimize(text.data());
  bench::Measure(
      state, [&] { return read(text); }, [&] { return BarePass(text); });
}

void BarePassOverText(benchmark::State& state) { Measure(state, BarePass); }

void ParseCommandLine(benchmark::State& state) {
  vgl::CCmdLineInfo info;
  Measure(state, [&info](const std::u16string& text) {
    info.m_szCmdText = text;
    const int result = info.ParseCommandLine();
    benchmark::DoNotOptimize(&info);
    return result;
  });
}

// A start of the agent makes a new record.
void MakeRecordFromText(benchmark::State& state) {
  Measure(state, [](const std::u16string& text) {
    vgl::CCmdLineInfo info(text.c_str());
    benchmark::DoNotOptimize(&info);
    return info.m_fRemove;
  });
}

// Reading alone, without applying anything: in one walk, and in one for each option.
void OneWalk(benchmark::State& state) {
  Measure(state, [](const std::u16string& text) {
    vgl::COptionWalker walker(text);
    std::size_t characters = 0;
    while (walker.Next()) characters += walker.Value()->size();
    return characters;
  });
}

void OneWalkForEachOption(benchmark::State& state) {
  Measure(state, [](const std::u16string& text) {
    std::size_t characters = 0;
    for (std::size_t number = 0;; ++number) {
      vgl::COptionWalker walker(text);
      for (std::size_t i = 0; i < number; ++i) walker.Next();
      if (!walker.Next()) return characters;
      characters += walker.Value()->size();
    }
  });
}

void PassesByTheirDefinition(benchmark::State& state) {
  Measure(state, [](const std::u16string& text) {
    return vgl::test::NaiveOptionReader(text).ReadAll().applied.size();
  });
}

void Sizes(benchmark::internal::Benchmark* benchmark) {
  for (const int options : {10, 40, 200}) benchmark->Arg(options);
}

BENCHMARK(BarePassOverText)->Apply(Sizes);
BENCHMARK(ParseCommandLine)->Apply(Sizes);
BENCHMARK(MakeRecordFromText)->Apply(Sizes);
BENCHMARK(OneWalk)->Apply(Sizes);
BENCHMARK(OneWalkForEachOption)->Apply(Sizes);
BENCHMARK(PassesByTheirDefinition)->Apply(Sizes);

}  // namespace
