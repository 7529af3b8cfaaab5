#include "desk/whole_file.h"

#include <fstream>
#include <iterator>

namespace desk {

std::optional<std::string> ReadWholeFile(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  std::error_code unknown;
  // A folder can be opened, and not read.
  if (!file || std::filesystem::is_directory(path, unknown)) return std::nullopt;
  try {
    return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
  } catch (const std::ios_base::failure&) {
    return std::nullopt;
  }
}

}  // namespace desk
