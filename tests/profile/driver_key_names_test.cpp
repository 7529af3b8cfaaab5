#include "profile/driver_key_names.h"

#include "tests/profile/driver_set_fixture.h"

namespace vgl {
namespace {

using DriverKeyNames = DriverSetTest;

TEST_F(DriverKeyNames, AreMadeOfTheDriversName) {
  EXPECT_EQ(GetDriverKey(kPrinter), u"Software\\Kavro\\Vgl3\\Driver\\Sample");
  EXPECT_EQ(GetMenuKey(kPrinter), u"Software\\Kavro\\Vgl3\\Driver\\Sample\\Menu");
  EXPECT_TRUE(inside.process().Ledger().empty());
}

TEST_F(DriverKeyNames, ADriversNameIsNoTemplate) {
  machine.spooler().AddDriver({.name = u"100%s"});
  machine.spooler().At(kPrinter).driver = u"100%s";
  EXPECT_EQ(GetMenuKey(kPrinter), u"Software\\Kavro\\Vgl3\\Driver\\100%s\\Menu");
}

TEST_F(DriverKeyNames, AreEmptyWithoutADriversName) {
  for (const char16_t* printer : {u"missing", u""}) {
    EXPECT_EQ(GetDriverKey(printer), u"");
    EXPECT_EQ(GetMenuKey(printer), u"");
  }
  machine.spooler().RemoveDriver(kDriver);
  EXPECT_EQ(GetDriverKey(kPrinter), u"");
  EXPECT_EQ(GetMenuKey(kPrinter), u"");
}

TEST_F(DriverKeyNames, TheCommonKeyNeedsNobody) {
  EXPECT_EQ(CallsOf([] { EXPECT_EQ(GetCommonKey(), u"Software\\Kavro\\Vgl3\\VGLCommon"); }), 0U);
}

}  // namespace
}  // namespace vgl
