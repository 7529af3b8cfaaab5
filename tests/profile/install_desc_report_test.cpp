// The report of an install description in the diagnostic window.
#include "profile/install_desc_report.h"

#include "profile/install_desc.h"
#include "profile/install_desc_parser.h"
#include "tests/profile/driver_set_fixture.h"

namespace vgl {
namespace {

using namespace platform;

class InstallReport : public DriverSetTest {
 protected:
  HWND window{};

  ~InstallReport() override {
    if (window != HWND{}) Os().windowing.DestroyWindow(window);
  }

  void RegisterWindow(const char16_t* caption) {
    const WindowClass report{
        .procedure =
            [](HWND hWnd, std::uint32_t message, WPARAM wParam, LPARAM lParam) {
              return Os().windowing.DefWindowProcW(hWnd, message, wParam, lParam);
            },
        .className = u"Report"};
    ASSERT_NE(Os().windowing.RegisterClassW(report), 0);
    window = Os().windowing.CreateWindowExW(0, u"Report", caption, 0, HMODULE{});
    ASSERT_NE(window, HWND{});
    g_hInstallReportWnd = window;
  }
  std::u16string Caption() { return machine.desktop().Find(window)->title; }

  void ReadPaths() {
    CDatTextFile file;
    ASSERT_EQ(file.Open(kSADat), 1);
    CRegPathList list;
    ParsePaths(file, list);
  }
  void ReadEntries() {
    CDatTextFile file;
    ASSERT_EQ(file.Open(kSADat), 1);
    CRegEnterList list;
    ParseEntries(file, u"C:\\Set", list);
  }
};

constexpr char kLines[] = R"(
REGPATH  = DRV, "HKEY_LOCAL_MACHINE\Software\KAVRO"
REGPATH  = MENU, "HKEY_LOCAL_MACHINE\Software\KAVRO\Menu"
REGENTER = DRV, "InstallPath", DRIVERDIR
REGENTER = DRV, "Version", 0x100
REGENTER = MENU, "Low", -2147483648
)";

TEST_F(InstallReport, TellsThePaths) {
  RegisterWindow(u"");
  Describe(kLines);
  ReadPaths();
  EXPECT_EQ(Caption(),
            u"/////path/////\r\n"
            u"#1 [<DRV> \"Software\\KAVRO\"]\r\n"
            u"#2 [<MENU> \"Software\\KAVRO\\Menu\"]\r\n"
            u"//////////////\r\n");
}

TEST_F(InstallReport, TellsThatThereAreNoPaths) {
  RegisterWindow(u"");
  Describe("");
  ReadPaths();
  EXPECT_EQ(Caption(),
            u"/////path/////\r\n"
            u"None path data.\r\n"
            u"//////////////\r\n");
}

TEST_F(InstallReport, TellsTheValues) {
  RegisterWindow(u"");
  Describe(kLines);
  ReadEntries();
  EXPECT_EQ(Caption(),
            u"\r\n/////enter////\r\n"
            u"#1 [<DRV> \"InstallPath\", (REG_SZ) \"C:\\Set\"]\r\n"
            u"#2 [<DRV> \"Version\", (REG_DWORD) 256]\r\n"
            u"#3 [<MENU> \"Low\", (REG_DWORD) -2147483648]\r\n"
            u"//////////////\r\n");
}

TEST_F(InstallReport, TellsThatThereAreNoValues) {
  RegisterWindow(u"");
  WriteSADat("[Other]\n");
  ReadEntries();
  EXPECT_EQ(Caption(),
            u"\r\n/////enter////\r\n"
            u"None enter data.\r\n"
            u"//////////////\r\n");
}

TEST_F(InstallReport, EachIsAppendedToTheCaption) {
  RegisterWindow(u"Diagnosis: ");
  Describe(R"(
REGPATH  = A, "HKEY_LOCAL_MACHINE\X"
REGENTER = A, "N", "100%s"
)");
  CInstallDesc description;
  EXPECT_EQ(description.LoadByPrinter(kPrinter), 1);
  EXPECT_EQ(Caption(),
            u"Diagnosis: /////path/////\r\n"
            u"#1 [<A> \"X\"]\r\n"
            u"//////////////\r\n"
            u"\r\n/////enter////\r\n"
            u"#1 [<A> \"N\", (REG_SZ) \"100%s\"]\r\n"
            u"//////////////\r\n");
}

TEST_F(InstallReport, OfAFileThatDescribesNoKeyThereIsNoneOfItsValues) {
  RegisterWindow(u"");
  Describe("REGENTER = A, \"N\", 1\n");
  CInstallDesc description;
  EXPECT_EQ(description.LoadByPrinter(kPrinter), 0);
  EXPECT_EQ(Caption(), u"/////path/////\r\nNone path data.\r\n//////////////\r\n");
}

TEST_F(InstallReport, OfADescriptionForOneQuestionItTellsTheWhole) {
  RegisterWindow(u"");
  Describe(kLines);
  CInstallDesc description(u"Software\\KAVRO", u"Version");
  EXPECT_EQ(description.LoadByPrinter(kPrinter), 1);
  EXPECT_EQ(description.GetRegDword(u"Software\\KAVRO", u"Version"), 256);
  EXPECT_EQ(Caption(),
            u"/////path/////\r\n"
            u"#1 [<DRV> \"Software\\KAVRO\"]\r\n"
            u"#2 [<MENU> \"Software\\KAVRO\\Menu\"]\r\n"
            u"//////////////\r\n"
            u"\r\n/////enter////\r\n"
            u"#1 [<DRV> \"InstallPath\", (REG_SZ) \"C:\\Set\"]\r\n"
            u"#2 [<DRV> \"Version\", (REG_DWORD) 256]\r\n"
            u"#3 [<MENU> \"Low\", (REG_DWORD) -2147483648]\r\n"
            u"//////////////\r\n");
}

TEST_F(InstallReport, ALongCaptionIsKeptUpTo1023Characters) {
  RegisterWindow(std::u16string(2000, u'x').c_str());
  Describe("");
  ReadPaths();
  EXPECT_EQ(Caption(), std::u16string(1023, u'x') +
                           u"/////path/////\r\nNone path data.\r\n//////////////\r\n");
}

TEST_F(InstallReport, WithoutAWindowNothingIsAskedOfTheSystem) {
  Describe(kLines);
  CDatTextFile file;
  ASSERT_EQ(file.Open(kSADat), 1);
  CRegPathList list;
  // The access to the list is all that there is.
  EXPECT_EQ(CallsOf([&] { ParsePaths(file, list); }), 2U);
}

TEST_F(InstallReport, DoesntChangeTheResultOfAQuestion) {
  Describe(kLines);
  RegisterWindow(u"");
  EXPECT_EQ(CInstallDesc(u"Software\\KAVRO", u"Version").LoadByPrinter(kPrinter), 1);
  EXPECT_EQ(CInstallDesc(u"Software\\KAVRO", u"nothing").LoadByPrinter(kPrinter), 0);
}

TEST_F(InstallReport, DoesntChangeTheResult) {
  Describe(kLines);
  CInstallDesc silent;
  ASSERT_EQ(silent.LoadByPrinter(kPrinter), 1);
  RegisterWindow(u"");
  CInstallDesc told;
  EXPECT_EQ(told.LoadByPrinter(kPrinter), 1);
  g_hInstallReportWnd = HWND{0x7777};  // a window that is gone
  CInstallDesc refused;
  EXPECT_EQ(refused.LoadByPrinter(kPrinter), 1);
  for (const CInstallDesc* description : {&silent, &told, &refused}) {
    EXPECT_EQ(description->GetRegString(u"Software\\KAVRO", u"InstallPath"), u"C:\\Set");
    EXPECT_EQ(description->GetRegDword(u"Software\\KAVRO", u"Version"), 256);
  }
}

}  // namespace
}  // namespace vgl
