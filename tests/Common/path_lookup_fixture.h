// The driver set of DriverSetTest, described value by value, for tests of lookups.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "Common/fixed_text.h"
#include "Common/tray_log.h"
#include "tests/profile/driver_set_fixture.h"
#include "tests/support/log_texts.h"

namespace vgl {

// The model is "M1". Files of the set are in C:\Set, which is there.
class PathLookupTest : public DriverSetTest {
 protected:
  using Values = std::vector<std::pair<std::string, std::string>>;

  static constexpr char16_t kModel[] = u"M1";
  static constexpr char16_t kProfile[] = u"C:\\Set\\M1.INI";

  PathText path;

  PathLookupTest() { EXPECT_TRUE(path.Assign(u"before")); }

  // The values of the driver's key, and of the profile branch.
  void DescribeSet(const Values& ofDriver, const Values& ofBranch = {}) {
    std::string lines =
        "REGPATH = DRV, \"HKEY_LOCAL_MACHINE\\Software\\KAVRO\\VGL3\\Driver\\Sample\"\n"
        "REGPATH = PRF, \"HKEY_LOCAL_MACHINE\\Software\\KAVRO\\VGL3\\Profile\"\n";
    for (const auto& [name, value] : ofDriver)
      lines.append("REGENTER = DRV, \"").append(name).append("\", \"").append(value).append("\"\n");
    for (const auto& [name, value] : ofBranch)
      lines.append("REGENTER = PRF, \"").append(name).append("\", \"").append(value).append("\"\n");
    Describe(lines);
  }
  // A set whose folder and profile are there.
  void DescribeUsualSet(Values more = {}) {
    more.emplace_back("InstallPath", "C:\\Set");
    more.emplace_back("Profile", "C:\\Set\\M1.INI");
    DescribeSet(more);
  }
  using Lookup = int (*)(PathText*, const char16_t*, const char16_t*, const char16_t*);
  // A lookup of the set. The output held something before.
  int Find(Lookup lookup, const char16_t* printer = kPrinter) {
    EXPECT_TRUE(path.Assign(u"before"));
    return lookup(&path, kDriver, kModel, printer);
  }
  void WriteProfile(std::string_view bytes) { machine.files().WriteFile(kProfile, bytes); }
  void AddFile(std::u16string_view file) { machine.files().WriteFile(file, ""); }

  // The tray log's lines, without what stands in front of each.
  std::vector<std::string> TrayLogOf(const std::function<void()>& body) {
    constexpr char16_t kLog[] = u"C:\\tray.log";
    machine.files().WriteFile(kLog, "");
    EXPECT_TRUE(g_szTrayLogPath.get().Assign(kLog));
    g_bTrayLogEnabled = 1;
    body();
    g_bTrayLogEnabled = 0;
    return TextsOfLog(machine.files().ReadFile(kLog).value_or(""));
  }

  // While it lives, a driver installer is at work: nothing is read by a printer's name.
  platform::OwnedObject Installer() {
    return platform::OwnedObject(
        platform::Os().objects.CreateMutexW(nullptr, false, u"Global\\KavroPrinterInstaller"));
  }
};

}  // namespace vgl
