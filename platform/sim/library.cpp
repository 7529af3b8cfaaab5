#include "platform/sim/library.h"

#include <stdexcept>
#include <type_traits>

#include "platform/sim/machine.h"
#include "platform/sim/module_calls.h"
#include "platform/sim/text.h"

namespace sim {

using platform::ExportedFunction;
using platform::HMODULE;

namespace {

// Above all that a process's own handles reach.
constexpr std::uint64_t kFirstResident = 0x7FF800000000;

// The path as the file tree has it.
std::u16string Resolved(std::u16string_view path) {
  FilePath resolved = ResolvePath(path, u"C:\\");
  if (resolved.error != 0) throw std::invalid_argument("not a path of the simulated machine");
  return std::move(resolved.text);
}

std::size_t Wanted(const std::optional<std::size_t>& index) {
  if (!index) throw std::invalid_argument("the library has no such export");
  return *index;
}

}  // namespace

bool EnterExport(ExportedFunction exported) {
  const Process& process = RunningProcess();
  if (CurrentThread()->unwinding) return false;
  bool counted = false;
  process.ForEachHandle<LoadedLibrary>([&](std::uint64_t, const LoadedLibrary& loaded) {
    if (loaded.exports() != nullptr) counted = loaded.exports()->Enter(exported) || counted;
  });
  for (Library* library : process.machine().libraries().Residents())
    counted = library->Enter(exported) || counted;
  if (!counted) throw std::logic_error("a function of a library that isn't loaded was called");
  return true;
}

void Library::Add(std::uint16_t ordinal, const char* name, ExportedFunction function) {
  if (Find(ordinal) != nullptr || (name != nullptr && Find(name) != nullptr))
    throw std::invalid_argument("the library gives that already");
  std::optional<std::string> text;
  if (name != nullptr) text = name;
  m_exports.push_back({ordinal, std::move(text), function});
  m_calls.try_emplace(function, 0);
}

template <class Key>
std::optional<std::size_t> Library::Look(Key key) const {
  std::optional<std::size_t> found;
  for (std::size_t index = 0; index < m_exports.size(); ++index) {
    bool fits = false;
    if constexpr (std::is_same_v<Key, std::uint16_t>) {
      fits = m_exports[index].ordinal == key;
    } else {
      fits = m_exports[index].name == key;
    }
    if (fits) found = index;
  }
  return found;
}

template <class Key>
ExportedFunction Library::FindBy(Key key) const {
  const std::optional<std::size_t> index = Look(key);
  return index && !m_exports[*index].isRemoved ? m_exports[*index].function : nullptr;
}

std::size_t Library::IndexOf(std::uint16_t ordinal) const { return Wanted(Look(ordinal)); }
std::size_t Library::IndexOf(std::string_view name) const { return Wanted(Look(name)); }

std::uint64_t Library::Calls(std::uint16_t ordinal) const {
  return m_calls.at(m_exports[IndexOf(ordinal)].function);
}
std::uint64_t Library::Calls(std::string_view name) const {
  return m_calls.at(m_exports[IndexOf(name)].function);
}

ExportedFunction Library::Find(std::uint16_t ordinal) const { return FindBy(ordinal); }
ExportedFunction Library::Find(std::string_view name) const { return FindBy(name); }

bool Library::Enter(ExportedFunction exported) {
  const auto found = m_calls.find(exported);
  if (found == m_calls.end()) return false;
  ++found->second;
  return true;
}

Library& Libraries::Add(std::u16string_view path) {
  const std::u16string resolved = Resolved(path);
  auto& place = m_libraries[FoldCase(resolved)];
  if (place != nullptr) throw std::invalid_argument("there is a library of that path");
  if (!m_machine.files().Exists(resolved)) m_machine.files().WriteFile(resolved, "MZ");
  place = std::make_unique<Library>(resolved);
  return *place;
}

Library& Libraries::AddResident(std::u16string_view path) {
  const std::u16string resolved = Resolved(path);
  auto& place = m_libraries[FoldCase(resolved)];
  if (place != nullptr) throw std::invalid_argument("there is a library of that path");
  place = std::make_unique<Library>(resolved);
  m_residents.push_back(place.get());
  return *place;
}

HMODULE Libraries::FindResident(std::u16string_view name) const {
  const std::u16string wanted = FoldCase(name);
  for (std::size_t index = 0; index < m_residents.size(); ++index) {
    const std::u16string path = FoldCase(m_residents[index]->path());
    if (wanted == path || wanted == path.substr(path.rfind(u'\\') + 1))
      return HMODULE{kFirstResident + index};
  }
  return HMODULE{};
}

Library* Libraries::Resident(HMODULE module) const {
  const std::uint64_t index = static_cast<std::uint64_t>(module) - kFirstResident;
  return index < m_residents.size() ? m_residents[index] : nullptr;
}

Library& Libraries::At(std::u16string_view path) {
  Library* library = Find(Resolved(path));
  if (library == nullptr) throw std::invalid_argument("no such library on the simulated machine");
  return *library;
}

Library* Libraries::Find(std::u16string_view path) const {
  const auto found = m_libraries.find(FoldCase(path));
  return found == m_libraries.end() ? nullptr : found->second.get();
}

}  // namespace sim
