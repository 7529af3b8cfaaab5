// What the shell starts. Whatever it is, nobody gets a handle of it: what ran is known by the file
// that a program of MakeProgram writes.
#include <optional>
#include <vector>

#include "tests/platform/process_fixture.h"

namespace platform {
namespace {

// A result above that is a success.
constexpr std::int64_t kLastFailure = 32;

class ShellExecutions : public ScratchFolderTest {
 protected:
  std::int64_t Execute(const char16_t* verb, const std::u16string& file,
                       const char16_t* parameters = nullptr) {
    return os.shell.ShellExecuteW(HWND{}, verb, file.c_str(), parameters, nullptr, SW_SHOWNORMAL);
  }

  // A program that can be started; it has ended before the test has.
  void MakeTool(const char16_t* name) {
    MakeProgram(Path(name));
    m_tools.push_back(Path(name));
  }

  void TearDown() override {
    // One that runs can't be deleted.
    for (const std::u16string& tool : m_tools)
      EXPECT_TRUE(WaitUntil([&] { return os.files.DeleteFileW(tool.c_str()); }));
  }

  // What the program of that name was told, once it was; nothing when nothing was started.
  std::optional<std::u16string> Told(std::u16string_view name) {
    const std::u16string file = std::u16string(name) + u".txt";
    const auto size = [&]() -> std::uint32_t {
      const OwnedFile open(os.files.CreateFileW(Path(file).c_str(), GENERIC_READ,
                                                FILE_SHARE_READ | FILE_SHARE_WRITE, OPEN_EXISTING,
                                                FILE_ATTRIBUTE_NORMAL));
      return open ? os.files.GetFileSize(open.get(), nullptr) : 0;
    };
    if (!WaitUntil([&] { return size() != 0; })) return {};
    const std::string bytes = ReadFileBytes(file);
    std::u16string text;
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
      text += static_cast<char16_t>(static_cast<unsigned char>(bytes[i]) |
                                    static_cast<unsigned char>(bytes[i + 1]) << 8);
    }
    return text;
  }

 private:
  std::vector<std::u16string> m_tools;
};

TEST_F(ShellExecutions, AProgramGetsItsParameters) {
  MakeTool(u"tool.exe");
  EXPECT_GT(Execute(u"open", Path(u"tool.exe"), u"/child 0 \"x y\" \u05D0z"), kLastFailure);
  EXPECT_EQ(Told(u"tool.exe"), u"/child 0 \"x y\" \u05D0z");
}

TEST_F(ShellExecutions, APathWithBlanksIsOneName) {
  MakeTool(u"a tool.exe");
  EXPECT_GT(Execute(u"open", Path(u"a tool.exe"), u"/child 0"), kLastFailure);
  EXPECT_EQ(Told(u"a tool.exe"), u"/child 0");
}

TEST_F(ShellExecutions, QuotesAroundAPathAreNoPartOfIt) {
  MakeTool(u"a tool.exe");
  EXPECT_GT(Execute(u"open", u"\"" + Path(u"a tool.exe") + u"\"", u"/child 0"), kLastFailure);
  EXPECT_EQ(Told(u"a tool.exe"), u"/child 0");
}

TEST_F(ShellExecutions, WithoutAVerbTheFileIsOpened) {
  MakeTool(u"tool.exe");
  EXPECT_GT(Execute(nullptr, Path(u"tool.exe"), u"/child 0"), kLastFailure);
  EXPECT_EQ(Told(u"tool.exe"), u"/child 0");
}

TEST_F(ShellExecutions, AProgramIsFoundWithoutItsExtension) {
  MakeTool(u"tool.exe");
  EXPECT_GT(Execute(u"open", Path(u"tool"), u"/child 0"), kLastFailure);
  EXPECT_EQ(Told(u"tool.exe"), u"/child 0");
}

TEST_F(ShellExecutions, AProgramOfTheSystemNeedsNoFolder) {
  const std::u16string command = SystemCommand();
  const std::size_t blank = command.find(u' ');
  EXPECT_GT(Execute(u"open", command.substr(0, blank), command.substr(blank + 1).c_str()),
            kLastFailure);
}

TEST_F(ShellExecutions, AVerbThatAProgramLacksIsAFailure) {
  MakeTool(u"tool.exe");
  const bool isFailure = Execute(u"platformtest", Path(u"tool.exe"), u"/child 0") == 31;
  EXPECT_TRUE(HoldsExcept(OnWine(), isFailure));  // which opens a program whatever the verb
  if (!isFailure) {
    EXPECT_EQ(Told(u"tool.exe"), u"/child 0");
  }
}

TEST_F(ShellExecutions, AFileThatIsNotThereIsToldSo) {
  EXPECT_EQ(Execute(u"open", Path(u"missing.exe")), ERROR_FILE_NOT_FOUND);
  EXPECT_EQ(Execute(u"open", u"PlatformTestMissing.exe"), ERROR_FILE_NOT_FOUND);
}

TEST_F(ShellExecutions, AFolderThatIsNotThereIsAFailure) {
  EXPECT_LE(Execute(u"open", Path(u"missing\\tool.exe")), kLastFailure);
}

TEST_F(ShellExecutions, AFileThatNothingKnowsIsAFailure) {
  MakeFile(u"text.platformtest", "x");
  EXPECT_EQ(Execute(u"open", Path(u"text.platformtest")), 31);
}

TEST_F(ShellExecutions, ParametersBehindTheNameAreAPartOfIt) {
  MakeTool(u"tool.exe");
  EXPECT_LE(Execute(u"open", Path(u"tool.exe") + u" /child 0"), kLastFailure);
}

TEST_F(ShellExecutions, ANameThatNoFileCanHaveIsAFailure) {
  EXPECT_LE(Execute(u"open", Path(u"a<b>.exe")), kLastFailure);
  EXPECT_LE(Execute(u"open", Path(u"|")), kLastFailure);
}

TEST_F(ShellExecutions, ParametersThatNoCommandLineHoldsAreAFailure) {
  MakeTool(u"tool.exe");
  const std::u16string parameters = u"/child 0 " + std::u16string(40000, u'x');
  const bool isFailure = Execute(u"open", Path(u"tool.exe"), parameters.c_str()) <= kLastFailure;
  EXPECT_TRUE(HoldsExcept(OnWine(), isFailure));  // which cuts the command line
  if (!isFailure) {
    EXPECT_NE(Told(u"tool.exe"), std::nullopt);  // it has ended then
  }
}

}  // namespace
}  // namespace platform
