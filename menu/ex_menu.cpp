#include "menu/ex_menu.h"

#include <string>

#include "Common/CGetDisableVglFuncData.h"
#include "menu/driver_programs.h"
#include "menu/driver_value.h"
#include "menu/separators.h"
#include "platform/platform.h"

namespace vgl {

using namespace platform;

namespace {

constexpr char16_t kLogName[] = u"AddExMenu";
constexpr std::uint32_t kIdsEnd = kFirstExMenuId + kExMenuSlots;

// What decides, at one opening of the menu, on entries that aren't there in every case.
struct Conditions {
  std::uint32_t hiddenInkOrderId = 0;  // 0: none is hidden
  bool hasDriverUpdate = false;
  bool netPilotMayUpdate = false;
};

bool Holds(std::u16string_view text, std::u16string_view part) {
  return text.find(part) != std::u16string_view::npos;
}

// The first entry that orders ink; 0 when there is none.
std::uint32_t FindInkOrderId(const PrinterIdentity& identity, std::u16string_view depExeName) {
  if (depExeName.empty()) return 0;
  for (std::uint32_t id = kFirstExMenuId; id < kIdsEnd; ++id)
    if (IsInkOrderMenu(identity, id, depExeName)) return id;
  return 0;
}

// A record of the printer that can't be read has switched nothing off, as a rule; nobody asks how
// its reading went.
std::uint32_t HiddenInkOrderId(const PrinterIdentity& identity,
                               const CGetDisableVglFuncData& disabled) {
  PathText depExeName;
  GetDepExeName(identity, depExeName);
  const bool isOffered = IsEnableInkOrder(identity) == 1 && disabled.bNoInkOrder == 0;
  // Looked for in either case: the tray log tells of each look.
  const std::uint32_t id = FindInkOrderId(identity, depExeName.view());
  return isOffered ? 0 : id;
}

// Where the set has an update program of its own, the driver's update isn't NetPilot's.
bool IsOfNetPilot(std::u16string_view command, const Conditions& now) {
  return Holds(command, u" /UPPILOT") || (!now.hasDriverUpdate && Holds(command, u" /DRVUPDATE"));
}

bool IsHidden(std::uint32_t id, std::u16string_view command, const Conditions& now) {
  return command.empty() || id == now.hiddenInkOrderId ||
         (!now.netPilotMayUpdate && IsOfNetPilot(command, now));
}

void AddSeparator(HMENU popup) { Os().menus.AppendMenuW(popup, MF_SEPARATOR, 0, nullptr); }

PathText LoadLabel(HMODULE texts, std::uint32_t id) {
  PathText label;
  if (Os().resources.LoadStringW(texts, id, label.buffer(), PathText::capacity()) == 0)
    label.Clear();
  return label;
}

void AddEntry(HMENU popup, HMODULE pictures, std::uint32_t id, const PathText& label,
              ExMenuItem& slot) {
  slot.hBitmap = Os().resources.LoadBitmapW(pictures, static_cast<std::uint16_t>(id));
  slot.nID = id;
  slot.szMenuName = label;
  Os().menus.AppendMenuW(popup, MF_OWNERDRAW, id, slot.szMenuName.c_str());
}

// A separator is for the nth entry that is shown, whichever that is. The list is walked once: a
// number that no entry comes to holds back all behind it.
void AddEntries(HMENU popup, const ExMenuSource& source, const Conditions& now,
                const SeparatorPlaces& separators, std::span<ExMenuItem> slots) {
  std::size_t nextSeparator = 0;
  std::int32_t shown = 0;
  for (std::uint32_t id = kFirstExMenuId; id < kIdsEnd; ++id) {
    const std::u16string command = ReadMenuCommand(source.identity, id, kLogName);
    if (IsHidden(id, command, now)) continue;
    const PathText label = LoadLabel(source.texts, id);
    if (label.empty()) continue;
    ++shown;
    if (nextSeparator < separators.size() && shown == separators[nextSeparator]) {
      AddSeparator(popup);
      ++nextSeparator;
    }
    AddEntry(popup, source.pictures, id, label, slots[id - kFirstExMenuId]);
  }
}

}  // namespace

std::int32_t AddExMenu(HMENU popup, const ExMenuSource& source, std::span<ExMenuItem> slots) {
  const PrinterIdentity& identity = source.identity;
  CGetDisableVglFuncData disabled;
  const bool updateIsLocked =
      disabled.LoadUpdateLock(identity.printerName) == 0 && disabled.bDisableUpdate == 1;
  disabled.LoadDisableRecord(identity.printerName);
  if (!MenuKeyPath(identity)) return 0;
  // It parts the head from the tail also where no entry follows.
  AddSeparator(popup);
  if (slots.size() < std::size_t{kExMenuSlots}) return 0;

  Conditions now;
  now.hiddenInkOrderId = HiddenInkOrderId(identity, disabled);
  PathText driverUpdate;
  now.hasDriverUpdate = GetDriverUpdateExeName(identity, driverUpdate, nullptr) == 1;
  now.netPilotMayUpdate = !source.netPilot.empty() && !updateIsLocked;
  const std::u16string separators = ReadMenuValue(identity, u"Separators", kLogName);
  if (separators.size() >= PathText::capacity()) return 0;
  AddEntries(popup, source, now, ParseSeparators(separators), slots);
  return 1;
}

// A deleted picture's handle is forgotten at once. It may soon stand for another object of the
// process, which the next deletion would hit.
void DeletePictures(std::span<ExMenuItem> slots) {
  for (ExMenuItem& slot : slots) {
    if (slot.hBitmap != HBITMAP{}) Os().drawing.DeleteObject(AsObject(slot.hBitmap));
    slot.hBitmap = HBITMAP{};
  }
}

}  // namespace vgl
