#include "menu/driver_programs.h"

#include <algorithm>
#include <optional>
#include <string>

#include "Common/KVRDEFREGISTRY.h"
#include "Common/text_conversion.h"
#include "Common/wide_format.h"
#include "menu/driver_value.h"
#include "platform/owned.h"

namespace vgl {

using namespace platform;

namespace {

// Of a command text in the registry.
constexpr std::uint32_t kMostBytes = PathText::capacity() * sizeof(char16_t);

std::u16string ToUpper(std::u16string_view text) {
  std::u16string upper(text);
  std::ranges::transform(upper, upper.begin(), AsciiUpper);
  return upper;
}

// Where the file name begins: behind the last separator, else behind the drive. A second character
// that is a colon makes the first one a drive, whatever that is.
std::size_t NamePlace(std::u16string_view path) {
  const std::size_t folder = path.size() >= 2 && path[1] == u':' ? 2 : 0;
  const std::size_t separator = path.substr(folder).find_last_of(u"\\/");
  return separator == std::u16string_view::npos ? folder : folder + separator + 1;
}

bool Holds(std::u16string_view text, std::u16string_view part) {
  return text.find(part) != std::u16string_view::npos;
}

// What the registry has for an entry; nothing where it has no menu of this driver.
std::optional<std::u16string> MenuCommandInRegistry(const PrinterIdentity& identity,
                                                    std::uint32_t id) {
  const std::optional<PathText> path = MenuKeyPath(identity);
  if (!path) return std::nullopt;
  const CRegistry key(HKEY_LOCAL_MACHINE, path->c_str(), false, KEY_READ);
  if (key.m_IsOpen == 0) return std::nullopt;
  return key.GetString(WideFormat(u"%u", id).c_str(), {}, kMostBytes);
}

}  // namespace

int GetDepExeName(const PrinterIdentity& identity, PathText& outName) {
  outName.Clear();
  const std::u16string value = ReadDriverKeyValue(identity, u"DepExe", u"GetDepExeName");
  if (value.empty() || value.size() >= PathText::capacity()) return 0;
  const std::size_t backslash = value.rfind(u'\\');
  if (backslash == std::u16string::npos) return 1;
  return outName.Assign(ToUpper(std::u16string_view(value).substr(backslash + 1))) ? 1 : 0;
}

bool IsInkOrderMenu(const PrinterIdentity& identity, std::uint32_t id,
                    std::u16string_view depExeName) {
  if (depExeName.empty()) return false;
  const std::optional<std::u16string> inRegistry = MenuCommandInRegistry(identity, id);
  const std::u16string text =
      ToUpper(inRegistry ? *inRegistry : ReadMenuCommand(identity, id, u"IsInkOrderMenu"));
  if (text.size() >= PathText::capacity()) return false;
  return Holds(text, depExeName) && Holds(text, u"MENU");
}

int IsEnableInkOrder(const PrinterIdentity& identity) {
  PathText path;
  if (!FormatTo(path, u"Software\\KAVRO\\%s IO_URL", identity.driverName)) return 0;
  OwnedKey key;
  if (Os().registry.RegOpenKeyExW(HKEY_LOCAL_MACHINE, path.c_str(), KEY_READ, key.Out()) ==
      ERROR_SUCCESS)
    return 1;
  CKvRdefRegistry inUse;
  return inUse.Open(HKEY_LOCAL_MACHINE, path.c_str(), KEY_READ) ? 1 : 0;
}

int GetDriverUpdateExeName(const PrinterIdentity& identity, PathText& outName,
                           PathText* outFolder) {
  outName.Clear();
  if (outFolder != nullptr) outFolder->Clear();
  const std::u16string value =
      ReadDriverKeyValue(identity, u"DriverUpdateName", u"GetDriverUpdateExeName");
  if (value.empty()) return 0;
  const std::u16string_view text = value;
  const std::size_t nameAt = NamePlace(text);
  PathText name, folder;
  if (!name.Assign(ToUpper(text.substr(nameAt))) || !folder.Assign(text.substr(0, nameAt)))
    return 0;
  outName = name;
  if (outFolder != nullptr) *outFolder = folder;
  return 1;
}

bool IsDriverUpdateMenu(const PrinterIdentity& identity, std::uint32_t id,
                        std::u16string_view fileName) {
  return !fileName.empty() &&
         Holds(ToUpper(ReadMenuCommand(identity, id, u"IsDriverUpdateMenu")), fileName);
}

bool IsDriverUpdateMenu(std::u16string_view commandText, std::u16string_view fileName) {
  return !commandText.empty() && !fileName.empty() && Holds(commandText, fileName);
}

}  // namespace vgl
