// The contract tests on Windows, or Wine's implementation of it.
#include <cstdlib>
#include <filesystem>
#include <thread>
#include <utility>

#include "tests/platform/platform_test.h"

#include <windows.h>

namespace platform {

struct TestMachine::Inside {};  // the program is already where it has to be

TestMachine::TestMachine() = default;
TestMachine::~TestMachine() = default;

Backend TestMachine::backend() const {
  return wineVersion() != 0 ? Backend::kWine : Backend::kWindows;
}

int TestMachine::wineVersion() const {
  const FARPROC tell = GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version");
  if (tell == nullptr) return 0;  // not Wine
  return std::atoi(reinterpret_cast<const char* (*)()>(reinterpret_cast<void*>(tell))());
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
