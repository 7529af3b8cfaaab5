#include "desk/invitation_library.h"

#include "Common/text_conversion.h"
#include "platform/sim/machine.h"

namespace desk {

namespace {

std::int32_t CloseEx(const char16_t* printer) {
  sim::Machine& machine = sim::RunningProcess().machine();
  InvitationLibrary& face = InvitationLibraryOf(machine);
  const std::u16string line = u"close: \"" + face.closedPrinters.emplace_back(printer) + u"\"";
  machine.Trace(u"invitation library: " + line);
  // Not by calls of the process, which would be counted as the agent's own.
  machine.files().WriteFile(kInvitationLog, machine.files().ReadFile(kInvitationLog).value_or("") +
                                                vgl::Utf8FromText(line + u"\n"));
  return face.closeResult;
}

}  // namespace

sim::Library& AddInvitationLibrary(sim::Machine& machine, std::u16string_view path) {
  sim::Library& library = machine.libraries().Add(path);
  library.Export<&CloseEx>(1, "FY07ParlosCloseExW");
  return library;
}

InvitationLibrary& InvitationLibraryOf(sim::Machine& machine) {
  return machine.libraries().State<InvitationLibrary>();
}

}  // namespace desk
