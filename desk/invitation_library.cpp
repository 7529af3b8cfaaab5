#include "desk/invitation_library.h"

#include <type_traits>

#include "Common/text_conversion.h"
#include "Common/wide_format.h"
#include "desk/printer_number.h"
#include "menu/smart_invitation.h"
#include "platform/sim/machine.h"

namespace desk {

using vgl::WideFormat;

namespace {

sim::Machine& TheMachine() { return sim::RunningProcess().machine(); }

// Not by calls of the process, which would be counted as the agent's own.
void WriteDown(const std::u16string& line) {
  sim::Machine& machine = TheMachine();
  machine.Trace(u"invitation library: " + line);
  machine.files().WriteFile(kInvitationLog, machine.files().ReadFile(kInvitationLog).value_or("") +
                                                vgl::Utf8FromText(line + u"\n"));
}

std::uint32_t IsInvitationTimer(const char16_t* printer, const char16_t* driver) {
  InvitationLibrary& face = InvitationLibraryOf(TheMachine());
  face.timerCalls.push_back({printer, driver});
  WriteDown(WideFormat(u"timer: \"%s\" \"%s\"", printer, driver));
  return face.period ? *face.period : PrinterNumber(TheMachine(), printer, u"InvitationPeriod", 0);
}

std::int32_t IsAllowInvitation(const char16_t* printer, const char16_t* driver,
                               const char16_t* modelId, std::int32_t first, std::int32_t second,
                               std::int32_t third) {
  InvitationLibrary& face = InvitationLibraryOf(TheMachine());
  face.allowCalls.push_back({printer, driver, modelId, {first, second, third}});
  WriteDown(WideFormat(u"allow: \"%s\" \"%s\" \"%s\" %d %d %d", printer, driver, modelId, first,
                       second, third));
  if (face.level) return *face.level;
  return static_cast<std::int32_t>(PrinterNumber(TheMachine(), printer, u"InvitationLevel", 0));
}

std::int32_t CloseEx(const char16_t* printer) {
  InvitationLibrary& face = InvitationLibraryOf(TheMachine());
  face.closedPrinters.emplace_back(printer);
  WriteDown(WideFormat(u"close: \"%s\"", printer));
  return face.closeResult;
}

}  // namespace

sim::Library& AddInvitationLibrary(sim::Machine& machine, std::u16string_view path) {
  static_assert(std::is_same_v<decltype(&IsInvitationTimer), vgl::ParlosIsInvitationTimerFunction>);
  static_assert(std::is_same_v<decltype(&IsAllowInvitation), vgl::ParlosIsAllowInvitationFunction>);
  sim::Library& library = machine.libraries().Add(path);
  library.Export<&CloseEx>(1, "FY07ParlosCloseExW");
  library.Export<&IsInvitationTimer>(2, vgl::kParlosIsInvitationTimer);
  library.Export<&IsAllowInvitation>(3, vgl::kParlosIsAllowInvitation);
  return library;
}

InvitationLibrary& InvitationLibraryOf(sim::Machine& machine) {
  return machine.libraries().State<InvitationLibrary>();
}

}  // namespace desk
