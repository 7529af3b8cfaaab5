// A stand-in for the utility library of a driver set, for tests on Windows: each export writes down
// what it was given when it begins, and once more when it ends. How long it takes is the number
// "UtilityMilliseconds" in the printer's data, 0 when there is none.
#include "menu/utility_library_exports.h"

#include <string>
#include <type_traits>

#include "tests/windows/stubs/log_line.h"
#include "tests/windows/stubs/printer_data.h"

namespace {

constexpr wchar_t kLog[] = L"C:\\ProgramData\\KAVRO\\VGL3\\UTILITY.LOG";

void Run(const char* name, const char16_t* printer, const char16_t* second, const char16_t* third,
         const char16_t* fourth) {
  stub::AppendLine(kLog, std::string("begin ") + name + ": " + stub::Quoted(printer) + " " +
                             stub::Quoted(second) + " " + stub::Quoted(third) + " " +
                             stub::Quoted(fourth));
  Sleep(stub::PrinterNumber(printer, L"UtilityMilliseconds", 0));
  stub::AppendLine(kLog, std::string("end ") + name);
}

}  // namespace

// All exports have one shape.
#define KAVRO_UTILITY(NAME)                                                                    \
  extern "C" void NAME(const char16_t* printer, const char16_t* second, const char16_t* third, \
                       const char16_t* fourth) {                                               \
    Run(#NAME, printer, second, third, fourth);                                                \
  }

KAVRO_UTILITY(UtPrintNozzleTestPatternW)
KAVRO_UTILITY(UtCleanHeadW)
KAVRO_UTILITY(UtAlignGapW)
KAVRO_UTILITY(WndInkReplacementW)
KAVRO_UTILITY(UtInkReplacementW)
KAVRO_UTILITY(UtSetupW)
KAVRO_UTILITY(UtAbsInkRepW)
KAVRO_UTILITY(UtSetupfromVglW)
KAVRO_UTILITY(UtAlignCutterW)
KAVRO_UTILITY(UtCleanCutterW)
KAVRO_UTILITY(UtAutoCleanHeadW)
KAVRO_UTILITY(UtSetupAutoCleanHeadW)
KAVRO_UTILITY(WndMaintenanceTankReplacementW)

static_assert(std::is_same_v<decltype(&UtCleanHeadW), vgl::UtilityFunction>);
