#include "menu/uty_call.h"

#include "Common/tray_log.h"
#include "platform/platform.h"

namespace vgl {

using namespace platform;

CUtyCall::~CUtyCall() {
  if (hSemaphore != HANDLE{}) Os().objects.CloseHandle(hSemaphore);
}

std::int32_t CUtyCall::CheckUtyCall(std::int32_t bWait) {
  if (hSemaphore == HANDLE{}) return 1;
  if (bWait == 1) {
    Os().objects.WaitForSingleObject(hSemaphore, INFINITE);
    return 1;
  }
  if (Os().objects.WaitForSingleObject(hSemaphore, 0) == WAIT_TIMEOUT) {
    TrayLogText(u"Utility executing");
    return 0;
  }
  Os().objects.ReleaseSemaphore(hSemaphore, 1, nullptr);
  TrayLogText(u"Utility not executing");
  return 1;
}

}  // namespace vgl
