// How an agent that starts looks for another one and claims its slot.
#include "Common/instance_map_layout.h"
#include "Common/tray_log.h"
#include "platform/owned.h"

namespace vgl {

using namespace platform;

namespace {

// The section goes with the check that failed in it; the caller has no more use for it.
std::int32_t GiveUp(HANDLE section) {
  Os().objects.CloseHandle(section);
  return kMapFailure;
}

// The printer has a slot: the agent in it, if it lives, is the one.
std::int32_t ClaimKnownSlot(CMapSlot slot, HWND* outWindow) {
  const HWND window = slot.Window(kSlotSel3);
  if (window == HWND{}) {
    slot.SetWindow(kSlotSel3, kClaimedByStarting);
    TrayLogText(u"exit : CheckMapPrinter(0)[1]");
    return kMapGoOn;
  }
  // Also for a claim whose agent never came to publish a window.
  if (!Os().windowing.IsWindow(window)) {
    slot.SetWindow(kSlotSel3, kClaimedByStarting);
    TrayLogText(u"exit : CheckMapPrinter(0)[2]");
    return kMapGoOn;
  }
  *outWindow = window;
  TrayLogText(u"exit : CheckMapPrinter(1)");
  return kMapOtherRuns;
}

enum class Taken { No, Yes, Failed };

// Gives the slot at `index` to the printer if it is free or the end marker, which then moves on.
Taken TakeSlot(const MapGeneration& map, CMapView& view, std::uint32_t index,
               const char16_t* name) {
  const bool isEnd = view.Slot(index).IsEnd();
  if (!isEnd && !view.Slot(index).IsFree()) return Taken::No;
  if (isEnd) {
    view.Unmap();
    // Behind the last slot the next one lies outside the section's declared size; the system rounds
    // that up to whole pages.
    if (!view.MapUpTo(index + 1)) return Taken::Failed;
  }
  CMapSlot slot = view.Slot(index);
  if (!slot.SetName(name)) return Taken::Failed;
  slot.ClearWindows(map);
  if (isEnd) view.Slot(index + 1).MarkEnd();
  slot.ClearReserved();
  return Taken::Yes;
}

// The printer is new: the first free slot becomes its own, or the end marker's.
std::int32_t ClaimNewSlot(const MapGeneration& map, CMapView& view, HANDLE section,
                          const char16_t* name) {
  for (std::uint32_t index = 0; index < kMapSlots; ++index) {
    // The marker has moved on since it was seen, which another program may do at any time.
    if (!view.Reaches(index)) {
      view.Unmap();
      if (!view.MapUpTo(index)) return GiveUp(section);
    }
    if (TakeSlot(map, view, index, name) == Taken::Failed) {
      view.Unmap();
      return GiveUp(section);
    }
    CMapSlot slot = view.Slot(index);
    // True for the slot just taken; or another agent of this printer has taken it since: both have
    // it then.
    if (slot.IsNamed(name)) {
      slot.SetWindow(kSlotSel3, kClaimedByStarting);
      break;
    }
  }
  // With or without a slot: a full map keeps no agent from running.
  TrayLogText(u"exit : CheckMapPrinter(0)[3]");
  return kMapGoOn;
}

std::int32_t CheckMapPrinter(const MapGeneration& map, HANDLE section, const char16_t* name,
                             HWND* outWindow) {
  if (outWindow == nullptr) return kMapFailure;
  if (name == nullptr) name = u"";
  TrayLogText(u"enter : CheckMapPrinter");
  *outWindow = HWND{};
  CMapView view(map, section);
  for (std::uint32_t index = 0; index < kMapSlots; ++index) {
    // The views of earlier slots stay mapped until the process ends, here as in the suite's other
    // programs. It is address space alone: the pages are shared, and the scan runs once in a
    // process's life.
    if (!view.MapUpTo(index)) return GiveUp(section);
    const CMapSlot slot = view.Slot(index);
    if (slot.IsEnd()) return ClaimNewSlot(map, view, section, name);
    if (slot.IsNamed(name)) return ClaimKnownSlot(slot, outWindow);
  }
  return kMapGoOn;
}

HANDLE CreateMap(const MapGeneration& map, const char16_t* sectionName) {
  OwnedObject section(Os().sections.CreateFileMappingW(
      INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, map.sectionBytes(), sectionName));
  if (!section) return HANDLE{};
  const bool isNew = Os().process.GetLastError() != ERROR_ALREADY_EXISTS;
  CMapView view(map, section.get());
  if (!view.MapUpTo(0)) return HANDLE{};
  if (isNew) view.Slot(0).MarkEnd();
  return section.Release();
}

std::int32_t ClaimInMapOf(const char16_t* printer, const char16_t* port, HWND* outWindow,
                          HANDLE* outSection) {
  PathText mapName;
  GetMapFileName(printer, &mapName);
  const MapGeneration* map = GenerationOf(mapName.c_str());
  if (map == nullptr) return kMapFailure;
  *outSection = CreateMap(*map, mapName.c_str());
  if (*outSection == HANDLE{}) return kMapFailure;
  return CheckMapPrinter(*map, *outSection, NameToMatch(printer, port), outWindow);
}

}  // namespace

std::int32_t MultiExecuteCheck(const char16_t* printer, const char16_t* port, std::int32_t,
                               std::int32_t, HWND* outWindow, HANDLE* outSection) {
  if (outWindow == nullptr || outSection == nullptr) return kMapFailure;
  *outWindow = HWND{};
  *outSection = HANDLE{};
  TrayLogText(u"enter : MultiExecuteCheck");
  const std::int32_t result = ClaimInMapOf(printer, port, outWindow, outSection);
  TrayLogText(u"exit  : MultiExecuteCheck");
  return result;
}

std::int32_t CheckMapPrinterV7(HANDLE section, const char16_t* name, std::int32_t, std::int32_t,
                               HWND* outWindow) {
  return CheckMapPrinter(kMapV7, section, name, outWindow);
}

std::int32_t CheckMapPrinterV5(HANDLE section, const char16_t* name, std::int32_t, std::int32_t,
                               HWND* outWindow) {
  return CheckMapPrinter(kMapV5, section, name, outWindow);
}

HANDLE CreateMapV7(const char16_t* sectionName) { return CreateMap(kMapV7, sectionName); }
HANDLE CreateMapV5(const char16_t* sectionName) { return CreateMap(kMapV5, sectionName); }

}  // namespace vgl
