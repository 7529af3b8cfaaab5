// What the agent finds of the driver set of a sample's printers, for the author of the set.
#pragma once

#include <iosfwd>
#include <string>

namespace desk {

// Exit code of a description in which something wasn't found.
inline constexpr int kNotAllFound = 1;

// Puts a sample (a name as of SampleFolder) on a machine and writes to `out`, for each of its
// printers, what the lookups find: the driver and its folder, VIF, SADat file and registry library,
// model and instance map; the profile, the language, the other libraries and the run helper; then
// what the install description says, in the suite's own form. What isn't found is told as "not
// found" with the reason, as far as that can be told.
//
// 0 when all of it was found, else kNotAllFound; kBadSample (desk/player.h), and the mistake in
// `err`, for a sample that can't be put on a machine.
int Describe(const std::string& sample, std::ostream& out, std::ostream& err);

}  // namespace desk
