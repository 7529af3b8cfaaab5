#include "Common/path_lookup.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "Common/printer_lookup.h"
#include "Common/text_conversion.h"
#include "platform/owned.h"
#include "profile/drv_info_reader.h"
#include "profile/profile_keys.h"

namespace vgl {

using namespace platform;

namespace {

constexpr char16_t kProfileBranch[] = u"Software\\KAVRO\\VGL3\\Profile";
constexpr char16_t kAgent[] = u"K_QD21TR.EXE";
constexpr char16_t kRunHelper[] = u"K_QD21RX.EXE";
constexpr char16_t kServer[] = u"K_QD01SV.EXE";

// A length that the suite's programs take for a failure. A name of 259 characters at most never
// has it; the test stays with theirs.
constexpr std::size_t kFailedLength = 518;

// The text, or nothing when it and its terminator don't fit into `chars` characters.
std::u16string Fitting(std::u16string text, std::size_t chars = PathText::capacity()) {
  if (text.size() >= chars) text.clear();
  return text;
}

// Where a result goes: emptied first, left empty by what is empty or doesn't fit.
class Output {
 public:
  Output(char16_t* text, std::uint32_t chars) : m_text(text), m_chars(text == nullptr ? 0 : chars) {
    if (m_chars != 0) *m_text = u'\0';
  }
  explicit Output(PathText* path)
      : Output(path == nullptr ? nullptr : path->buffer(), PathText::capacity()) {}

  bool HasRoom() const { return m_chars != 0; }
  int Put(std::u16string_view text) const {
    if (text.empty() || text.size() >= m_chars) return 0;
    m_text[text.copy(m_text, text.size())] = u'\0';
    return 1;
  }

 private:
  char16_t* m_text;
  std::uint32_t m_chars;
};

// Whose files are looked for, and how what is said of them is read: through an open printer where
// one is given, else by the printer's name, else by the driver's. A text that isn't found is empty.
struct DriverSet {
  const char16_t* driver;
  const char16_t* modelId;
  const char16_t* printer;
  std::optional<HPRINTER> handle = std::nullopt;

  std::u16string Text(const char16_t* keyPath, const char16_t* name) const {
    const CDrvInfoReader reader;
    if (handle) return reader.GetStringByHandle(*handle, printer, keyPath, name);
    return IsMissing(printer) ? reader.GetStringOfDriver(driver, keyPath, name)
                              : reader.GetString(printer, keyPath, name);
  }

  std::u16string DriverValue(const char16_t* name) const {
    if (IsMissing(driver) || IsMissing(modelId)) return {};
    const std::u16string key = Fitting(DriverKeyPath(driver));
    return key.empty() ? key : Text(key.c_str(), name);
  }

  // With its backslash.
  std::u16string Folder() const {
    std::u16string folder = Fitting(DriverValue(u"InstallPath"));
    if (folder.ends_with(u'\\')) folder.pop_back();
    if (!FileExists(folder.c_str())) return {};
    return Fitting(folder + u'\\');
  }

  std::u16string File(const char16_t* valueName, const char16_t* defaultName,
                      std::uint32_t chars) const {
    std::u16string path = Fitting(DriverValue(valueName), chars);
    if (!path.empty() && FileExists(path.c_str())) return path;
    const std::u16string folder = Folder();
    if (folder.empty()) return {};
    path = Fitting(folder + u'\\' + (defaultName == nullptr ? u"" : defaultName), chars);
    return FileExists(path.c_str()) ? path : std::u16string();
  }

  std::u16string Profile() const {
    if (IsMissing(driver) || IsMissing(modelId)) return {};
    const std::u16string path = File(u"Profile", u"", PathText::capacity());
    return path.empty() ? Fitting(Text(kProfileBranch, modelId)) : path;
  }

  std::u16string LibraryOfProfile(const char16_t* key) const {
    const std::u16string profile = Profile();
    if (profile.empty()) return {};
    const std::u16string name = ReadModelText(key, modelId, profile.c_str());
    if (name.empty() || name.size() == kFailedLength) return {};
    const std::u16string folder = Folder();
    return (folder.empty() ? u"." : folder) + name;
  }

  std::u16string Server(const char16_t* valueName, const char16_t* defaultName) const {
    const std::u16string folder = Folder();
    if (folder.empty()) return {};
    std::u16string name = Fitting(DriverValue(valueName));
    if (name.empty()) name = defaultName;
    return name.empty() ? name : folder + u'\\' + name;
  }

  std::u16string DriverName() const {
    if (!IsMissing(driver)) return Fitting(driver);
    std::u16string name;
    if (handle)
      GetDriverNameFromHandle(*handle, name);
    else
      GetDriverName(printer, name);
    return name;
  }

  std::int64_t QbApiVersion() const {
    constexpr char16_t kName[] = u"QBAPI_VERSION";
    const std::u16string name = DriverName();
    if (name.empty()) return 0;
    const std::u16string key = DriverKeyPath(name);
    const CDrvInfoReader reader;
    const std::int64_t number =
        handle               ? reader.GetDwordByHandle(*handle, printer, key.c_str(), kName)
        : IsMissing(printer) ? reader.GetDwordOfDriver(name.c_str(), key.c_str(), kName)
                             : reader.GetDword(printer, key.c_str(), kName);
    return number == -1 ? 0 : number;
  }
};

// Puts out what `find` finds of the set. Nothing is looked for that couldn't be put out.
template <class Find, class... Args>
int Put(const Output& out, const DriverSet& set, Find find, Args... args) {
  return out.HasRoom() ? out.Put(std::invoke(find, set, args...)) : 0;
}

}  // namespace

bool FileExists(const char16_t* path) {
  if (IsMissing(path)) return false;
  FindData found;
  return static_cast<bool>(OwnedFind(Os().files.FindFirstFileW(path, &found)));
}

int GetDriverValue(char16_t* out, std::uint32_t chars, const char16_t* valueName,
                   const char16_t* driver, const char16_t* modelId, const char16_t* printer) {
  return Put({out, chars}, {driver, modelId, printer}, &DriverSet::DriverValue, valueName);
}

int FindDriverFile(char16_t* out, std::uint32_t chars, const char16_t* valueName,
                   const char16_t* defaultName, const char16_t* driver, const char16_t* modelId,
                   const char16_t* printer) {
  return Put({out, chars}, {driver, modelId, printer}, &DriverSet::File, valueName, defaultName,
             chars);
}

int GetProcPath(PathText* out, const char16_t* driver, const char16_t* modelId,
                const char16_t* printer) {
  return Put(Output(out), {driver, modelId, printer}, &DriverSet::Folder);
}

int GetProfilePath(PathText* out, const char16_t* driver, const char16_t* modelId,
                   const char16_t* printer) {
  return Put(Output(out), {driver, modelId, printer}, &DriverSet::Profile);
}

int GetPrnDllPath(PathText* out, const char16_t* driver, const char16_t* modelId,
                  const char16_t* printer) {
  return Put(Output(out), {driver, modelId, printer}, &DriverSet::LibraryOfProfile,
             kProfilePrinterLibrary);
}

int GetBmpPath(PathText* out, const char16_t* driver, const char16_t* modelId,
               const char16_t* printer) {
  return Put(Output(out), {driver, modelId, printer}, &DriverSet::LibraryOfProfile,
             kProfileBitmapLibrary);
}

int GetServerPath(PathText* out, const char16_t* driver, const char16_t* modelId,
                  const char16_t* printer) {
  return Put(Output(out), {driver, modelId, printer}, &DriverSet::Server, u"VGLSRV_NAME", kServer);
}

int GetQbServerPath(PathText* out, const char16_t* driver, const char16_t* modelId,
                    const char16_t* printer) {
  return Put(Output(out), {driver, modelId, printer}, &DriverSet::Server, u"VGLSRV_QBNAME", u"");
}

int GetTrayAgentPath(char16_t* out, std::uint32_t chars, const char16_t* driver,
                     const char16_t* modelId, const char16_t* printer) {
  return Put({out, chars}, {driver, modelId, printer}, &DriverSet::File, u"K_QTRN", kAgent, chars);
}

int GetEnvHelperPath(char16_t* out, std::uint32_t chars, const char16_t* driver,
                     const char16_t* modelId, const char16_t* printer) {
  return Put({out, chars}, {driver, modelId, printer}, &DriverSet::File, u"K_QEV", kRunHelper,
             chars);
}

int GetRunHelperPath(PathText* out, const char16_t* driver, const char16_t* modelId,
                     const char16_t* printer) {
  return Put(Output(out), {driver, modelId, printer}, &DriverSet::File, u"K_QRX", kRunHelper,
             PathText::capacity());
}

std::int64_t GetQbApiVersion(const char16_t* driver, const char16_t* printer) {
  return DriverSet{driver, nullptr, printer}.QbApiVersion();
}

int GetDriverValueByHandle(HPRINTER handle, char16_t* out, std::uint32_t chars,
                           const char16_t* valueName, const char16_t* driver,
                           const char16_t* modelId, const char16_t* printer) {
  return Put({out, chars}, {driver, modelId, printer, handle}, &DriverSet::DriverValue, valueName);
}

int GetProcPathByHandle(HPRINTER handle, PathText* out, const char16_t* driver,
                        const char16_t* modelId, const char16_t* printer) {
  return Put(Output(out), {driver, modelId, printer, handle}, &DriverSet::Folder);
}

int GetProfilePathByHandle(HPRINTER handle, PathText* out, const char16_t* driver,
                           const char16_t* modelId, const char16_t* printer) {
  return Put(Output(out), {driver, modelId, printer, handle}, &DriverSet::Profile);
}

int GetBmpPathByHandle(HPRINTER handle, PathText* out, const char16_t* driver,
                       const char16_t* modelId, const char16_t* printer) {
  return Put(Output(out), {driver, modelId, printer, handle}, &DriverSet::LibraryOfProfile,
             kProfileBitmapLibrary);
}

std::int64_t GetQbApiVersionByHandle(HPRINTER handle, const char16_t* driver,
                                     const char16_t* printer) {
  return DriverSet{driver, nullptr, printer, handle}.QbApiVersion();
}

}  // namespace vgl
