// Servers, programs and versions of a driver set.
#include "Common/path_lookup.h"

#include <string>
#include <string_view>

#include "tests/Common/path_lookup_fixture.h"

namespace vgl {
namespace {

using Servers = PathLookupTest;
using Programs = PathLookupTest;
using QbApiVersion = PathLookupTest;

// --- Servers

TEST_F(Servers, AreInTheFolderByTheNamesOfTheSetAndNotLookedFor) {
  DescribeUsualSet({{"VGLSRV_NAME", "srv.exe"}, {"VGLSRV_QBNAME", "qb.exe"}});
  EXPECT_EQ(Find(GetServerPath), 1);
  EXPECT_EQ(path.view(), u"C:\\Set\\\\srv.exe");
  EXPECT_EQ(Find(GetQbServerPath), 1);
  EXPECT_EQ(path.view(), u"C:\\Set\\\\qb.exe");
}

TEST_F(Servers, OnlyTheMonitoringServerHasANameOfItsOwn) {
  DescribeUsualSet();
  EXPECT_EQ(Find(GetServerPath), 1);
  EXPECT_EQ(path.view(), u"C:\\Set\\\\K_QD01SV.EXE");
  EXPECT_EQ(Find(GetQbServerPath), 0);
  EXPECT_EQ(path.view(), u"");
}

TEST_F(Servers, NeedAFolder) {
  DescribeSet({{"VGLSRV_NAME", "srv.exe"}, {"VGLSRV_QBNAME", "qb.exe"}});
  EXPECT_EQ(Find(GetServerPath), 0);
  EXPECT_EQ(path.view(), u"");
  EXPECT_EQ(Find(GetQbServerPath), 0);
  EXPECT_EQ(path.view(), u"");
}

TEST_F(Servers, APathThatDoesntFitGives0) {
  DescribeUsualSet({{"VGLSRV_NAME", std::string(252, 's')}});
  EXPECT_EQ(Find(GetServerPath), 0);
  EXPECT_EQ(path.view(), u"");
}

TEST_F(Servers, ANameOf260CharactersCountsAsNone) {
  DescribeUsualSet(
      {{"VGLSRV_NAME", std::string(260, 's')}, {"VGLSRV_QBNAME", std::string(260, 's')}});
  EXPECT_EQ(Find(GetServerPath), 1);
  EXPECT_EQ(path.view(), u"C:\\Set\\\\K_QD01SV.EXE");
  EXPECT_EQ(Find(GetQbServerPath), 0);
}

// --- Programs

int TrayAgent(PathText* out, const char16_t* driver, const char16_t* model,
              const char16_t* printer) {
  return GetTrayAgentPath(out->buffer(), 260, driver, model, printer);
}
int EnvHelper(PathText* out, const char16_t* driver, const char16_t* model,
              const char16_t* printer) {
  return GetEnvHelperPath(out->buffer(), 260, driver, model, printer);
}

TEST_F(Programs, EachHasAValueAndANameOfItsOwnButForTheHelpersSharedOne) {
  const struct {
    Lookup lookup;
    const char* value;
    const char16_t* defaultName;
  } cases[] = {{TrayAgent, "K_QTRN", u"K_QD21TR.EXE"},
               {GetRunHelperPath, "K_QRX", u"K_QD21RX.EXE"},
               {EnvHelper, "K_QEV", u"K_QD21RX.EXE"}};
  AddFile(u"C:\\Own\\own.exe");
  AddFile(u"C:\\Set\\K_QD21TR.EXE");
  AddFile(u"C:\\Set\\K_QD21RX.EXE");
  for (const auto& c : cases) {
    DescribeUsualSet({{c.value, "C:\\Own\\own.exe"}});
    EXPECT_EQ(Find(c.lookup), 1);
    EXPECT_EQ(path.view(), u"C:\\Own\\own.exe");
    DescribeUsualSet({{c.value, "C:\\Own\\gone.exe"}});
    EXPECT_EQ(Find(c.lookup), 1);
    EXPECT_EQ(path.view(), u"C:\\Set\\\\" + std::u16string(c.defaultName));
  }
}

TEST_F(Programs, AValueForTheAgentThatNamesAMissingFileGivesWayToTheOneInTheFolder) {
  DescribeUsualSet({{"K_QTRN", "C:\\Gone\\K_QD21TR.EXE"}});
  EXPECT_EQ(Find(TrayAgent), 0);
  EXPECT_EQ(path.view(), u"");
  AddFile(u"C:\\Set\\K_QD21TR.EXE");
  EXPECT_EQ(Find(TrayAgent), 1);
  EXPECT_EQ(path.view(), u"C:\\Set\\\\K_QD21TR.EXE");
}

TEST_F(Programs, TheOnesWithASizeTellWhenItIsTooSmall) {
  DescribeUsualSet();
  AddFile(u"C:\\Set\\K_QD21TR.EXE");
  AddFile(u"C:\\Set\\K_QD21RX.EXE");
  // "C:\Set\\K_QD21TR.EXE" has 20 characters.
  for (const auto& lookup : {GetTrayAgentPath, GetEnvHelperPath}) {
    EXPECT_EQ(lookup(path.buffer(), 21, kDriver, kModel, kPrinter), 1);
    EXPECT_EQ(path.length(), 20U);
    EXPECT_EQ(lookup(path.buffer(), 20, kDriver, kModel, kPrinter), 0);
    EXPECT_EQ(path.view(), u"");
    EXPECT_EQ(lookup(nullptr, 260, kDriver, kModel, kPrinter), 0);
  }
  EXPECT_EQ(GetRunHelperPath(nullptr, kDriver, kModel, kPrinter), 0);
}

// --- GetQbApiVersion

TEST_F(QbApiVersion, IsTheNumberOfTheGivenDriver) {
  Describe(R"(
REGPATH  = DRV, "HKEY_LOCAL_MACHINE\Software\KAVRO\VGL3\Driver\Sample"
REGENTER = DRV, "QBAPI_VERSION", 0x100
)");
  EXPECT_EQ(GetQbApiVersion(kDriver, kPrinter), 256);
  EXPECT_EQ(GetQbApiVersion(kDriver, u""), 256);
  EXPECT_EQ(GetQbApiVersion(kDriver, nullptr), 256);
  EXPECT_EQ(GetQbApiVersion(u"Another", kPrinter), 0);
}

TEST_F(QbApiVersion, WithoutADriverItIsThatOfThePrintersDriver) {
  Describe(R"(
REGPATH  = DRV, "HKEY_LOCAL_MACHINE\Software\KAVRO\VGL3\Driver\Sample"
REGENTER = DRV, "QBAPI_VERSION", 7
)");
  EXPECT_EQ(GetQbApiVersion(u"", kPrinter), 7);
  EXPECT_EQ(GetQbApiVersion(nullptr, kPrinter), 7);
  EXPECT_EQ(GetQbApiVersion(nullptr, u"missing"), 0);
  EXPECT_TRUE(inside.process().Ledger().empty());
}

TEST_F(QbApiVersion, ANumberThatIsntThereIs0) {
  DescribeSet({{"QBAPI_VERSION", "a text"}});
  EXPECT_EQ(GetQbApiVersion(kDriver, kPrinter), 0);
  EXPECT_EQ(GetQbApiVersion(kDriver, nullptr), 0);
}

TEST_F(QbApiVersion, NeitherDriverNorPrinterAsksNobody) {
  EXPECT_EQ(CallsOf([] {
              EXPECT_EQ(GetQbApiVersion(nullptr, nullptr), 0);
              EXPECT_EQ(GetQbApiVersion(u"", u""), 0);
            }),
            0U);
}

TEST_F(QbApiVersion, ADriversNameOf260CharactersIsTooLong) {
  const std::u16string longest(259, u'd');
  const std::u16string tooLong(260, u'd');
  EXPECT_GT(CallsOf([&] { EXPECT_EQ(GetQbApiVersion(longest.c_str(), kPrinter), 0); }), 0U);
  EXPECT_EQ(CallsOf([&] { EXPECT_EQ(GetQbApiVersion(tooLong.c_str(), kPrinter), 0); }), 0U);
}

}  // namespace
}  // namespace vgl
