#include "platform/sim/menu_drawing.h"

#include <algorithm>

#include "platform/owner_draw.h"
#include "platform/sim/drawing_calls.h"
#include "platform/sim/machine.h"
#include "platform/sim/windowing_calls.h"

namespace sim {

using namespace platform;

namespace {

constexpr std::int32_t kBorder = 3;
constexpr std::int32_t kSeparatorHeight = 9;
constexpr std::int32_t kRoomAboveText = 2;
constexpr std::int32_t kTextMargin = 8;
constexpr std::int32_t kBold = 700;

// What an owner tells may be anything.
std::int32_t Bounded(std::uint32_t pixels) {
  return static_cast<std::int32_t>(std::min<std::uint32_t>(pixels, INT16_MAX));
}

bool IsOwnerDrawn(const MenuItem& item) { return (item.type & MFT_OWNERDRAW) != 0; }

}  // namespace

Size MenuDrawing::Measure(const MenuItem& item) {
  const DrawingState& drawing = m_machine.drawing();
  if (IsOwnerDrawn(item)) {
    MeasureItem measured{.controlType = ODT_MENU,
                         .controlId = 0,
                         .itemId = item.id,
                         .width = 0,
                         .height = 0,
                         .itemData = item.itemData};
    m_windowing.CallProcedure(
        {m_open.owner, WM_MEASUREITEM, 0, reinterpret_cast<std::intptr_t>(&measured)});
    // The system adds the width of two characters.
    const std::int32_t more = drawing.measure(u"xx", drawing.menuFont).width;
    return {Bounded(measured.width) + more, Bounded(measured.height)};
  }
  const std::int32_t checkMark = drawing.metrics.at(SM_CXMENUCHECK);
  if (item.IsSeparator()) return {checkMark, kSeparatorHeight};
  LogFont font = drawing.menuFont;
  if ((item.state & MFS_DEFAULT) != 0) font.weight = kBold;
  const Size text = drawing.measure(item.text, font);
  return {2 * checkMark + text.width + 2 * kTextMargin,
          std::max(drawing.metrics.at(SM_CYMENU), text.height + 2 * kRoomAboveText)};
}

void MenuDrawing::Show(const std::vector<MenuItem>& items) {
  std::int32_t width = 0;
  std::int32_t bottom = kBorder;
  for (const MenuItem& item : std::vector<MenuItem>(items)) {
    const Size size = Measure(item);
    width = std::max(width, size.width);
    m_open.shown.push_back({.item = item, .area = {0, bottom, 0, bottom + size.height}});
    bottom += size.height;
  }
  for (ShownItem& shown : m_open.shown) {
    shown.area.left = kBorder;
    shown.area.right = kBorder + width;
  }
  m_open.size = {width + 2 * kBorder, bottom + kBorder};
  for (ShownItem& shown : m_open.shown) Draw(shown, ODA_DRAWENTIRE);
}

void MenuDrawing::FollowPointer() {
  for (ShownItem& shown : m_open.shown) {
    const bool isSelected = m_open.pointedAt == shown.item.id && shown.item.CanBeChosen();
    if (isSelected == shown.isSelected) continue;
    shown.isSelected = isSelected;
    Draw(shown, ODA_SELECT);
  }
}

void MenuDrawing::Draw(ShownItem& shown, std::uint32_t action) {
  if (!IsOwnerDrawn(shown.item)) return;
  Process& process = *m_open.thread->process();
  const auto context =
      std::make_shared<DeviceContext>(DeviceContext::Kind::Surface, m_machine.drawing().menuFont);
  const std::uint64_t handle = process.AddHandle(context);
  DrawItem draw{.controlType = ODT_MENU,
                .controlId = 0,
                .itemId = shown.item.id,
                .action = action,
                .state = shown.isSelected ? ODS_SELECTED : 0,
                .owner = HWND{static_cast<std::uint64_t>(m_open.menu)},
                .deviceContext = HDC{handle},
                .area = shown.area,
                .itemData = shown.item.itemData};
  m_windowing.CallProcedure({m_open.owner, WM_DRAWITEM, 0, reinterpret_cast<std::intptr_t>(&draw)});
  process.CloseHandle(handle);
  shown.drawn = context->drawn;
}

}  // namespace sim
