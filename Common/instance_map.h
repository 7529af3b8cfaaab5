// The instance map: which program of the suite owns which window for which printer.
//
// A section of shared memory, named and laid out by the suite (instance_map_layout.h,
// docs/instance-map.md), with one slot for each printer or port. There are two generations of it,
// V5 and V7; the driver set's data says which one a printer is in. Nobody takes a lock: each
// program's loads and stores show to all others as they come, and a slot may be half written.
//
// Names of printers and ports may be null or empty; a printer without a name is found by its port.
// They are compared without regard to case, as the system compares. Names of maps are those of
// MapFileName, and never null. Each operation stands here for whichever map the
// printer is in, and once for each map of a known name. The agent itself needs MultiExecuteCheck,
// SethWindow and ReleaseMapSlot; the rest is for the suite's other programs.
#pragma once

#include <cstdint>

#include "Common/fixed_text.h"
#include "platform/platform.h"

namespace vgl {

// Which program of the suite: 0, 1, 2, 3 (this agent) or 5.
using AppSel = std::int32_t;
inline constexpr AppSel kAppSelAgent = 3;

// What the checks give.
inline constexpr std::int32_t kMapGoOn = 0;       // no other agent: a slot is claimed, if there was
                                                  // one left
inline constexpr std::int32_t kMapOtherRuns = 1;  // another agent runs
inline constexpr std::int32_t kMapFailure = 2;

// --- An agent's start and end

// Claims the printer's slot for an agent that starts. `*outSection` is the section, which lives as
// long as any program has it open: the caller keeps it open for as long as it runs, and closes it.
// kMapOtherRuns: `*outWindow` is the other agent's window. kMapFailure: nothing is claimed, or an
// output is null; `*outSection` may hold a section then that is closed already: it must not be used
// and not be closed.
std::int32_t MultiExecuteCheck(const char16_t* printer, const char16_t* port,
                               std::int32_t /*reserved*/, std::int32_t /*reserved*/,
                               platform::HWND* outWindow, platform::HANDLE* outSection);

// The same in a section that is open; a failure closes it. Views of the section stay mapped, see
// the source. A null name counts as empty; a null output is a failure, which leaves the section as
// it is.
std::int32_t CheckMapPrinterV7(platform::HANDLE section, const char16_t* name,
                               std::int32_t /*reserved*/, std::int32_t /*reserved*/,
                               platform::HWND* outWindow);
std::int32_t CheckMapPrinterV5(platform::HANDLE section, const char16_t* name,
                               std::int32_t /*reserved*/, std::int32_t /*reserved*/,
                               platform::HWND* outWindow);

// What publishing a window gives.
inline constexpr std::int32_t kWindowPublished = 0;
inline constexpr std::int32_t kMapNotOpened = -1;  // no map, or it can't be looked at
inline constexpr std::int32_t kPrinterNotInMap = -2;
inline constexpr std::int32_t kMapWithoutEnd = 1;  // no end marker, and no slot is the printer's

// Publishes the agent's window in the printer's slot.
//
// As every operation that isn't for a map of a known name, it asks anew which map the printer is
// in. A printer that can't be opened, because it was removed or an installer is at work, is in V5
// for that while, whatever map it was in before.
std::int32_t SethWindow(const char16_t* printer, const char16_t* port, platform::HWND window);
std::int32_t SethWindowSubV7(const char16_t* printer, const char16_t* port, platform::HWND window,
                             std::int32_t /*reserved*/, const char16_t* mapName);
std::int32_t SethWindowSubV5(const char16_t* printer, const char16_t* port, platform::HWND window,
                             std::int32_t /*reserved*/, const char16_t* mapName);

// Takes the agent's window out of the printer's slot, and frees the slot if no other program has a
// window there; a printer that isn't in the map, or is in none that is known, is left alone. False
// when a view couldn't be had: the section is closed then and must not be used. `section` must be
// of the map that the printer is in now: see SethWindow.
bool ReleaseMapSlot(platform::HANDLE section, const char16_t* printer, const char16_t* port);
bool ReleaseMapSlotV7(platform::HANDLE section, const char16_t* name);
bool ReleaseMapSlotV5(platform::HANDLE section, const char16_t* name);

// --- Other programs' windows

// The window of that program for the printer; HWND{} when there is none, or none that still
// stands. Here the names' case counts but for that of A to Z.
platform::HWND GetMapWindow(const char16_t* printer, const char16_t* port, AppSel app);
platform::HWND GetMapWindowV7(const char16_t* printer, const char16_t* port, AppSel app,
                              const char16_t* mapName);
platform::HWND GetMapWindowV5(const char16_t* printer, const char16_t* port, AppSel app,
                              const char16_t* mapName);

// Sends WM_CLOSE to every window of a printer, or of all printers, one after the other, and waits
// for each: a window that hangs holds up the rest. A map that isn't there has no windows. While an
// agent is starting, its claim takes its window's place, and what is sent there goes to every
// window of the desktop: see the source.
void CloseMapWindows(const char16_t* printer, const char16_t* port);
void CloseMapWindowsV7(const char16_t* printer, const char16_t* port, const char16_t* mapName);
void CloseMapWindowsV5(const char16_t* printer, const char16_t* port, const char16_t* mapName);
void CloseAllMapWindows();
void CloseAllMapWindowsV7();
void CloseAllMapWindowsV5();

// --- The maps themselves

// The name of the printer's map, as the driver set's data gives it, else V5's. Its length; 0 for a
// null output.
std::int32_t GetMapFileName(const char16_t* printer, PathText* outName);
// 1 when the driver set's data gives a name; 0 and an empty output when it doesn't, when the
// printer can't be opened, and for a null output.
std::int32_t GetMapFileNameNoDefault(const char16_t* printer, PathText* outName);

// The map of that name: the section that is there already, or a new and empty one. The handle is
// the caller's; HANDLE{} on failure.
platform::HANDLE CreateMapV7(const char16_t* sectionName);
platform::HANDLE CreateMapV5(const char16_t* sectionName);

// A section that every process may open: full access for the system and for everyone. The handle is
// the caller's; HANDLE{} on failure. `file` is INVALID_HANDLE_VALUE for one without a file. (The
// agent's own sections have default security.)
platform::HANDLE CreateSecuredMapping(platform::HANDLE file, const void* /*ignored*/,
                                      std::uint32_t protection, std::uint32_t sizeHigh,
                                      std::uint32_t sizeLow, const char16_t* name);

}  // namespace vgl
