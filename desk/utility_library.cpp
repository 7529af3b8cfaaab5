#include "desk/utility_library.h"

#include <type_traits>
#include <utility>

#include "Common/text_conversion.h"
#include "Common/wide_format.h"
#include "desk/printer_number.h"
#include "menu/utility_library_exports.h"
#include "platform/sim/machine.h"

namespace desk {

using vgl::TextFromUtf8;
using vgl::WideFormat;

namespace {

constexpr const char* kNames[] = {
    "UtPrintNozzleTestPatternW",
    "UtCleanHeadW",
    "UtAlignGapW",
    "WndInkReplacementW",
    "UtInkReplacementW",
    "UtSetupW",
    "UtAbsInkRepW",
    "UtSetupfromVglW",
    "UtAlignCutterW",
    "UtCleanCutterW",
    "UtAutoCleanHeadW",
    "UtSetupAutoCleanHeadW",
    "WndMaintenanceTankReplacementW",
};

// Not by calls of the process, which would be counted as the agent's own.
void WriteDown(sim::Machine& machine, const std::u16string& line) {
  machine.Trace(u"utility library: " + line);
  machine.files().WriteFile(kUtilityLog, machine.files().ReadFile(kUtilityLog).value_or("") +
                                             vgl::Utf8FromText(line + u"\n"));
}

void Run(const char* name, const char16_t* printer, const char16_t* second, const char16_t* third,
         const char16_t* fourth) {
  sim::Machine& machine = sim::RunningProcess().machine();
  UtilityLibrary& face = UtilityLibraryOf(machine);
  face.calls.push_back({name, {printer, second, third, fourth}, sim::CurrentThread()->id()});
  WriteDown(machine, WideFormat(u"begin %s: \"%s\" \"%s\" \"%s\" \"%s\"", TextFromUtf8(name),
                                printer, second, third, fourth));
  const std::uint32_t milliseconds =
      face.milliseconds ? *face.milliseconds
                        : PrinterNumber(machine, printer, u"UtilityMilliseconds", 0);
  if (milliseconds != 0) platform::Os().process.Sleep(milliseconds);
  WriteDown(machine, u"end " + TextFromUtf8(name));
  ++face.ended;
}

template <std::size_t Index>
void Export(const char16_t* printer, const char16_t* second, const char16_t* third,
            const char16_t* fourth) {
  Run(kNames[Index], printer, second, third, fourth);
}

template <std::size_t... Index>
void AddExports(sim::Library& library, std::index_sequence<Index...>) {
  static_assert(std::is_same_v<decltype(&Export<0>), vgl::UtilityFunction>);
  (library.Export<&Export<Index>>(Index + 1, kNames[Index]), ...);
}

}  // namespace

sim::Library& AddUtilityLibrary(sim::Machine& machine, std::u16string_view path) {
  sim::Library& library = machine.libraries().Add(path);
  AddExports(library, std::make_index_sequence<std::size(kNames)>());
  return library;
}

UtilityLibrary& UtilityLibraryOf(sim::Machine& machine) {
  return machine.libraries().State<UtilityLibrary>();
}

}  // namespace desk
