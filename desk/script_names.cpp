// The names that session scripts may use for numbers.
#include "app/agent_messages.h"
#include "desk/script.h"

namespace desk {

const std::vector<NamedNumber>& KnownMessages() {
  static const std::vector<NamedNumber> kNames = {
      {"WM_DESTROY", platform::WM_DESTROY},
      {"WM_CLOSE", platform::WM_CLOSE},
      {"WM_COMMAND", platform::WM_COMMAND},
      {"WM_TIMER", platform::WM_TIMER},
      {"WM_VGL3_TRAYICON", vgl::WM_VGL3_TRAYICON},
      {"WM_VGL3_UPDATE_ICON", vgl::WM_VGL3_UPDATE_ICON},
      {"WM_VGL3_KICK_INVITATION", vgl::WM_VGL3_KICK_INVITATION},
      {"WM_VGL3_CHECK_NETPILOT", vgl::WM_VGL3_CHECK_NETPILOT},
      {"WM_VGL3_FLUSH_VGLLOG", vgl::WM_VGL3_FLUSH_VGLLOG},
      {"WM_LBUTTONDOWN", platform::WM_LBUTTONDOWN},
      {"WM_LBUTTONDBLCLK", platform::WM_LBUTTONDBLCLK},
      {"WM_RBUTTONDOWN", platform::WM_RBUTTONDOWN},
  };
  return kNames;
}

const std::vector<NamedNumber>& KnownTimers() {
  static const std::vector<NamedNumber> kNames = {
      {"TMID_PRINTERCHECK", vgl::TMID_PRINTERCHECK}, {"TMID_MASKCHECK", vgl::TMID_MASKCHECK},
      {"TMID_INVITATION", vgl::TMID_INVITATION},     {"TMID_NETPILOT", vgl::TMID_NETPILOT},
      {"TMID_FLUSHLOG", vgl::TMID_FLUSHLOG},         {"TMID_CLICK", vgl::TMID_CLICK},
  };
  return kNames;
}

const std::vector<NamedNumber>& KnownKeys() {
  static const std::vector<NamedNumber> kNames = {
      {"ctrl", platform::VK_CONTROL}, {"shift", platform::VK_SHIFT}, {"space", platform::VK_SPACE}};
  return kNames;
}

}  // namespace desk
