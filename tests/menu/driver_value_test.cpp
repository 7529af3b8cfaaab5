#include "menu/driver_value.h"

#include <gtest/gtest.h>

#include "Common/text_conversion.h"
#include "desk/default_machine.h"
#include "platform/sim/machine.h"
#include "tests/support/sim_desk.h"

namespace vgl {
namespace {

using namespace platform;

constexpr char16_t kDriverKey[] = u"Software\\KAVRO\\VGL3\\Driver\\KAVRO Studio 7200";
constexpr char16_t kMenuKey[] = u"Software\\KAVRO\\VGL3\\Driver\\KAVRO Studio 7200\\Menu";

// The description and the registry both have a value 920, each its own.
class ValueOfDriverSet : public testing::Test {
 protected:
  ValueOfDriverSet() {
    desk::SetUpDefaultMachine(machine);
    SetMenuValue(machine, "920", "described");
    SetInRegistry(kMenuKey, u"920", u"of the registry");
  }
  void TearDown() override { EXPECT_EQ(inside.process().Ledger(), std::vector<std::u16string>{}); }

  void SetInRegistry(const char16_t* key, const char16_t* name, std::u16string_view value) {
    machine.registry().SetString(HKEY_LOCAL_MACHINE, key, name, value);
  }
  void SetProfile(const std::string& lines) {
    machine.files().WriteFile(desk::kProfilePath, lines);
  }
  void UseRegistry() { SetProfile("[S7200]\r\nRegistryBaseVGL=1\r\n"); }
  std::u16string Entry() { return ReadMenuCommand(identity, 920, u"OnAux"); }

  sim::Machine machine;
  sim::Inside inside{machine};
  PrinterIdentity identity{.printerName = desk::kPrinterName,
                           .driverName = desk::kDriverName,
                           .modelId = desk::kModelId,
                           .portName = desk::kPortName};
};

TEST_F(ValueOfDriverSet, IsOfTheRegistryWhereTheProfileSays1AndElseDescribed) {
  const struct {
    const char* profile;
    const char16_t* expected;
  } cases[] = {
      {"[S7200]\r\nRegistryBaseVGL=1\r\n", u"of the registry"},
      {"[S7200]\r\nregistrybasevgl = \"1\"\r\n", u"of the registry"},
      {"[S7200]\r\nRegistryBaseVGL=0\r\n", u"described"},
      {"[S7200]\r\nRegistryBaseVGL=2\r\n", u"described"},
      {"[S7200]\r\nRegistryBaseVGL=-1\r\n", u"described"},
      {"[S7200]\r\nRegistryBaseVGL=yes\r\n", u"described"},
      {"[S7200]\r\nRegistryBaseVGL=\r\n", u"described"},
      {"[S7200]\r\n", u"described"},
      {"[Other]\r\nRegistryBaseVGL=1\r\n", u"described"},
      {"", u"described"},
  };
  for (const auto& each : cases) {
    SetProfile(each.profile);
    EXPECT_EQ(Entry(), each.expected) << each.profile;
  }
  machine.files().Remove(desk::kProfilePath);
  EXPECT_EQ(Entry(), u"described");
}

TEST_F(ValueOfDriverSet, ShowsAChangeAtTheNextRead) {
  EXPECT_EQ(Entry(), u"described");
  SetMenuValue(machine, "920", "changed");
  EXPECT_EQ(Entry(), u"changed");
  UseRegistry();
  EXPECT_EQ(Entry(), u"of the registry");
  SetInRegistry(kMenuKey, u"920", u"changed there");
  EXPECT_EQ(Entry(), u"changed there");
  SetProfile("[S7200]\r\n");
  EXPECT_EQ(Entry(), u"changed");
}

TEST_F(ValueOfDriverSet, IsNotLookedForInTheOtherPlace) {
  SetMenuValue(machine, "921", "described");
  SetInRegistry(kMenuKey, u"922", u"of the registry");
  EXPECT_EQ(ReadMenuCommand(identity, 922, u"OnAux"), u"");
  UseRegistry();
  EXPECT_EQ(ReadMenuCommand(identity, 921, u"OnAux"), u"");
}

// The room is 260 characters, the terminator included where there is one.
TEST_F(ValueOfDriverSet, OfTheRegistryHas260CharactersAtMost) {
  UseRegistry();
  SetInRegistry(kMenuKey, u"920", std::u16string(259, u'v'));
  EXPECT_EQ(Entry(), std::u16string(259, u'v'));
  SetInRegistry(kMenuKey, u"920", std::u16string(260, u'v'));
  EXPECT_EQ(Entry(), u"");
  const auto setUnterminated = [this](std::size_t chars) {
    machine.registry().SetBytes(HKEY_LOCAL_MACHINE, kMenuKey, u"920", REG_SZ,
                                Utf16LeFromText(std::u16string(chars, u'v')));
  };
  setUnterminated(260);
  EXPECT_EQ(Entry(), std::u16string(260, u'v'));
  setUnterminated(261);
  EXPECT_EQ(Entry(), u"");
}

TEST_F(ValueOfDriverSet, OfADescriptionIsWholeWhateverItsLength) {
  for (const std::size_t length : {259U, 260U, 5000U}) {
    SetMenuValue(machine, "920", std::string(length, 'v'));
    EXPECT_EQ(Entry(), std::u16string(length, u'v')) << length;
  }
}

TEST_F(ValueOfDriverSet, ThatIsMissingIsEmpty) {
  EXPECT_EQ(ReadMenuCommand(identity, 921, u"OnAux"), u"");
  EXPECT_EQ(ReadDriverKeyValue(identity, u"DepExe", u"OnAux"), u"");
  UseRegistry();
  EXPECT_EQ(ReadMenuCommand(identity, 921, u"OnAux"), u"");
  EXPECT_EQ(ReadDriverKeyValue(identity, u"DepExe", u"OnAux"), u"");
}

TEST_F(ValueOfDriverSet, OfAKeyThatCantBeOpenedIsEmpty) {
  UseRegistry();
  inside.process().FailNext("RegOpenKeyExW", ERROR_ACCESS_DENIED);
  EXPECT_EQ(Entry(), u"");
  machine.registry().Deny(HKEY_LOCAL_MACHINE, kMenuKey, true);
  EXPECT_EQ(Entry(), u"");
  machine.registry().RemoveKey(HKEY_LOCAL_MACHINE, kMenuKey);
  EXPECT_EQ(Entry(), u"");
}

TEST_F(ValueOfDriverSet, OfTheDriversOwnKeyIsAnotherThanThatOfTheMenu) {
  SetDriverValue(machine, "920", "of the driver");
  SetInRegistry(kDriverKey, u"920", u"of the driver's key");
  EXPECT_EQ(ReadDriverKeyValue(identity, u"920", u"OnAux"), u"of the driver");
  EXPECT_EQ(Entry(), u"described");
  UseRegistry();
  EXPECT_EQ(ReadDriverKeyValue(identity, u"920", u"OnAux"), u"of the driver's key");
  EXPECT_EQ(Entry(), u"of the registry");
}

TEST_F(ValueOfDriverSet, IsFoundByItsNameInAnyCase) {
  SetMenuValue(machine, "Separators", "2");
  SetInRegistry(kMenuKey, u"Separators", u"3");
  EXPECT_EQ(ReadMenuValue(identity, u"SEPARATORS", u"OnAux"), u"2");
  UseRegistry();
  EXPECT_EQ(ReadMenuValue(identity, u"SEPARATORS", u"OnAux"), u"3");
}

// A description is found by its printer; the profile, by the driver, too.
TEST_F(ValueOfDriverSet, OfAPrinterWithoutANameIsInTheRegistryOnly) {
  identity.printerName = u"";
  EXPECT_EQ(Entry(), u"");
  UseRegistry();
  EXPECT_EQ(Entry(), u"of the registry");
}

TEST_F(ValueOfDriverSet, OfAPrinterThatIsGoneIsEmpty) {
  machine.spooler().RemovePrinter(desk::kPrinterName);
  EXPECT_EQ(Entry(), u"");
  // Nor does anything tell any more that the registry is to be asked.
  UseRegistry();
  EXPECT_EQ(Entry(), u"");
}

TEST_F(ValueOfDriverSet, OfADriverThatNobodyKnowsIsEmpty) {
  identity.driverName = u"Another";
  EXPECT_EQ(Entry(), u"");
  identity.driverName = u"";
  EXPECT_EQ(Entry(), u"");
}

TEST_F(ValueOfDriverSet, MenuKeyIsBelowTheDriversAndHas259CharactersAtMost) {
  ASSERT_TRUE(MenuKeyPath(identity).has_value());
  EXPECT_EQ(MenuKeyPath(identity)->view(), kMenuKey);
  // What stands around the driver's name takes 32 characters.
  const std::u16string fits(227, u'd');
  identity.driverName = fits.c_str();
  ASSERT_TRUE(MenuKeyPath(identity).has_value());
  EXPECT_EQ(MenuKeyPath(identity)->length(), 259U);
  const std::u16string tooLong(228, u'd');
  identity.driverName = tooLong.c_str();
  EXPECT_FALSE(MenuKeyPath(identity).has_value());
  EXPECT_EQ(Entry(), u"");
}

}  // namespace
}  // namespace vgl
