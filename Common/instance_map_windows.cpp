// The windows in the instance map: published, taken back, found, closed.
#include "Common/instance_map_layout.h"
#include "Common/text_conversion.h"
#include "Common/tray_log.h"
#include "platform/owned.h"

namespace vgl {

using namespace platform;

namespace {

// The map that a printer is in; null when its name is none that is known.
const MapGeneration* MapOf(const char16_t* printer, PathText& outName) {
  GetMapFileName(printer, &outName);
  return GenerationOf(outName.c_str());
}

OwnedObject OpenMap(const char16_t* mapName) {
  return OwnedObject(Os().sections.OpenFileMappingW(FILE_MAP_ALL_ACCESS, mapName));
}

std::int32_t Publish(const MapGeneration& map, const char16_t* mapName, const char16_t* name,
                     HWND window) {
  const OwnedObject section = OpenMap(mapName);
  if (!section) return kMapNotOpened;
  const MapWalk walk = WalkMap(map, section.get(), [&](CMapSlot slot) {
    if (!slot.IsNamed(name)) return true;
    slot.SetWindow(kSlotSel3, window);
    return false;
  });
  if (walk == MapWalk::NoView) return kMapNotOpened;
  if (walk == MapWalk::EndMarker) return kPrinterNotInMap;
  return walk == MapWalk::Stopped ? kWindowPublished : kMapWithoutEnd;
}

std::int32_t SethWindowSub(const MapGeneration& map, const char16_t* printer, const char16_t* port,
                           HWND window, const char16_t* mapName) {
  TrayLogText(u"enter : SethWindowSub");
  TrayLogPair(u"MapName", mapName);
  TrayLogPair(u"PrnName", printer);
  TrayLogPair(u"PortName", port);
  TrayLogInt(u"hWnd", static_cast<std::int32_t>(window));
  TrayLogInt(u"AppSel", kAppSelAgent);
  const std::int32_t result = Publish(map, mapName, NameToMatch(printer, port), window);
  // The other ways out say nothing.
  if (result == kMapWithoutEnd) TrayLogText(u"exit : SethWindowSub");
  return result;
}

bool HasOtherWindow(const MapGeneration& map, const CMapSlot& slot) {
  return slot.Window(kSlotSel0) != HWND{} || slot.Window(kSlotSel12) != HWND{} ||
         (map.hasSel5() && slot.Window(kSlotSel5) != HWND{});
}

bool ReleaseSlot(const MapGeneration& map, HANDLE section, const char16_t* name) {
  const MapWalk walk = WalkMap(map, section, [&](CMapSlot slot) {
    if (!slot.IsNamed(name)) return true;
    if (!HasOtherWindow(map, slot)) slot.MarkFree();
    slot.SetWindow(kSlotSel3, HWND{});
    return false;
  });
  if (walk != MapWalk::NoView) return true;
  Os().objects.CloseHandle(section);
  return false;
}

HWND WindowOf(const MapGeneration& map, const CMapSlot& slot, AppSel app) {
  switch (app) {
    case 0:
      return slot.Window(kSlotSel0);
    case 1:
    case 2:
      return slot.Window(kSlotSel12);
    case kAppSelAgent:
      return slot.Window(kSlotSel3);
    case 5:
      return map.hasSel5() ? slot.Window(kSlotSel5) : HWND{};
    default:
      return HWND{};
  }
}

HWND FindWindowOf(const MapGeneration& map, const char16_t* printer, const char16_t* port,
                  AppSel app, const char16_t* mapName) {
  const OwnedObject section = OpenMap(mapName);
  if (!section) return HWND{};
  const char16_t* name = NameToMatch(printer, port);
  HWND window{};
  WalkMap(map, section.get(), [&](const CMapSlot& slot) {
    if (!EqualsIgnoringAsciiCase(slot.Name().text, name)) return true;
    window = WindowOf(map, slot, app);
    return false;
  });
  return window != HWND{} && Os().windowing.IsWindow(window) ? window : HWND{};
}

// The claim of a starting agent (all ones) is sent to like any window, here as in the suite's other
// programs. The system takes it for all top-level windows, so that an updater which comes at that
// moment closes more than it means to; this is known and kept.
void CloseWindowsOf(const MapGeneration& map, const CMapSlot& slot) {
  const auto close = [&](std::size_t field) {
    const HWND window = slot.Window(field);
    if (window != HWND{}) Os().windowing.SendMessageW(window, WM_CLOSE, 0, 0);
  };
  close(kSlotSel0);
  close(kSlotSel12);
  close(kSlotSel3);
  if (map.hasSel5()) close(kSlotSel5);
}

void ClosePrinterWindows(const MapGeneration& map, const char16_t* name, const char16_t* mapName) {
  const OwnedObject section = OpenMap(mapName);
  if (!section) return;
  WalkMap(map, section.get(), [&](const CMapSlot& slot) {
    if (slot.IsNamed(name)) CloseWindowsOf(map, slot);
    return true;
  });
}

void CloseAllWindows(const MapGeneration& map) {
  const OwnedObject section = OpenMap(map.sectionName);
  if (!section) return;
  WalkMap(map, section.get(), [&](const CMapSlot& slot) {
    if (!slot.IsFree()) CloseWindowsOf(map, slot);
    return true;
  });
}

}  // namespace

std::int32_t SethWindow(const char16_t* printer, const char16_t* port, HWND window) {
  PathText mapName;
  const MapGeneration* map = MapOf(printer, mapName);
  if (map == nullptr) return kMapNotOpened;
  return SethWindowSub(*map, printer, port, window, mapName.c_str());
}

std::int32_t SethWindowSubV7(const char16_t* printer, const char16_t* port, HWND window,
                             std::int32_t, const char16_t* mapName) {
  return SethWindowSub(kMapV7, printer, port, window, mapName);
}

std::int32_t SethWindowSubV5(const char16_t* printer, const char16_t* port, HWND window,
                             std::int32_t, const char16_t* mapName) {
  return SethWindowSub(kMapV5, printer, port, window, mapName);
}

// The map is looked up anew. Where the printer can't be opened any more, a V7 section is gone
// through in V5's steps: its first slot is found all the same, but without its fourth window, and
// slots behind it keep the name and a window that is dead soon. The next agent takes those over.
bool ReleaseMapSlot(HANDLE section, const char16_t* printer, const char16_t* port) {
  PathText mapName;
  const MapGeneration* map = MapOf(printer, mapName);
  return map == nullptr || ReleaseSlot(*map, section, NameToMatch(printer, port));
}

bool ReleaseMapSlotV7(HANDLE section, const char16_t* name) {
  return ReleaseSlot(kMapV7, section, name);
}

bool ReleaseMapSlotV5(HANDLE section, const char16_t* name) {
  return ReleaseSlot(kMapV5, section, name);
}

HWND GetMapWindow(const char16_t* printer, const char16_t* port, AppSel app) {
  PathText mapName;
  const MapGeneration* map = MapOf(printer, mapName);
  return map == nullptr ? HWND{} : FindWindowOf(*map, printer, port, app, mapName.c_str());
}

HWND GetMapWindowV7(const char16_t* printer, const char16_t* port, AppSel app,
                    const char16_t* mapName) {
  return FindWindowOf(kMapV7, printer, port, app, mapName);
}

HWND GetMapWindowV5(const char16_t* printer, const char16_t* port, AppSel app,
                    const char16_t* mapName) {
  return FindWindowOf(kMapV5, printer, port, app, mapName);
}

void CloseMapWindows(const char16_t* printer, const char16_t* port) {
  PathText mapName;
  const MapGeneration* map = MapOf(printer, mapName);
  if (map != nullptr) ClosePrinterWindows(*map, NameToMatch(printer, port), mapName.c_str());
}

void CloseMapWindowsV7(const char16_t* printer, const char16_t* port, const char16_t* mapName) {
  ClosePrinterWindows(kMapV7, NameToMatch(printer, port), mapName);
}

void CloseMapWindowsV5(const char16_t* printer, const char16_t* port, const char16_t* mapName) {
  ClosePrinterWindows(kMapV5, NameToMatch(printer, port), mapName);
}

void CloseAllMapWindows() {
  CloseAllMapWindowsV7();
  CloseAllMapWindowsV5();
}

void CloseAllMapWindowsV7() { CloseAllWindows(kMapV7); }
void CloseAllMapWindowsV5() { CloseAllWindows(kMapV5); }

}  // namespace vgl
