#include "Common/reg_lib_location.h"

#include <gtest/gtest.h>

#include <array>

#include "tests/Common/reg_library_fixture.h"

namespace vgl {
namespace {

using namespace platform;

constexpr char16_t kInstaller[] = u"Global\\KavroPrinterInstaller";

template <class Char>
class RegLibLocation : public RegLibraryFixture<Char> {
 protected:
  // Where the library should be.
  static std::u16string Path(RegLibStart start, std::u16string_view input) {
    return WideOf(CDrvPathCache<Char>(start, TextOf<Char>(input).c_str()).LibraryPath());
  }
  void ExpectOfPrinterAndDriver(std::u16string_view path) {
    EXPECT_EQ(Path(RegLibStart::Driver, u"KAVRO D"), path);
    EXPECT_EQ(Path(RegLibStart::Printer, u"P"), path);
    EXPECT_TRUE(this->inside.process().Ledger().empty());
  }
};
TYPED_TEST_SUITE(RegLibLocation, RegLibWidths, RegLibWidthName);

// --- From a printer or a driver

TYPED_TEST(RegLibLocation, TheLibraryIsInTheDriversFolderUnderTheNameInItsVif) {
  this->AddDriver(u"C:\\Drv\\D.DLL", u"D.VIF");
  this->WriteVif(u"C:\\Drv\\D.VIF", "R.DLL");
  this->ExpectOfPrinterAndDriver(u"C:\\Drv\\R.DLL");
}

TYPED_TEST(RegLibLocation, AVifElsewhereNamesTheLibraryAndTheFolderStaysTheDrivers) {
  this->AddDriver(u"C:\\Drv\\D.DLL", u"E:\\Vif\\D.VIF");
  this->WriteVif(u"E:\\Vif\\D.VIF", "R.DLL");
  this->ExpectOfPrinterAndDriver(u"C:\\Drv\\R.DLL");
}

TYPED_TEST(RegLibLocation, ADriverPathWithoutAFolderGivesTheBareNameOfTheVif) {
  this->AddDriver(u"D.DLL", u"C:\\Vif\\D.VIF");
  this->WriteVif(u"C:\\Vif\\D.VIF", "R.DLL");
  this->ExpectOfPrinterAndDriver(u"R.DLL");
}

TYPED_TEST(RegLibLocation, ADriverWithoutAPathGivesTheBareNameOfTheVif) {
  this->AddDriver(std::nullopt, u"C:\\Vif\\D.VIF");
  this->WriteVif(u"C:\\Vif\\D.VIF", "R.DLL");
  this->ExpectOfPrinterAndDriver(u"R.DLL");
}

// A profile file without a folder is the system's to find: in its own folder.
TYPED_TEST(RegLibLocation, AVifWithoutAnyFolderIsReadAllTheSame) {
  this->AddDriver(u"D.DLL", u"D.VIF");
  this->WriteVif(u"C:\\Windows\\D.VIF", "R.DLL");
  this->ExpectOfPrinterAndDriver(u"R.DLL");
}

TYPED_TEST(RegLibLocation, TheFolderEndsAtTheLastBackslash) {
  this->AddDriver(u"C:\\Drv\\3\\D.DLL", u"D.VIF");
  this->WriteVif(u"C:\\Drv\\3\\D.VIF", "R.DLL");
  this->ExpectOfPrinterAndDriver(u"C:\\Drv\\3\\R.DLL");
}

TYPED_TEST(RegLibLocation, AnEmptyFolderIsAFolder) {
  this->AddDriver(u"\\D.DLL", u"D.VIF");
  this->WriteVif(u"C:\\D.VIF", "R.DLL");
  this->ExpectOfPrinterAndDriver(u"\\R.DLL");
}

TYPED_TEST(RegLibLocation, WithoutADataFileItIsTheDefaultName) {
  this->AddDriver(u"C:\\Drv\\D.DLL", std::nullopt);
  this->ExpectOfPrinterAndDriver(u"C:\\Drv\\K_WRDEF1.DLL");
  this->AddDriver(u"C:\\Drv\\D.DLL", u"");
  this->ExpectOfPrinterAndDriver(u"C:\\Drv\\K_WRDEF1.DLL");
  this->AddDriver(u"D.DLL", u"");
  this->ExpectOfPrinterAndDriver(u"K_WRDEF1.DLL");
}

TYPED_TEST(RegLibLocation, ADriverOfWhichNothingIsToldGivesTheBareDefaultName) {
  this->AddDriver(std::nullopt, std::nullopt);
  this->ExpectOfPrinterAndDriver(u"K_WRDEF1.DLL");
}

TYPED_TEST(RegLibLocation, AnUnknownPrinterOrDriverGivesTheBareDefaultName) {
  EXPECT_EQ(this->Path(RegLibStart::Driver, u"KAVRO D"), u"K_WRDEF1.DLL");
  EXPECT_EQ(this->Path(RegLibStart::Printer, u"P"), u"K_WRDEF1.DLL");
  this->AddDriver(u"C:\\Drv\\D.DLL", u"D.VIF");
  EXPECT_EQ(this->Path(RegLibStart::Driver, u"KAVRO"), u"K_WRDEF1.DLL");
  EXPECT_EQ(this->Path(RegLibStart::Driver, u"KAVRO D2"), u"K_WRDEF1.DLL");
  EXPECT_EQ(this->Path(RegLibStart::Printer, u"P2"), u"K_WRDEF1.DLL");
}

TYPED_TEST(RegLibLocation, ADriversNameIsFoundWithoutRegardToCase) {
  this->AddDriver(u"C:\\Drv\\D.DLL", u"D.VIF");
  this->machine.spooler().AddDriver({.name = u"caf\u00E9", .driverPath = u"C:\\Cafe\\D.DLL"});
  EXPECT_EQ(this->Path(RegLibStart::Driver, u"kavro d"), u"C:\\Drv\\K_WRDEF1.DLL");
  EXPECT_EQ(this->Path(RegLibStart::Driver, u"CAF\u00C9"), u"C:\\Cafe\\K_WRDEF1.DLL");
}

// The spooler here holds one driver a name; behind a U+0000 two may differ and still be told alike.
TYPED_TEST(RegLibLocation, OfTwoDriversOfOneNameTheFirstIsTaken) {
  for (const char16_t* folder : {u"1", u"2"})
    this->machine.spooler().AddDriver(
        {.name = std::u16string(u"KAVRO D") + u'\0' + folder,
         .driverPath = std::u16string(u"C:\\") + folder + u"\\D.DLL"});
  EXPECT_EQ(this->Path(RegLibStart::Driver, u"KAVRO D"), u"C:\\1\\K_WRDEF1.DLL");
}

TYPED_TEST(RegLibLocation, TheDriverIsFoundAmongOthers) {
  for (int number = 0; number < 40; ++number) {
    const std::u16string name(static_cast<std::size_t>(number) + 1, u'n');
    this->machine.spooler().AddDriver({.name = name, .driverPath = u"C:\\" + name + u"\\D.DLL"});
  }
  EXPECT_EQ(this->Path(RegLibStart::Driver, u"n"), u"C:\\n\\K_WRDEF1.DLL");
  EXPECT_EQ(this->Path(RegLibStart::Driver, u"nnn"), u"C:\\nnn\\K_WRDEF1.DLL");
  EXPECT_EQ(this->Path(RegLibStart::Driver, std::u16string(40, u'n')),
            u"C:\\" + std::u16string(40, u'n') + u"\\K_WRDEF1.DLL");
}

TYPED_TEST(RegLibLocation, ASpoolerThatFailsLeavesTheBareDefaultName) {
  this->AddDriver(u"C:\\Drv\\D.DLL", u"D.VIF");
  for (const std::uint64_t number : {1U, 2U}) {
    this->inside.process().FailCall(number);
    EXPECT_EQ(this->Path(RegLibStart::Driver, u"KAVRO D"), u"K_WRDEF1.DLL") << number;
    EXPECT_EQ(this->inside.process().failedOperation(),
              this->kIsWide ? "EnumPrinterDriversW" : "EnumPrinterDriversA");
  }
  const char* operation = this->kIsWide ? "GetPrinterDriverW" : "GetPrinterDriverA";
  this->inside.process().FailNext(operation, ERROR_INVALID_HANDLE);
  EXPECT_EQ(this->Path(RegLibStart::Printer, u"P"), u"K_WRDEF1.DLL");
}

TYPED_TEST(RegLibLocation, APrinterWhoseDriverIsntInstalledGivesTheBareDefaultName) {
  this->machine.spooler().AddPrinter({.name = u"P", .port = u"USB001", .driver = u"gone"});
  EXPECT_EQ(this->Path(RegLibStart::Printer, u"P"), u"K_WRDEF1.DLL");
}

TYPED_TEST(RegLibLocation, APrinterIsntTouchedWhileAnInstallerIsAtWork) {
  this->AddDriver(u"C:\\Drv\\D.DLL", u"D.VIF");
  const HANDLE installer = Os().objects.CreateMutexW(nullptr, false, kInstaller);
  EXPECT_EQ(this->Path(RegLibStart::Printer, u"P"), u"K_WRDEF1.DLL");
  EXPECT_EQ(this->Path(RegLibStart::Driver, u"KAVRO D"), u"C:\\Drv\\K_WRDEF1.DLL");
  Os().objects.CloseHandle(installer);
}

// --- What the VIF says

TYPED_TEST(RegLibLocation, WithoutTheKeyInItsSectionItIsTheDefaultName) {
  this->AddDriver(u"C:\\Drv\\D.DLL", u"D.VIF");
  this->ExpectOfPrinterAndDriver(u"C:\\Drv\\K_WRDEF1.DLL");  // no file at all
  for (const char* text : {"", "[CommonDrvInfo]\r\nSADat=x\r\n", "[CommonDrvInfo]\r\nKVRDEF01=\r\n",
                           "[CommonDrvInfo]\r\nKVRDEF01=\"\"\r\n", "[Other]\r\nKVRDEF01=x\r\n"}) {
    this->machine.files().WriteFile(u"C:\\Drv\\D.VIF", text);
    this->ExpectOfPrinterAndDriver(u"C:\\Drv\\K_WRDEF1.DLL");
  }
}

TYPED_TEST(RegLibLocation, AVifThatCantBeReadGivesTheDefaultName) {
  this->AddDriver(u"C:\\Drv\\D.DLL", u"D.VIF");
  this->WriteVif(u"C:\\Drv\\D.VIF", "R.DLL");
  this->machine.files().MakeUnreadable(u"C:\\Drv\\D.VIF");
  this->ExpectOfPrinterAndDriver(u"C:\\Drv\\K_WRDEF1.DLL");
}

TYPED_TEST(RegLibLocation, ANameIsCutTo63Characters) {
  this->AddDriver(u"C:\\Drv\\D.DLL", u"D.VIF");
  struct Row {
    std::size_t written, taken;
  };
  constexpr std::array<Row, 5> kRows = {{{62, 62}, {63, 63}, {64, 63}, {65, 63}, {1000, 63}}};
  for (const Row& row : kRows) {
    this->WriteVif(u"C:\\Drv\\D.VIF", std::string(row.written, 'r'));
    this->ExpectOfPrinterAndDriver(u"C:\\Drv\\" + std::u16string(row.taken, u'r'));
  }
}

TYPED_TEST(RegLibLocation, ANameMayHaveAPathOfItsOwn) {
  this->AddDriver(u"C:\\Drv\\D.DLL", u"D.VIF");
  this->WriteVif(u"C:\\Drv\\D.VIF", "Sub\\R\xE9.DLL");
  this->ExpectOfPrinterAndDriver(u"C:\\Drv\\Sub\\R\u00E9.DLL");
}

// --- From the path of a VIF

TYPED_TEST(RegLibLocation, FromAVifTheFolderIsTheVifs) {
  this->WriteVif(u"C:\\Vif\\D.VIF", "R.DLL");
  EXPECT_EQ(this->Path(RegLibStart::Vif, u"C:\\Vif\\D.VIF"), u"C:\\Vif\\R.DLL");
  EXPECT_EQ(this->Path(RegLibStart::Vif, u"C:\\Vif\\missing.VIF"), u"C:\\Vif\\K_WRDEF1.DLL");
}

TYPED_TEST(RegLibLocation, FromABareVifTheNameIsBare) {
  this->WriteVif(u"C:\\Windows\\D.VIF", "R.DLL");
  EXPECT_EQ(this->Path(RegLibStart::Vif, u"D.VIF"), u"R.DLL");
  EXPECT_EQ(this->Path(RegLibStart::Vif, u"missing.VIF"), u"K_WRDEF1.DLL");
}

// --- From the library's own path

TYPED_TEST(RegLibLocation, TheLibrarysOwnPathIsTakenAsItIsWithoutACall) {
  const std::uint64_t before = this->calls();
  EXPECT_EQ(this->Path(RegLibStart::Library, u"C:\\Any\\X.DLL"), u"C:\\Any\\X.DLL");
  EXPECT_EQ(this->Path(RegLibStart::Library, u"X"), u"X");
  EXPECT_EQ(this->calls(), before);
}

// --- The object

TYPED_TEST(RegLibLocation, EachPartIsFoundOutOnce) {
  this->AddDriver(u"C:\\Drv\\D.DLL", u"D.VIF");
  this->WriteVif(u"C:\\Drv\\D.VIF", "R.DLL");
  const auto name = TextOf<TypeParam>(u"KAVRO D");
  CDrvPathCache<TypeParam> cache(RegLibStart::Driver, name.c_str());
  const auto first = cache.LibraryPath();
  this->WriteVif(u"C:\\Drv\\D.VIF", "OTHER.DLL");
  const std::uint64_t before = this->calls();
  EXPECT_EQ(cache.LibraryPath(), first);
  EXPECT_EQ(this->calls(), before);
}

}  // namespace
}  // namespace vgl
