// tools/put-sample takes and refuses what vgldesk takes and refuses, and puts it where vgldesk puts
// it. (The registry is regedit's business; what it would be given is kept here, and nothing done.)
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <functional>

#include "Common/text_conversion.h"
#include "desk/sample.h"
#include "desk/whole_file.h"
#include "tests/desk/scratch_folder.h"

namespace desk {
namespace {

using std::string_literals::operator""s;
namespace fs = std::filesystem;
using Files = std::vector<std::string>;

class PutSample : public testing::Test {
 protected:
  const ScratchFolder scratch;
  const fs::path sample = scratch.path() / "sample";
  const fs::path prefix = scratch.path() / "prefix";

  PutSample() {
    for (const char* stub : {"K_WRDEF1.DLL", "KVPRN.DLL", "K_APLOG.DLL", "KVLMW.DLL",
                             "KVPARLOS.DLL", "KVUTIL.DLL", "run_helper.exe", "started_program.exe"})
      scratch.Write(fs::path("stubs") / stub, "stub "s + stub);
    // As in: wine regedit /S C:\put-sample.abc
    scratch.Write("wine", "#!/bin/bash\ncp \"$WINEPREFIX/drive_c/${3#C:\\\\}\" '" +
                              GivenText().string() + "'\n");
    fs::permissions(scratch.path() / "wine", fs::perms::owner_all);
    StartAnew();
  }

  // An empty sample, and a prefix with a folder that every machine has.
  void StartAnew() const {
    fs::remove_all(sample);
    fs::remove_all(prefix);
    fs::create_directories(sample / "files");
    fs::create_directories(prefix / "drive_c/windows");
    scratch.Write("sample/libraries", "");
    scratch.Write("sample/machine.reg", "REGEDIT4\n");
  }

  bool Put(const std::string& options = "") const {
    const std::string command = "WINEPREFIX='" + prefix.string() + "' tools/put-sample " + options +
                                " --wine '" + (scratch.path() / "wine").string() + "' '" +
                                sample.string() + "' '" + (scratch.path() / "stubs").string() +
                                "' 2>'" + (scratch.path() / "errors").string() + "'";
    return std::system(command.c_str()) == 0;
  }
  // What regedit was given.
  fs::path GivenText() const { return scratch.path() / "given.reg"; }
  // What the prefix has on drive C.
  Files InPrefix() const {
    Files files;
    for (const auto& entry : fs::recursive_directory_iterator(prefix / "drive_c"))
      if (!entry.is_directory())
        files.push_back(entry.path().lexically_relative(prefix / "drive_c").generic_string());
    std::sort(files.begin(), files.end());
    return files;
  }
  // The same for the simulated machine; nothing when the sample is refused there.
  bool Load(Files& files) const {
    sim::Machine machine;
    const std::vector<std::u16string> before = machine.files().List();
    std::string error;
    if (!LoadSample(machine, sample, error)) return false;
    for (const std::u16string& path : machine.files().List()) {
      if (std::find(before.begin(), before.end(), path) != before.end()) continue;
      std::string name = vgl::Utf8FromText(path.substr(3));
      std::replace(name.begin(), name.end(), '\\', '/');
      files.push_back(name);
    }
    std::sort(files.begin(), files.end());
    return true;
  }
};

TEST_F(PutSample, AgreesWithVgldeskOnEachLineOfLibraries) {
  const struct {
    std::string text;
    bool good;
    Files files;
  } cases[] = {
      {"", true, {}},
      {"# c\n\r\n \t\r\n  # c\r\n", true, {}},
      {"stand-in A\\B.DLL\r\nregistry-library A\\C d.DLL \t\r\n", true, {"A/B.DLL", "A/C d.DLL"}},
      {" \tstand-in\tA.DLL", true, {"A.DLL"}},
      {"printer-library A\nusage-log-library B\nlanguage-manager C\ninvitation-library D\n"
       "utility-library E\nrun-helper F.EXE\nprogram G.EXE\n",
       true,
       {"A", "B", "C", "D", "E", "F.EXE", "G.EXE"}},
      {"Registry-library A\n", false, {}},
      {"printer-library\n", false, {}},
      {"run-helper C:\\A.EXE\n", false, {}},
      {"utility-libraries A\n", false, {}},
      {"program\n", false, {}},
      {"programs A.EXE\n", false, {}},
      {"* A\n", false, {}},
      {"@ A\n", false, {}},
      {"$(false) A\n", false, {}},
      {"stand-in A\\B.DLL\nstand-in a\\C.DLL\n", true, {"A/B.DLL", "A/C.DLL"}},
      {"stand-in " + std::string(200, 'x') + "\n", true, {std::string(200, 'x')}},
      {"stand-in\n", false, {}},
      {"registry-library \r\n", false, {}},
      {"library A.DLL\n", false, {}},
      {"STAND-IN A.DLL\n", false, {}},
      {"stand-in A\nstand-in a\n", false, {}},
      {"stand-in A\nstand-in a\\B.DLL\n", false, {}},
      {"stand-in WINDOWS\n", false, {}},
      {"stand-in " + std::string(257, 'x') + "\n", false, {}},
      {"stand-in C:\\A\n", false, {}},
      {"stand-in \\A\n", false, {}},
      {"stand-in A/B\n", false, {}},
      {"stand-in ..\\A\n", false, {}},
      {"stand-in A\\..\\..\\..\\B\n", false, {}},
      {"stand-in A..B\n", false, {}},
      {"stand-in .\\A\n", false, {}},
      {"stand-in A\\.\n", false, {}},
      {"stand-in A\\\\B\n", false, {}},
      {"stand-in A\\\n", false, {}},
      {"stand-in A*\n", false, {}},
      {"stand-in A?\n", false, {}},
      {"stand-in \"A\"\n", false, {}},
      {"stand-in A<\n", false, {}},
      {"stand-in A|B\n", false, {}},
      {"stand-in A\tB\n", false, {}},
      {"stand-in A\x01\n", false, {}},
  };
  for (const auto& [text, good, files] : cases) {
    SCOPED_TRACE(text);
    StartAnew();
    scratch.Write("sample/libraries", text);
    Files loaded;
    EXPECT_EQ(Load(loaded), good);
    EXPECT_EQ(Put(), good);
    if (!good) continue;
    EXPECT_EQ(loaded, files);
    EXPECT_EQ(InPrefix(), files);
  }
}

TEST_F(PutSample, AgreesWithVgldeskOnEachKindOfFile) {
  const struct {
    const char* what;
    std::function<void()> make;
    bool good;
    Files files;
  } cases[] = {
      {"a dot file", [&] { scratch.Write("sample/files/.d/.f", "1"); }, true, {".d/.f"}},
      {"a folder in other case",
       [&] { scratch.Write("sample/files/WINDOWS/x", "1"); },
       true,
       {"windows/x"}},
      {"a link to a file",
       [&] { fs::create_symlink("/etc/hostname", sample / "files/l"); },
       false,
       {}},
      {"a link to a folder", [&] { fs::create_symlink("/etc", sample / "files/l"); }, false, {}},
      {"a link to nothing", [&] { fs::create_symlink("gone", sample / "files/l"); }, false, {}},
      {"a backslash", [&] { scratch.Write("sample/files/a\\b", ""); }, false, {}},
      {"a colon", [&] { scratch.Write("sample/files/a:b", ""); }, false, {}},
      {"two dots", [&] { scratch.Write("sample/files/a..b", ""); }, false, {}},
      {"a name in two cases",
       [&] {
         scratch.Write("sample/files/A", "");
         scratch.Write("sample/files/a", "");
       },
       false,
       {}},
      {"a file and a folder",
       [&] {
         scratch.Write("sample/files/A", "");
         scratch.Write("sample/files/a/b", "");
       },
       false,
       {}},
  };
  for (const auto& [what, make, good, files] : cases) {
    SCOPED_TRACE(what);
    StartAnew();
    make();
    Files loaded;
    EXPECT_EQ(Load(loaded), good);
    EXPECT_EQ(Put(), good);
    if (!good) continue;
    const auto small = [](Files names) {
      for (std::string& name : names)
        for (char& c : name) c = c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
      return names;
    };
    EXPECT_EQ(small(loaded), files);
    EXPECT_EQ(InPrefix(), files);
  }
}

TEST_F(PutSample, PutsTheStubOfItsKind) {
  const struct {
    std::string kind;
    std::string bytes;
  } cases[] = {
      {"registry-library", "stub K_WRDEF1.DLL"},
      {"printer-library", "stub KVPRN.DLL"},
      {"usage-log-library", "stub K_APLOG.DLL"},
      {"language-manager", "stub KVLMW.DLL"},
      {"invitation-library", "stub KVPARLOS.DLL"},
      {"utility-library", "stub KVUTIL.DLL"},
      {"run-helper", "stub run_helper.exe"},
      {"program", "stub started_program.exe"},
      {"stand-in", ""},
  };
  for (const auto& [kind, bytes] : cases) {
    SCOPED_TRACE(kind);
    StartAnew();
    scratch.Write("sample/libraries", kind + " A\\B.EXE\n");
    ASSERT_TRUE(Put());
    EXPECT_EQ(ReadWholeFile(prefix / "drive_c/A/B.EXE"), bytes);
  }
}

TEST_F(PutSample, NamesTheSameKindsAsVgldesk) {
  scratch.Write("sample/libraries", "no-such A\n");
  sim::Machine machine;
  std::string error;
  EXPECT_FALSE(LoadSample(machine, sample, error));
  EXPECT_FALSE(Put());
  EXPECT_EQ(ReadWholeFile(scratch.path() / "errors"), "put-sample: " + error + "\n");
}

TEST_F(PutSample, TheUsageLogsFolderIsThereOnBoth) {
  scratch.Write("sample/libraries", "usage-log-library A\n");
  sim::Machine machine;
  std::string error;
  ASSERT_TRUE(LoadSample(machine, sample, error)) << error;
  EXPECT_TRUE(machine.files().IsFolder(u"C:\\ProgramData\\KAVRO\\VGL3\\LOG"));
  ASSERT_TRUE(Put());
  EXPECT_TRUE(fs::is_directory(prefix / "drive_c/ProgramData/KAVRO/VGL3/LOG"));
}

TEST_F(PutSample, WritesNothingThroughALinkThatLeadsOutOfThePrefix) {
  fs::create_directory(scratch.path() / "home");
  fs::create_symlink(scratch.path() / "home", prefix / "drive_c/Users");
  scratch.Write("sample/files/users/x/y", "1");
  EXPECT_FALSE(Put());
  EXPECT_TRUE(fs::is_empty(scratch.path() / "home"));
}

TEST_F(PutSample, OverwritesNothingAndLeavesNothingElseBehind) {
  scratch.Write("prefix/drive_c/Here.txt", "before");
  scratch.Write("sample/files/here.TXT", "after");
  EXPECT_FALSE(Put());
  fs::remove(sample / "files/here.TXT");
  scratch.Write("sample/files/machine.reg", "a file of the machine");
  EXPECT_TRUE(Put());
  EXPECT_EQ(InPrefix(), (Files{"Here.txt", "machine.reg"}));
}

TEST_F(PutSample, GivesTheRegistrysTextAsItIs) {
  const std::string text = "REGEDIT4\r\n[HKEY_CURRENT_USER\\A]\r\n\"N\"=\"\\\\\"\r\n";
  scratch.Write("sample/machine.reg", text);
  ASSERT_TRUE(Put());
  EXPECT_EQ(ReadWholeFile(GivenText()), text);
}

TEST_F(PutSample, OnArm64TheEnvironmentHasItsOwnName) {
  const auto text = [](const std::string& environment) {
    const std::string drivers = "[HKEY_LOCAL_MACHINE\\System\\Print\\Environments\\" + environment;
    return "REGEDIT4\r\n" + drivers + "]\r\n" + drivers + "\\Drivers\\Version-3\\Windows x64]\r\n";
  };
  const auto wide = [](const std::string& bytes) {
    return "\xFF\xFE" + vgl::Utf16LeFromText(vgl::TextFromUtf8(bytes));
  };
  for (const char* environment : {"Windows x64", "WINDOWS X64"}) {
    scratch.Write("sample/machine.reg", text(environment));
    ASSERT_TRUE(Put("--arm64"));
    EXPECT_EQ(ReadWholeFile(GivenText()), text("Windows ARM64"));
    scratch.Write("sample/machine.reg", wide(text(environment)));
    ASSERT_TRUE(Put("--arm64"));
    EXPECT_EQ(ReadWholeFile(GivenText()), wide(text("Windows ARM64")));
  }
}

TEST_F(PutSample, OnArm64TheDriversFolderHasItsOwnName) {
  scratch.Write("sample/files/Windows/System32/Spool/Drivers/X64/3/a.dat", "1");
  scratch.Write("sample/libraries",
                "registry-library windows\\system32\\spool\\drivers\\x64\\3\\K.DLL\n");
  ASSERT_TRUE(Put("--arm64"));
  EXPECT_EQ(InPrefix(), (Files{"windows/System32/Spool/Drivers/arm64/3/K.DLL",
                               "windows/System32/Spool/Drivers/arm64/3/a.dat"}));
}

// A program file's header with what put-sample looks at.
struct Header {
  unsigned machine = 0x8664;
  unsigned codeBytes = 0;
  unsigned start = 0;
  unsigned at = 0x80;
};

std::string LowFirst(unsigned number, int bytes) {
  std::string text;
  for (int i = 0; i < bytes; ++i) text += static_cast<char>(number >> (8 * i) & 0xFF);
  return text;
}

std::string ProgramFile(const Header& header) {
  std::string bytes = "MZ" + std::string(58, 'm') + LowFirst(header.at, 4);
  bytes.resize(header.at, 'd');
  bytes += "PE\0\0"s + LowFirst(header.machine, 2) + std::string(18, 'h');
  bytes += LowFirst(0x20B, 2) + "lv" + LowFirst(header.codeBytes, 4) + std::string(8, 's');
  return bytes + LowFirst(header.start, 4) + "the rest";
}

TEST_F(PutSample, OnArm64AnX64LibraryWithoutCodeIsMadeOneOfThatProcessor) {
  for (const unsigned at : {0x40U, 0x80U, 0x1234U}) {
    SCOPED_TRACE(at);
    StartAnew();
    scratch.Write("sample/files/A.DLL", ProgramFile({.at = at}));
    ASSERT_TRUE(Put("--arm64"));
    EXPECT_EQ(ReadWholeFile(prefix / "drive_c/A.DLL"), ProgramFile({.machine = 0xAA64, .at = at}));
    EXPECT_EQ(ReadWholeFile(sample / "files/A.DLL"), ProgramFile({.at = at}));
  }
}

TEST_F(PutSample, AllOtherFilesStayAsTheyAre) {
  const std::string library = ProgramFile({});
  const struct {
    const char* what;
    std::string bytes;
  } cases[] = {
      {"with code", ProgramFile({.codeBytes = 1})},
      {"with a place to start at", ProgramFile({.start = 0x1000})},
      {"for 32 bits", ProgramFile({.machine = 0x14C})},
      {"for Arm64", ProgramFile({.machine = 0xAA64})},
      {"of another beginning", "ZM" + library.substr(2)},
      {"without a header", library.substr(0, 0x80) + "NE\0\0"s + library.substr(0x84)},
      {"cut behind the processor", library.substr(0, 0x86)},
      {"cut in front of the header", library.substr(0, 0x80)},
      {"cut in front of its place", library.substr(0, 60)},
      {"with a header far away", library.substr(0, 60) + "\xFF\xFF\xFF\xFF"},
      {"of two letters", "MZ"},
      {"of one", "M"},
      {"empty", ""},
      {"a text", "[Install]\r\n"},
  };
  for (const auto& [what, bytes] : cases) {
    SCOPED_TRACE(what);
    StartAnew();
    scratch.Write("sample/files/A.DLL", bytes);
    ASSERT_TRUE(Put("--arm64"));
    EXPECT_EQ(ReadWholeFile(prefix / "drive_c/A.DLL"), bytes);
  }
  StartAnew();
  scratch.Write("sample/files/A.DLL", library);
  ASSERT_TRUE(Put());
  EXPECT_EQ(ReadWholeFile(prefix / "drive_c/A.DLL"), library);
}

// The stubs are built for that processor.
TEST_F(PutSample, OnArm64EverySamplesResourceLibrariesAreForThatProcessor) {
  for (const char* name : {"studio-7200", "atelier-4400", "panorama-9900"}) {
    SCOPED_TRACE(name);
    StartAnew();
    fs::remove_all(sample);
    fs::copy(fs::path("samples") / name, sample, fs::copy_options::recursive);
    ASSERT_TRUE(Put("--arm64"));
    int libraries = 0;
    for (const std::string& file : InPrefix()) {
      const std::string bytes = ReadWholeFile(prefix / "drive_c" / file).value_or("");
      if (!bytes.starts_with("MZ")) continue;
      ++libraries;
      EXPECT_NE(bytes.find("PE\0\0\x64\xAA"s), std::string::npos) << file;
    }
    EXPECT_GE(libraries, 2);
  }
}

}  // namespace
}  // namespace desk
