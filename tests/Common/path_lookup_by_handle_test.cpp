// Lookups through a printer that is open.
#include "Common/path_lookup.h"

#include <string>
#include <vector>

#include "tests/Common/path_lookup_fixture.h"

namespace vgl {
namespace {

using namespace platform;

class PathLookupByHandle : public PathLookupTest {
 protected:
  HPRINTER handle = Open();
  std::vector<std::u16string> held = inside.process().Ledger();

  PathLookupByHandle() {
    WriteSADat(R"([Install]
REGPATH  = DRV, "HKEY_LOCAL_MACHINE\Software\KAVRO\VGL3\Driver\Sample"
REGPATH  = PRF, "HKEY_LOCAL_MACHINE\Software\KAVRO\VGL3\Profile"
REGENTER = DRV, "InstallPath", "C:\Set"
REGENTER = DRV, "QBAPI_VERSION", 0x100
REGENTER = PRF, "M1", "C:\Set\M1.INI"
)");
    WriteProfile("[M1]\nBmpDll=bmp.dll\n");
  }
  ~PathLookupByHandle() override {
    EXPECT_EQ(inside.process().Ledger(), held);
    Close(handle);
  }

  // What the whole family gives, one after the other; an empty text for 0.
  std::vector<std::u16string> All(HPRINTER printer, const char16_t* printerName) {
    std::vector<std::u16string> found;
    const auto add = [&](int result) {
      EXPECT_EQ(result, path.empty() ? 0 : 1);
      found.emplace_back(path.view());
      EXPECT_TRUE(path.Assign(u"before"));
    };
    add(GetDriverValueByHandle(printer, path.buffer(), 260, u"InstallPath", kDriver, kModel,
                               printerName));
    add(GetProcPathByHandle(printer, &path, kDriver, kModel, printerName));
    add(GetProfilePathByHandle(printer, &path, kDriver, kModel, printerName));
    add(GetBmpPathByHandle(printer, &path, kDriver, kModel, printerName));
    return found;
  }
};

using Texts = std::vector<std::u16string>;

TEST_F(PathLookupByHandle, FindsWhatItsNamesakesFindAndOpensNoPrinter) {
  EXPECT_EQ(OpeningsOf([this] {
              EXPECT_EQ(All(handle, kPrinter),
                        (Texts{u"C:\\Set", u"C:\\Set\\", kProfile, u"C:\\Set\\bmp.dll"}));
              EXPECT_EQ(GetQbApiVersionByHandle(handle, kDriver, kPrinter), 256);
            }),
            0U);
}

TEST_F(PathLookupByHandle, FindsItWhileAnInstallerIsAtWork) {
  const OwnedObject installer = Installer();
  EXPECT_EQ(All(handle, kPrinter),
            (Texts{u"C:\\Set", u"C:\\Set\\", kProfile, u"C:\\Set\\bmp.dll"}));
}

TEST_F(PathLookupByHandle, WithoutAHandleOrAPrintersNameNothingIsFound) {
  EXPECT_EQ(All(HPRINTER{}, kPrinter), Texts(4));
  EXPECT_EQ(All(handle, u""), Texts(4));
  EXPECT_EQ(All(handle, nullptr), Texts(4));
  EXPECT_EQ(GetQbApiVersionByHandle(HPRINTER{}, kDriver, kPrinter), 0);
  EXPECT_EQ(GetQbApiVersionByHandle(handle, kDriver, u""), 0);
}

TEST_F(PathLookupByHandle, AMissingArgumentGives0) {
  EXPECT_EQ(GetDriverValueByHandle(handle, nullptr, 260, u"InstallPath", kDriver, kModel, kPrinter),
            0);
  EXPECT_EQ(GetProcPathByHandle(handle, nullptr, kDriver, kModel, kPrinter), 0);
  EXPECT_EQ(GetProfilePathByHandle(handle, nullptr, kDriver, kModel, kPrinter), 0);
  EXPECT_EQ(GetBmpPathByHandle(handle, nullptr, kDriver, kModel, kPrinter), 0);
  EXPECT_EQ(GetProcPathByHandle(handle, &path, u"", kModel, kPrinter), 0);
  EXPECT_EQ(GetProcPathByHandle(handle, &path, kDriver, u"", kPrinter), 0);
  EXPECT_EQ(path.view(), u"");
}

TEST_F(PathLookupByHandle, TheVersionWithoutADriverIsThatOfTheOpenPrintersDriver) {
  EXPECT_EQ(OpeningsOf([this] { EXPECT_EQ(GetQbApiVersionByHandle(handle, u"", kPrinter), 256); }),
            0U);
  EXPECT_EQ(GetQbApiVersionByHandle(handle, nullptr, kPrinter), 256);
  EXPECT_EQ(GetQbApiVersionByHandle(HPRINTER{}, nullptr, kPrinter), 0);
  EXPECT_EQ(GetQbApiVersionByHandle(handle, u"Another", kPrinter), 0);
}

TEST_F(PathLookupByHandle, WithoutAFolderADotStandsRightInFrontOfTheName) {
  DescribeSet({{"Profile", "C:\\Set\\M1.INI"}});
  EXPECT_EQ(GetBmpPathByHandle(handle, &path, kDriver, kModel, kPrinter), 1);
  EXPECT_EQ(path.view(), u".bmp.dll");
}

}  // namespace
}  // namespace vgl
