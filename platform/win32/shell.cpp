// The shell of Windows.
#include "platform/win32/conversion.h"
#include "platform/win32/services.h"

#include <shlobj.h>

namespace platform {
namespace {

class ShellOfWindows final : public Shell {
 public:
  std::int32_t SHGetSpecialFolderPathW(char16_t* path, std::int32_t folder, bool create) override {
    return ::SHGetSpecialFolderPathW(nullptr, text_cast(path), folder, create);
  }
};

}  // namespace

Shell& Win32Shell() { return *new ShellOfWindows; }

}  // namespace platform
