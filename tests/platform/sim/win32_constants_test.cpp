// The build for Windows proves the numbers that constants.cpp lists; this proves that it lists all.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <regex>
#include <sstream>
#include <string>

namespace {

std::string ReadText(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  std::ostringstream text;
  text << file.rdbuf();
  return text.str();
}

TEST(Win32Constants, EveryNumberOfThePlatformHeadersIsProven) {
  const std::string list = ReadText("platform/win32/constants.cpp");
  ASSERT_NE(list, "") << "the tests are to be run in the root of the tree";

  const std::regex number(R"(inline constexpr std::\w+ ([A-Z]\w*) =)");
  int found = 0;
  for (const auto& entry : std::filesystem::directory_iterator("platform")) {
    if (entry.path().extension() != ".h") continue;
    const std::string header = ReadText(entry.path());
    for (std::sregex_iterator match(header.begin(), header.end(), number), end; match != end;
         ++match) {
      ++found;
      EXPECT_NE(list.find("USE(" + (*match)[1].str() + ")"), std::string::npos)
          << (*match)[1] << " of " << entry.path() << " is missing";
    }
  }
  EXPECT_GE(found, 100);
}

}  // namespace
