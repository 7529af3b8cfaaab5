// The program's own module and the libraries that it loads by path.
#pragma once

#include "platform/types.h"

namespace platform {

class Modules {
 public:
  virtual ~Modules() = default;

  // The handle of the running program (null name), or of a library that is already loaded;
  // HMODULE{} with 126 when it isn't. Not owned: nothing is to be freed.
  virtual HMODULE GetModuleHandleW(const char16_t* name) = 0;

  // The full path of a module, HMODULE{} for the running program, into `chars` characters. The
  // length without terminator; `chars` with 122 when it was cut (a terminator is still there); 0 on
  // failure.
  virtual std::uint32_t GetModuleFileNameW(HMODULE module, char16_t* path, std::uint32_t chars) = 0;
};

}  // namespace platform
