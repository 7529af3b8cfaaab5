// The driver-update program: its name and folder, and which entry runs it.
#include "tests/menu/driver_programs_fixture.h"

namespace vgl {
namespace {

// --- GetDriverUpdateExeName

class DriverUpdateName : public DriverPrograms {
 protected:
  struct Result {
    int result;
    std::u16string name;
    std::u16string folder;
    bool operator==(const Result&) const = default;
  };
  Result Get() {
    PathText name, folder;
    EXPECT_TRUE(name.Assign(u"before"));
    EXPECT_TRUE(folder.Assign(u"before"));
    const int result = GetDriverUpdateExeName(identity, name, &folder);
    return {result, std::u16string(name.view()), std::u16string(folder.view())};
  }
};

TEST_F(DriverUpdateName, IsPartedIntoFolderAndUpperCaseName) {
  const struct {
    std::string_view value;
    std::u16string name;
    std::u16string folder;
  } cases[] = {
      {"C:\\Suite\\Update.exe", u"UPDATE.EXE", u"C:\\Suite\\"},
      {"C:/Suite/Update.exe", u"UPDATE.EXE", u"C:/Suite/"},
      {"C:\\a/b\\Update.exe", u"UPDATE.EXE", u"C:\\a/b\\"},
      {"C:\\a\\b/Update.exe", u"UPDATE.EXE", u"C:\\a\\b/"},
      {"\\\\server\\share\\Update.exe", u"UPDATE.EXE", u"\\\\server\\share\\"},
      {"\\Update.exe", u"UPDATE.EXE", u"\\"},
      {"C:Update.exe", u"UPDATE.EXE", u"C:"},
      {"Update.exe", u"UPDATE.EXE", u""},
      {"Update", u"UPDATE", u""},
      {".exe", u".EXE", u""},
      {"x", u"X", u""},
      {"C:\\Suite.1\\Up date.v2.exe", u"UP DATE.V2.EXE", u"C:\\Suite.1\\"},
      {"C:\\Suite\\", u"", u"C:\\Suite\\"},
      {"C:/", u"", u"C:/"},
      {"C:", u"", u"C:"},
      {"/", u"", u"/"},
      // Only the second character makes a drive, and whatever is before it.
      {":Update.exe", u":UPDATE.EXE", u""},
      {"CD:Update.exe", u"CD:UPDATE.EXE", u""},
      {"C:D:Update.exe", u"D:UPDATE.EXE", u"C:"},
      {"\\:Update.exe", u"UPDATE.EXE", u"\\:"},
  };
  for (const auto& each : cases) {
    SetDriverValue(machine, "DriverUpdateName", each.value);
    EXPECT_EQ(Get(), (Result{1, each.name, each.folder})) << each.value;
  }
}

TEST_F(DriverUpdateName, IsUnknownWithoutAValue) {
  EXPECT_EQ(Get(), (Result{0, u"", u""}));
  SetDriverValue(machine, "DriverUpdateName", "");
  EXPECT_EQ(Get(), (Result{0, u"", u""}));
}

TEST_F(DriverUpdateName, IsUnknownWhereAPartHas260Characters) {
  const std::string many(259, 'x');
  SetDriverValue(machine, "DriverUpdateName", many);
  EXPECT_EQ(Get(), (Result{1, std::u16string(259, u'X'), u""}));
  SetDriverValue(machine, "DriverUpdateName", many + "x");
  EXPECT_EQ(Get(), (Result{0, u"", u""}));
  SetDriverValue(machine, "DriverUpdateName", many.substr(1) + "\\up.exe");
  EXPECT_EQ(Get(), (Result{1, u"UP.EXE", std::u16string(258, u'x') + u"\\"}));
  SetDriverValue(machine, "DriverUpdateName", many + "\\up.exe");
  EXPECT_EQ(Get(), (Result{0, u"", u""}));
}

TEST_F(DriverUpdateName, InTheRegistryIsReadUpTo259Characters) {
  MoveToRegistry();
  const std::u16string longest = u"C:\\" + std::u16string(256, u'x');
  SetInRegistry(kDriverKey, u"DriverUpdateName", longest);
  EXPECT_EQ(Get(), (Result{1, std::u16string(256, u'X'), u"C:\\"}));
  SetInRegistry(kDriverKey, u"DriverUpdateName", longest + u"x");
  EXPECT_EQ(Get(), (Result{0, u"", u""}));
}

TEST_F(DriverUpdateName, MayBeAskedForWithoutItsFolder) {
  SetDriverValue(machine, "DriverUpdateName", "C:\\Suite\\Update.exe");
  PathText name;
  EXPECT_EQ(GetDriverUpdateExeName(identity, name, nullptr), 1);
  EXPECT_EQ(name.view(), u"UPDATE.EXE");
  SetDriverValue(machine, "DriverUpdateName", "");
  EXPECT_EQ(GetDriverUpdateExeName(identity, name, nullptr), 0);
  EXPECT_TRUE(name.empty());
}

// --- IsDriverUpdateMenu

class DriverUpdateMenu : public DriverPrograms {
 protected:
  bool Is(std::u16string_view fileName = u"UPDATE.EXE") {
    return IsDriverUpdateMenu(identity, kEntry, fileName);
  }
};

TEST_F(DriverUpdateMenu, OfAnEntryHoldsTheNameInAnyCase) {
  const struct {
    std::string_view command;
    bool expected;
  } cases[] = {
      {"%sUPDATE.EXE", true}, {"%supdate.exe /X", true}, {"myUpdate.Exec", true},
      {"%sUpdate", false},    {"Update .exe", false},    {"", false},
  };
  for (const auto& each : cases) {
    SetMenuValue(machine, "930", each.command);
    EXPECT_EQ(Is(), each.expected) << each.command;
  }
}

TEST_F(DriverUpdateMenu, OfAnEntryIsAskedOfItsOwnText) {
  SetMenuValue(machine, "931", "%sUpdate.exe");
  EXPECT_FALSE(Is());
  EXPECT_TRUE(IsDriverUpdateMenu(identity, 931, u"UPDATE.EXE"));
}

TEST_F(DriverUpdateMenu, OfAnEntryIsFalseWithoutAName) {
  SetMenuValue(machine, "930", "%sUpdate.exe");
  EXPECT_FALSE(Is(u""));
}

TEST_F(DriverUpdateMenu, OfAnEntryIsReadFromThePlaceThatTheProfileSays) {
  SetInRegistry(kMenuKey, u"930", u"%sUpdate.exe");
  EXPECT_FALSE(Is());
  MoveToRegistry();
  EXPECT_TRUE(Is());
}

TEST_F(DriverUpdateMenu, OfATextHoldsTheNameExactly) {
  const struct {
    std::u16string_view command;
    std::u16string_view fileName;
    bool expected;
  } cases[] = {
      {u"%sUPDATE.EXE /X", u"UPDATE.EXE", true},
      {u"%supdate.exe /X", u"UPDATE.EXE", false},
      {u"%sUpdate.exe /X", u"UPDATE.EXE", false},
      {u"UPDATE.EXE", u"UPDATE.EXE", true},
      {u"UPDATE.EX", u"UPDATE.EXE", false},
      {u"", u"UPDATE.EXE", false},
      {u"%sUPDATE.EXE", u"", false},
      {u"", u"", false},
  };
  for (const auto& each : cases)
    EXPECT_EQ(IsDriverUpdateMenu(each.command, each.fileName), each.expected);
}

}  // namespace
}  // namespace vgl
