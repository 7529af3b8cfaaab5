// The scripted printer library, called as the agent calls it.
#include "desk/printer_library.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "Common/printer_library_exports.h"
#include "Common/target_records.h"
#include "platform/owned.h"
#include "platform/sim/machine.h"

namespace desk {
namespace {

using namespace platform;

constexpr char16_t kPath[] = u"C:\\Drivers\\PR.DLL";
constexpr char16_t kRecord[] = u"Software\\KAVRO\\VGL3\\VGLData\\KVLTarget\\P0000000000000000";
constexpr char16_t kPortRecord[] = u"Software\\KAVRO\\VGL3\\VGLData\\KVNTarget\\P0000000000000004";

class ScriptedPrinterLibrary : public testing::Test {
 protected:
  sim::Machine machine;
  sim::Inside inside{machine};
  PrinterLibrary& face = PrinterLibraryOf(machine);
  OwnedModule library;
  char buffer[32] = {};
  std::int32_t bytes = 0;
  std::int32_t flag = 0;

  ScriptedPrinterLibrary() {
    AddPrinterLibrary(machine, kPath);
    library = OwnedModule(Os().modules.LoadLibraryW(kPath));
  }

  std::int32_t SetDefaults(const char16_t* printer, const char16_t* port) {
    const auto function = reinterpret_cast<vgl::PrSetRegDefaultValueFunction>(
        Os().modules.GetProcAddress(library.get(), "PrSetRegDefaultValue"));
    return function(printer, u"D", port, u"M", 0, 0, 0);
  }
  std::int32_t GetSerial(char* out, std::int32_t cache) {
    const auto function = reinterpret_cast<vgl::PrGetSerialID2Function>(
        Os().modules.GetProcAddress(library.get(), "PrGetSerialID2"));
    return function(u"P", out, &bytes, &flag, cache);
  }
};

TEST_F(ScriptedPrinterLibrary, WritesTheDefaultsIntoTheRecordOfThePrinter) {
  machine.registry().SetString(HKEY_CURRENT_USER, kRecord, u"Name", u"P");
  EXPECT_EQ(SetDefaults(u"P", u"USB001"), 0);
  EXPECT_EQ(machine.registry().Dword(HKEY_CURRENT_USER, kRecord, u"TrayIconEnable"), 1U);
  EXPECT_EQ(machine.registry().Dword(HKEY_CURRENT_USER, kRecord, u"TrayIconSelected"), 0U);
  EXPECT_EQ(machine.registry().String(HKEY_CURRENT_USER, kRecord, u"ModelID"), u"M");
  EXPECT_EQ(machine.registry().String(HKEY_CURRENT_USER, kRecord, u"DriverName"), u"D");
  EXPECT_EQ(face.defaultsCalls,
            (std::vector<PrinterLibrary::DefaultsCall>{{u"P", u"D", u"USB001", u"M", true}}));
}

TEST_F(ScriptedPrinterLibrary, AndIntoThatOfThePortWhereNoPrinterIsNamed) {
  machine.registry().SetString(HKEY_CURRENT_USER, kPortRecord, u"Name", u"USB001");
  EXPECT_EQ(SetDefaults(u"", u"USB001"), 0);
  EXPECT_EQ(machine.registry().Dword(HKEY_CURRENT_USER, kPortRecord, u"TrayIconEnable"), 1U);
}

TEST_F(ScriptedPrinterLibrary, WithoutARecordItFails) {
  EXPECT_EQ(SetDefaults(u"P", u"USB001"), -1);
}

TEST_F(ScriptedPrinterLibrary, AScriptedResultComesWithOrWithoutTheDefaults) {
  machine.registry().SetString(HKEY_CURRENT_USER, kRecord, u"Name", u"P");
  face.defaultsResult = 9;
  face.writesDefaults = false;
  EXPECT_EQ(SetDefaults(u"P", u"USB001"), 9);
  EXPECT_EQ(machine.registry().ValueNames(HKEY_CURRENT_USER, kRecord),
            std::vector<std::u16string>{u"Name"});
}

TEST_F(ScriptedPrinterLibrary, GivesTheSerialNumberInTwoCalls) {
  EXPECT_EQ(GetSerial(nullptr, 0), -59);
  EXPECT_EQ(bytes, 11);  // ten characters and the terminator
  EXPECT_EQ(GetSerial(buffer, 0), 0);
  EXPECT_STREQ(buffer, "K7200A0001");
}

TEST_F(ScriptedPrinterLibrary, FromTheCacheOnlyWhatIsKnown) {
  EXPECT_EQ(GetSerial(nullptr, 1), -65);
  EXPECT_EQ(bytes, 0);
  face.serialIsCached = true;
  face.printerAnswers = false;
  EXPECT_EQ(GetSerial(nullptr, 1), -59);
  EXPECT_EQ(GetSerial(buffer, 1), 0);
  EXPECT_EQ(GetSerial(buffer, 0), -1);
}

TEST_F(ScriptedPrinterLibrary, TooSmallABufferIsLeftAlone) {
  bytes = 10;
  EXPECT_EQ(GetSerial(buffer, 0), -59);
  EXPECT_EQ(bytes, 11);
  EXPECT_STREQ(buffer, "");
}

TEST_F(ScriptedPrinterLibrary, ScriptedAnswersComeFirstOneACall) {
  face.serialResults = {-3, 5};
  bytes = 32;
  EXPECT_EQ(GetSerial(buffer, 0), -3);
  EXPECT_EQ(GetSerial(buffer, 1), 5);
  EXPECT_STREQ(buffer, "");
  EXPECT_EQ(GetSerial(buffer, 0), 0);
  EXPECT_EQ(face.serialCalls, (std::vector<PrinterLibrary::SerialCall>{
                                  {u"P", true, 32, 0}, {u"P", true, 32, 1}, {u"P", true, 32, 0}}));
}

TEST_F(ScriptedPrinterLibrary, GivesAStatusBlockThatHasToComeBack) {
  void* status = nullptr;
  void* second = nullptr;
  const auto get = reinterpret_cast<vgl::PrGetPrinterStatus2Function>(
      Os().modules.GetProcAddress(library.get(), "PrGetPrinterStatus2"));
  const auto release = reinterpret_cast<vgl::PrReleasePrinterStatusFunction>(
      Os().modules.GetProcAddress(library.get(), "PrReleasePrinterStatus"));
  EXPECT_EQ(get(u"P", &status, &second), 0);
  EXPECT_EQ(face.blocksGiven, 1U);
  EXPECT_EQ(face.blocksHeld.size(), 1U);
  EXPECT_EQ(get(u"Q", &status, &second), 0);
  release(status);
  EXPECT_EQ(face.blocksHeld.size(), 1U);
  EXPECT_THROW(release(status), std::logic_error);
  EXPECT_EQ(face.statusCalls,
            (std::vector<PrinterLibrary::StatusCall>{{u"P", true}, {u"Q", false}}));
}

TEST_F(ScriptedPrinterLibrary, AnswersForAPrinterUnlessItsDataSaysOtherwise) {
  const auto status = [this] {
    void* cells[2] = {};
    face.givesStatus = false;
    const std::int32_t result =
        reinterpret_cast<vgl::PrGetPrinterStatus2Function>(Os().modules.GetProcAddress(
            library.get(), "PrGetPrinterStatus2"))(u"P", &cells[0], &cells[1]);
    EXPECT_EQ(cells[0], nullptr);
    return result;
  };
  const auto setAnswers = [this](std::uint32_t type, const std::string& value) {
    machine.spooler().SetData(u"P", u"PrinterDriverData", u"PrinterAnswers", type, value);
  };
  face.statusResult = 5;
  EXPECT_EQ(status(), 5);  // of no printer of the machine
  machine.spooler().AddPrinter({.name = u"P", .port = u"USB001"});
  EXPECT_EQ(status(), 5);
  setAnswers(REG_DWORD, std::string(4, '\0'));
  EXPECT_EQ(status(), -1);
  setAnswers(REG_DWORD, std::string("\0\0\0\1", 4));
  EXPECT_EQ(status(), 5);
  setAnswers(REG_SZ, std::string(4, '\0'));  // no number
  EXPECT_EQ(status(), 5);
  setAnswers(REG_DWORD, std::string(3, '\0'));
  EXPECT_EQ(status(), 5);
}

}  // namespace
}  // namespace desk
