#include "profile/drv_info_reader.h"

#include <algorithm>
#include <initializer_list>

#include "platform/platform.h"
#include "profile/drv_file_locator.h"
#include "profile/install_desc.h"
#include "profile/profile_keys.h"

namespace vgl {

using namespace platform;

namespace {

bool HasAll(std::initializer_list<const char16_t*> texts) {
  return std::all_of(texts.begin(), texts.end(),
                     [](const char16_t* text) { return text != nullptr && *text != u'\0'; });
}

// `load` fills a description and gives its result.
template <class Load>
std::u16string StringIn(Load load, const char16_t* keyPath, const char16_t* valueName) {
  CInstallDesc description(keyPath, valueName);
  return load(description) == 1 ? description.GetRegString(keyPath, valueName) : std::u16string();
}

template <class Load>
std::int64_t DwordIn(Load load, const char16_t* keyPath, const char16_t* valueName) {
  CInstallDesc description(keyPath, valueName);
  return load(description) == 1 ? description.GetRegDword(keyPath, valueName) : -1;
}

auto OfPrinter(const char16_t* printer) {
  return [printer](CInstallDesc& description) { return description.LoadByPrinter(printer); };
}

auto OfVif(const char16_t* vifPath) {
  return [vifPath](CInstallDesc& description) { return description.LoadByVif(vifPath); };
}

auto OfDriver(const char16_t* driver) {
  return [driver](CInstallDesc& description) { return description.LoadByDriver(driver); };
}

auto OfHandle(HPRINTER handle, const char16_t* printer) {
  return [=](CInstallDesc& description) { return description.LoadByHandle(handle, printer); };
}

}  // namespace

int CDrvInfoReader::IsDescribed(const char16_t* printer) const {
  return HasAll({printer}) ? CInstallDesc().LoadByPrinter(printer) : 0;
}

std::u16string CDrvInfoReader::GetString(const char16_t* printer, const char16_t* keyPath,
                                         const char16_t* valueName) const {
  if (!HasAll({printer, keyPath, valueName})) return {};
  return StringIn(OfPrinter(printer), keyPath, valueName);
}

std::int64_t CDrvInfoReader::GetDword(const char16_t* printer, const char16_t* keyPath,
                                      const char16_t* valueName) const {
  if (!HasAll({printer, keyPath, valueName})) return -1;
  return DwordIn(OfPrinter(printer), keyPath, valueName);
}

std::u16string CDrvInfoReader::GetStringOfVif(const char16_t* vifPath, const char16_t* keyPath,
                                              const char16_t* valueName) const {
  if (!HasAll({vifPath, keyPath, valueName})) return {};
  return StringIn(OfVif(vifPath), keyPath, valueName);
}

std::int64_t CDrvInfoReader::GetDwordOfVif(const char16_t* vifPath, const char16_t* keyPath,
                                           const char16_t* valueName) const {
  if (!HasAll({vifPath, keyPath, valueName})) return -1;
  return DwordIn(OfVif(vifPath), keyPath, valueName);
}

std::u16string CDrvInfoReader::GetStringOfDriver(const char16_t* driver, const char16_t* keyPath,
                                                 const char16_t* valueName) const {
  if (!HasAll({driver, keyPath, valueName})) return {};
  return StringIn(OfDriver(driver), keyPath, valueName);
}

std::int64_t CDrvInfoReader::GetDwordOfDriver(const char16_t* driver, const char16_t* keyPath,
                                              const char16_t* valueName) const {
  if (!HasAll({driver, keyPath, valueName})) return -1;
  return DwordIn(OfDriver(driver), keyPath, valueName);
}

std::u16string CDrvInfoReader::GetStringByHandle(HPRINTER handle, const char16_t* printer,
                                                 const char16_t* keyPath,
                                                 const char16_t* valueName) const {
  if (handle == HPRINTER{} || !HasAll({printer, keyPath, valueName})) return {};
  return StringIn(OfHandle(handle, printer), keyPath, valueName);
}

std::int64_t CDrvInfoReader::GetDwordByHandle(HPRINTER handle, const char16_t* printer,
                                              const char16_t* keyPath,
                                              const char16_t* valueName) const {
  if (handle == HPRINTER{} || !HasAll({printer, keyPath, valueName})) return -1;
  return DwordIn(OfHandle(handle, printer), keyPath, valueName);
}

std::u16string CDrvInfoReader::GetDatString(const char16_t* printer, const char16_t* section,
                                            const char16_t* key) const {
  std::u16string sadat;
  if (!HasAll({printer, section, key})) return {};
  CDrvFileLocator().GetSADatPath(printer, &sadat);
  return ReadSADatKey(section, key, sadat.c_str());
}

std::u16string CDrvInfoReader::GetDatStringByHandle(HPRINTER handle, const char16_t* printer,
                                                    const char16_t* section,
                                                    const char16_t* key) const {
  std::u16string sadat;
  if (handle == HPRINTER{} || !HasAll({printer, section, key})) return {};
  CDrvFileLocator().GetSADatPathByHandle(handle, printer, &sadat);
  return ReadSADatKey(section, key, sadat.c_str());
}

std::int32_t CDrvInfoReader::GetDatInt(const char16_t* printer, const char16_t* section,
                                       const char16_t* key) const {
  constexpr std::int32_t kMissing = -1;
  std::u16string sadat;
  if (!HasAll({printer, section, key})) return kMissing;
  if (CDrvFileLocator().GetSADatPath(printer, &sadat) != 1) return kMissing;
  return static_cast<std::int32_t>(
      Os().profiles.GetPrivateProfileIntW(section, key, kMissing, sadat.c_str()));
}

}  // namespace vgl
