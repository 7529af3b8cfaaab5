// A stand-in for the invitation library of a driver set, for tests on Windows: writes down what it
// was asked and told. What it answers are numbers in the printer's data, 0 when there is none: the
// period of the asks in milliseconds, "InvitationPeriod", and the level of the next invitation,
// "InvitationLevel".
#include "menu/smart_invitation.h"

#include <string>
#include <type_traits>

#include "tests/windows/stubs/log_line.h"
#include "tests/windows/stubs/printer_data.h"

namespace {

constexpr wchar_t kLog[] = L"C:\\ProgramData\\KAVRO\\VGL3\\PARLOS.LOG";

std::string Number(std::int32_t number) { return " " + std::to_string(number); }

}  // namespace

extern "C" {

std::int32_t FY07ParlosCloseExW(const char16_t* printer) {
  return stub::AppendLine(kLog, "close: " + stub::Quoted(printer)) ? 1 : 0;
}

std::uint32_t FY08ParlosIsInvitationTimerW(const char16_t* printer, const char16_t* driver) {
  stub::AppendLine(kLog, "timer: " + stub::Quoted(printer) + " " + stub::Quoted(driver));
  return stub::PrinterNumber(printer, L"InvitationPeriod", 0);
}

std::int32_t FY08ParlosIsAllowInvitationW(const char16_t* printer, const char16_t* driver,
                                          const char16_t* model, std::int32_t first,
                                          std::int32_t second, std::int32_t third) {
  stub::AppendLine(kLog, "allow: " + stub::Quoted(printer) + " " + stub::Quoted(driver) + " " +
                             stub::Quoted(model) + Number(first) + Number(second) + Number(third));
  return static_cast<std::int32_t>(stub::PrinterNumber(printer, L"InvitationLevel", 0));
}

}  // extern "C"

static_assert(
    std::is_same_v<decltype(&FY08ParlosIsInvitationTimerW), vgl::ParlosIsInvitationTimerFunction>);
static_assert(
    std::is_same_v<decltype(&FY08ParlosIsAllowInvitationW), vgl::ParlosIsAllowInvitationFunction>);
