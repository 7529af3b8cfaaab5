// Utility calls inside the test's own process, on the default machine with a utility library.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "Common/CVglLog.h"
#include "Common/tray_log.h"
#include "desk/default_machine.h"
#include "desk/utility_library.h"
#include "menu/uty_call.h"
#include "platform/sim/machine.h"
#include "tests/support/log_texts.h"

namespace vgl {

class UtyCallTest : public testing::Test {
 protected:
  static constexpr char16_t kLibrary[] = u"C:\\D\\u.dll";
  static constexpr char16_t kSemaphore[] = u"VGL_UtyCall_OBJ_Studio 7200";

  explicit UtyCallTest(std::uint64_t seed = 0) : machine(seed), inside(machine) {
    desk::SetUpDefaultMachine(machine);
    desk::EnableTrayLog(machine);
    TrayLogInit(TrayLogPath().c_str());
  }

  desk::UtilityLibrary& Utility() { return desk::UtilityLibraryOf(machine); }
  // What was called so far, in order.
  std::vector<std::string> Called() {
    std::vector<std::string> names;
    for (const desk::UtilityLibrary::Call& each : Utility().calls) names.push_back(each.name);
    return names;
  }

  void Start(const char16_t* param, const char16_t* printer = desk::kPrinterName) {
    call->StartUtyCall(printer, param);
  }
  // Waits until the last thread has ended.
  void AwaitThread() {
    EXPECT_EQ(platform::Os().objects.WaitForSingleObject(call->hThread, 600000),
              platform::WAIT_OBJECT_0);
  }
  void Run(const char16_t* param, const char16_t* printer = desk::kPrinterName) {
    Start(param, printer);
    AwaitThread();
  }

  // Whether the semaphore can be had. Logs nothing.
  bool SemaphoreIsFree() {
    if (platform::Os().objects.WaitForSingleObject(call->hSemaphore, 0) == platform::WAIT_TIMEOUT)
      return false;
    platform::Os().objects.ReleaseSemaphore(call->hSemaphore, 1, nullptr);
    return true;
  }

  // The counters of the usage log; none while nothing was counted.
  static std::vector<std::uint32_t> Counts() {
    const CVglLog& log = g_VglLog.get();
    if (log.m_pnLogData == nullptr) return {};
    return {log.m_pnLogData.get(), log.m_pnLogData.get() + log.m_nLogCount};
  }

  std::vector<std::string> LogTexts() {
    return TextsOfLog(machine.files().ReadFile(desk::kTrayLogFile).value_or(""));
  }

  sim::Machine machine;
  sim::Inside inside;
  sim::Library& library = desk::AddUtilityLibrary(machine, kLibrary);
  std::unique_ptr<CUtyCall> call = std::make_unique<CUtyCall>();
};

}  // namespace vgl
