// Drawing on Windows.
#include "platform/win32/conversion.h"
#include "platform/win32/services.h"

namespace platform {
namespace {

class DrawingOfWindows final : public Drawing {
 public:
  HDC CreateICW(const char16_t* driver) override {
    return handle_cast<HDC>(::CreateICW(text_cast(driver), nullptr, nullptr, nullptr));
  }
  HDC CreateCompatibleDC(HDC like) override {
    return handle_cast<HDC>(::CreateCompatibleDC(handle_cast<::HDC>(like)));
  }
  bool DeleteDC(HDC context) override { return ::DeleteDC(handle_cast<::HDC>(context)) != FALSE; }

  HGDIOBJ SelectObject(HDC context, HGDIOBJ object) override {
    return handle_cast<HGDIOBJ>(
        ::SelectObject(handle_cast<::HDC>(context), handle_cast<::HGDIOBJ>(object)));
  }
  bool DeleteObject(HGDIOBJ object) override {
    return ::DeleteObject(handle_cast<::HGDIOBJ>(object)) != FALSE;
  }

  HFONT CreateFontIndirectW(const LogFont& font) override {
    // The layouts are the same (constants.cpp).
    return handle_cast<HFONT>(::CreateFontIndirectW(reinterpret_cast<const LOGFONTW*>(&font)));
  }
  HBRUSH CreateSolidBrush(std::uint32_t colour) override {
    return handle_cast<HBRUSH>(::CreateSolidBrush(colour));
  }

  bool GetObjectW(HBITMAP bitmap, Bitmap* told) override {
    static_assert(sizeof(Bitmap) == sizeof(BITMAP));
    return ::GetObjectW(handle_cast<::HBITMAP>(bitmap), sizeof(BITMAP), told) != 0;
  }

  bool GetTextExtentPoint32W(HDC context, const char16_t* text, std::int32_t length,
                             Size* size) override {
    return ::GetTextExtentPoint32W(handle_cast<::HDC>(context), text_cast(text), length,
                                   reinterpret_cast<SIZE*>(size)) != FALSE;
  }
  std::uint32_t SetTextColor(HDC context, std::uint32_t colour) override {
    return ::SetTextColor(handle_cast<::HDC>(context), colour);
  }
  std::uint32_t SetBkColor(HDC context, std::uint32_t colour) override {
    return ::SetBkColor(handle_cast<::HDC>(context), colour);
  }
  std::uint32_t GetTextAlign(HDC context) override {
    return ::GetTextAlign(handle_cast<::HDC>(context));
  }
  std::uint32_t SetTextAlign(HDC context, std::uint32_t alignment) override {
    return ::SetTextAlign(handle_cast<::HDC>(context), alignment);
  }

  bool FillRect(HDC context, const Rect& area, HBRUSH brush) override {
    return ::FillRect(handle_cast<::HDC>(context), reinterpret_cast<const RECT*>(&area),
                      handle_cast<::HBRUSH>(brush)) != 0;
  }
  bool TextOutW(HDC context, std::int32_t x, std::int32_t y, const char16_t* text,
                std::int32_t length) override {
    return ::TextOutW(handle_cast<::HDC>(context), x, y, text_cast(text), length) != FALSE;
  }
  bool BitBlt(HDC context, std::int32_t x, std::int32_t y, std::int32_t width, std::int32_t height,
              HDC source, std::int32_t sourceX, std::int32_t sourceY,
              std::uint32_t operation) override {
    return ::BitBlt(handle_cast<::HDC>(context), x, y, width, height, handle_cast<::HDC>(source),
                    sourceX, sourceY, operation) != FALSE;
  }
  bool DrawIconEx(HDC context, std::int32_t x, std::int32_t y, HICON icon, std::int32_t width,
                  std::int32_t height, std::uint32_t flags) override {
    return ::DrawIconEx(handle_cast<::HDC>(context), x, y, handle_cast<::HICON>(icon), width,
                        height, 0, nullptr, flags) != FALSE;
  }

  bool SystemParametersInfoW(std::uint32_t action, std::uint32_t size,
                             NonClientMetrics* metrics) override {
    return ::SystemParametersInfoW(action, size, metrics, 0) != FALSE;
  }
  std::int32_t GetSystemMetrics(std::int32_t index) override { return ::GetSystemMetrics(index); }
  std::uint32_t GetSysColor(std::int32_t index) override { return ::GetSysColor(index); }
};

}  // namespace

Drawing& Win32Drawing() { return *new DrawingOfWindows; }

}  // namespace platform
