// A registry library that carries nothing out: it records what it is called with, and answers what
// a test has set.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <type_traits>
#include <vector>

#include "Common/reg_lib_table.h"
#include "platform/sim/library.h"
#include "platform/sim/machine.h"

namespace vgl {

// A handle, a number or a pointer as one number.
template <class T>
std::uint64_t AsNumber(T argument) {
  if constexpr (std::is_pointer_v<T>) {
    return reinterpret_cast<std::uintptr_t>(argument);
  } else {
    return static_cast<std::uint64_t>(argument);
  }
}

template <class Char>
struct RecordedCall {
  std::uint16_t ordinal = 0;
  std::vector<std::uint64_t> arguments;  // all of them
  // What the second argument pointed to, where that is the name of a sub-key or value.
  std::optional<std::basic_string<Char>> name;
  // What those arguments pointed to that are pointers to a number, by the argument's place.
  std::map<std::size_t, std::uint32_t> numbers;
};

template <class Char>
struct RegRecord {
  std::vector<RecordedCall<Char>> calls;
  std::int32_t result = 0;
};

template <class Char>
RegRecord<Char>& RecordOf(sim::Machine& machine) {
  return machine.libraries().State<RegRecord<Char>>();
}

template <class Char, RegExport Export,
          class Function = typename RegExportShape<Char, Export>::Function>
struct RecordingExport;
template <class Char, RegExport Export, class... Arguments>
struct RecordingExport<Char, Export, std::int32_t (*)(Arguments...)> {
  static std::int32_t Run(Arguments... arguments) {
    RecordedCall<Char> call{static_cast<std::uint16_t>(Export), {AsNumber(arguments)...}, {}, {}};
    std::size_t place = 0;
    const auto take = [&](auto argument) {
      if constexpr (std::is_same_v<decltype(argument), const Char*>)
        if (argument != nullptr) call.name = argument;
      if constexpr (std::is_same_v<decltype(argument), std::uint32_t*>)
        if (argument != nullptr) call.numbers[place] = *argument;
      ++place;
    };
    (take(arguments), ...);
    RegRecord<Char>& record = RecordOf<Char>(sim::RunningProcess().machine());
    record.calls.push_back(std::move(call));
    return record.result;
  }
};

template <class Char, RegExport... Exports>
void AddRecordingExports(sim::Library& library) {
  (library.Export<&RecordingExport<Char, Exports>::Run>(static_cast<std::uint16_t>(Exports),
                                                        nullptr),
   ...);
}

// One whose exports take texts of `Char`.
template <class Char>
sim::Library& AddRecordingLibrary(sim::Machine& machine, std::u16string_view path) {
  sim::Library& library = machine.libraries().Add(path);
  AddRecordingExports<Char, RegExport::CreateKeyEx, RegExport::OpenKeyEx, RegExport::DeleteKey,
                      RegExport::CloseKey, RegExport::EnumKeyEx, RegExport::QueryValueEx,
                      RegExport::DeleteValue, RegExport::SetValueEx, RegExport::EnumValue,
                      RegExport::QueryInfoKey, RegExport::Unknown20>(library);
  return library;
}

}  // namespace vgl
