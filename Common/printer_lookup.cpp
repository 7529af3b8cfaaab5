#include "Common/printer_lookup.h"

namespace vgl {

int GetDriverAndPort(const char16_t* /*printer*/, std::u16string& outDriver,
                     std::u16string& outPort) {
  outDriver.clear();
  outPort.clear();
  return 0;
}

int GetModelId(const char16_t* /*printer*/, const char16_t* /*driver*/,
               std::u16string& outModelId) {
  outModelId.clear();
  return 1;
}

}  // namespace vgl
