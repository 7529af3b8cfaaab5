// Drawing: what is drawn on (device contexts), what is drawn with (fonts, brushes, bitmaps), and
// the colours, fonts and sizes that the user has chosen for the whole system.
//
// A colour is 0x00BBGGRR. Where an operation takes a device context, what is none fails. Texts are
// measured and drawn by the font that is selected, one line, control characters not obeyed.
#pragma once

#include "platform/geometry.h"
#include "platform/types.h"

namespace platform {

// Of GetSystemMetrics.
inline constexpr std::int32_t SM_CYMENU = 15;       // height of a menu line
inline constexpr std::int32_t SM_CXMENUCHECK = 71;  // width of a menu's check mark

// Of GetSysColor.
inline constexpr std::int32_t COLOR_MENU = 4;
inline constexpr std::int32_t COLOR_MENUTEXT = 7;
inline constexpr std::int32_t COLOR_HIGHLIGHT = 13;
inline constexpr std::int32_t COLOR_HIGHLIGHTTEXT = 14;
inline constexpr std::uint32_t CLR_INVALID = 0xFFFFFFFF;

// Of GetTextAlign and SetTextAlign.
inline constexpr std::uint32_t TA_LEFT = 0;
inline constexpr std::uint32_t TA_RIGHT = 2;           // the place of a text is its right end
inline constexpr std::uint32_t TA_RTLREADING = 0x100;  // its words stand from right to left
inline constexpr std::uint32_t GDI_ERROR = 0xFFFFFFFF;

inline constexpr std::uint32_t SRCCOPY = 0x00CC0020;
inline constexpr std::uint32_t DI_NORMAL = 3;
inline constexpr std::uint32_t SPI_GETNONCLIENTMETRICS = 41;

// A font as it is asked for. The layout is Windows'.
struct LogFont {
  std::int32_t height = 0;  // negative: of the letters without the room above them
  std::int32_t width = 0;
  std::int32_t escapement = 0;
  std::int32_t orientation = 0;
  std::int32_t weight = 0;  // 400 normal, 700 bold
  std::uint8_t italic = 0, underline = 0, strikeOut = 0, charSet = 0;
  std::uint8_t outPrecision = 0, clipPrecision = 0, quality = 0, pitchAndFamily = 0;
  char16_t faceName[32] = {};
};

// What SystemParametersInfoW tells for SPI_GETNONCLIENTMETRICS. The layout is Windows'.
struct NonClientMetrics {
  std::uint32_t size = 0;  // in bytes, set by the caller
  std::int32_t borderWidth = 0, scrollWidth = 0, scrollHeight = 0, captionWidth = 0,
               captionHeight = 0;
  LogFont captionFont;
  std::int32_t smallCaptionWidth = 0, smallCaptionHeight = 0;
  LogFont smallCaptionFont;
  std::int32_t menuWidth = 0, menuHeight = 0;
  LogFont menuFont, statusFont, messageFont;
  std::int32_t paddedBorderWidth = 0;
};

// What GetObjectW tells of a bitmap. The layout is Windows'.
struct Bitmap {
  std::int32_t type = 0;
  std::int32_t width = 0;   // in pixels
  std::int32_t height = 0;  // likewise
  std::int32_t bytesOfLine = 0;
  std::uint16_t planes = 0;
  std::uint16_t bitsPerPixel = 0;
  void* bits = nullptr;
};

inline HGDIOBJ AsObject(HBITMAP bitmap) { return HGDIOBJ{static_cast<std::uint64_t>(bitmap)}; }
inline HGDIOBJ AsObject(HFONT font) { return HGDIOBJ{static_cast<std::uint64_t>(font)}; }
inline HGDIOBJ AsObject(HBRUSH brush) { return HGDIOBJ{static_cast<std::uint64_t>(brush)}; }

class Drawing {
 public:
  virtual ~Drawing() = default;

  // A device context that can be asked about `driver` ("DISPLAY": the screen) but not drawn on; the
  // caller's to delete (DeleteDC). HDC{} on failure, as for a driver that isn't there.
  virtual HDC CreateICW(const char16_t* driver) = 0;
  // A device context in memory, alike to another (HDC{}: to the screen): what is drawn on it lands
  // on the bitmap that is selected. The caller's to delete. HDC{} on failure.
  virtual HDC CreateCompatibleDC(HDC like) = 0;
  virtual bool DeleteDC(HDC context) = 0;

  // Has a context use that font, brush or bitmap from now on; a bitmap can be in one context at a
  // time, and that one in memory. What was used before, to be selected back before the context or
  // `object` goes; HGDIOBJ{} on failure.
  virtual HGDIOBJ SelectObject(HDC context, HGDIOBJ object) = 0;
  // Deletes a font, brush or bitmap. False for what is none, and for what a context uses.
  virtual bool DeleteObject(HGDIOBJ object) = 0;

  // The caller's to delete. HFONT{}, HBRUSH{} on failure. The nearest font that there is, is used.
  virtual HFONT CreateFontIndirectW(const LogFont& font) = 0;
  virtual HBRUSH CreateSolidBrush(std::uint32_t colour) = 0;

  // Tells of a bitmap; false, `*told` is then undefined, for what is none.
  virtual bool GetObjectW(HBITMAP bitmap, Bitmap* told) = 0;

  // Width and height of `length` characters; false on failure, `*size` is then undefined.
  virtual bool GetTextExtentPoint32W(HDC context, const char16_t* text, std::int32_t length,
                                     Size* size) = 0;
  // The colours of letters and of what is behind them, at first black and white; gives the one
  // before, CLR_INVALID on failure.
  virtual std::uint32_t SetTextColor(HDC context, std::uint32_t colour) = 0;
  virtual std::uint32_t SetBkColor(HDC context, std::uint32_t colour) = 0;
  // TA_..., at first TA_LEFT; setting gives the one before; GDI_ERROR on failure.
  virtual std::uint32_t GetTextAlign(HDC context) = 0;
  virtual std::uint32_t SetTextAlign(HDC context, std::uint32_t alignment) = 0;

  // Draws. False on failure.
  virtual bool FillRect(HDC context, const Rect& area, HBRUSH brush) = 0;
  virtual bool TextOutW(HDC context, std::int32_t x, std::int32_t y, const char16_t* text,
                        std::int32_t length) = 0;
  // Copies a rectangle of what `source` has; only SRCCOPY is supported as `operation`.
  virtual bool BitBlt(HDC context, std::int32_t x, std::int32_t y, std::int32_t width,
                      std::int32_t height, HDC source, std::int32_t sourceX, std::int32_t sourceY,
                      std::uint32_t operation) = 0;
  // An icon, brought to that size. Only DI_NORMAL is supported as `flags`.
  virtual bool DrawIconEx(HDC context, std::int32_t x, std::int32_t y, HICON icon,
                          std::int32_t width, std::int32_t height, std::uint32_t flags) = 0;

  // SPI_GETNONCLIENTMETRICS alone: fills `*metrics`, whose `size` must be 504. False on failure.
  virtual bool SystemParametersInfoW(std::uint32_t action, std::uint32_t size,
                                     NonClientMetrics* metrics) = 0;
  // SM_...; 0 for a number that isn't known.
  virtual std::int32_t GetSystemMetrics(std::int32_t index) = 0;
  // COLOR_...; 0 for a number that isn't known.
  virtual std::uint32_t GetSysColor(std::int32_t index) = 0;
};

}  // namespace platform
