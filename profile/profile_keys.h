// The single keys that the agent reads from the driver set's data files, each by the system's own
// reader of profile files (platform/profile_files.h).
//
// A reader takes the path of the file; null and empty mean that there is none. A file, section or
// key that is missing gives an empty text or 0. Nothing is kept between two reads. `chars` is the
// room for a value in characters with its terminator: a longer value is cut to one character less.
#pragma once

#include <cstdint>
#include <string>

namespace vgl {

// A key that stands in the same section of every VIF file.
struct VifKey {
  const char16_t* section;
  const char16_t* key;
  std::uint32_t chars;
};

inline constexpr VifKey kVifSADat{u"CommonDrvInfo", u"SADat", 64};  // the SADat file's name
// The name of the section of this VIF that holds the driver's own keys.
inline constexpr VifKey kVifDriverName{u"VersionInformation", u"DriverName", 64};
inline constexpr VifKey kVifRegistryLibrary{u"CommonDrvInfo", u"KVRDEF01", 64};
inline constexpr VifKey kVifLmwLibrary{u"CommonDrvInfo", u"LMWModule", 260};
inline constexpr VifKey kVifInkChangeProgram{u"InkChg", u"INKCHGEXE", 260};
inline constexpr VifKey kVifNetPilotProgram{u"Download", u"UPPILOTEXE", 260};

// The text of such a key.
std::u16string ReadVifKey(const VifKey& key, const char16_t* vifPath);

// The data file's name, for systems that aren't of the NT family: the first field of key 52 in the
// driver's own section. The value is cut to 63 characters before the field is.
std::u16string ReadNonNtDataFile(const char16_t* driverSection, const char16_t* vifPath);

// The utility module that a printer's data file names: in CommonDrvInfo, and for systems before
// version 5 in the driver's own section (a list; the caller takes what it needs of it).
std::u16string ReadUtilityModule(const char16_t* dataFile, std::uint32_t chars);
std::u16string ReadOldUtilityModule(const char16_t* driverSection, const char16_t* dataFile,
                                    std::uint32_t chars);

// The module name by which a model's menu commands call into its utility library; at most 259
// characters.
std::u16string ReadUtilityName(const char16_t* modelId, const char16_t* dataFile);

// Any key of any section of a SADat file; at most 127 characters.
std::u16string ReadSADatKey(const char16_t* section, const char16_t* key,
                            const char16_t* sadatPath);

// Numbers in a model's section of its profile.
inline constexpr char16_t kProfileRegistryBase[] = u"RegistryBaseVGL";
inline constexpr char16_t kProfileTrayIconEnable[] = u"TrayIconEnable";
inline constexpr char16_t kProfileTrayIconSelected[] = u"TrayIconSelected";
inline constexpr char16_t kProfileTrayIconEndTime[] = u"TrayIconEndTime";      // milliseconds
inline constexpr char16_t kProfileNetPilotCheckTime[] = u"NetPilotCheckTime";  // milliseconds
inline constexpr char16_t kProfileUsageLog[] = u"VGL_LOG";
std::uint32_t ReadModelNumber(const char16_t* key, const char16_t* modelId,
                              const char16_t* profilePath);

// File names in a model's section of its profile; at most 259 characters.
inline constexpr char16_t kProfileBitmapLibrary[] = u"BmpDll";
inline constexpr char16_t kProfilePrinterLibrary[] = u"PrnDll";
std::u16string ReadModelText(const char16_t* key, const char16_t* modelId,
                             const char16_t* profilePath);

// A text in a language's section of a model's profile; at most 259 characters.
inline constexpr char16_t kProfileResourceLibrary[] = u"ResDll";
std::u16string ReadLanguageText(const char16_t* key, const char16_t* section,
                                const char16_t* profilePath);

// Where a driver's settings are: a driver package writes them into the registry, or describes in
// its SADat file the registry branch that would hold them. True: in the registry, because the
// profile says exactly 1 for the model. False: in the install description. Whoever reads a setting
// asks this first, and then looks under the same key path and value name in either place.
bool SettingsAreInRegistry(const char16_t* modelId, const char16_t* profilePath);

}  // namespace vgl
