// Samples: driver sets of invented models, each a folder that describes a whole machine once and
// can be put on the simulated machine (here) and into a Wine prefix (tools/put-sample).
// docs/samples.md tells what is in such a folder.
#pragma once

#include <filesystem>
#include <string>

#include "platform/sim/machine.h"

namespace desk {

// The folder that a sample's name stands for: one with a slash is a folder already, any other is
// below samples/ in the current folder.
std::filesystem::path SampleFolder(const std::string& name);

// Puts a sample on a machine that has none: its files, its closed libraries, its registry, and the
// printers, drivers and printer data of which the registry tells. On a mistake in the sample:
// false, `error` tells it with the file and, where there is one, its line, and the machine is of no
// use.
bool LoadSample(sim::Machine& machine, const std::filesystem::path& folder, std::string& error);

// The option text (UTF-8, one line) that starts the agent for the sample's printer. False and
// `error` when there is none.
bool ReadSampleOptions(const std::filesystem::path& folder, std::string& options,
                       std::string& error);

}  // namespace desk
