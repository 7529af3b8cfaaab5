#include "profile/profile_keys.h"

#include <algorithm>

#include "Common/text_conversion.h"
#include "platform/platform.h"

namespace vgl {

using namespace platform;

namespace {

constexpr std::uint32_t kPathChars = 260;

// The system's reader takes a null section or key as a wish for a list, and a null path for a file
// of its own.
std::u16string ReadText(const char16_t* section, const char16_t* key, std::uint32_t chars,
                        const char16_t* path) {
  if (IsMissing(path) || chars == 0) return {};
  std::u16string value(chars, u'\0');
  value.resize(Os().profiles.GetPrivateProfileStringW(OrEmpty(section), OrEmpty(key), u"",
                                                      value.data(), chars, path));
  return value;
}

}  // namespace

std::u16string ReadVifKey(const VifKey& key, const char16_t* vifPath) {
  return ReadText(key.section, key.key, key.chars, vifPath);
}

std::u16string ReadNonNtDataFile(const char16_t* driverSection, const char16_t* vifPath) {
  std::u16string value = ReadText(driverSection, u"52", 64, vifPath);
  value.erase(std::min(value.find(u','), value.size()));
  return value;
}

std::u16string ReadUtilityModule(const char16_t* dataFile, std::uint32_t chars) {
  return ReadText(u"CommonDrvInfo", u"UtilModuleI", chars, dataFile);
}

std::u16string ReadOldUtilityModule(const char16_t* driverSection, const char16_t* dataFile,
                                    std::uint32_t chars) {
  return ReadText(driverSection, u"40", chars, dataFile);
}

std::u16string ReadUtilityName(const char16_t* modelId, const char16_t* dataFile) {
  return ReadText(modelId, u"UTILITY", kPathChars, dataFile);
}

std::u16string ReadSADatKey(const char16_t* section, const char16_t* key,
                            const char16_t* sadatPath) {
  return ReadText(section, key, 128, sadatPath);
}

std::uint32_t ReadModelNumber(const char16_t* key, const char16_t* modelId,
                              const char16_t* profilePath) {
  if (IsMissing(profilePath)) return 0;
  return Os().profiles.GetPrivateProfileIntW(OrEmpty(modelId), OrEmpty(key), 0, profilePath);
}

std::u16string ReadModelText(const char16_t* key, const char16_t* modelId,
                             const char16_t* profilePath) {
  return ReadText(modelId, key, kPathChars, profilePath);
}

std::u16string ReadLanguageText(const char16_t* key, const char16_t* section,
                                const char16_t* profilePath) {
  return ReadText(section, key, kPathChars, profilePath);
}

bool SettingsAreInRegistry(const char16_t* modelId, const char16_t* profilePath) {
  return ReadModelNumber(kProfileRegistryBase, modelId, profilePath) == 1;
}

}  // namespace vgl
