// Sections of Windows.
#include "platform/win32/conversion.h"
#include "platform/win32/services.h"

namespace platform {
namespace {

class SectionsOfWindows final : public Sections {
 public:
  HANDLE CreateFileMappingW(HANDLE file, const SecurityAttributes* attributes,
                            std::uint32_t protection, std::uint32_t sizeHigh, std::uint32_t sizeLow,
                            const char16_t* name) override {
    return handle_cast<HANDLE>(::CreateFileMappingW(handle_cast<::HANDLE>(file),
                                                    attributes_cast(attributes), protection,
                                                    sizeHigh, sizeLow, text_cast(name)));
  }

  HANDLE OpenFileMappingW(std::uint32_t access, const char16_t* name) override {
    return handle_cast<HANDLE>(::OpenFileMappingW(access, FALSE, text_cast(name)));
  }

  void* MapViewOfFile(HANDLE section, std::uint32_t access, std::uint64_t bytes) override {
    return ::MapViewOfFile(handle_cast<::HANDLE>(section), access, 0, 0, bytes);
  }

  bool UnmapViewOfFile(const void* view) override { return ::UnmapViewOfFile(view) != FALSE; }
};

}  // namespace

Sections& Win32Sections() { return *new SectionsOfWindows; }

}  // namespace platform
