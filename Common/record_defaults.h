// Default settings that are written into a monitored-printer record: which notifications are on, as
// the model's profile and the function-disable flags have it, the popup and the tray icon.
//
// `keyPath` is a record's path below HKEY_CURRENT_USER. A notification's switch is a number in the
// record's sub-key "Notify", named by its status code in three digits; 0 is off.
#pragma once

#include <cstdint>

#include "Common/CGetDisableVglFuncData.h"

namespace vgl {

// Writes the switches that the section of a profile file names ("ITEM" and three digits, "=", a
// decimal number; as many of those lines as its ITEMNUM says). One that is there already stays when
// "Notify" was there before. `outChanged`: whether any was to be
// written, be it that the registry refused. 1 when the section has been
// gone through; 0 when "Notify" can't be made, ITEMNUM is 0 or missing, or the section has more
// than 32,764 characters, each line with its terminator. The texts may not be null.
int SetNotifyDefaults(const char16_t* keyPath, const char16_t* section, const char16_t* profilePath,
                      bool& outChanged);

// The other three write nothing where the key wasn't there before: they make it then, and that is
// all. 0, or kDefaultsFailed when `flags` has no record loaded, the path is null or empty, or the
// key can't be made; a value that can't be written is passed over.
inline constexpr std::int32_t kDefaultsFailed = -99;

// Switches off the notifications that the flags switch off.
std::int32_t SetNotifyDisabled(const CGetDisableVglFuncData& flags, const char16_t* keyPath);
// "IoEnablePopup" 0 when the flags switch the popup off.
std::int32_t SetIoPopupDefault(const CGetDisableVglFuncData& flags, const char16_t* keyPath);
// "TrayIconEnable" 0, whatever the flags say.
std::int32_t SetTrayIconDefault(const CGetDisableVglFuncData& flags, const char16_t* keyPath);

}  // namespace vgl
