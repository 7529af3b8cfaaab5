// The inputs that the fuzzer's runs have left, on the targets that they were found for.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "tests/fuzz/targets.h"

namespace vgl::fuzz {
namespace {

struct Target {
  const char* folder;
  void (*run)(const std::uint8_t* data, std::size_t size);
};

class FuzzCorpus : public testing::TestWithParam<Target> {};

TEST_P(FuzzCorpus, EveryInputThatWasKeptEndsAsItMay) {
  int inputs = 0;
  for (const auto& entry : std::filesystem::directory_iterator(
           std::filesystem::path("tests/fuzz/corpus") / GetParam().folder)) {
    std::ifstream file(entry.path(), std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    SCOPED_TRACE(entry.path().filename().string());
    GetParam().run(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
    ++inputs;
  }
  EXPECT_GE(inputs, 5);
}

INSTANTIATE_TEST_SUITE_P(Targets, FuzzCorpus,
                         testing::Values(Target{"dat_text_file", DatTextFile},
                                         Target{"install_description", InstallDescription},
                                         Target{"command_line", CommandLine},
                                         Target{"instance_map", InstanceMap},
                                         Target{"pe_resources", PeResources}),
                         [](const auto& target) { return std::string(target.param.folder); });

}  // namespace
}  // namespace vgl::fuzz
