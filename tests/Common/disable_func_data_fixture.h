// A printer, what its driver may have switched off, and an object to find it out with.
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "Common/CGetDisableVglFuncData.h"
#include "platform/sim/machine.h"

namespace vgl {

inline constexpr char16_t kKey[] = u"PrinterDriverData";
inline constexpr char16_t kInstaller[] = u"Global\\KavroPrinterInstaller";
inline constexpr char16_t kLog[] = u"C:\\ProgramData\\KAVRO\\KVOPENPRINTER.log";

using Switched = std::vector<std::int32_t>;
using Notify = std::array<std::int32_t, 10>;
inline constexpr Notify kNone{};
inline constexpr Notify kAll{1, 1, 1, 1, 1, 1, 1, 1, 1, 1};

inline std::string Bytes(std::initializer_list<int> numbers) {
  std::string bytes;
  for (const int number : numbers) bytes.push_back(static_cast<char>(number));
  return bytes;
}

// Ten bytes that switch nothing off.
inline const std::string kAllOn = Bytes({1, 1, 1, 1, 1, 1, 0xFF, 0xFF, 1, 1});

// The seven switches in the record's order: bytes 1 to 5, 8, 9.
inline Switched SwitchesOf(const CGetDisableVglFuncData& data) {
  return {data.bNoNetPilot, data.bNoInvitation, data.bFunc3,     data.bFunc4,
          data.bNoIoPopup,  data.bByte8,        data.bNoInkOrder};
}

class DisableFuncData : public testing::Test {
 protected:
  sim::Machine machine;
  sim::Inside inside{machine};
  CGetDisableVglFuncData data;

  DisableFuncData() {
    machine.spooler().AddDriver({.name = u"D"});
    machine.spooler().AddPrinter({.name = u"P", .port = u"USB001", .driver = u"D"});
  }

  void SetRecord(std::string_view bytes) {
    machine.spooler().SetData(u"P", kKey, u"KV_DISABLE_VGLFUNC", platform::REG_BINARY, bytes);
  }
  void SetUpdateLock(std::string_view bytes) {
    machine.spooler().SetData(u"P", kKey, u"KV_DISABLE_UPDATE", platform::REG_DWORD, bytes);
  }

  Switched Switches() const { return SwitchesOf(data); }
  Notify Notifications() const { return std::to_array(data.bNotify); }
  bool IsAsNew() const {
    return Switches() == Switched(7, 0) && Notifications() == kNone && data.bDisableUpdate == 0 &&
           data.bLoaded == 0 && data.bUpdateRead == 0;
  }
};

}  // namespace vgl
