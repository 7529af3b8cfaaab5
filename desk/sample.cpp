#include "desk/sample.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <optional>
#include <sstream>

#include "Common/text_conversion.h"
#include "desk/registry_text.h"
#include "desk/sample_spooler.h"
#include "platform/sim/registry_library.h"

namespace desk {

namespace fs = std::filesystem;

namespace {

void PutRegistryLibrary(sim::Machine& machine, const std::u16string& path) {
  sim::AddRegistryLibrary(machine, path);
}

void PutStandIn(sim::Machine& machine, const std::u16string& path) {
  machine.files().WriteFile(path, "");
}

struct LibraryKind {
  const char* name;
  void (*put)(sim::Machine& machine, const std::u16string& path);
};
constexpr LibraryKind kLibraryKinds[] = {{"registry-library", PutRegistryLibrary},
                                         {"stand-in", PutStandIn}};

std::optional<std::string> ReadWhole(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file || fs::is_directory(path)) return std::nullopt;
  return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

// A path below drive C, from what a folder listing or a line of `libraries` calls it.
std::u16string OnDriveC(const std::string& relative) {
  std::u16string path = u"C:\\" + vgl::TextFromUtf8(relative);
  std::replace(path.begin(), path.end(), u'/', u'\\');
  return path;
}

class Loader {
 public:
  Loader(sim::Machine& machine, const fs::path& folder, std::string& error)
      : m_machine(machine), m_folder(folder), m_error(error) {}

  bool Load() {
    m_error.clear();
    if (!fs::is_directory(m_folder)) {
      m_error = "there is no sample " + m_folder.string();
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
      if (entry.is_directory()) {
        m_machine.files().MakeFolder(OnDriveC(name));
        continue;
      }
      const std::optional<std::string> bytes = ReadWhole(entry.path());
      if (!bytes) return Fail("files/" + name, "can't be read");
      if (m_machine.files().Exists(OnDriveC(name)))
        return Fail("files/" + name, "is on the machine already");
      m_machine.files().WriteFile(OnDriveC(name), *bytes);
    }
    return true;
  }

  bool PutLibraries() {
    const std::optional<std::string> text = ReadWhole(m_folder / "libraries");
    if (!text) return Fail("libraries", "can't be read");
    std::istringstream lines(*text);
    std::string line;
    for (int number = 1; std::getline(lines, line); ++number) {
      std::string mistake;
      if (!PutLibrary(line, mistake))
        return Fail("libraries", "line " + std::to_string(number) + ": " + mistake);
    }
    return true;
  }

  bool PutLibrary(const std::string& line, std::string& mistake) {
    std::istringstream words(line);
    std::string kindName;
    if (!(words >> kindName) || kindName.front() == '#') return true;
    const auto kind =
        std::find_if(std::begin(kLibraryKinds), std::end(kLibraryKinds),
                     [&](const LibraryKind& known) { return known.name == kindName; });
    if (kind == std::end(kLibraryKinds)) {
      mistake =
          "there is no kind \"" + kindName + "\"; the kinds are registry-library and stand-in";
      return false;
    }
    std::string path;
    std::getline(words >> std::ws, path);
    path.erase(path.find_last_not_of(" \t\r") + 1);
    if (path.empty() || path.front() == '\\' || path.find_first_of(":/") != std::string::npos) {
      mistake = "\"" + path +
                "\" is no path on drive C, as in Windows\\system32\\spool\\drivers\\x64\\3\\X.DLL";
      return false;
    }
    if (m_machine.files().Exists(OnDriveC(path))) {
      mistake = path + " is on the machine already";
      return false;
    }
    kind->put(m_machine, OnDriveC(path));
    return true;
  }

  bool PutRegistry() {
    const std::optional<std::string> bytes = ReadWhole(m_folder / "machine.reg");
    if (!bytes) return Fail("machine.reg", "can't be read");
    const RegistryText text = ParseRegistryText(*bytes);
    if (!text.error.empty()) return Fail("machine.reg", text.error);
    ApplyChanges(text.changes, m_machine.registry());
    std::string mistake;
    return MakeSpoolerFromRegistry(m_machine, mistake) || Fail("machine.reg", mistake);
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
  const std::optional<std::string> text = ReadWhole(file);
  options.clear();
  error.clear();
  if (!text) {
    error = file.string() + ": can't be read";
    return false;
  }
  std::istringstream lines(*text);
  std::getline(lines, options);
  if (options.ends_with('\r')) options.pop_back();
  std::string more;
  if (options.empty() || lines >> more) {
    error = file.string() + ": has to be one line, the agent's options";
    return false;
  }
  return true;
}

}  // namespace desk
