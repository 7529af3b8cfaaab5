// Every platform call that the record makes, failing once.
#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "tests/app/record_fixture.h"

namespace vgl::test {
namespace {

using platform::HKEY_CURRENT_USER;

constexpr char16_t kRecord[] = u"Software\\KAVRO\\VGL3\\VGLData\\KVLTarget\\P0000000000000000";

// Runs `body` on a machine of its own again and again, letting its first call fail, then its
// second, up to its last, and then once with none failing. Gives how many runs had a failure.
int LetEachCallFail(const std::function<void(sim::Machine&)>& body) {
  int failures = 0;
  for (std::uint64_t number = 1;; ++number) {
    SCOPED_TRACE("call " + std::to_string(number));
    sim::Machine machine;
    machine.files().MakeFolder(machine.system().tempFolder);
    machine.files().WriteUtf16(u"C:\\a.tmp", u"/D \"driver\"\n/FU \"b.tmp\"\n");
    machine.files().WriteUtf16(machine.system().tempFolder + u"b.tmp",
                               u"/O \"port\"\n/KVT \"KVLTarget\\P0000000000000000\"\n");
    machine.registry().SetString(HKEY_CURRENT_USER, kRecord, u"Name", u"Office");
    sim::Inside inside(machine);
    const std::uint64_t before = inside.process().calls();
    inside.process().FailCall(number);

    body(machine);

    EXPECT_TRUE(inside.process().Ledger().empty());
    EXPECT_FALSE(inside.process().ending());
    if (!inside.process().failedOperation().empty()) ++failures;
    if (testing::Test::HasFailure() || inside.process().calls() - before < number) return failures;
  }
}

TEST(RecordFaults, AFailedCallLeavesNothingOpenAndKeepsTheCommandLinesOptions) {
  const int failures = LetEachCallFail([](sim::Machine&) {
    CCmdLineInfo info;
    info.m_szCmdText = u"/R /M \"KX1\" /FU \"C:\\a.tmp\"";
    const int result = info.ParseCommandLine();
    EXPECT_TRUE(result == 0 || result == 1);
    EXPECT_EQ(info.m_fRemove, 1);
    EXPECT_EQ(info.m_szModelID, u"KX1");
    // What was read was read whole, whatever failed.
    EXPECT_TRUE(info.m_szDriverName.empty() || info.m_szDriverName == u"driver");
    EXPECT_TRUE(info.m_szPortName.empty() || info.m_szPortName == u"port");
    EXPECT_TRUE(info.m_szPrinterName.empty() || info.m_szPrinterName == u"Office");
    EXPECT_EQ(info.m_szDriverName.empty(), result == 0);
  });
  EXPECT_GE(failures, 10);
}

TEST(RecordFaults, AFailedCallOfTheWriterLeavesNothingOpenAndNoFileBehind) {
  const int failures = LetEachCallFail([](sim::Machine& machine) {
    CCmdLineInfo info(u"/R /S");
    const int result = info.WriteParamFile(u"printer", u"port", u"KX1");
    const std::u16string path = info.m_szTempPath + info.m_szOutFileName;
    const bool isThere = !info.m_szOutFileName.empty() && machine.files().Exists(path);
    EXPECT_EQ(isThere, result == 1);
    // Only the two files that were there before, and the new one.
    EXPECT_EQ(machine.files().List().size(), result == 1 ? 3U : 2U);
  });
  EXPECT_GE(failures, 6);
}

TEST(RecordFaults, AFailedCallOfARemovalLeavesNothingOpen) {
  const int failures = LetEachCallFail([](sim::Machine& machine) {
    CCmdLineInfo info;
    const int result = info.DeleteParamFile(u"b.tmp");
    EXPECT_EQ(machine.files().Exists(machine.system().tempFolder + u"b.tmp"), result == 0);
  });
  EXPECT_GE(failures, 3);
}

}  // namespace
}  // namespace vgl::test
