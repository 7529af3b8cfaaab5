#include "Common/reg_lib_location.h"

#include <vector>

#include "Common/reg_lib_text.h"

namespace vgl {

using namespace platform;

namespace {

template <class Char>
constexpr Char kBackslash = static_cast<Char>('\\');

// Nothing for a path without a folder.
template <class Char>
std::optional<std::basic_string<Char>> FolderOf(const std::basic_string<Char>& path) {
  const std::size_t end = path.rfind(kBackslash<Char>);
  if (end == path.npos) return std::nullopt;
  return path.substr(0, end);
}

template <class Char>
std::basic_string<Char> In(const std::optional<std::basic_string<Char>>& folder,
                           const std::basic_string<Char>& file) {
  return folder ? *folder + kBackslash<Char> + file : file;
}

// Asks the spooler first for the size, then for the structures, whose texts lie behind them in what
// is given. Empty when it doesn't tell.
template <class Info, class Ask>
std::vector<Info> AskSpooler(const Ask& ask) {
  std::uint32_t needed = 0;
  ask(nullptr, 0, &needed);
  if (needed < sizeof(Info)) return {};
  // Whole structures, so that the first one is aligned; what is needed fits among them.
  std::vector<Info> buffer(needed / sizeof(Info) + 1);
  if (!ask(buffer.data(), needed, &needed)) return {};
  return buffer;
}

}  // namespace

template <class Char>
CDrvPathCache<Char>::CDrvPathCache(RegLibStart start, const Char* input) {
  switch (start) {
    case RegLibStart::Printer:
      AskPrinter(input);
      break;
    case RegLibStart::Driver:
      AskDrivers(input);
      break;
    case RegLibStart::Vif:
      m_vif = input;
      m_directory = FolderOf(*m_vif);
      break;
    case RegLibStart::Library:
      m_library = input;
      break;
  }
}

template <class Char>
const std::basic_string<Char>& CDrvPathCache<Char>::LibraryPath() {
  if (m_library) return *m_library;
  Text name;
  if (m_vif) name = RegLibText<Char>::ReadLibraryName(m_vif->c_str());
  if (name.empty()) name = RegLibText<Char>::kDefaultName;
  m_library = In(m_directory, name);
  return *m_library;
}

template <class Char>
void CDrvPathCache<Char>::AskPrinter(const Char* printer) {
  using Info = typename RegLibText<Char>::DriverInfo3;
  CKvOpenPrinter open;
  HPRINTER handle{};
  if (!RegLibText<Char>::OpenPrinter(open, printer, &handle)) return;
  const std::vector<Info> told =
      AskSpooler<Info>([&](void* buffer, std::uint32_t bytes, std::uint32_t* needed) {
        return RegLibText<Char>::GetDriver(handle, 3, buffer, bytes, needed);
      });
  if (!told.empty()) TakeDriver(told.front());
  open.KvClosePrinter(handle);
}

template <class Char>
void CDrvPathCache<Char>::AskDrivers(const Char* driver) {
  using Info = typename RegLibText<Char>::DriverInfo2;
  std::uint32_t count = 0;
  const std::vector<Info> told =
      AskSpooler<Info>([&](void* buffer, std::uint32_t bytes, std::uint32_t* needed) {
        return RegLibText<Char>::EnumDrivers(2, buffer, bytes, needed, &count);
      });
  for (std::size_t at = 0; at < told.size() && at < count; ++at) {
    if (told[at].name == nullptr || !RegLibText<Char>::IsSameName(told[at].name, driver)) continue;
    TakeDriver(told[at]);
    return;
  }
}

template <class Char>
template <class Info>
void CDrvPathCache<Char>::TakeDriver(const Info& driver) {
  if (driver.driverPath != nullptr) m_directory = FolderOf(Text(driver.driverPath));
  if (driver.dataFile == nullptr) return;
  const Text file(driver.dataFile);
  m_vif = FolderOf(file) ? file : In(m_directory, file);
}

template class CDrvPathCache<char>;
template class CDrvPathCache<char16_t>;

}  // namespace vgl
