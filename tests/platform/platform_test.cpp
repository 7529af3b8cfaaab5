#include "tests/platform/platform_test.h"

#include <utility>

namespace platform {

testing::AssertionResult PlatformTest::HoldsExcept(bool exception, bool documented) {
  if (exception != documented) return testing::AssertionSuccess();
  if (documented) {
    return testing::AssertionFailure() << "a known gap has closed: take the exception away";
  }
  return testing::AssertionFailure() << "not as Windows documents it";
}

bool PlatformTest::OnWine(int upTo) const {
  return machine.backend() == Backend::kWine && machine.wineVersion() <= upTo;
}

void PlatformTest::RunInAnotherThread(std::function<void()> body) {
  machine.StartThread(std::move(body))();
}

ScratchFolderTest::ScratchFolderTest() {
  char16_t temp[MAX_PATH] = {};
  if (os.files.GetTempPathW(MAX_PATH, temp) == 0) ADD_FAILURE() << "no temp folder";
  folder = std::u16string(temp) + u"PlatformTest";
  machine.RemoveFolder(folder);  // what a test that crashed has left
  machine.MakeFolder(folder);
}

ScratchFolderTest::~ScratchFolderTest() { machine.RemoveFolder(folder); }

std::u16string ScratchFolderTest::Path(std::u16string_view name) const {
  return folder + u"\\" + std::u16string(name);
}

void ScratchFolderTest::MakeFile(std::u16string_view name, std::string_view bytes) {
  const OwnedFile file(os.files.CreateFileW(Path(name).c_str(), GENERIC_WRITE, 0, CREATE_ALWAYS,
                                            FILE_ATTRIBUTE_NORMAL));
  ASSERT_TRUE(file);
  std::uint32_t written = 0;
  ASSERT_TRUE(os.files.WriteFile(file.get(), bytes.data(), static_cast<std::uint32_t>(bytes.size()),
                                 &written));
  ASSERT_EQ(written, bytes.size());
}

std::string ScratchFolderTest::ReadFileBytes(std::u16string_view name) {
  const OwnedFile file = Open(name, GENERIC_READ);
  if (!file) return {};
  std::string bytes(os.files.GetFileSize(file.get(), nullptr), '\0');
  std::uint32_t read = 0;
  EXPECT_TRUE(
      os.files.ReadFile(file.get(), bytes.data(), static_cast<std::uint32_t>(bytes.size()), &read));
  EXPECT_EQ(read, bytes.size());
  return bytes;
}

OwnedFile ScratchFolderTest::Open(std::u16string_view name, std::uint32_t access,
                                  std::uint32_t share) {
  OwnedFile file(os.files.CreateFileW(Path(name).c_str(), access, share, OPEN_EXISTING,
                                      FILE_ATTRIBUTE_NORMAL));
  EXPECT_TRUE(file) << "error " << LastError();
  return file;
}

bool WaitUntil(const std::function<bool()>& condition) {
  for (int attempt = 0; attempt < 500; ++attempt) {
    if (condition()) return true;
    Os().process.Sleep(10);
  }
  return false;
}

}  // namespace platform
