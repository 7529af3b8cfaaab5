#include "desk/describe.h"

#include <ostream>
#include <utility>
#include <vector>

#include "Common/instance_map.h"
#include "Common/printer_lookup.h"
#include "Common/reg_lib_location.h"
#include "Common/reg_library.h"
#include "Common/text_conversion.h"
#include "desk/default_machine.h"
#include "desk/map_reader.h"
#include "desk/player.h"
#include "desk/sample.h"
#include "desk/set_files.h"
#include "platform/owned.h"
#include "profile/drv_file_locator.h"
#include "profile/install_desc_parser.h"
#include "profile/install_desc_report.h"

namespace desk {

using namespace platform;

namespace {

constexpr vgl::CDrvFileLocator kLocator;

bool IsThere(const std::u16string& path) {
  FindData found;
  return static_cast<bool>(OwnedFind(Os().files.FindFirstFileW(path.c_str(), &found)));
}

int LinesWithKey(vgl::CDatTextFile& file, std::u16string_view key) {
  std::u16string line;
  int lines = 0;
  file.FindSection(u"Install");
  while (file.FindKey(key, line) == 1) ++lines;
  return lines;
}

std::size_t CountWithoutKey(const vgl::CRegEnterList::Entries& values,
                            const vgl::CRegPathList::Entries& keys) {
  std::size_t count = 0;
  for (const vgl::CRegEnterEntry& value : values) {
    bool hasKey = false;
    for (const vgl::CRegPathEntry& key : keys)
      hasKey = hasKey || vgl::EqualsIgnoringAsciiCase(key.m_csTag, value.m_csTag);
    if (!hasKey) ++count;
  }
  return count;
}

// Called inside a process of the machine.
class Describer {
 public:
  explicit Describer(std::ostream& out) : m_out(out) {}

  void DescribePrinter(const std::u16string& printer) {
    m_out << "printer " << vgl::Utf8FromText(printer) << '\n';
    std::u16string driver;
    if (kLocator.GetDriverName(printer.c_str(), &driver) != 1) {
      vgl::GetDriverName(printer.c_str(), driver);
      NotFound("driver", driver.empty() ? u"the printer's record names none"
                                        : driver + u" isn't installed for this system");
      return;
    }
    Found("driver", driver);
    DescribeFiles(printer, driver);
    const std::u16string model = DescribeIdentity(printer, driver);
    if (!model.empty()) DescribeSet(printer, driver, model);
    DescribeInstallation(printer);
  }

  bool foundAll() const { return m_foundAll; }

 private:
  void Found(const std::string& what, const std::u16string& value) {
    m_out << "  " << what << ": " << vgl::Utf8FromText(value) << '\n';
  }
  void NotFound(const std::string& what, const std::u16string& why) {
    m_foundAll = false;
    Found(what, u"not found: " + why);
  }
  void File(const char* what, const std::u16string& path) {
    if (IsThere(path))
      Found(what, path);
    else
      NotFound(what, path + u" isn't there");
  }

  void DescribeFiles(const std::u16string& printer, const std::u16string& driver) {
    std::u16string folder, vif, sadat;
    if (kLocator.GetDriverDir(printer.c_str(), &folder) == 1)
      Found("driver folder", folder);
    else
      NotFound("driver folder", u"the driver's record has no text \"Driver\"");
    if (kLocator.GetVifPath(printer.c_str(), &vif) == 1)
      File("VIF", vif);
    else
      NotFound("VIF", u"the driver's record has no text \"Data File\"");
    if (kLocator.GetSADatPath(printer.c_str(), &sadat) == 1)
      File("SADat", sadat);
    else if (vif.empty() || !IsThere(vif))
      NotFound("SADat", u"there is no VIF to name it");
    else
      NotFound("SADat", u"the VIF has no key SADat in [CommonDrvInfo]");
    DescribeLibrary(driver);
  }

  void DescribeLibrary(const std::u16string& driver) {
    using Search = vgl::CDrvPathCache<char16_t>;
    const std::u16string path = Search(vgl::RegLibStart::Driver, driver.c_str()).LibraryPath();
    if (!IsThere(path)) return NotFound("registry library", path + u" isn't there: no agent runs");
    const bool loads = vgl::LoadMonitorEnv(driver.c_str()) == 1;
    vgl::ReleaseRegLibrary();
    if (loads)
      Found("registry library", path);
    else
      NotFound("registry library", path + u" is no library: no agent runs");
  }

  // The model, without which there is no set to look for.
  std::u16string DescribeIdentity(const std::u16string& printer, const std::u16string& driver) {
    std::u16string model;
    vgl::GetModelId(printer.c_str(), driver.c_str(), model);
    if (!model.empty())
      Found("model", model);
    else
      NotFound("model", u"no text ModelID in " + vgl::DriverKeyPath(driver));
    DescribeMap(printer);
    return model;
  }

  void DescribeSet(const std::u16string& printer, const std::u16string& driver,
                   const std::u16string& model) {
    for (const SetFile& file : FindSetFiles(printer, driver, model)) {
      if (file.isFound)
        Found(file.what, file.told);
      else
        NotFound(file.what, file.told);
    }
  }

  void DescribeMap(const std::u16string& printer) {
    constexpr char kWhat[] = "instance map";
    vgl::PathText text;
    if (vgl::GetMapFileNameNoDefault(printer.c_str(), &text) != 1)
      return Found(kWhat, kMapForms[0].sectionName + std::u16string(u" (V5), as none is named"));
    const std::u16string name(text.view());
    for (const auto& [form, generation] :
         {std::pair{kMapForms[0], u" (V5)"}, {kMapForms[1], u" (V7)"}}) {
      if (name == form.sectionName) return Found(kWhat, name + generation);
      if (vgl::EqualsIgnoringAsciiCase(name, form.sectionName))
        return NotFound(kWhat, name + u" isn't " + form.sectionName +
                                   u" to the letter: no other program finds the agent");
    }
    NotFound(kWhat, u"there is no map " + name + u": no agent runs");
  }

  void DescribeInstallation(const std::u16string& printer) {
    constexpr char kWhat[] = "install description";
    std::u16string folder, sadat;
    kLocator.GetDriverDir(printer.c_str(), &folder);
    kLocator.GetSADatPath(printer.c_str(), &sadat);
    vgl::CDatTextFile file;
    if (sadat.empty() || !IsThere(sadat)) return NotFound(kWhat, u"there is no SADat file");
    if (file.Open(sadat) != 1) return NotFound(kWhat, u"the SADat file is empty or can't be read");
    if (file.FindSection(u"Install") != 1)
      return NotFound(kWhat, u"the SADat file has no line [Install]");
    m_out << "  " << kWhat << ":\n";
    vgl::CRegPathList paths;
    vgl::ParsePaths(file, paths);
    Report(vgl::PathsReport(paths.Access()));
    Count("REGPATH", LinesWithKey(file, u"REGPATH"), paths.Access().Count());
    // Without a key, and without the folder that DRIVERDIR stands for, no value is looked at.
    if (paths.Access().Count() == 0 || folder.empty()) return;
    vgl::CRegEnterList entries;
    vgl::ParseEntries(file, folder, entries);
    Report(vgl::EntriesReport(entries.Access()));
    Count("REGENTER", LinesWithKey(file, u"REGENTER"), entries.Access().Count());
    if (const std::size_t lost = CountWithoutKey(entries.Access(), paths.Access()); lost > 0)
      m_out << "    " << lost << " of them have a tag that no REGPATH line gives\n";
  }

  void Report(const std::u16string& report) {
    const std::string text = vgl::Utf8FromText(report);
    for (std::size_t begin = 0; begin < text.size();) {
      const std::size_t end = text.find("\r\n", begin);
      const std::string line = text.substr(begin, end - begin);
      m_out << (line.empty() ? "" : "    ") << line << '\n';
      begin = end == std::string::npos ? text.size() : end + 2;
    }
  }

  void Count(const char* key, int lines, std::size_t entries) {
    if (entries == 0) m_foundAll = false;
    m_out << "    " << entries << " of " << lines << ' ' << key << " lines count\n";
  }

  std::ostream& m_out;
  bool m_foundAll = true;
};

}  // namespace

int Describe(const std::string& sample, std::ostream& out, std::ostream& err) {
  sim::Machine machine;
  std::string error;
  SetUpSuite(machine);
  if (!LoadSample(machine, SampleFolder(sample), error)) {
    err << "vgldesk describe: " << error << '\n';
    return kBadSample;
  }
  const sim::Inside inside(machine);
  Describer describer(out);
  const std::vector<std::u16string> printers = machine.registry().SubKeys(
      HKEY_LOCAL_MACHINE, u"System\\CurrentControlSet\\Control\\Print\\Printers");
  for (const std::u16string& printer : printers) describer.DescribePrinter(printer);
  if (printers.empty()) out << "the sample has no printer\n";
  return !printers.empty() && describer.foundAll() ? 0 : kNotAllFound;
}

}  // namespace desk
