// The program's own module and the libraries that it loads by path.
#pragma once

#include "platform/types.h"

namespace platform {

// What a library gives under a name or number, to be turned into the type that it really has.
using ExportedFunction = void (*)();

class Modules {
 public:
  virtual ~Modules() = default;

  // The handle of the running program (null name), or of a library that is already loaded, by its
  // name or its whole path without regard to case; HMODULE{} with 126 when it isn't. Not owned:
  // nothing is to be freed.
  virtual HMODULE GetModuleHandleW(const char16_t* name) = 0;

  // The full path of a module, HMODULE{} for the running program, into `chars` characters. The
  // length without terminator; `chars` with 122 when it was cut (a terminator is still there); 0 on
  // failure (126 for what isn't a loaded module).
  virtual std::uint32_t GetModuleFileNameW(HMODULE module, char16_t* path, std::uint32_t chars) = 0;

  // Loads the library of that path. A name without folder is looked for in the program's folder,
  // then in the system's, then in the current one; ".DLL" is put behind a name without extension.
  // Each process counts the loads of a library: one that it has already gets one more, and the same
  // handle. The load is the caller's, given back by FreeLibrary. HMODULE{} on failure: 126 when it
  // isn't there, 193 when it is no library.
  virtual HMODULE LoadLibraryW(const char16_t* path) = 0;
  // The same for a path in the system's code page.
  virtual HMODULE LoadLibraryA(const char* path) = 0;

  // Gives one load back; with the last one the library goes, and its functions with it. False with
  // 6 for HMODULE{}, 126 for what isn't a loaded module.
  virtual bool FreeLibrary(HMODULE library) = 0;

  // What a library gives under a name (case counts) or under an ordinal number. Null with 127 when
  // there is nothing (Windows has a number of its own for ordinals), 126 for what isn't a loaded
  // module. What is given may be called until the library goes.
  virtual ExportedFunction GetProcAddress(HMODULE library, const char* name) = 0;
  virtual ExportedFunction GetProcAddress(HMODULE library, std::uint16_t ordinal) = 0;
};

}  // namespace platform
