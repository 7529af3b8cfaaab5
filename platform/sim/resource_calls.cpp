#include "platform/sim/resource_calls.h"

#include <memory>

#include "platform/sim/machine.h"
#include "platform/sim/menu_calls.h"
#include "platform/sim/module_calls.h"
#include "platform/sim/text.h"

namespace sim {

using namespace platform;

namespace {

// Null for what isn't loaded, for the program itself, which has none, and for a library whose file
// holds none.
const PeFile* FileOf(const LoadedLibrary* loaded) {
  return loaded == nullptr ? nullptr : loaded->file();
}

std::u16string NameOf(std::u16string_view kind, std::uint16_t id, const LoadedLibrary& loaded) {
  return std::u16string(kind) + u" " + Decimal(id) + u" of " + loaded.path();
}

// Gives a process what was found in a library, or the error.
template <class Handle, class Body>
Handle GiveOrFail(const Call& call, std::shared_ptr<Body> body) {
  if (body == nullptr) {
    call.SetLastError(ERROR_RESOURCE_NAME_NOT_FOUND);
    return Handle{};
  }
  return Handle{call.process().AddHandle(std::move(body))};
}

}  // namespace

std::uint16_t ResourceCalls::Language() const { return m_machine.system().userLanguage; }

std::int32_t ResourceCalls::LoadStringW(HMODULE module, std::uint32_t id, char16_t* text,
                                        std::int32_t chars) {
  Call call("LoadStringW");
  if (call.Failure(ERROR_RESOURCE_NAME_NOT_FOUND)) return 0;
  const auto loaded = FindLoadedLibrary(call.process(), module);
  const PeFile* file = FileOf(loaded.get());
  std::u16string found;
  if (file != nullptr) found = FindString(*file, static_cast<std::uint16_t>(id), Language());
  if (found.empty()) {
    call.SetLastError(ERROR_RESOURCE_NAME_NOT_FOUND);
    return 0;
  }
  const std::uint32_t room = chars > 0 ? static_cast<std::uint32_t>(chars) : 0;
  return static_cast<std::int32_t>(CopyCut(found, text, room));
}

HMENU ResourceCalls::LoadMenuW(HMODULE module, std::uint16_t id) {
  Call call("LoadMenuW");
  if (call.Failure(ERROR_RESOURCE_NAME_NOT_FOUND)) return HMENU{};
  const auto loaded = FindLoadedLibrary(call.process(), module);
  std::shared_ptr<LoadedMenu> menu;
  if (const PeFile* file = FileOf(loaded.get())) {
    auto lists = ReadMenuTemplate(FindResource(*file, ResourceType::kMenu, id, Language()));
    if (lists) {
      menu = std::make_shared<LoadedMenu>(std::move(*lists), NameOf(u"menu", id, *loaded));
    }
  }
  return GiveOrFail<HMENU>(call, std::move(menu));
}

HICON ResourceCalls::LoadImageW(HMODULE module, std::uint16_t id, std::uint32_t type,
                                std::int32_t width, std::int32_t height, std::uint32_t flags) {
  Call call("LoadImageW");
  if (call.Failure(ERROR_RESOURCE_NAME_NOT_FOUND)) return HICON{};
  if (type != IMAGE_ICON || flags != LR_DEFAULTCOLOR || width <= 0 || height <= 0) {
    call.SetLastError(ERROR_INVALID_PARAMETER);
    return HICON{};
  }
  const auto loaded = FindLoadedLibrary(call.process(), module);
  std::shared_ptr<LoadedIcon> icon;
  if (const PeFile* file = FileOf(loaded.get())) {
    const auto wide = static_cast<std::uint32_t>(width);
    const auto high = static_cast<std::uint32_t>(height);
    if (auto picture = FindIcon(*file, id, wide, high, Language())) {
      icon = std::make_shared<LoadedIcon>(std::move(*picture), NameOf(u"icon", id, *loaded), wide,
                                          high);
    }
  }
  return GiveOrFail<HICON>(call, std::move(icon));
}

bool ResourceCalls::DestroyIcon(HICON icon) {
  Call call("DestroyIcon", Call::kRelease);
  if (call.Inert()) return true;
  if (call.Failure(ERROR_INVALID_ICON_HANDLE)) return false;
  const auto number = static_cast<std::uint64_t>(icon);
  if (call.process().FindHandle<LoadedIcon>(number) != nullptr)
    return call.process().CloseHandle(number);
  call.SetLastError(ERROR_INVALID_ICON_HANDLE);
  return false;
}

HBITMAP ResourceCalls::LoadBitmapW(HMODULE module, std::uint16_t id) {
  Call call("LoadBitmapW");
  if (call.Failure(ERROR_RESOURCE_NAME_NOT_FOUND)) return HBITMAP{};
  const auto loaded = FindLoadedLibrary(call.process(), module);
  std::shared_ptr<LoadedBitmap> bitmap;
  if (const PeFile* file = FileOf(loaded.get())) {
    if (auto picture = FindBitmap(*file, id, Language())) {
      bitmap = std::make_shared<LoadedBitmap>(std::move(*picture), NameOf(u"bitmap", id, *loaded));
    }
  }
  return GiveOrFail<HBITMAP>(call, std::move(bitmap));
}

}  // namespace sim
