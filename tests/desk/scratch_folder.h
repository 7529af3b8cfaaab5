// A folder of this host that goes with the test.
#pragma once

#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>

namespace desk {

class ScratchFolder {
 public:
  ScratchFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "kavro_test_XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("no folder for the test");
    m_path = name;
  }
  ~ScratchFolder() { std::filesystem::remove_all(m_path); }
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;

  const std::filesystem::path& path() const { return m_path; }

  // Makes or replaces a file, and the folders above it.
  void Write(const std::filesystem::path& name, const std::string& bytes) const {
    std::filesystem::create_directories((m_path / name).parent_path());
    std::ofstream(m_path / name, std::ios::binary) << bytes;
  }

 private:
  std::filesystem::path m_path;
};

}  // namespace desk
