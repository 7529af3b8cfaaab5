// Entries of the menu's tail that aren't there in every case: the one that orders ink, and those by
// which NetPilot updates.
#include <gtest/gtest.h>

#include "tests/Common/disable_func_data_fixture.h"
#include "tests/menu/ex_menu_fixture.h"

namespace vgl {
namespace {

using namespace platform;

class OptionalEntries : public ExMenuTest {};

INSTANTIATE_TEST_SUITE_P(, OptionalEntries,
                         testing::Values(ValuesAre::Described, ValuesAre::InRegistry), NameOfPlace);

// --- The entry that orders ink: it holds the file name of "DepExe" and "MENU"

class InkOrderEntry : public ExMenuTest {
 protected:
  InkOrderEntry() {
    Describe({920, 922});
    SetDriver("DepExe", "C:\\Program Files\\KAVRO\\InkOrder.exe");
    SetMenu("921", "C:\\Program Files\\KAVRO\\InkOrder.exe /MENU");
  }
  static inline const Ids kWith{kLine, 920, 921, 922};
  static inline const Ids kWithout{kLine, 920, 922};
};

INSTANTIATE_TEST_SUITE_P(, InkOrderEntry,
                         testing::Values(ValuesAre::Described, ValuesAre::InRegistry), NameOfPlace);

TEST_P(InkOrderEntry, IsThereWhereTheDriverOffersTheService) {
  OfferInkOrder();
  EXPECT_EQ(Built(), kWith);
}

TEST_P(InkOrderEntry, IsntThereWhereTheDriverDoesntOfferTheService) {
  EXPECT_EQ(Built(), kWithout);
}

TEST_P(InkOrderEntry, IsntThereWhereThePrinterHasSwitchedItOff) {
  OfferInkOrder();
  SetDisableRecord(Bytes({1, 1, 1, 1, 1, 1, 0xFF, 0xFF, 1, 0}));
  EXPECT_EQ(Built(), kWithout);
}

TEST_P(InkOrderEntry, IsThereWhereThePrinterHasSwitchedOffOtherThingsOnly) {
  OfferInkOrder();
  SetDisableRecord(Bytes({1, 0, 0, 0, 0, 0, 0, 0, 0, 1}));
  EXPECT_EQ(Built(), kWith);
}

TEST_P(InkOrderEntry, IsThereWhereTheRecordIsTooShortOrRefused) {
  OfferInkOrder();
  for (const std::string& record :
       {Bytes({1, 1, 1, 1, 1, 1, 0, 0}), Bytes({2, 0, 0, 0, 0, 0, 0, 0, 0, 0}), Bytes({1})}) {
    SetDisableRecord(record);
    EXPECT_EQ(Built(), kWith) << record.size();
  }
}

// Nobody asks how the reading went, and what couldn't be read stands as zeros.
TEST_P(InkOrderEntry, IsntThereWhereTheRecordGoesBetweenTheTwoLooksAtIt) {
  OfferInkOrder();
  SetDisableRecord(kAllOn);
  inside.process().FailNext("GetPrinterDataW", ERROR_FILE_NOT_FOUND, 1);
  EXPECT_EQ(Built(), kWithout);
  EXPECT_EQ(Built(), kWith);
}

TEST_P(InkOrderEntry, IsKnownByTheTwoWordsInAnyCase) {
  const struct {
    const char* value;
    bool isInkOrder;
  } cases[] = {
      {"c:\\x\\INKORDER.EXE /menu", true}, {"menu inkorder.exe", true},
      {"NoInkOrder.exemenu", true},        {"inkorder.exe", false},
      {"C:\\other.exe /MENU", false},      {"inkorder /MENU", false},
      {"inkorder.ex e /MENU", false},
  };
  for (const auto& each : cases) {
    SetMenu("921", each.value);
    EXPECT_EQ(Built(), each.isInkOrder ? kWithout : kWith) << each.value;
  }
}

TEST_P(InkOrderEntry, IsTheFirstOfSeveral) {
  SetMenu("922", "inkorder.exe MENU");
  SetMenu("998", "inkorder.exe MENU");
  EXPECT_EQ(Built(), (Ids{kLine, 920, 922, 998}));
  SetMenu("920", "inkorder.exe MENU");
  EXPECT_EQ(Built(), (Ids{kLine, 921, 922, 998}));
}

TEST_P(InkOrderEntry, CanBeTheLastSlot) {
  SetMenu("921", "C:\\tool.exe");
  SetMenu("998", "inkorder.exe MENU");
  EXPECT_EQ(Built(), kWith);
}

TEST_P(InkOrderEntry, ThatIsHiddenIsntCountedForSeparators) {
  SetMenu("Separators", "2");
  EXPECT_EQ(Built(), (Ids{kLine, 920, kLine, 922}));
}

TEST_P(InkOrderEntry, IsNoneWhereTheDependentProgramsPathHasNoBackslash) {
  SetDriver("DepExe", "InkOrder.exe");
  EXPECT_EQ(Built(), kWith);
}

TEST_P(InkOrderEntry, IsNoneWhereTheDependentProgramHasNoFileName) {
  SetDriver("DepExe", "C:\\Program Files\\KAVRO\\");
  EXPECT_EQ(Built(), kWith);
}

TEST_P(InkOrderEntry, IsNoneWithoutADependentProgram) {
  SetDriver("DepExe", "");
  EXPECT_EQ(Built(), kWith);
}

TEST_P(InkOrderEntry, IsNoneWhereTheDependentProgramsPathHas260Characters) {
  const std::string path = std::string(260 - 13, 'd') + "\\InkOrder.exe";
  ASSERT_EQ(path.size(), 260U);
  SetDriver("DepExe", path);
  EXPECT_EQ(Built(), kWith);
  SetDriver("DepExe", path.substr(1));
  EXPECT_EQ(Built(), kWithout);
}

TEST_P(InkOrderEntry, WithATextOf260CharactersIsAnOrdinaryEntry) {
  const std::string text = "InkOrder.exe MENU" + std::string(260 - 17, 'x');
  SetMenu("921", text.substr(0, 259));
  EXPECT_EQ(Built(), kWithout);
  SetMenu("921", text);
  // The registry gives so long a text only without a terminator.
  if (GetParam() == ValuesAre::InRegistry)
    machine.registry().SetBytes(HKEY_LOCAL_MACHINE, kMenuKey, u"921", REG_SZ,
                                Utf16LeFromText(TextFromUtf8(text)));
  EXPECT_EQ(Built(), kWith);
}

// The registry's menu key is asked first wherever there is one, also where the set is described.
using InkOrderEntryOfADescribedSet = InkOrderEntry;

INSTANTIATE_TEST_SUITE_P(, InkOrderEntryOfADescribedSet, testing::Values(ValuesAre::Described),
                         NameOfPlace);

TEST_P(InkOrderEntryOfADescribedSet, IsTheRegistrysWhereBothHaveOne) {
  SetInRegistry(kMenuKey, "922", "inkorder.exe MENU");
  EXPECT_EQ(Built(), (Ids{kLine, 920, 921}));
}

TEST_P(InkOrderEntryOfADescribedSet, IsNoneWhereTheRegistrysMenuKeyIsEmpty) {
  machine.registry().MakeKey(HKEY_LOCAL_MACHINE, kMenuKey);
  EXPECT_EQ(Built(), kWith);
}

// --- " /DRVUPDATE" and " /UPPILOT"

TEST_P(OptionalEntries, UpdatesAreThereByNetPilotTheLockAndTheUpdateProgram) {
  Describe({920});
  SetMenu("921", "C:\\KAVRO\\ /DRVUPDATE");
  SetMenu("922", "C:\\KAVRO\\ /UPPILOT");
  SetMenu("923", "C:\\KAVRO\\ /DRVUPDATE /UPPILOT");
  SetMenu("924", "C:\\KAVRO\\ /UPPILOT /DRVUPDATE");
  const struct {
    const char* updateProgram;
    const char16_t* netPilot;
    std::uint8_t lock;
    Ids tail;
  } cases[] = {
      {"", u"", 0, {kLine, 920}},
      {"", u"", 1, {kLine, 920}},
      {"", u"NETPILOT.EXE", 0, {kLine, 920, 921, 922, 923, 924}},
      {"", u"NETPILOT.EXE", 1, {kLine, 920}},
      {"C:\\KAVRO\\UPDATE.EXE", u"", 0, {kLine, 920, 921}},
      {"C:\\KAVRO\\UPDATE.EXE", u"", 1, {kLine, 920, 921}},
      {"C:\\KAVRO\\UPDATE.EXE", u"NETPILOT.EXE", 0, {kLine, 920, 921, 922, 923, 924}},
      {"C:\\KAVRO\\UPDATE.EXE", u"NETPILOT.EXE", 1, {kLine, 920, 921}},
  };
  for (const auto& each : cases) {
    SetDriver("DriverUpdateName", each.updateProgram);
    netPilot = each.netPilot;
    SetUpdateLock(each.lock);
    EXPECT_EQ(Built(), each.tail) << "'" << each.updateProgram << "' '"
                                  << Utf8FromText(each.netPilot) << "' " << int{each.lock};
  }
}

TEST_P(OptionalEntries, ThatUpdateAreKnownByTheWordInCapitalsBehindABlank) {
  const struct {
    const char* value;
    bool updates;
  } cases[] = {
      {" /UPPILOT", true},       {"C:\\KAVRO\\ /UPPILOT2", true}, {"tool a /DRVUPDATE b", true},
      {"/UPPILOT", false},       {"C:\\KAVRO\\/UPPILOT", false},  {"tool\t/DRVUPDATE", false},
      {"tool / UPPILOT", false}, {"tool /uppilot", false},        {"tool /DrvUpdate", false},
  };
  for (const auto& each : cases) {
    SetMenu("920", each.value);
    EXPECT_EQ(Built(), each.updates ? Ids{kLine} : (Ids{kLine, 920})) << each.value;
  }
}

TEST_P(OptionalEntries, OfADriverUpdateAreThereAlsoWhereTheUpdateProgramsPathIsAFolder) {
  SetMenu("920", "C:\\KAVRO\\ /DRVUPDATE");
  SetDriver("DriverUpdateName", "C:\\KAVRO\\");
  EXPECT_EQ(Built(), (Ids{kLine, 920}));
}

TEST_P(OptionalEntries, OfADriverUpdateArentThereWhereTheUpdateProgramsPathIsTooLong) {
  SetMenu("920", "C:\\KAVRO\\ /DRVUPDATE");
  SetDriver("DriverUpdateName", "C:\\KAVRO\\" + std::string(260, 'u'));
  EXPECT_EQ(Built(), Ids{kLine});
}

TEST_P(OptionalEntries, AreNotLockedByALockThatCantBeRead) {
  SetMenu("920", "C:\\KAVRO\\ /UPPILOT");
  netPilot = u"NETPILOT.EXE";
  SetPrinterData(u"KV_DISABLE_UPDATE", REG_BINARY, Bytes({1, 0, 0, 0, 0}));
  EXPECT_EQ(Built(), (Ids{kLine, 920}));
  SetUpdateLock(1);
  EXPECT_EQ(Built(), Ids{kLine});
  inside.process().FailNext("GetPrinterDataExW", ERROR_ACCESS_DENIED);
  EXPECT_EQ(Built(), (Ids{kLine, 920}));
}

TEST_P(OptionalEntries, ThatUpdateAndAreHiddenArentCountedForSeparators) {
  Describe({920, 922, 923});
  SetMenu("921", "C:\\KAVRO\\ /UPPILOT");
  SetMenu("Separators", "2,3");
  netPilot = u"NETPILOT.EXE";
  EXPECT_EQ(Built(), (Ids{kLine, 920, kLine, 921, kLine, 922, 923}));
  SetUpdateLock(1);
  EXPECT_EQ(Built(), (Ids{kLine, 920, kLine, 922, kLine, 923}));
}

}  // namespace
}  // namespace vgl
