// Which printer the agent is for, as the modules of the menu are told it.
#pragma once

namespace vgl {

// Texts of at most 259 characters, never null, which are the frame's and stay good as long as it.
// The printer's name is empty where only a port is known.
struct PrinterIdentity {
  const char16_t* printerName = u"";
  const char16_t* driverName = u"";
  const char16_t* modelId = u"";
  const char16_t* portName = u"";

  // What an agent and its record go by.
  const char16_t* PrinterOrPort() const { return *printerName == u'\0' ? portName : printerName; }
};

}  // namespace vgl
