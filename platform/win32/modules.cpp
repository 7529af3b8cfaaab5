// The running Windows program and the libraries that it loads.
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

  HMODULE LoadLibraryW(const char16_t* path) override {
    return handle_cast<HMODULE>(::LoadLibraryW(text_cast(path)));
  }

  HMODULE LoadLibraryA(const char* path) override {
    return handle_cast<HMODULE>(::LoadLibraryA(path));
  }

  bool FreeLibrary(HMODULE library) override {
    return ::FreeLibrary(handle_cast<::HMODULE>(library)) != FALSE;
  }

  ExportedFunction GetProcAddress(HMODULE library, const char* name) override {
    return reinterpret_cast<ExportedFunction>(
        ::GetProcAddress(handle_cast<::HMODULE>(library), name));
  }

  ExportedFunction GetProcAddress(HMODULE library, std::uint16_t ordinal) override {
    return GetProcAddress(library, MAKEINTRESOURCEA(ordinal));
  }
};

}  // namespace

Modules& Win32Modules() { return *new ModulesOfWindows; }

}  // namespace platform
