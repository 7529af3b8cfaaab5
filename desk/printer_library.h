// The printer library of a driver set, scripted: what a sample's or a test's machine has under the
// path that the profile names. The library itself is closed; this one does what the agent relies
// on.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/sim/library.h"

namespace sim {
class Machine;
}

namespace desk {

// The face of all printer libraries of one machine: what they answer, and what they were asked.
struct PrinterLibrary {
  // --- PrSetRegDefaultValue

  struct DefaultsCall {
    std::u16string printer;
    std::u16string driver;
    std::u16string port;
    std::u16string modelId;
    bool zeros = false;  // whether the last three were all 0

    friend bool operator==(const DefaultsCall&, const DefaultsCall&) = default;
  };
  std::vector<DefaultsCall> defaultsCalls;
  // Whether the model's settings are written into the record: TrayIconEnable 1, TrayIconSelected 0,
  // and the texts ModelID and DriverName.
  bool writesDefaults = true;
  // What it answers then, unless the record couldn't be found or written, which is -1.
  std::int32_t defaultsResult = 0;

  // --- PrGetSerialID2

  struct SerialCall {
    std::u16string printer;
    bool hasBuffer = false;
    std::int32_t bytes = 0;  // as they came in
    std::int32_t cache = 0;

    friend bool operator==(const SerialCall&, const SerialCall&) = default;
  };
  std::vector<SerialCall> serialCalls;
  // Answers of the next calls, one each, in place of what is told below: the library then writes
  // neither buffer nor size.
  std::deque<std::int32_t> serialResults;
  std::string serial = "K7200A0001";
  bool serialIsCached = false;  // else a call with the cache argument 1 gives -65
  bool printerAnswers = true;   // else one with 0 gives -1

  // --- PrGetPrinterStatus2 and PrReleasePrinterStatus

  struct StatusCall {
    std::u16string printer;
    bool zeros = false;  // whether both cells were null

    friend bool operator==(const StatusCall&, const StatusCall&) = default;
  };
  std::vector<StatusCall> statusCalls;
  // What it answers, unless the number "PrinterAnswers" among the printer's data is 0: then -1.
  std::int32_t statusResult = 0;
  bool givesStatus = true;        // a block, whatever the result
  std::uint32_t statusTakes = 0;  // virtual milliseconds
  std::size_t blocksGiven = 0;
  std::vector<std::unique_ptr<std::size_t>> blocksHeld;  // those that haven't come back
};

// The printer library under that path, with its exports by name. Its face begins as above and is
// one for all such libraries of the machine.
sim::Library& AddPrinterLibrary(sim::Machine& machine, std::u16string_view path);
PrinterLibrary& PrinterLibraryOf(sim::Machine& machine);

}  // namespace desk
