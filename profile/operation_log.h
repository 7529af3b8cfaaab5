// The two lines that an operation leaves in the tray log.
#pragma once

#include <string>
#include <type_traits>
#include <utility>

#include "Common/tray_log.h"

namespace vgl {

// Carries `body` out between the lines "<name> Start" and "<name> End"; gives what it gives.
template <class Body>
std::invoke_result_t<Body> LogOperation(const char16_t* name, Body&& body) {
  TrayLogText((std::u16string(name) + u" Start").c_str());
  if constexpr (std::is_void_v<std::invoke_result_t<Body>>) {
    std::forward<Body>(body)();
    TrayLogText((std::u16string(name) + u" End").c_str());
  } else {
    auto result = std::forward<Body>(body)();
    TrayLogText((std::u16string(name) + u" End").c_str());
    return result;
  }
}

}  // namespace vgl
