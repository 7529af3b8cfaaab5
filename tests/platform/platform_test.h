// What every contract test of the platform layer stands on. The tests are the same on each backend;
// what only a backend can do for them is declared here and given by sim/glue.cpp and
// win32/glue.cpp.
//
// A test states what Windows documents and the agent relies on. Where a backend is known to differ,
// the test says so by HoldsExcept, which fails once the difference is gone.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/owned.h"
#include "platform/platform.h"

namespace platform {

enum class Backend { kWindows, kWine, kSimulation };

// The machine that a test runs on. While it lives, the calling thread is the main thread of a
// program there.
class TestMachine {
 public:
  TestMachine();
  ~TestMachine();
  TestMachine(const TestMachine&) = delete;
  TestMachine& operator=(const TestMachine&) = delete;

  Backend backend() const;
  // 8 for Wine 8.0.
  int wineVersion() const;
  void MakeFolder(const std::u16string& path);
  // With all that is in it. No failure when there is none.
  void RemoveFolder(const std::u16string& path);

  // Starts `body` in a second thread of the program; the result waits for its end.
  std::function<void()> StartThread(std::function<void()> body);

 private:
  struct Inside;
  std::unique_ptr<Inside> m_inside;
};

class PlatformTest : public testing::Test {
 protected:
  // Succeeds when `documented` holds; where an exception is known, when it does not. Fails there
  // once the backend has improved: then the exception goes.
  static testing::AssertionResult HoldsExcept(bool exception, bool documented);
  // `upTo`: the last version of Wine that is meant.
  bool OnWine(int upTo = 99) const;

  // Runs `body` in a second thread of the program, from its beginning to its end.
  void RunInAnotherThread(std::function<void()> body);

  std::int32_t LastError() { return os.process.GetLastError(); }

  TestMachine machine;
  const Platform& os = Os();
};

// A test with an empty folder of its own, which goes with it.
class ScratchFolderTest : public PlatformTest {
 protected:
  ScratchFolderTest();
  ~ScratchFolderTest() override;

  // A path in the scratch folder.
  std::u16string Path(std::u16string_view name) const;
  void MakeFile(std::u16string_view name, std::string_view bytes = {});
  std::string ReadFileBytes(std::u16string_view name);
  // Opens what must be there; the test fails when it can't be opened.
  OwnedFile Open(std::u16string_view name, std::uint32_t access, std::uint32_t share = 0);

  std::u16string folder;  // without closing backslash
};

// Waits until `condition` holds, some seconds at most. Whether it did.
bool WaitUntil(const std::function<bool()>& condition);

}  // namespace platform
