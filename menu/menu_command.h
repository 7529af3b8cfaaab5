// A chosen entry of the menu becomes a running program.
#pragma once

#include <cstdint>

#include "menu/printer_identity.h"
#include "menu/uty_call.h"
#include "platform/types.h"

namespace vgl {

// Whose menu it is. Texts are never null and stay good for the call; empty where there is none.
struct MenuCommandContext {
  PrinterIdentity identity;
  const char16_t* netPilotName = u"";  // NetPilot's file name
  const char16_t* vifName = u"";       // the printer's VIF file
  // What says that a driver is being installed.
  platform::HWND window{};
  const char16_t* busyText = u"";
  const char16_t* busyCaption = u"";
  CUtyCall& utyCall;
};

// Runs the command text that the driver set has for that id now, which need not be the one of the
// moment when the menu was built. Without one nothing happens. What an id below
// kFirstPlainCommandId runs is counted in the usage log where it is one of the counted forms.
//
// Waits for nothing that it starts. No failure is told: what can't be started doesn't run, and is
// counted all the same. Only a driver installer at work is told, in a message box, and only to
// those who choose an entry that takes a parameter file; nothing runs then.
void RunMenuCommand(const MenuCommandContext& context, std::uint32_t id);

}  // namespace vgl
