#include "desk/sample.h"

#include <algorithm>
#include <optional>
#include <sstream>
#include <string_view>

#include "Common/text_conversion.h"
#include "desk/invitation_library.h"
#include "desk/language_manager.h"
#include "desk/printer_library.h"
#include "desk/registry_text.h"
#include "desk/run_helper.h"
#include "desk/sample_spooler.h"
#include "desk/script.h"
#include "desk/started_program.h"
#include "desk/usage_log_library.h"
#include "desk/utility_library.h"
#include "desk/whole_file.h"
#include "platform/sim/registry_library.h"

namespace desk {

namespace fs = std::filesystem;

namespace {

using PutAt = void (*)(sim::Machine& machine, const std::u16string& path);

// For what adds a library and gives it back.
template <auto Add>
void PutLibraryAt(sim::Machine& machine, const std::u16string& path) {
  Add(machine, path);
}

template <std::uint32_t (*Main)(const char16_t* commandLine)>
void PutProgram(sim::Machine& machine, const std::u16string& path) {
  machine.programs().Add(path, Main);
}

void PutStandIn(sim::Machine& machine, const std::u16string& path) {
  machine.files().WriteFile(path, "");
}

struct LibraryKind {
  const char* name;
  PutAt put;
};
// tools/put-sample has the same kinds, with stubs for them.
constexpr LibraryKind kLibraryKinds[] = {
    {"registry-library", PutLibraryAt<sim::AddRegistryLibrary>},
    {"printer-library", PutLibraryAt<AddPrinterLibrary>},
    {"usage-log-library", PutLibraryAt<AddUsageLogLibrary>},
    {"language-manager", PutLibraryAt<AddLanguageManager>},
    {"invitation-library", PutLibraryAt<AddInvitationLibrary>},
    {"utility-library", PutLibraryAt<AddUtilityLibrary>},
    {"run-helper", PutProgram<RunHelperMain>},
    {"program", PutProgram<StartedProgramMain>},
    {"stand-in", PutStandIn},
};
constexpr char kBlanks[] = " \t\r";

// As in "A, B and C".
std::string NamesOfKinds() {
  std::string names;
  for (const LibraryKind& kind : kLibraryKinds) {
    const bool isLast = &kind == std::end(kLibraryKinds) - 1;
    names += (names.empty() ? "" : isLast ? " and " : ", ") + std::string(kind.name);
  }
  return names;
}

std::u16string OnDriveC(const std::string& path) { return u"C:\\" + vgl::TextFromUtf8(path); }

// Whether a path is one below drive C, on the simulated machine and in a Wine prefix alike, and
// leads nowhere else: names with one backslash between them, of characters that Windows takes.
// tools/put-sample has the same rule.
bool IsPathOnDriveC(const std::string& path) {
  const std::string names = "\\" + path + "\\";
  for (const std::string_view part : {"\\\\", "\\.\\", ".."})
    if (names.find(part) != std::string::npos) return false;
  const bool hasOthers = std::any_of(path.begin(), path.end(), [](char c) {
    return std::string_view("/:*?\"<>|").find(c) != std::string_view::npos || (c >= 0 && c < ' ');
  });
  return !hasOthers && OnDriveC(path).size() < platform::MAX_PATH;
}

class Loader {
 public:
  Loader(sim::Machine& machine, const fs::path& folder, std::string& error)
      : m_machine(machine), m_folder(folder), m_error(error) {}

  bool Load() {
    m_error.clear();
    if (!fs::is_directory(m_folder)) {
      m_error = "there is no sample " + m_folder.string() +
                "; names without a slash are looked for below samples/ in the current folder";
      return false;
    }
    return PutFiles() && PutLibraries() && PutRegistry();
  }

 private:
  bool Fail(const std::string& file, const std::string& what) {
    m_error = (m_folder / file).string() + ": " + what;
    return false;
  }

  bool PutFiles() {
    const fs::path files = m_folder / "files";
    if (!fs::is_directory(files)) return Fail("files", "there is no such folder");
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(files)) {
      const std::string name = entry.path().lexically_relative(files).generic_string();
      std::string mistake;
      if (!PutFile(entry, name, mistake)) return Fail("files/" + name, mistake);
    }
    return true;
  }

  bool PutFile(const fs::directory_entry& entry, const std::string& name, std::string& mistake) {
    std::string path = name;
    std::replace(path.begin(), path.end(), '/', '\\');
    if (name.find('\\') != std::string::npos || !IsPathOnDriveC(path)) {
      mistake = "Windows has no such name";
    } else if (entry.is_symlink()) {
      mistake = "is a link; a sample holds the file itself";
    } else if (entry.is_directory()) {
      if (IsFile(OnDriveC(path)))
        mistake = "is on the machine already";
      else
        m_machine.files().MakeFolder(OnDriveC(path));
    } else if (!entry.is_regular_file()) {
      mistake = "is neither a file nor a folder";
    } else if (CanBePut(path, mistake)) {
      const std::optional<std::string> bytes = ReadWholeFile(entry.path());
      if (bytes)
        m_machine.files().WriteFile(OnDriveC(path), *bytes);
      else
        mistake = "can't be read";
    }
    return mistake.empty();
  }

  bool IsFile(const std::u16string& path) const {
    return m_machine.files().Exists(path) && !m_machine.files().IsFolder(path);
  }

  // A path that IsPathOnDriveC takes.
  bool CanBePut(const std::string& path, std::string& mistake) const {
    const std::u16string whole = OnDriveC(path);
    if (m_machine.files().Exists(whole)) mistake = "is on the machine already";
    for (std::size_t at = whole.find(u'\\', 3); at != std::u16string::npos;
         at = whole.find(u'\\', at + 1))
      if (IsFile(whole.substr(0, at))) mistake = "has a file where its folder should be";
    return mistake.empty();
  }

  bool PutLibraries() {
    const std::optional<std::string> text = ReadWholeFile(m_folder / "libraries");
    if (!text) return Fail("libraries", "can't be read");
    std::istringstream lines(*text);
    std::string line;
    for (int number = 1; std::getline(lines, line); ++number) {
      std::string mistake;
      if (!PutLibrary(Trim(line), mistake))
        return Fail("libraries", "line " + std::to_string(number) + ": " + mistake);
    }
    return true;
  }

  static std::string Trim(const std::string& text) {
    const std::size_t begin = std::min(text.find_first_not_of(kBlanks), text.size());
    return text.substr(begin, text.find_last_not_of(kBlanks) + 1 - begin);
  }

  bool PutLibrary(const std::string& line, std::string& mistake) {
    if (line.empty() || line.front() == '#') return true;
    const std::string kindName = line.substr(0, line.find_first_of(kBlanks));
    const auto kind =
        std::find_if(std::begin(kLibraryKinds), std::end(kLibraryKinds),
                     [&](const LibraryKind& known) { return known.name == kindName; });
    if (kind == std::end(kLibraryKinds)) {
      mistake = "there is no kind \"" + kindName + "\"; the kinds are " + NamesOfKinds();
      return false;
    }
    const std::string path = Trim(line.substr(kindName.size()));
    if (!IsPathOnDriveC(path)) {
      mistake = "\"" + path +
                "\" is no path on drive C, as in Windows\\system32\\spool\\drivers\\x64\\3\\X.DLL";
      return false;
    }
    if (!CanBePut(path, mistake)) {
      mistake = path + " " + mistake;
      return false;
    }
    kind->put(m_machine, OnDriveC(path));
    return true;
  }

  bool PutRegistry() {
    const std::optional<std::string> bytes = ReadWholeFile(m_folder / "machine.reg");
    if (!bytes) return Fail("machine.reg", "can't be read");
    const RegistryText text = ParseRegistryText(*bytes);
    if (!text.error.empty()) return Fail("machine.reg", text.error);
    ApplyChanges(text.changes, m_machine.registry());
    std::string mistake;
    if (!MakeSpoolerFromRegistry(m_machine, mistake)) return Fail("machine.reg", mistake);
    TellSerialNumber();
    return true;
  }

  // All printer libraries of a machine answer alike: what the sample's first printer has among its
  // data, where the stubs of a prefix look for it.
  void TellSerialNumber() {
    const std::u16string printers = u"System\\CurrentControlSet\\Control\\Print\\Printers";
    const sim::RegistryTree& registry = m_machine.registry();
    const auto names = registry.SubKeys(platform::HKEY_LOCAL_MACHINE, printers);
    if (names.empty()) return;
    const std::u16string data = printers + u"\\" + names.front() + u"\\PrinterDriverData";
    const auto serial = registry.String(platform::HKEY_LOCAL_MACHINE, data, u"SerialID");
    const auto cached = registry.Dword(platform::HKEY_LOCAL_MACHINE, data, u"SerialCached");
    PrinterLibrary& library = PrinterLibraryOf(m_machine);
    library.serial = vgl::Utf8FromText(serial.value_or(u""));
    library.printerAnswers = serial.has_value();
    library.serialIsCached = serial.has_value() && cached == 1U;
  }

  sim::Machine& m_machine;
  const fs::path& m_folder;
  std::string& m_error;
};

}  // namespace

fs::path SampleFolder(const std::string& name) {
  return name.find('/') != std::string::npos ? fs::path(name) : fs::path("samples") / name;
}

bool LoadSample(sim::Machine& machine, const fs::path& folder, std::string& error) {
  try {
    return Loader(machine, folder, error).Load();
  } catch (const fs::filesystem_error& unreadable) {
    error = unreadable.what();
    return false;
  }
}

bool ReadSampleOptions(const fs::path& folder, std::string& options, std::string& error) {
  const fs::path file = folder / "options";
  const std::optional<std::string> text = ReadWholeFile(file);
  options.clear();
  error.clear();
  if (!text) {
    error = file.string() + ": can't be read";
    return false;
  }
  options = OptionsLine(*text);
  if (options.empty()) error = file.string() + ": has to be one line, the agent's options";
  return error.empty();
}

}  // namespace desk
