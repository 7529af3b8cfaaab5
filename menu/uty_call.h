// Calls into the driver set's utility library (nozzle check, head cleaning, ...), each on a thread
// of its own: one at a time for a printer, which a named semaphore says to every process that uses
// the printer.
//
// The command text of a utility entry is the library's path and the function's number, as
// "C:\Driver\K_UTIL.DLL /U2". Numbers, exports and their arguments are the library's own; the
// semaphore's name, "VGL_UtyCall_OBJ_" and the printer's name with "/" for each "\", is the
// suite's.
//
// Nothing here is told to the user: what can't be done ends quietly.
#pragma once

#include <cstdint>

#include "Common/fixed_text.h"
#include "platform/types.h"

namespace vgl {

// As long as a utility runs, its thread reads the fields and nobody writes to them. The thread
// touches nothing else of the program but the logs; once it has given the semaphore back, it
// doesn't touch this either.
class CUtyCall {
 public:
  CUtyCall() = default;
  // Waits for the thread that runs a utility.
  ~CUtyCall();
  CUtyCall(const CUtyCall&) = delete;
  CUtyCall& operator=(const CUtyCall&) = delete;

  // Whether a command text is a call into the utility library: 1 when it holds, exact in case, the
  // module name that the driver set has for such calls; else 0, also when anything on the way to
  // that name is missing. Texts may be null, which counts as empty.
  //
  // The name is that of the model's section of the profile, which is the one that the install
  // description names, wherever the set has its settings.
  static std::int32_t IsUtyCallMenu(const char16_t* driverName, const char16_t* printerName,
                                    const char16_t* modelId, const char16_t* param);
  // The name is that in the printer's data file. Other programs of the suite ask so.
  static std::int32_t IsUtyCallMenu(const char16_t* printerName, const char16_t* param);

  // Starts the utility that `param` calls, for that printer, and returns at once. Nothing happens
  // while another one runs, where the text has no " /U", and where printer or path have 260
  // characters or more. A thread that can't be started leaves the printer's semaphore taken until
  // the process ends. Texts may be null, which counts as empty.
  void StartUtyCall(const char16_t* printerName, const char16_t* param);

  // What the thread runs, with the object as its argument: calls the function, and gives the
  // semaphore back. Always 0. Without memory the process ends.
  static std::uint32_t UtyCallMain(void* self);

  // 1 when no utility runs, 0 when one does. With `bWait` 1 it waits without limit for a running
  // one to end and keeps the semaphore: the process is on its way out.
  std::int32_t CheckUtyCall(std::int32_t bWait);

  // The library gets the printer's name and the arguments 3, 1, 2, which nobody ever fills.
  FixedText<260> szArgument1;
  FixedText<260> szArgument2;
  FixedText<260> szPrinterName;
  FixedText<260> szArgument3;
  FixedText<260> szModulePath;
  std::int32_t nFunction = 0;     // the number behind " /U"
  platform::HANDLE hSemaphore{};  // null until the first call
  platform::HANDLE hThread{};     // of the last call; never closed

 private:
  bool TakeCommand(const char16_t* printerName, const char16_t* param);
  bool CallAndRelease();
  void CallFunction(platform::HMODULE library);
};

}  // namespace vgl
