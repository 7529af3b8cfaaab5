// Calls into the driver set's utility library (nozzle check, head cleaning, ...): one at a time for
// a printer, which a named semaphore says to every process that uses the printer.
#pragma once

#include <cstdint>

#include "Common/fixed_text.h"
#include "platform/types.h"

namespace vgl {

class CUtyCall {
 public:
  CUtyCall() = default;
  ~CUtyCall();
  CUtyCall(const CUtyCall&) = delete;
  CUtyCall& operator=(const CUtyCall&) = delete;

  // 1 when no utility runs, 0 when one does. With `bWait` 1 it waits without limit for a running
  // one to end and keeps the semaphore: the process is on its way out.
  std::int32_t CheckUtyCall(std::int32_t bWait);

  FixedText<260> szArgument1;
  FixedText<260> szArgument2;
  FixedText<260> szPrinterName;
  FixedText<260> szArgument3;
  FixedText<260> szModulePath;
  std::int32_t nFunction = 0;
  platform::HANDLE hSemaphore{};  // null until the first call
  platform::HANDLE hThread{};     // of the last call; neither waited for nor closed
};

}  // namespace vgl
