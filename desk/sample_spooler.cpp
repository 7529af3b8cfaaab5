#include "desk/sample_spooler.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <memory>
#include <optional>
#include <utility>

#include "Common/text_conversion.h"

namespace desk {

using namespace platform;

namespace {

using Key = std::shared_ptr<sim::RegistryKey>;

// The folder of an environment's drivers below the spooler's.
constexpr std::pair<std::u16string_view, std::u16string_view> kEnvironments[] = {
    {u"Windows x64", u"x64"},
    {u"Windows ARM64", u"arm64"},
    {u"Windows NT x86", u"w32x86"},
};

// Null when it isn't there.
Key Below(Key key, std::u16string_view path) {
  for (const std::u16string_view name : sim::RegistryNames(path)) {
    if (key == nullptr) break;
    key = key->SubKey(name);
  }
  return key;
}

std::optional<std::u16string> Text(const sim::RegistryKey& key, std::u16string_view name) {
  const sim::RegistryValue* value = key.Value(name);
  if (value == nullptr || value->type != REG_SZ) return std::nullopt;
  std::u16string text(value->bytes.size() / sizeof(char16_t), u'\0');
  std::memcpy(text.data(), value->bytes.data(), text.size() * sizeof(char16_t));
  return text.substr(0, text.find(u'\0'));
}

std::uint32_t Number(const sim::RegistryKey& key, std::u16string_view name) {
  const sim::RegistryValue* value = key.Value(name);
  std::uint32_t number = 0;
  if (value != nullptr && value->type == REG_DWORD && value->bytes.size() == sizeof(number))
    std::memcpy(&number, value->bytes.data(), sizeof(number));
  return number;
}

class Maker {
 public:
  Maker(sim::Machine& machine, std::string& error) : m_machine(machine), m_error(error) {}

  bool Make() {
    const Key print = Below(m_machine.registry().Hive(HKEY_LOCAL_MACHINE),
                            u"System\\CurrentControlSet\\Control\\Print");
    return MakeDrivers(Below(print, u"Environments")) && MakePrinters(Below(print, u"Printers"));
  }

 private:
  bool Fail(const sim::RegistryKey& key, const std::string& what) {
    m_error = "the record " + vgl::Utf8FromText(key.path) + " " + what;
    return false;
  }

  bool MakeDrivers(const Key& environments) {
    if (environments == nullptr) return true;
    for (const auto& [capitals, environment] : environments->subKeys) {
      const auto known = std::find_if(std::begin(kEnvironments), std::end(kEnvironments),
                                      [&name = environment->name](const auto& each) {
                                        return vgl::EqualsIgnoringAsciiCase(each.first, name);
                                      });
      if (known == std::end(kEnvironments)) return Fail(*environment, "is of no known environment");
      const Key versions = environment->SubKey(u"Drivers");
      if (versions == nullptr) continue;
      for (const auto& [versionCapitals, version] : versions->subKeys)
        if (!MakeDriversOfVersion(*version, known->first, known->second)) return false;
    }
    return true;
  }

  bool MakeDriversOfVersion(const sim::RegistryKey& version, std::u16string_view environment,
                            std::u16string_view folderName) {
    constexpr std::u16string_view kPrefix = u"Version-";
    const std::string name = vgl::Utf8FromText(version.name);
    std::uint32_t number = 0;
    const bool hasPrefix =
        vgl::EqualsIgnoringAsciiCase(version.name.substr(0, kPrefix.size()), kPrefix);
    const char* const end = name.data() + name.size();
    const auto [stop, error] =
        std::from_chars(name.data() + (hasPrefix ? kPrefix.size() : 0), end, number);
    if (!hasPrefix || error != std::errc() || stop != end)
      return Fail(version, "is no version of drivers, as in Version-3");
    const std::u16string folder = m_machine.system().systemFolder + u"\\spool\\drivers\\" +
                                  std::u16string(folderName) + u"\\" +
                                  vgl::TextFromUtf8(std::to_string(number)) + u"\\";
    for (const auto& [capitals, record] : version.subKeys)
      m_machine.spooler().AddDriver({.name = record->name,
                                     .version = number,
                                     .environment = std::u16string(environment),
                                     .driverPath = File(*record, u"Driver", folder),
                                     .dataFile = File(*record, u"Data File", folder),
                                     .configFile = File(*record, u"Configuration File", folder),
                                     .helpFile = File(*record, u"Help File", folder)});
    return true;
  }

  static std::optional<std::u16string> File(const sim::RegistryKey& record,
                                            std::u16string_view name,
                                            const std::u16string& folder) {
    const std::optional<std::u16string> file = Text(record, name);
    const bool isBare = file && file->find(u'\\') == std::u16string::npos;
    return isBare ? folder + *file : file;
  }

  bool MakePrinters(const Key& printers) {
    if (printers == nullptr) return true;
    return std::all_of(printers->subKeys.begin(), printers->subKeys.end(),
                       [this](const auto& subKey) { return MakePrinter(*subKey.second); });
  }

  bool MakePrinter(const sim::RegistryKey& record) {
    // Without these a spooler doesn't open the printer.
    for (const char16_t* needed : {u"Name", u"Port", u"Printer Driver", u"Datatype"})
      if (!Text(record, needed))
        return Fail(record, "has no text \"" + vgl::Utf8FromText(needed) + "\"");
    if (Text(record, u"Name") != record.name) return Fail(record, "is of another name");
    if (m_machine.spooler().HasPrinter(record.name))
      return Fail(record, "is of a printer that is there already");
    m_machine.spooler().AddPrinter({.name = record.name,
                                    .port = Text(record, u"Port").value(),
                                    .driver = Text(record, u"Printer Driver"),
                                    .attributes = Number(record, u"Attributes"),
                                    .printProcessor = Text(record, u"Print Processor"),
                                    .shareName = Text(record, u"Share Name")});
    for (const auto& [capitals, data] : record.subKeys) SetData(record.name, *data, data->name);
    return true;
  }

  void SetData(const std::u16string& printer, const sim::RegistryKey& key,
               const std::u16string& path) {
    for (const sim::RegistryValue& value : key.values)
      m_machine.spooler().SetData(printer, path, value.name, value.type, value.bytes);
    for (const auto& [capitals, subKey] : key.subKeys)
      SetData(printer, *subKey, path + u"\\" + subKey->name);
  }

  sim::Machine& m_machine;
  std::string& m_error;
};

}  // namespace

bool MakeSpoolerFromRegistry(sim::Machine& machine, std::string& error) {
  return Maker(machine, error).Make();
}

}  // namespace desk
