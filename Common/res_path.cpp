// GetResPath: where the language resource library is.
#include "Common/path_lookup.h"
#include "Common/tray_log.h"
#include "Common/wide_format.h"
#include "profile/language_selection.h"
#include "profile/multi_lang_ctrl.h"
#include "profile/profile_keys.h"

namespace vgl {

namespace {

// What the language manager names, if it is there.
bool PathOfLanguageManager(PathText* out, const char16_t* driver, const char16_t* modelId,
                           const char16_t* printer) {
  CMultiLangCtrl manager(printer, driver, modelId);
  std::uint32_t chars = PathText::capacity();
  if (!manager.IsInitialized() || manager.GetUiResourcePath(out->buffer(), &chars) != 1)
    return false;
  if (FileExists(out->c_str())) return true;
  TrayLogPair(u"error", u"UiResourcePath is not exist");
  return false;
}

// What the profile has for the user's language. Whether it is there isn't looked at.
bool PathOfProfile(PathText* out, const char16_t* driver, const char16_t* modelId,
                   const char16_t* printer) {
  PathText profile;
  if (GetProfilePath(&profile, driver, modelId, printer) == 0) return false;
  PathText section;
  std::uint32_t size = PathText::capacity() * sizeof(char16_t);
  if (SelectLanguageSection(section.buffer(), &size, profile.c_str()) < 0) return false;
  const std::u16string name =
      ReadLanguageText(kProfileResourceLibrary, section.c_str(), profile.c_str());
  if (name.empty()) return false;
  PathText folder;
  const bool hasFolder = GetProcPath(&folder, driver, modelId, printer) != 0;
  return FormatTo(*out, u"%s%s", hasFolder ? folder.c_str() : u".", name);
}

}  // namespace

int GetResPath(PathText* out, const char16_t* driver, const char16_t* modelId,
               const char16_t* printer) {
  if (out == nullptr) return 0;
  out->Clear();
  if (PathOfLanguageManager(out, driver, modelId, printer)) return 1;
  out->Clear();
  return PathOfProfile(out, driver, modelId, printer) ? 1 : 0;
}

}  // namespace vgl
