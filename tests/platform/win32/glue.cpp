// The contract tests on Windows, or Wine's implementation of it.
#include <filesystem>
#include <thread>
#include <utility>

#include "tests/platform/platform_test.h"

namespace platform {

struct TestMachine::Inside {};  // the program is already where it has to be

TestMachine::TestMachine() = default;
TestMachine::~TestMachine() = default;

Backend TestMachine::backend() const {
  OwnedKey key;
  return Os().registry.RegOpenKeyExW(HKEY_CURRENT_USER, u"Software\\Wine", KEY_READ, key.Out()) ==
                 ERROR_SUCCESS
             ? Backend::kWine
             : Backend::kWindows;
}

void TestMachine::MakeFolder(const std::u16string& path) {
  std::filesystem::create_directory(std::filesystem::path(path));
}

void TestMachine::RemoveFolder(const std::u16string& path) {
  namespace fs = std::filesystem;
  if (!fs::exists(path)) return;
  for (const fs::directory_entry& entry : fs::recursive_directory_iterator(path)) {
    // A read-only file can't be removed.
    fs::permissions(entry, fs::perms::owner_write, fs::perm_options::add);
  }
  fs::remove_all(path);
}

std::function<void()> TestMachine::StartThread(std::function<void()> body) {
  auto thread = std::make_shared<std::thread>(std::move(body));
  return [thread] { thread->join(); };
}

}  // namespace platform
