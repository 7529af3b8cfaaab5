#include "desk/paint/menu_painter.h"

#include "desk/paint/canvas.h"
#include "desk/paint/picture_pixels.h"

namespace desk {

using namespace platform;

namespace {

constexpr std::uint32_t kFrameColour = 0x00A0A0A0;
constexpr std::uint32_t kSeparatorColour = 0x00C8C8C8;
constexpr std::uint32_t kGrayedColour = 0x006D6D6D;
constexpr std::int32_t kBold = 700;
// Of an icon of the system, where no other size is asked for.
constexpr std::int32_t kSmallIcon = 16;

std::int32_t Middle(std::int32_t begin, std::int32_t end, std::int32_t size) {
  return begin + (end - begin - size) / 2;
}

// An item's text as it is shown: "&" marks the key that chooses the item, "&&" stands for itself.
std::u16string WithoutKeyMarks(const std::u16string& text) {
  std::u16string shown;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == u'&' && ++i == text.size()) break;
    shown += text[i];
  }
  return shown;
}

class MenuPainter {
 public:
  MenuPainter(const sim::OpenMenu& menu, const sim::DrawingState& drawing, const Fonts& fonts,
              int scale)
      : m_menu(menu), m_drawing(drawing), m_fonts(fonts), m_canvas(menu.size, scale, fonts) {}

  Image Paint() {
    const Rect all{0, 0, m_menu.size.width, m_menu.size.height};
    m_canvas.Fill(all, kFrameColour);
    m_canvas.Fill({1, 1, all.right - 1, all.bottom - 1}, Colour(COLOR_MENU));
    // The one that is selected was drawn last, and nothing keeps an owner inside its item.
    for (const bool isSelected : {false, true})
      for (const sim::ShownItem& shown : m_menu.shown)
        if (shown.isSelected == isSelected) PaintItem(shown);
    return m_canvas.Take();
  }

 private:
  std::uint32_t Colour(std::int32_t index) const {
    const auto found = m_drawing.colours.find(index);
    return found == m_drawing.colours.end() ? 0 : found->second;
  }

  void PaintItem(const sim::ShownItem& shown) {
    if (shown.item.IsSeparator())
      PaintSeparator(shown.area);
    else if ((shown.item.type & MFT_OWNERDRAW) != 0)
      for (const sim::Drawn& drawn : shown.drawn)
        std::visit([this](const auto& what) { PaintDrawn(what); }, drawn);
    else
      PaintText(shown);
  }

  // --- What the system draws

  void PaintSeparator(const Rect& area) {
    const std::int32_t y = Middle(area.top, area.bottom, 1);
    m_canvas.Fill({area.left, y, area.right, y + 1}, kSeparatorColour);
  }

  // A column for the check mark on either side, in which stands as well what tells of a menu that
  // opens from the item; the texts are in between, behind some room.
  void PaintText(const sim::ShownItem& shown) {
    const sim::MenuItem& item = shown.item;
    const bool isGrayed = (item.state & MFS_GRAYED) != 0;
    std::uint32_t colour = isGrayed ? kGrayedColour : Colour(COLOR_MENUTEXT);
    if (shown.isSelected) {
      m_canvas.Fill(shown.area, Colour(COLOR_HIGHLIGHT));
      colour = Colour(COLOR_HIGHLIGHTTEXT);
    }
    LogFont font = m_drawing.menuFont;
    if ((item.state & MFS_DEFAULT) != 0) font.weight = kBold;

    const bool isRightToLeft = (item.type & MFT_RIGHTORDER) != 0;
    const bool isRightAligned = isRightToLeft || (item.type & MFT_RIGHTJUSTIFY) != 0;
    const std::u16string text = WithoutKeyMarks(item.text);
    const std::int32_t column = Metric(SM_CXMENUCHECK);
    const std::int32_t y =
        Middle(shown.area.top, shown.area.bottom, m_fonts.Measure(text, font).height);
    const std::int32_t x =
        isRightAligned ? shown.area.right - 2 * column : shown.area.left + 2 * column;
    m_canvas.Text(text, font, {{x, y}, isRightAligned, isRightToLeft}, colour);

    const Rect left{shown.area.left, shown.area.top, shown.area.left + column, shown.area.bottom};
    const Rect right{shown.area.right - column, left.top, shown.area.right, left.bottom};
    if ((item.state & MFS_CHECKED) != 0) PaintCheckMark(isRightAligned ? right : left, colour);
    if (item.popup != 0) PaintArrow(isRightAligned ? left : right, isRightAligned, colour);
  }

  std::int32_t Metric(std::int32_t index) const {
    const auto found = m_drawing.metrics.find(index);
    return found == m_drawing.metrics.end() ? 0 : found->second;
  }

  // A square in the middle of a column.
  static Rect Square(const Rect& column, std::int32_t side) {
    const std::int32_t left = Middle(column.left, column.right, side);
    const std::int32_t top = Middle(column.top, column.bottom, side);
    return {left, top, left + side, top + side};
  }

  void PaintCheckMark(const Rect& column, std::uint32_t colour) {
    m_canvas.Line({{0, 0.55}, {0.35, 0.9}, {1, 0.15}}, Square(column, 9), colour);
  }

  void PaintArrow(const Rect& column, bool toTheLeft, std::uint32_t colour) {
    const Rect square = Square(column, 8);
    if (toTheLeft)
      m_canvas.Shape({{0.75, 0}, {0.25, 0.5}, {0.75, 1}}, square, colour);
    else
      m_canvas.Shape({{0.25, 0}, {0.75, 0.5}, {0.25, 1}}, square, colour);
  }

  // --- What the owner drew

  void PaintDrawn(const sim::DrawnFill& fill) { m_canvas.Fill(fill.area, fill.colour); }

  void PaintDrawn(const sim::DrawnText& drawn) {
    const bool isRightAligned = (drawn.alignment & TA_RIGHT) != 0;
    const Size size = m_fonts.Measure(drawn.text, drawn.font);
    const std::int32_t left = isRightAligned ? drawn.at.x - size.width : drawn.at.x;
    m_canvas.Fill({left, drawn.at.y, left + size.width, drawn.at.y + size.height},
                  drawn.background);
    const bool isRightToLeft = (drawn.alignment & TA_RTLREADING) != 0;
    m_canvas.Text(drawn.text, drawn.font, {drawn.at, isRightAligned, isRightToLeft}, drawn.colour);
  }

  void PaintDrawn(const sim::DrawnBitmap& drawn) {
    if (const auto image = PixelsOf(*drawn.picture, PictureUse::kBitmap))
      m_canvas.Copy(*image, drawn.from, drawn.area);
  }

  void PaintDrawn(const sim::DrawnIcon& drawn) {
    const bool isShield = drawn.name == u"stock icon 77";
    const auto image = PixelsOf(*drawn.picture, PictureUse::kIcon);
    if (!isShield && !image) return;
    // A width or height of 0 asks for the icon's own.
    Rect area = drawn.area;
    if (area.right == area.left) area.right += isShield ? kSmallIcon : image->width;
    if (area.bottom == area.top) area.bottom += isShield ? kSmallIcon : image->height;
    if (isShield)
      m_canvas.Shield(area);
    else
      m_canvas.Stretch(*image, area);
  }

  const sim::OpenMenu& m_menu;
  const sim::DrawingState& m_drawing;
  const Fonts& m_fonts;
  Canvas m_canvas;
};

}  // namespace

Image PaintMenu(const sim::OpenMenu& menu, const sim::DrawingState& drawing, const Fonts& fonts,
                int scale) {
  return MenuPainter(menu, drawing, fonts, scale).Paint();
}

}  // namespace desk
