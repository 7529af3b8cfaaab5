// Putting samples on a simulated machine: good ones, and ones with a mistake.
#include "desk/sample.h"

#include <gtest/gtest.h>

#include "desk/printer_library.h"
#include "desk/run_helper.h"
#include "desk/sample_spooler.h"
#include "desk/started_program.h"
#include "platform/owned.h"
#include "tests/desk/scratch_folder.h"

namespace desk {
namespace {

using namespace platform;
using std::string_literals::operator""s;
namespace fs = std::filesystem;

// A sample with nothing in it.
class SampleTest : public testing::Test {
 protected:
  ScratchFolder scratch;
  const fs::path& folder = scratch.path();
  sim::Machine machine;
  std::string error;

  SampleTest() {
    fs::create_directories(folder / "files");
    Write("libraries", "");
    Write("machine.reg", "REGEDIT4\n");
    Write("options", "/M \"m\"\n");
  }

  void Write(const fs::path& name, const std::string& bytes) const { scratch.Write(name, bytes); }
  bool Load() { return LoadSample(machine, folder, error); }
  // What is wrong with the sample, behind the name of its folder.
  std::string Mistake() {
    EXPECT_FALSE(Load());
    const std::string beginning = folder.string() + "/";
    EXPECT_TRUE(error.starts_with(beginning)) << error;
    return error.substr(std::min(error.size(), beginning.size()));
  }
};

constexpr char kPrint[] = "HKEY_LOCAL_MACHINE\\System\\CurrentControlSet\\Control\\Print";

std::string Printer(const std::string& name, const std::string& values) {
  return "[" + std::string(kPrint) + "\\Printers\\" + name + "]\n\"Name\"=\"" + name + "\"\n" +
         values;
}
constexpr char kPrinterValues[] =
    "\"Port\"=\"LPT1:\"\n\"Printer Driver\"=\"D\"\n\"Datatype\"=\"RAW\"\n";

TEST_F(SampleTest, FilesStandOnDriveCWithTheirBytes) {
  Write("files/ProgramData/A b/x.ini", "[A]\r\n\0\xFF"s);
  fs::create_directories(folder / "files/Empty/Folder");
  ASSERT_TRUE(Load()) << error;
  EXPECT_EQ(machine.files().ReadFile(u"C:\\ProgramData\\A b\\x.ini"), "[A]\r\n\0\xFF"s);
  EXPECT_TRUE(machine.files().IsFolder(u"C:\\Empty\\Folder"));
}

TEST_F(SampleTest, LibrariesStandUnderTheirPathsByTheirKinds) {
  Write("libraries",
        "# comment\n\r\n  # comment\n \t\r\n registry-library \tDrv\\A b.DLL \t\r\n"
        "printer-library Drv\\P.DLL\nusage-log-library Drv\\U.DLL\nlanguage-manager Drv\\L.DLL\n"
        "invitation-library Drv\\I.DLL\nutility-library Drv\\T.DLL\nstand-in Drv\\X.EXE");
  ASSERT_TRUE(Load()) << error;
  EXPECT_NE(machine.libraries().At(u"C:\\Drv\\A b.DLL").Find(4), nullptr);
  EXPECT_NE(machine.libraries().At(u"C:\\Drv\\P.DLL").Find("PrGetSerialID2"), nullptr);
  EXPECT_NE(machine.libraries().At(u"C:\\Drv\\U.DLL").Find("IncrementMultiLog"), nullptr);
  EXPECT_NE(machine.libraries().At(u"C:\\Drv\\L.DLL").Find("LMWGetLibraryPath"), nullptr);
  EXPECT_NE(machine.libraries().At(u"C:\\Drv\\I.DLL").Find("FY07ParlosCloseExW"), nullptr);
  EXPECT_NE(machine.libraries().At(u"C:\\Drv\\T.DLL").Find("UtCleanHeadW"), nullptr);
  EXPECT_EQ(machine.files().ReadFile(u"C:\\Drv\\X.EXE"), "");
}

// Starts a program and waits for its end.
void RunToItsEnd(std::u16string commandLine) {
  ProcessInformation started;
  ASSERT_TRUE(Os().process.CreateProcessW(commandLine.data(), &started));
  const OwnedObject process(started.process), thread(started.thread);
  EXPECT_EQ(Os().objects.WaitForSingleObject(process.get(), INFINITE), WAIT_OBJECT_0);
}

TEST_F(SampleTest, ARunHelperIsAProgramThatWritesDownWhatItWasGiven) {
  Write("libraries", "run-helper Drv\\K_QD21RX.EXE\n");
  ASSERT_TRUE(Load()) << error;
  machine.files().MakeFolder(u"C:\\ProgramData\\KAVRO\\VGL3");
  machine.files().WriteUtf16(u"C:\\f.tmp", u"/P1 \"A\"\n/O1 \"B\"\n/M1 \"C\"\n/E");
  const sim::Inside inside(machine);
  RunToItsEnd(u"C:\\Drv\\K_QD21RX.EXE /FU \"C:\\f.tmp\"");
  EXPECT_EQ(machine.files().ReadFile(kRunHelperLog),
            "preferences window: printer \"A\", port \"B\", model \"C\"\n");
}

TEST_F(SampleTest, AnyOtherProgramWritesItsNameBeside) {
  Write("libraries", "program Drv\\A.EXE\nprogram Drv\\b c.exe\n");
  ASSERT_TRUE(Load()) << error;
  machine.files().MakeFolder(u"C:\\ProgramData\\KAVRO\\VGL3");
  const sim::Inside inside(machine);
  RunToItsEnd(u"C:\\Drv\\A.EXE  /X \"y z\"");
  RunToItsEnd(u"\"C:\\DRV\\B C.EXE\"");
  EXPECT_EQ(machine.files().ReadFile(kProgramsLog), "A.EXE /X \"y z\"\nb c.exe\n");
}

TEST_F(SampleTest, TheSerialNumberIsAmongThePrintersData) {
  const auto write = [&](const std::string& data) {
    Write("machine.reg", "REGEDIT4\n" + Printer("P", kPrinterValues) + "[" + kPrint +
                             "\\Printers\\P\\PrinterDriverData]\n" + data);
  };
  const struct {
    std::string data;
    std::string serial;
    bool isCached;
    bool answers;
  } cases[] = {
      {"\"SerialID\"=\"K1\"\n\"SerialCached\"=dword:1\n", "K1", true, true},
      {"\"SerialID\"=\"K2\"\n\"SerialCached\"=dword:0\n", "K2", false, true},
      {"\"SerialID\"=\"\"\n", "", false, true},
      {"\"SerialCached\"=dword:1\n", "", false, false},
  };
  for (const auto& [data, serial, isCached, answers] : cases) {
    SCOPED_TRACE(data);
    write(data);
    sim::Machine fresh;
    ASSERT_TRUE(LoadSample(fresh, folder, error)) << error;
    EXPECT_EQ(PrinterLibraryOf(fresh).serial, serial);
    EXPECT_EQ(PrinterLibraryOf(fresh).serialIsCached, isCached);
    EXPECT_EQ(PrinterLibraryOf(fresh).printerAnswers, answers);
  }
}

TEST_F(SampleTest, TheRegistryIsWhatTheExportTells) {
  Write("machine.reg", "REGEDIT4\n[HKEY_CURRENT_USER\\A]\n\"N\"=dword:5\n");
  ASSERT_TRUE(Load()) << error;
  EXPECT_EQ(machine.registry().Dword(HKEY_CURRENT_USER, u"A", u"N"), 5U);
}

TEST_F(SampleTest, DriversComeFromTheSpoolersRecords) {
  const std::string drivers = std::string(kPrint) + "\\Environments\\Windows x64\\Drivers";
  Write("machine.reg",
        "REGEDIT4\n"
        "[" +
            drivers +
            "\\Version-3\\D]\n"
            "\"Driver\"=\"D.DLL\"\n\"Data File\"=\"D.VIF\"\n\"Help File\"=\"C:\\\\H\\\\D.HLP\"\n"
            "[" +
            drivers +
            "\\Version-4\\E]\n"
            "\"Driver\"=dword:1\n"
            "[" +
            std::string(kPrint) +
            "\\Environments\\Windows ARM64\\Drivers\\Version-3\\F]\n"
            "\"Driver\"=\"F.DLL\"\n");
  ASSERT_TRUE(Load()) << error;
  const sim::PrinterDriver* driver = machine.spooler().FindDriver(u"D");
  ASSERT_NE(driver, nullptr);
  EXPECT_EQ(driver->version, 3U);
  EXPECT_EQ(driver->driverPath, u"C:\\Windows\\system32\\spool\\drivers\\x64\\3\\D.DLL");
  EXPECT_EQ(driver->dataFile, u"C:\\Windows\\system32\\spool\\drivers\\x64\\3\\D.VIF");
  EXPECT_EQ(driver->helpFile, u"C:\\H\\D.HLP");
  EXPECT_EQ(driver->configFile, std::nullopt);
  driver = machine.spooler().FindDriver(u"E");
  ASSERT_NE(driver, nullptr);
  EXPECT_EQ(driver->version, 4U);
  EXPECT_EQ(driver->driverPath, std::nullopt);
  EXPECT_EQ(machine.spooler().FindDriver(u"F"), nullptr);
  machine.spooler().environment = u"Windows ARM64";
  ASSERT_NE(machine.spooler().FindDriver(u"F"), nullptr);
  EXPECT_EQ(machine.spooler().FindDriver(u"F")->driverPath,
            u"C:\\Windows\\system32\\spool\\drivers\\arm64\\3\\F.DLL");
}

TEST_F(SampleTest, NamesOfTheSpoolersKeysIgnoreCase) {
  Write("machine.reg",
        "REGEDIT4\n[HKEY_LOCAL_MACHINE\\SYSTEM\\currentcontrolset\\CONTROL\\print\\environments\\"
        "WINDOWS X64\\drivers\\VERSION-3\\D]\n\"DRIVER\"=\"D.DLL\"\n");
  ASSERT_TRUE(Load()) << error;
  ASSERT_NE(machine.spooler().FindDriver(u"D"), nullptr);
  EXPECT_EQ(machine.spooler().FindDriver(u"D")->version, 3U);
  EXPECT_EQ(machine.spooler().FindDriver(u"D")->driverPath,
            u"C:\\Windows\\system32\\spool\\drivers\\x64\\3\\D.DLL");
}

TEST_F(SampleTest, PrintersAndTheirDataComeFromTheSpoolersRecords) {
  Write("machine.reg", "REGEDIT4\n" + Printer("P q", kPrinterValues) +
                           "\"Attributes\"=dword:00000040\n\"Print Processor\"=\"WinPrint\"\n"
                           "[" +
                           std::string(kPrint) +
                           "\\Printers\\P q\\PrinterDriverData]\n\"N\"=hex:01,02\n"
                           "[" +
                           std::string(kPrint) + "\\Printers\\P q\\Other\\Deep]\n\"M\"=dword:7\n" +
                           Printer("Bare", kPrinterValues));
  ASSERT_TRUE(Load()) << error;
  ASSERT_TRUE(machine.spooler().HasPrinter(u"P q"));
  const sim::Printer& printer = machine.spooler().At(u"P q");
  EXPECT_EQ(printer.name, u"P q");
  EXPECT_EQ(printer.port, u"LPT1:");
  EXPECT_EQ(printer.driver, u"D");
  EXPECT_EQ(printer.attributes, 0x40U);
  EXPECT_EQ(printer.printProcessor, u"WinPrint");
  EXPECT_EQ(machine.spooler().At(u"Bare").printProcessor, std::nullopt);

  const sim::Inside inside(machine);
  HPRINTER handle{};
  ASSERT_TRUE(Os().spooler.OpenPrinterW(u"P q", &handle, nullptr));
  char bytes[8] = {};
  std::uint32_t needed = 0;
  EXPECT_EQ(Os().spooler.GetPrinterDataW(handle, u"N", nullptr, bytes, 8, &needed), 0);
  EXPECT_EQ(std::string(bytes, needed), "\1\2");
  EXPECT_EQ(
      Os().spooler.GetPrinterDataExW(handle, u"Other\\Deep", u"M", nullptr, bytes, 8, &needed), 0);
  EXPECT_EQ(std::string(bytes, needed), "\7\0\0\0"s);
  EXPECT_TRUE(Os().spooler.ClosePrinter(handle));
}

TEST_F(SampleTest, AFolderThatIsntThereIsAMistake) {
  fs::remove_all(folder);
  EXPECT_FALSE(Load());
  EXPECT_EQ(error, "there is no sample " + folder.string() +
                       "; names without a slash are looked for below samples/ in the current "
                       "folder");
}

TEST_F(SampleTest, EachOfItsPartsHasToBeThere) {
  for (const char* part : {"files", "libraries", "machine.reg"}) {
    SCOPED_TRACE(part);
    const fs::path aside = folder.string() + ".aside";
    fs::rename(folder / part, aside);
    EXPECT_TRUE(Mistake().starts_with(part + ": "s)) << error;
    fs::rename(aside, folder / part);
  }
  EXPECT_TRUE(Load());
  EXPECT_EQ(error, "");
}

TEST_F(SampleTest, AFolderInPlaceOfAFileIsAMistake) {
  fs::remove(folder / "machine.reg");
  fs::create_directory(folder / "machine.reg");
  EXPECT_EQ(Mistake(), "machine.reg: can't be read");
}

TEST_F(SampleTest, AFileThatIsThereTwiceIsAMistake) {
  Write("files/A/x.ini", "1");
  Write("files/a/X.INI", "2");
  const std::string mistake = Mistake();
  EXPECT_TRUE(mistake == "files/a/X.INI: is on the machine already" ||
              mistake == "files/A/x.ini: is on the machine already")
      << mistake;
}

TEST_F(SampleTest, AFileWhereAFolderShouldBeIsAMistake) {
  Write("files/A", "1");
  Write("libraries", "stand-in a\\x.DLL\n");
  EXPECT_EQ(Mistake(), "libraries: line 1: a\\x.DLL has a file where its folder should be");
}

TEST_F(SampleTest, FilesWhoseNamesBeginWithADotAreFilesLikeOthers) {
  Write("files/.d/.f", "1");
  ASSERT_TRUE(Load()) << error;
  EXPECT_EQ(machine.files().ReadFile(u"C:\\.d\\.f"), "1");
}

TEST_F(SampleTest, LinksAreMistakes) {
  Write("elsewhere/x", "1");
  for (const char* target : {"elsewhere", "elsewhere/x", "nowhere"}) {
    SCOPED_TRACE(target);
    fs::create_symlink(folder / target, folder / "files/link");
    EXPECT_EQ(Mistake(), "files/link: is a link; a sample holds the file itself");
    fs::remove(folder / "files/link");
  }
}

TEST_F(SampleTest, NamesThatWindowsHasntAreMistakes) {
  for (const char* name : {"a\\b", "a:b", "a*", "a?", "a\"", "a<", "a>", "a|", "a..b", "a\tb"}) {
    SCOPED_TRACE(name);
    Write("files/"s + name, "");
    EXPECT_EQ(Mistake(), "files/"s + name + ": Windows has no such name");
    fs::remove(folder / "files" / name);
  }
}

std::string NoPath(const std::string& path) {
  return "libraries: line 1: \"" + path +
         "\" is no path on drive C, as in Windows\\system32\\spool\\drivers\\x64\\3\\X.DLL";
}

TEST_F(SampleTest, PathsOfLibrariesAreOnDriveCAndLeadNowhereElse) {
  for (const char* path :
       {"", "C:\\A.DLL", "C:A.DLL", "\\A.DLL", "\\\\srv\\share\\A.DLL", "A/B.DLL", "A\\\\B.DLL",
        "A\\", "..\\A.DLL", "A\\..\\B.DLL", "A\\..", ".\\A.DLL", "A\\.\\B.DLL", "A*.DLL"}) {
    Write("libraries", "stand-in "s + path + "\n");
    sim::Machine fresh;
    EXPECT_FALSE(LoadSample(fresh, folder, error));
    EXPECT_EQ(error, folder.string() + "/" + NoPath(path));
  }
  // Windows takes 259 characters with the drive.
  Write("libraries", "stand-in " + std::string(257, 'x') + "\n");
  EXPECT_EQ(Mistake(), NoPath(std::string(257, 'x')));
  Write("libraries", "stand-in " + std::string(256, 'x') + "\n");
  EXPECT_TRUE(Load()) << error;
}

TEST_F(SampleTest, MistakesInLibrariesAreNamedWithTheirLine) {
  Write("files/Drv/A.DLL", "");
  const struct {
    std::string text;
    std::string mistake;
  } cases[] = {
      {"stand-in B\nregistrylibrary A.DLL\n",
       "libraries: line 2: there is no kind \"registrylibrary\"; the kinds are registry-library, "
       "printer-library, usage-log-library, language-manager, invitation-library, "
       "utility-library, run-helper, program and stand-in"},
      {"# next\r\nregistry-library\r\n",
       "libraries: line 2: \"\" is no path on drive C, as in "
       "Windows\\system32\\spool\\drivers\\x64\\3\\X.DLL"},
      {"registry-library Drv\\a.dll\n", "libraries: line 1: Drv\\a.dll is on the machine already"},
      {"# once\nstand-in T\nregistry-library t\n",
       "libraries: line 3: t is on the machine already"},
  };
  for (const auto& [text, mistake] : cases) {
    Write("libraries", text);
    sim::Machine fresh;
    EXPECT_FALSE(LoadSample(fresh, folder, error));
    EXPECT_EQ(error, folder.string() + "/" + mistake);
  }
}

TEST_F(SampleTest, MistakesInTheRegistryAreNamedWithTheirLine) {
  Write("machine.reg", "REGEDIT4\n\n[HKEY_CURRENT_USER\\A]\n\"N\"=dword:x\n");
  EXPECT_EQ(Mistake(), "machine.reg: line 4: behind dword: stand one to eight hexadecimal digits");
}

TEST_F(SampleTest, RecordsThatNoSpoolerCouldOpenAreMistakes) {
  const struct {
    std::string text;
    std::string mistake;
  } cases[] = {
      {Printer("P", "\"Printer Driver\"=\"D\"\n\"Datatype\"=\"RAW\"\n"),
       "\\Printers\\P has no text \"Port\""},
      {Printer("P", "\"Port\"=dword:1\n\"Printer Driver\"=\"D\"\n\"Datatype\"=\"RAW\"\n"),
       "\\Printers\\P has no text \"Port\""},
      {Printer("P", "\"Port\"=\"LPT1:\"\n\"Printer Driver\"=\"D\"\n"),
       "\\Printers\\P has no text \"Datatype\""},
      {Printer("P", std::string(kPrinterValues) + "\"Name\"=\"Q\"\n"),
       "\\Printers\\P is of another name"},
      {"[" + std::string(kPrint) + "\\Environments\\Windows z80]\n",
       "\\Environments\\Windows z80 is of no known environment"},
      {"[" + std::string(kPrint) + "\\Environments\\Windows x64\\Drivers\\Version-x]\n",
       "\\Environments\\Windows x64\\Drivers\\Version-x is no version of drivers, as in Version-3"},
      {"[" + std::string(kPrint) + "\\Environments\\Windows x64\\Drivers\\Version-]\n",
       "\\Environments\\Windows x64\\Drivers\\Version- is no version of drivers, as in Version-3"},
      {"[" + std::string(kPrint) + "\\Environments\\Windows x64\\Drivers\\Sample]\n",
       "\\Environments\\Windows x64\\Drivers\\Sample is no version of drivers, as in Version-3"},
  };
  for (const auto& [text, mistake] : cases) {
    Write("machine.reg", "REGEDIT4\n" + text);
    sim::Machine fresh;
    EXPECT_FALSE(LoadSample(fresh, folder, error));
    EXPECT_EQ(error,
              folder.string() +
                  "/machine.reg: the record HKLM\\System\\CurrentControlSet\\Control\\Print" +
                  mistake);
  }
}

TEST_F(SampleTest, APrinterThatIsThereAlreadyIsAMistake) {
  machine.spooler().AddPrinter({.name = u"p"});
  Write("machine.reg", "REGEDIT4\n" + Printer("P", kPrinterValues));
  EXPECT_TRUE(Mistake().ends_with("\\Printers\\P is of a printer that is there already")) << error;
}

TEST_F(SampleTest, TheOptionsAreOneLine) {
  std::string options = "before";
  EXPECT_TRUE(ReadSampleOptions(folder, options, error)) << error;
  EXPECT_EQ(options, "/M \"m\"");
  Write("options", "/P \"p\"\n/M \"m\"\n");
  EXPECT_FALSE(ReadSampleOptions(folder, options, error));
  EXPECT_EQ(error, (folder / "options").string() + ": has to be one line, the agent's options");
  fs::remove(folder / "options");
  EXPECT_FALSE(ReadSampleOptions(folder, options, error));
  EXPECT_EQ(error, (folder / "options").string() + ": can't be read");
}

TEST(SampleNames, StandForFoldersBelowSamplesUnlessTheyHaveASlash) {
  EXPECT_EQ(SampleFolder("studio-7200"), fs::path("samples/studio-7200"));
  EXPECT_EQ(SampleFolder("./mine"), fs::path("./mine"));
  EXPECT_EQ(SampleFolder("/sets/mine"), fs::path("/sets/mine"));
}

}  // namespace
}  // namespace desk
