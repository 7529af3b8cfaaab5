#include "platform/sim/drawing_calls.h"

#include "platform/sim/machine.h"
#include "platform/sim/resource_calls.h"
#include "platform/sim/text.h"

namespace sim {

using namespace platform;

namespace {

// What a context begins with, until something else is selected. They are nobody's to delete.
constexpr HGDIOBJ kFirstFont{0xF0000001};
constexpr HGDIOBJ kFirstBrush{0xF0000002};
constexpr HGDIOBJ kFirstBitmap{0xF0000003};

std::shared_ptr<DeviceContext> FindContext(const Call& call, HDC context) {
  auto found = call.process().FindHandle<DeviceContext>(static_cast<std::uint64_t>(context));
  if (found == nullptr) call.SetLastError(ERROR_INVALID_HANDLE);
  return found;
}

template <class T, class Handle>
std::shared_ptr<T> FindBody(const Call& call, Handle handle) {
  return call.process().FindHandle<T>(static_cast<std::uint64_t>(handle));
}

// It lives as long as somebody has it, also when what was loaded is deleted.
std::shared_ptr<const Picture> PictureOf(const std::shared_ptr<LoadedPicture>& loaded) {
  return {loaded, &loaded->picture()};
}

Rect AreaOf(std::int32_t x, std::int32_t y, std::int32_t width, std::int32_t height) {
  return {x, y, x + width, y + height};
}

HGDIOBJ Exchange(HGDIOBJ& selected, HGDIOBJ object, HGDIOBJ first) {
  const HGDIOBJ before = std::exchange(selected, object == first ? HGDIOBJ{} : object);
  return before == HGDIOBJ{} ? first : before;
}

bool IsInUse(const Process& process, HGDIOBJ object) {
  bool found = false;
  process.ForEachHandle<DeviceContext>([&](std::uint64_t, const DeviceContext& context) {
    found = found || context.fontHandle == object || context.brushHandle == object ||
            context.bitmapHandle == object;
  });
  return found;
}

HGDIOBJ SelectBitmap(const Call& call, DeviceContext& context, HGDIOBJ object) {
  std::shared_ptr<LoadedBitmap> bitmap = FindBody<LoadedBitmap>(call, object);
  const bool isFree =
      object == kFirstBitmap || object == context.bitmapHandle || !IsInUse(call.process(), object);
  if (context.kind != DeviceContext::Kind::Memory || !isFree) return HGDIOBJ{};
  context.bitmap = std::move(bitmap);
  return Exchange(context.bitmapHandle, object, kFirstBitmap);
}

}  // namespace

HDC DrawingCalls::CreateICW(const char16_t* driver) {
  Call call("CreateICW");
  if (call.Failure(ERROR_NOT_ENOUGH_MEMORY)) return HDC{};
  if (FoldCase(View(driver)) != FoldCase(u"DISPLAY")) {
    call.SetLastError(ERROR_INVALID_PARAMETER);
    return HDC{};
  }
  return HDC{call.process().AddHandle(std::make_shared<DeviceContext>(
      DeviceContext::Kind::Information, m_machine.drawing().systemFont))};
}

HDC DrawingCalls::CreateCompatibleDC(HDC like) {
  Call call("CreateCompatibleDC");
  if (call.Failure(ERROR_NOT_ENOUGH_MEMORY)) return HDC{};
  if (like != HDC{} && FindContext(call, like) == nullptr) return HDC{};
  return HDC{call.process().AddHandle(std::make_shared<DeviceContext>(
      DeviceContext::Kind::Memory, m_machine.drawing().systemFont))};
}

bool DrawingCalls::DeleteDC(HDC context) {
  Call call("DeleteDC", Call::kRelease);
  if (call.Inert()) return true;
  if (call.Failure(ERROR_INVALID_HANDLE)) return false;
  const auto found = FindContext(call, context);
  if (found == nullptr || found->kind == DeviceContext::Kind::Surface) return false;
  return call.process().CloseHandle(static_cast<std::uint64_t>(context));
}

HGDIOBJ DrawingCalls::SelectObject(HDC context, HGDIOBJ object) {
  Call call("SelectObject");
  if (call.Failure(ERROR_INVALID_HANDLE)) return HGDIOBJ{};
  const auto found = FindContext(call, context);
  if (found == nullptr) return HGDIOBJ{};
  if (const auto font = FindBody<MadeFont>(call, object); font || object == kFirstFont) {
    found->font = font ? font->font() : found->firstFont;
    return Exchange(found->fontHandle, object, kFirstFont);
  }
  if (FindBody<MadeBrush>(call, object) != nullptr || object == kFirstBrush)
    return Exchange(found->brushHandle, object, kFirstBrush);
  if (FindBody<LoadedBitmap>(call, object) != nullptr || object == kFirstBitmap)
    return SelectBitmap(call, *found, object);
  call.SetLastError(ERROR_INVALID_HANDLE);
  return HGDIOBJ{};
}

bool DrawingCalls::DeleteObject(HGDIOBJ object) {
  Call call("DeleteObject", Call::kRelease);
  if (call.Inert()) return true;
  if (call.Failure(ERROR_INVALID_HANDLE)) return false;
  const bool isObject = FindBody<MadeFont>(call, object) || FindBody<MadeBrush>(call, object) ||
                        FindBody<LoadedBitmap>(call, object);
  if (isObject && !IsInUse(call.process(), object))
    return call.process().CloseHandle(static_cast<std::uint64_t>(object));
  call.SetLastError(ERROR_INVALID_HANDLE);
  return false;
}

HFONT DrawingCalls::CreateFontIndirectW(const LogFont& font) {
  Call call("CreateFontIndirectW");
  if (call.Failure(ERROR_NOT_ENOUGH_MEMORY)) return HFONT{};
  return HFONT{call.process().AddHandle(std::make_shared<MadeFont>(font))};
}

HBRUSH DrawingCalls::CreateSolidBrush(std::uint32_t colour) {
  Call call("CreateSolidBrush");
  if (call.Failure(ERROR_NOT_ENOUGH_MEMORY)) return HBRUSH{};
  return HBRUSH{call.process().AddHandle(std::make_shared<MadeBrush>(colour))};
}

bool DrawingCalls::GetObjectW(HBITMAP bitmap, Bitmap* told) {
  Call call("GetObjectW");
  if (call.Failure(ERROR_INVALID_HANDLE)) return false;
  const auto found = FindBody<LoadedBitmap>(call, bitmap);
  if (found == nullptr) return false;
  const Picture& picture = found->picture();
  *told = {.width = static_cast<std::int32_t>(picture.width),
           .height = static_cast<std::int32_t>(picture.height),
           .bytesOfLine = static_cast<std::int32_t>(picture.width * 4),
           .planes = 1,
           .bitsPerPixel = 32};
  return true;
}

bool DrawingCalls::GetTextExtentPoint32W(HDC context, const char16_t* text, std::int32_t length,
                                         Size* size) {
  Call call("GetTextExtentPoint32W");
  if (call.Failure(ERROR_INVALID_HANDLE)) return false;
  const auto found = FindContext(call, context);
  if (found == nullptr || length < 0) return false;
  *size = m_machine.drawing().measure({text, static_cast<std::size_t>(length)}, found->font);
  return true;
}

std::uint32_t DrawingCalls::SetTextColor(HDC context, std::uint32_t colour) {
  Call call("SetTextColor");
  if (call.Failure(ERROR_INVALID_HANDLE)) return CLR_INVALID;
  const auto found = FindContext(call, context);
  return found == nullptr ? CLR_INVALID : std::exchange(found->textColour, colour);
}

std::uint32_t DrawingCalls::SetBkColor(HDC context, std::uint32_t colour) {
  Call call("SetBkColor");
  if (call.Failure(ERROR_INVALID_HANDLE)) return CLR_INVALID;
  const auto found = FindContext(call, context);
  return found == nullptr ? CLR_INVALID : std::exchange(found->background, colour);
}

std::uint32_t DrawingCalls::GetTextAlign(HDC context) {
  Call call("GetTextAlign");
  if (call.Failure(ERROR_INVALID_HANDLE)) return GDI_ERROR;
  const auto found = FindContext(call, context);
  return found == nullptr ? GDI_ERROR : found->alignment;
}

std::uint32_t DrawingCalls::SetTextAlign(HDC context, std::uint32_t alignment) {
  Call call("SetTextAlign");
  if (call.Failure(ERROR_INVALID_HANDLE)) return GDI_ERROR;
  const auto found = FindContext(call, context);
  return found == nullptr ? GDI_ERROR : std::exchange(found->alignment, alignment);
}

bool DrawingCalls::FillRect(HDC context, const Rect& area, HBRUSH brush) {
  Call call("FillRect");
  if (call.Failure(ERROR_INVALID_HANDLE)) return false;
  const auto found = FindContext(call, context);
  const auto paint = FindBody<MadeBrush>(call, brush);
  if (found == nullptr || paint == nullptr) return false;
  found->drawn.push_back(DrawnFill{area, paint->colour()});
  return true;
}

bool DrawingCalls::TextOutW(HDC context, std::int32_t x, std::int32_t y, const char16_t* text,
                            std::int32_t length) {
  Call call("TextOutW");
  if (call.Failure(ERROR_INVALID_HANDLE)) return false;
  const auto found = FindContext(call, context);
  if (found == nullptr || length < 0) return false;
  found->drawn.push_back(DrawnText{.at = {x, y},
                                   .text = {text, static_cast<std::size_t>(length)},
                                   .colour = found->textColour,
                                   .background = found->background,
                                   .alignment = found->alignment,
                                   .font = found->font});
  return true;
}

bool DrawingCalls::BitBlt(HDC context, std::int32_t x, std::int32_t y, std::int32_t width,
                          std::int32_t height, HDC source, std::int32_t sourceX,
                          std::int32_t sourceY, std::uint32_t) {
  Call call("BitBlt");
  if (call.Failure(ERROR_INVALID_HANDLE)) return false;
  const auto found = FindContext(call, context);
  const auto from = FindContext(call, source);
  if (found == nullptr || from == nullptr) return false;
  if (from->bitmap != nullptr) {
    found->drawn.push_back(
        DrawnBitmap{AreaOf(x, y, width, height), PictureOf(from->bitmap), {sourceX, sourceY}});
  }
  return true;
}

bool DrawingCalls::DrawIconEx(HDC context, std::int32_t x, std::int32_t y, HICON icon,
                              std::int32_t width, std::int32_t height, std::uint32_t) {
  Call call("DrawIconEx");
  if (call.Failure(ERROR_INVALID_ICON_HANDLE)) return false;
  const auto found = FindContext(call, context);
  const auto picture = FindBody<LoadedIcon>(call, icon);
  if (picture == nullptr) call.SetLastError(ERROR_INVALID_ICON_HANDLE);
  if (found == nullptr || picture == nullptr) return false;
  found->drawn.push_back(
      DrawnIcon{AreaOf(x, y, width, height), picture->Describe(), PictureOf(picture)});
  return true;
}

bool DrawingCalls::SystemParametersInfoW(std::uint32_t action, std::uint32_t size,
                                         NonClientMetrics* metrics) {
  Call call("SystemParametersInfoW");
  if (call.Failure(ERROR_INVALID_PARAMETER)) return false;
  if (action != SPI_GETNONCLIENTMETRICS || size != sizeof(*metrics) || metrics->size != size) {
    call.SetLastError(ERROR_INVALID_PARAMETER);
    return false;
  }
  const LogFont& font = m_machine.drawing().menuFont;
  *metrics = {.size = size,
              .captionFont = font,
              .smallCaptionFont = font,
              .menuHeight = m_machine.drawing().metrics[SM_CYMENU],
              .menuFont = font,
              .statusFont = font,
              .messageFont = font};
  return true;
}

std::int32_t DrawingCalls::GetSystemMetrics(std::int32_t index) {
  const Call call("GetSystemMetrics");
  const auto& metrics = m_machine.drawing().metrics;
  const auto found = metrics.find(index);
  return found == metrics.end() ? 0 : found->second;
}

std::uint32_t DrawingCalls::GetSysColor(std::int32_t index) {
  const Call call("GetSysColor");
  const auto& colours = m_machine.drawing().colours;
  const auto found = colours.find(index);
  return found == colours.end() ? 0 : found->second;
}

}  // namespace sim
