#include "menu/owner_draw.h"

#include <string_view>

#include "Common/tray_log.h"
#include "menu/driver_programs.h"
#include "menu/stock_icon.h"
#include "platform/owned.h"

namespace vgl {

using namespace platform;

namespace {

// In pixels, from the edge where reading begins.
constexpr std::int32_t kPictureMargin = 4;
constexpr std::int32_t kOffsetWithoutPicture = 20;
constexpr std::int32_t kRoomBesidePicture = 4;
constexpr std::int32_t kTextGap = 10;

// An object in use by a context, until the end of the scope.
class Selection {
 public:
  Selection(HDC context, HGDIOBJ object)
      : m_context(context), m_before(Os().drawing.SelectObject(context, object)) {}
  ~Selection() {
    if (m_before != HGDIOBJ{}) Os().drawing.SelectObject(m_context, m_before);
  }
  Selection(const Selection&) = delete;
  Selection& operator=(const Selection&) = delete;

 private:
  HDC m_context;
  HGDIOBJ m_before;
};

// The colours of text in a context, until the end of the scope.
class TextColours {
 public:
  TextColours(HDC context, std::uint32_t text, std::uint32_t background)
      : m_context(context),
        m_text(Os().drawing.SetTextColor(context, text)),
        m_background(Os().drawing.SetBkColor(context, background)) {}
  ~TextColours() {
    if (m_background != CLR_INVALID) Os().drawing.SetBkColor(m_context, m_background);
    if (m_text != CLR_INVALID) Os().drawing.SetTextColor(m_context, m_text);
  }
  TextColours(const TextColours&) = delete;
  TextColours& operator=(const TextColours&) = delete;

 private:
  HDC m_context;
  std::uint32_t m_text;
  std::uint32_t m_background;
};

std::int32_t LengthOf(std::u16string_view text) { return static_cast<std::int32_t>(text.size()); }

// Nothing is as large as what can't be measured.
Size SizeOf(HDC context, std::u16string_view text) {
  Size size;
  return Os().drawing.GetTextExtentPoint32W(context, text.data(), LengthOf(text), &size) ? size
                                                                                         : Size{};
}
Size SizeOf(HBITMAP picture) {
  Bitmap told;
  return Os().drawing.GetObjectW(picture, &told) ? Size{told.width, told.height} : Size{};
}

// The upper edge of what stands in the middle of an area; above the area's for what is higher. A
// half is cut toward zero.
std::int32_t TopInMiddle(const Rect& area, std::int32_t height) {
  return area.top + (area.bottom - area.top - height) / 2;
}

OwnedFont MakeMenuFont() {
  NonClientMetrics metrics;
  metrics.size = sizeof(metrics);
  Os().drawing.SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof(metrics), &metrics);
  return OwnedFont(Os().drawing.CreateFontIndirectW(metrics.menuFont));
}

// One entry on its way to the menu.
class EntryDrawing {
 public:
  EntryDrawing(const ExMenuItem& slot, const DrawItem& item, bool rightToLeft)
      : m_slot(slot), m_item(item), m_rightToLeft(rightToLeft) {}

  void FillBackground() const {
    const OwnedBrush brush(Os().drawing.CreateSolidBrush(Background()));
    Os().drawing.FillRect(m_item.deviceContext, m_item.area, brush.get());
  }

  // Gives the text's offset from the edge, without the gap before the text.
  std::int32_t DrawPicture(const PrinterIdentity& identity) const {
    const Size size = SizeOf(m_slot.hBitmap);
    const Rect& area = m_item.area;
    const Point at{
        m_rightToLeft ? area.right - size.width - kPictureMargin : area.left + kPictureMargin,
        TopInMiddle(area, size.height)};
    CopyPicture(at, size);
    if (IsDriverUpdate(identity))
      Kv_SHGetStockSmallIconInfo(m_item.deviceContext, at.x, at.y, size.width, size.height);
    return size.width + kRoomBesidePicture;
  }

  void DrawLabel(std::int32_t offset) const {
    const HDC context = m_item.deviceContext;
    const std::uint32_t colour =
        Os().drawing.GetSysColor(IsSelected() ? COLOR_HIGHLIGHTTEXT : COLOR_MENUTEXT);
    const TextColours colours(context, colour, Background());
    // By the font that the menu has selected.
    const std::int32_t y = TopInMiddle(m_item.area, SizeOf(context, Label()).height);
    if (m_rightToLeft)
      WriteToTheLeftOf(m_item.area.right - offset - kTextGap, y);
    else
      Write(m_item.area.left + offset + kTextGap, y);
  }

 private:
  bool IsSelected() const { return (m_item.state & ODS_SELECTED) != 0; }
  std::uint32_t Background() const {
    return Os().drawing.GetSysColor(IsSelected() ? COLOR_HIGHLIGHT : COLOR_MENU);
  }
  std::u16string_view Label() const { return m_slot.szMenuName.view(); }

  bool IsDriverUpdate(const PrinterIdentity& identity) const {
    PathText fileName;
    return GetDriverUpdateExeName(identity, fileName, nullptr) == 1 &&
           IsDriverUpdateMenu(identity, m_item.itemId, fileName.view());
  }

  void CopyPicture(const Point& at, const Size& size) const {
    const OwnedDC memory(Os().drawing.CreateCompatibleDC(m_item.deviceContext));
    const Selection picture(memory.get(), AsObject(m_slot.hBitmap));
    Os().drawing.BitBlt(m_item.deviceContext, at.x, at.y, size.width, size.height, memory.get(), 0,
                        0, SRCCOPY);
  }

  void Write(std::int32_t x, std::int32_t y) const {
    Os().drawing.TextOutW(m_item.deviceContext, x, y, Label().data(), LengthOf(Label()));
  }
  void WriteToTheLeftOf(std::int32_t x, std::int32_t y) const {
    const HDC context = m_item.deviceContext;
    const std::uint32_t told = Os().drawing.GetTextAlign(context);
    const std::uint32_t replaced = Os().drawing.SetTextAlign(context, TA_RIGHT | TA_RTLREADING);
    if (replaced == GDI_ERROR) TrayLogText(u"GDI Error");
    Write(x, y);
    const std::uint32_t before = told == GDI_ERROR ? replaced : told;
    if (before != GDI_ERROR) Os().drawing.SetTextAlign(context, before);
  }

  const ExMenuItem& m_slot;
  const DrawItem& m_item;
  bool m_rightToLeft;
};

}  // namespace

void MeasureExMenuItem(const ExMenuItem& slot, MeasureItem& item) {
  const OwnedDC screen(Os().drawing.CreateICW(u"DISPLAY"));
  const OwnedFont font = MakeMenuFont();
  const Selection menuFont(screen.get(), AsObject(font.get()));
  const Size text = SizeOf(screen.get(), slot.szMenuName.view());
  item.width = static_cast<std::uint32_t>(Os().drawing.GetSystemMetrics(SM_CXMENUCHECK)) +
               static_cast<std::uint32_t>(text.width);
  item.height = static_cast<std::uint32_t>(Os().drawing.GetSystemMetrics(SM_CYMENU));
}

void DrawExMenuItem(const ExMenuItem& slot, const DrawItem& item, bool rightToLeft,
                    const PrinterIdentity& identity) {
  const EntryDrawing entry(slot, item, rightToLeft);
  entry.FillBackground();
  const bool hasPicture = slot.hBitmap != HBITMAP{};
  entry.DrawLabel(hasPicture ? entry.DrawPicture(identity) : kOffsetWithoutPicture);
}

}  // namespace vgl
