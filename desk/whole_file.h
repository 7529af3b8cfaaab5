// Reading a file of this host.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace desk {

// The bytes of a file; nothing when it can't be read, and for a folder.
std::optional<std::string> ReadWholeFile(const std::filesystem::path& path);

}  // namespace desk
