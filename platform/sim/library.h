// Closed libraries of the simulated machine: what a path loads, and what it gives under which
// number and name.
//
//   sim::Library& library = machine.libraries().Add(u"C:\\Drivers\\X.DLL");
//   library.Export<&TellStatus>(9, "TellStatus");   // uint32_t TellStatus(uint32_t device)
//
// An export is a plain function with the signature that its callers know. It runs on the thread
// that calls it, may ask platform::Os() as any code of that process, and keeps what it has to keep
// in State<T>() of the machine's libraries.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <typeindex>
#include <utility>
#include <vector>

#include "platform/modules.h"

namespace sim {

class Machine;

// Counts a call of `exported` in the libraries of the running process. True when it is to be
// carried out, false while the calling thread is being unwound. Throws when no library that the
// process has loaded gives that function: on Windows its memory would be gone.
bool EnterExport(platform::ExportedFunction exported);

// What a library gives in place of a function, so that its calls are counted.
template <auto Function>
struct ExportOf;
template <class Result, class... Arguments, Result (*Function)(Arguments...)>
struct ExportOf<Function> {
  static Result Run(Arguments... arguments) {
    if (!EnterExport(reinterpret_cast<platform::ExportedFunction>(&Run))) return Result();
    return Function(std::forward<Arguments>(arguments)...);
  }
};

class Library {
 public:
  explicit Library(std::u16string path) : m_path(std::move(path)) {}
  Library(const Library&) = delete;
  Library& operator=(const Library&) = delete;

  const std::u16string& path() const { return m_path; }

  // From now on the library gives `Function` under that number and, unless it is null, that name.
  // An ordinal or name that it gives already is a mistake of the test and throws.
  template <auto Function>
  void Export(std::uint16_t ordinal, const char* name) {
    Add(ordinal, name, reinterpret_cast<platform::ExportedFunction>(&ExportOf<Function>::Run));
  }
  // From now on it can't be asked for; who has it may go on calling it.
  void RemoveExport(std::uint16_t ordinal) { m_exports[IndexOf(ordinal)].isRemoved = true; }
  void RemoveExport(std::string_view name) { m_exports[IndexOf(name)].isRemoved = true; }

  // How often an export was called on this machine. Exports of one function share their count.
  // Asking for what was never exported throws.
  std::uint64_t Calls(std::uint16_t ordinal) const;
  std::uint64_t Calls(std::string_view name) const;

  // --- for the simulation ---

  // Null when there is no such export.
  platform::ExportedFunction Find(std::uint16_t ordinal) const;
  platform::ExportedFunction Find(std::string_view name) const;
  // Counts a call; false when this isn't a function of this library.
  bool Enter(platform::ExportedFunction exported);

 private:
  struct Exported {
    std::uint16_t ordinal;
    std::optional<std::string> name;
    platform::ExportedFunction function;
    bool isRemoved = false;
  };

  void Add(std::uint16_t ordinal, const char* name, platform::ExportedFunction function);
  // The place in m_exports of what can be asked for, else of what last could.
  template <class Key>
  std::optional<std::size_t> Look(Key key) const;
  template <class Key>
  platform::ExportedFunction FindBy(Key key) const;
  // Likewise; what was never there throws.
  std::size_t IndexOf(std::uint16_t ordinal) const;
  std::size_t IndexOf(std::string_view name) const;

  std::u16string m_path;
  std::vector<Exported> m_exports;  // the removed ones as well
  std::map<platform::ExportedFunction, std::uint64_t> m_calls;
};

class Libraries {
 public:
  explicit Libraries(Machine& machine) : m_machine(machine) {}
  Libraries(const Libraries&) = delete;
  Libraries& operator=(const Libraries&) = delete;

  // A library without exports under that path, and a file there if there is none. It can be loaded
  // while there is that file; one that is there without its library is no library. A second one of
  // a path (case is ignored) is a mistake of the test and throws.
  Library& Add(std::u16string_view path);
  // The library of that path; one that isn't there is a mistake of the test and throws.
  Library& At(std::u16string_view path);

  // A library without exports that every process has from its beginning to its end. There is no
  // file of it.
  Library& AddResident(std::u16string_view path);

  // What exported functions keep on this machine: one object a type, made when it is first asked
  // for.
  template <class T>
  T& State() {
    std::shared_ptr<void>& state = m_states[std::type_index(typeid(T))];
    if (state == nullptr) state = std::make_shared<T>();
    return *static_cast<T*>(state.get());
  }

  // --- for the simulation ---

  // Null when there is none of that path.
  Library* Find(std::u16string_view path) const;
  // Of those that every process has: by whole path or name without regard to case, and by handle.
  platform::HMODULE FindResident(std::u16string_view name) const;
  Library* Resident(platform::HMODULE module) const;
  const std::vector<Library*>& Residents() const { return m_residents; }

 private:
  Machine& m_machine;
  std::map<std::u16string, std::unique_ptr<Library>> m_libraries;  // by their folded paths
  std::vector<Library*> m_residents;
  std::map<std::type_index, std::shared_ptr<void>> m_states;
};

}  // namespace sim
