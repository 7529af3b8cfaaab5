// A driver set with a language manager.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "desk/language_manager.h"
#include "tests/Common/path_lookup_fixture.h"

namespace vgl {

// The VIF names LMW.DLL, which is in C:\Set; the driver's data file is registered with its folder.
class LmwTest : public PathLookupTest {
 protected:
  static constexpr char16_t kLibrary[] = u"C:\\Set\\LMW.DLL";

  LmwTest() {
    DescribeUsualSet();
    SetDriver(u"C:\\Set\\sample.dll", kVif);
    WriteVif("[CommonDrvInfo]\nSADat=sample.sad\nLMWModule=LMW.DLL\n");
  }
  ~LmwTest() override { EXPECT_TRUE(inside.process().Ledger().empty()); }

  void AddManager() { desk::AddLanguageManager(machine, kLibrary); }
  sim::Library& Library() { return machine.libraries().At(kLibrary); }
  desk::LanguageManager& Manager() { return machine.libraries().State<desk::LanguageManager>(); }
  // Whether the process holds something that the ledger lists so.
  bool Holds(std::u16string_view handle) {
    const std::vector<std::u16string> held = inside.process().Ledger();
    return std::find(held.begin(), held.end(), handle) != held.end();
  }
};

}  // namespace vgl
