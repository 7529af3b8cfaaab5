// The resources of Windows' modules.
#include "platform/win32/conversion.h"
#include "platform/win32/services.h"

namespace platform {
namespace {

class ResourcesOfWindows final : public Resources {
 public:
  std::int32_t LoadStringW(HMODULE module, std::uint32_t id, char16_t* text,
                           std::int32_t chars) override {
    return ::LoadStringW(handle_cast<HINSTANCE>(module), id, text_cast(text), chars);
  }

  HMENU LoadMenuW(HMODULE module, std::uint16_t id) override {
    return handle_cast<HMENU>(::LoadMenuW(handle_cast<HINSTANCE>(module), MAKEINTRESOURCEW(id)));
  }

  HICON LoadImageW(HMODULE module, std::uint16_t id, std::uint32_t type, std::int32_t width,
                   std::int32_t height, std::uint32_t flags) override {
    return handle_cast<HICON>(::LoadImageW(handle_cast<HINSTANCE>(module), MAKEINTRESOURCEW(id),
                                           type, width, height, flags));
  }

  bool DestroyIcon(HICON icon) override {
    return ::DestroyIcon(handle_cast<::HICON>(icon)) != FALSE;
  }

  HBITMAP LoadBitmapW(HMODULE module, std::uint16_t id) override {
    return handle_cast<HBITMAP>(
        ::LoadBitmapW(handle_cast<HINSTANCE>(module), MAKEINTRESOURCEW(id)));
  }
};

}  // namespace

Resources& Win32Resources() { return *new ResourcesOfWindows; }

}  // namespace platform
