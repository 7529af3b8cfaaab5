// The shield on the entry that asks for elevation.
#include <algorithm>

#include "desk/default_machine.h"
#include "platform/sim/system_libraries.h"
#include "tests/menu/owner_draw_fixture.h"
#include "tests/support/operations_of.h"
#include "tests/support/sim_desk.h"

namespace vgl {
namespace {

using namespace platform;

// A driver set with an update program, which the entry names.
class OwnerDrawShield : public OwnerDraw {
 protected:
  OwnerDrawShield() {
    desk::SetUpDefaultMachine(machine);
    identity = {.printerName = desk::kPrinterName,
                .driverName = desk::kDriverName,
                .modelId = desk::kModelId,
                .portName = desk::kPortName};
    SetDriverValue(machine, "DriverUpdateName", "C:\\Suite\\Update.exe");
    SetMenuValue(machine, "925", "%supdate.EXE /DRVUPDATE");
    slot.hBitmap = AddPicture(24, 16);
  }

  static constexpr char kPicture[] = "104,51-128,67 picture of 24x16";
  static constexpr char kShield[] = "109,56-129,68 stock icon 77";
  static constexpr char kText[] = "138,52 \"Order ink\" in 000000 on F0F0F0";
};

TEST_F(OwnerDrawShield, LiesOnThePictureOfTheEntryThatRunsTheUpdate) {
  EXPECT_EQ(LinesOf(), (Lines{kFill, kPicture, kShield, kText}));
}

TEST_F(OwnerDrawShield, IsMirroredWithThePicture) {
  EXPECT_EQ(LinesOf(kRightToLeft),
            (Lines{kFill, "272,51-296,67 picture of 24x16", "277,56-297,68 stock icon 77",
                   "262,52 \"Order ink\" in 000000 on F0F0F0, aligned 258"}));
}

TEST_F(OwnerDrawShield, OfASmallPictureIsTurnedInsideOut) {
  EXPECT_EQ(LinesWithPicture(1, 1).at(2), "109,64-106,61 stock icon 77");
}

TEST_F(OwnerDrawShield, NeedsAPicture) {
  slot.hBitmap = {};
  EXPECT_EQ(LinesOf(), (Lines{kFill, "130,52 \"Order ink\" in 000000 on F0F0F0"}));
}

TEST_F(OwnerDrawShield, IsForNoOtherEntry) {
  SetMenuValue(machine, "926", "%sOther.exe");
  for (const std::uint32_t id : {924U, 926U}) {
    item.itemId = id;
    EXPECT_EQ(LinesOf(), (Lines{kFill, kPicture, kText})) << id;
  }
}

TEST_F(OwnerDrawShield, IsForNoEntryWhereTheUpdateProgramHasNoName) {
  SetDriverValue(machine, "DriverUpdateName", "C:\\Suite\\");
  EXPECT_EQ(LinesOf(), (Lines{kFill, kPicture, kText}));
  SetDriverValue(machine, "DriverUpdateName", "");
  EXPECT_EQ(LinesOf(), (Lines{kFill, kPicture, kText}));
}

TEST_F(OwnerDrawShield, FollowsTheDriverSetFromOneDrawingToTheNext) {
  EXPECT_EQ(LinesOf().size(), 4U);
  SetMenuValue(machine, "925", "%sOther.exe");
  EXPECT_EQ(LinesOf().size(), 3U);
  SetDriverValue(machine, "DriverUpdateName", "D:\\OTHER.EXE");
  EXPECT_EQ(LinesOf().size(), 4U);
}

TEST_F(OwnerDrawShield, IsMissedByNothingElseOnASystemThatHasNone) {
  machine.libraries().At(sim::kShell32).RemoveExport("SHGetStockIconInfo");
  EXPECT_EQ(LinesOf(), (Lines{kFill, kPicture, kText}));
}

TEST_F(OwnerDrawShield, IsLeftToTheShellAndNothingElseStays) {
  std::vector<std::u16string> held = Ledger();
  Draw();
  held.emplace_back(u"stock icon 77");
  EXPECT_EQ(Ledger(), held);
}

TEST_F(OwnerDrawShield, StandsWhereNoContextForThePictureCanBeHad) {
  FailNext("CreateCompatibleDC");
  EXPECT_EQ(LinesOf(), (Lines{kFill, kShield, kText}));
}

// --- Each call that can fail

TEST_F(OwnerDrawShield, WhicheverCallFailsTheRestIsDrawnAndNothingHeld) {
  const std::vector<std::u16string> held = Ledger();
  for (const bool rightToLeft : {false, true}) {
    const Lines operations = OperationsOf(inside.process(), [&] {
      EXPECT_GE(LinesOf(rightToLeft).size(), 3U);
      std::vector<std::u16string> now = Ledger();
      std::erase(now, u"stock icon 77");
      EXPECT_EQ(now, held);
    });
    for (const char* operation : {"CreateSolidBrush", "FillRect", "GetObjectW", "BitBlt",
                                  "CreateCompatibleDC", "DrawIconEx", "TextOutW"})
      EXPECT_EQ(std::ranges::count(operations, operation), 1) << operation;
  }
}

}  // namespace
}  // namespace vgl
