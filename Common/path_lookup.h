// Where the files of a printer's driver set are: its folder, profile, libraries and programs.
//
// A lookup goes by the driver's name, the model's id and the printer's name, each of which may be
// null, which counts as empty. The printer's name decides how the settings are read: with it
// through the printer, without it through the driver alone. Nothing is kept between two calls: each
// one opens, reads and closes anew, and no failure is told beyond the result.
//
// Results are 1 with a path in the output, else 0 with the output empty. An output of `PathText`
// has the room that all programs of the suite agree on; others tell theirs, `chars`, in characters
// with the terminator. A null output gives 0.
#pragma once

#include <cstdint>

#include "Common/fixed_text.h"
#include "platform/spooler.h"

namespace vgl {

// One value of the driver's key. 1 when it isn't empty and fits. An empty driver or model gives 0,
// and so does a driver whose key's path takes 260 characters; else the model has no part in it.
int GetDriverValue(char16_t* out, std::uint32_t chars, const char16_t* valueName,
                   const char16_t* driver, const char16_t* modelId, const char16_t* printer);

// The file that a value of the driver's key names, if it is there; else the one of that name in the
// driver's folder, if that is there. Such a path has two backslashes between folder and name; other
// programs of the suite know it in that form.
int FindDriverFile(char16_t* out, std::uint32_t chars, const char16_t* valueName,
                   const char16_t* defaultName, const char16_t* driver, const char16_t* modelId,
                   const char16_t* printer);

// The driver's folder, which is there, with one backslash at its end.
int GetProcPath(PathText* out, const char16_t* driver, const char16_t* modelId,
                const char16_t* printer);

// The model's profile file. One that the profile branch names needn't be there.
int GetProfilePath(PathText* out, const char16_t* driver, const char16_t* modelId,
                   const char16_t* printer);

// A library that the profile names: the driver's folder and the name, or "." straight in front of
// the name where there is no such folder. Whether the file is there isn't looked at.
int GetPrnDllPath(PathText* out, const char16_t* driver, const char16_t* modelId,
                  const char16_t* printer);
int GetBmpPath(PathText* out, const char16_t* driver, const char16_t* modelId,
               const char16_t* printer);

// The language resource library: what the language manager names if it is there, else what the
// profile has for the user's language, as GetPrnDllPath puts it together.
int GetResPath(PathText* out, const char16_t* driver, const char16_t* modelId,
               const char16_t* printer);

// Two servers in the driver's folder, not looked for there: the monitoring server by its own name
// where the set names none, the bidirectional server only where the set names it.
int GetServerPath(PathText* out, const char16_t* driver, const char16_t* modelId,
                  const char16_t* printer);
int GetQbServerPath(PathText* out, const char16_t* driver, const char16_t* modelId,
                    const char16_t* printer);

// Programs of the suite, by FindDriverFile. The environment helper falls back on the run helper.
int GetTrayAgentPath(char16_t* out, std::uint32_t chars, const char16_t* driver,
                     const char16_t* modelId, const char16_t* printer);
int GetEnvHelperPath(char16_t* out, std::uint32_t chars, const char16_t* driver,
                     const char16_t* modelId, const char16_t* printer);
int GetRunHelperPath(PathText* out, const char16_t* driver, const char16_t* modelId,
                     const char16_t* printer);

// Whether something, file or folder, is there under that path, which may hold * and ?.
bool FileExists(const char16_t* path);

// The number QBAPI_VERSION of the driver, or of the printer's driver where none is given; 0 when
// there is none, and for a driver's name of 260 characters.
std::int64_t GetQbApiVersion(const char16_t* driver, const char16_t* printer);

// The same of a printer that is open, which stays open; where a driver is wanted and none is given,
// it is that printer's. The printer's name must not be empty, and has no other part in it.
int GetDriverValueByHandle(platform::HPRINTER handle, char16_t* out, std::uint32_t chars,
                           const char16_t* valueName, const char16_t* driver,
                           const char16_t* modelId, const char16_t* printer);
int GetProcPathByHandle(platform::HPRINTER handle, PathText* out, const char16_t* driver,
                        const char16_t* modelId, const char16_t* printer);
int GetProfilePathByHandle(platform::HPRINTER handle, PathText* out, const char16_t* driver,
                           const char16_t* modelId, const char16_t* printer);
int GetBmpPathByHandle(platform::HPRINTER handle, PathText* out, const char16_t* driver,
                       const char16_t* modelId, const char16_t* printer);
std::int64_t GetQbApiVersionByHandle(platform::HPRINTER handle, const char16_t* driver,
                                     const char16_t* printer);

}  // namespace vgl
