// The platform's calls on drawing.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/drawing.h"
#include "platform/sim/drawing_state.h"
#include "platform/sim/process.h"

namespace sim {

class Machine;
class LoadedBitmap;

class MadeFont final : public HandleBody {
 public:
  explicit MadeFont(const platform::LogFont& font) : m_font(font) {}
  std::u16string Describe() const override { return std::u16string(u"font ") + m_font.faceName; }
  bool IsKernelObject() const override { return false; }
  const platform::LogFont& font() const { return m_font; }

 private:
  platform::LogFont m_font;
};

class MadeBrush final : public HandleBody {
 public:
  explicit MadeBrush(std::uint32_t colour) : m_colour(colour) {}
  std::u16string Describe() const override { return u"brush"; }
  bool IsKernelObject() const override { return false; }
  std::uint32_t colour() const { return m_colour; }

 private:
  std::uint32_t m_colour;
};

class DeviceContext final : public HandleBody {
 public:
  enum class Kind { Information, Memory, Surface };
  DeviceContext(Kind contextKind, const platform::LogFont& fontAtFirst)
      : kind(contextKind), firstFont(fontAtFirst), font(fontAtFirst) {}
  std::u16string Describe() const override { return u"device context"; }
  bool IsKernelObject() const override { return false; }

  Kind kind;
  platform::HGDIOBJ fontHandle{};    // HGDIOBJ{}: the one that it began with
  platform::HGDIOBJ brushHandle{};   // likewise
  platform::HGDIOBJ bitmapHandle{};  // likewise, of a memory context
  platform::LogFont firstFont;
  platform::LogFont font;
  std::shared_ptr<LoadedBitmap> bitmap;
  std::uint32_t textColour = 0;
  std::uint32_t background = 0x00FFFFFF;
  std::uint32_t alignment = platform::TA_LEFT;
  std::vector<Drawn> drawn;  // on a surface
};

class DrawingCalls final : public platform::Drawing {
 public:
  explicit DrawingCalls(Machine& machine) : m_machine(machine) {}

  platform::HDC CreateICW(const char16_t* driver) override;
  platform::HDC CreateCompatibleDC(platform::HDC like) override;
  bool DeleteDC(platform::HDC context) override;
  platform::HGDIOBJ SelectObject(platform::HDC context, platform::HGDIOBJ object) override;
  bool DeleteObject(platform::HGDIOBJ object) override;
  platform::HFONT CreateFontIndirectW(const platform::LogFont& font) override;
  platform::HBRUSH CreateSolidBrush(std::uint32_t colour) override;
  bool GetObjectW(platform::HBITMAP bitmap, platform::Bitmap* told) override;
  bool GetTextExtentPoint32W(platform::HDC context, const char16_t* text, std::int32_t length,
                             platform::Size* size) override;
  std::uint32_t SetTextColor(platform::HDC context, std::uint32_t colour) override;
  std::uint32_t SetBkColor(platform::HDC context, std::uint32_t colour) override;
  std::uint32_t GetTextAlign(platform::HDC context) override;
  std::uint32_t SetTextAlign(platform::HDC context, std::uint32_t alignment) override;
  bool FillRect(platform::HDC context, const platform::Rect& area, platform::HBRUSH brush) override;
  bool TextOutW(platform::HDC context, std::int32_t x, std::int32_t y, const char16_t* text,
                std::int32_t length) override;
  bool BitBlt(platform::HDC context, std::int32_t x, std::int32_t y, std::int32_t width,
              std::int32_t height, platform::HDC source, std::int32_t sourceX, std::int32_t sourceY,
              std::uint32_t operation) override;
  bool DrawIconEx(platform::HDC context, std::int32_t x, std::int32_t y, platform::HICON icon,
                  std::int32_t width, std::int32_t height, std::uint32_t flags) override;
  bool SystemParametersInfoW(std::uint32_t action, std::uint32_t size,
                             platform::NonClientMetrics* metrics) override;
  std::int32_t GetSystemMetrics(std::int32_t index) override;
  std::uint32_t GetSysColor(std::int32_t index) override;

 private:
  Machine& m_machine;
};

}  // namespace sim
