// The usage log library of the simulated machine: the exports of Common/log_library_exports.h, for
// real on the machine's files, with a face for tests.
#pragma once

#include <cstdint>
#include <deque>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "platform/sim/machine.h"

namespace desk {

// A call as it came in; what an export isn't given stays as it is here.
struct UsageLogCall {
  std::string name;         // of the export
  std::u16string deviceId;  // the printer's name for GetExtEscapeDeviceID
  std::u16string fileName;
  std::int32_t first = 0;
  std::int32_t count = -1;            // for in/out arguments: what came in
  std::vector<std::uint32_t> values;  // from `first` on
  std::u16string version;
  std::int32_t waitLimit = 0;
  bool hasBuffer = false;
};

struct UsageLogAnswer {
  std::int32_t code = 0;
  std::int32_t size = 0;  // what an in/out size is set to
};

// Of the libraries of one machine.
struct UsageLogLibraryState {
  std::vector<UsageLogCall> calls;
  // By export: each call takes the next one instead of doing anything, until there is none left.
  std::map<std::string, std::deque<UsageLogAnswer>> answers;
  // The device ids of printers, by name. For one that isn't here it is the text "DeviceID" in the
  // printer's data, and without that the printer doesn't answer.
  std::map<std::u16string, std::u16string> deviceIds;
};

UsageLogLibraryState& UsageLogLibraryOf(sim::Machine& machine);

// What GetExtEscapeDeviceID gives for a printer that doesn't answer.
inline constexpr std::int32_t kPrinterDoesntAnswer = -10;

// The library under that path, and the folder of its files, as an installation makes them. Its
// calls of the system are those of the process that calls it.
sim::Library& AddUsageLogLibrary(sim::Machine& machine, std::u16string_view path);

}  // namespace desk
