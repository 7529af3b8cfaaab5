// The modules of the running Windows program.
#include "platform/win32/conversion.h"
#include "platform/win32/services.h"

namespace platform {
namespace {

class ModulesOfWindows final : public Modules {
 public:
  HMODULE GetModuleHandleW(const char16_t* name) override {
    return handle_cast<HMODULE>(::GetModuleHandleW(text_cast(name)));
  }

  std::uint32_t GetModuleFileNameW(HMODULE module, char16_t* path, std::uint32_t chars) override {
    return ::GetModuleFileNameW(handle_cast<::HMODULE>(module), text_cast(path), chars);
  }
};

}  // namespace

Modules& Win32Modules() { return *new ModulesOfWindows; }

}  // namespace platform
