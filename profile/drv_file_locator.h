// Where the files of a driver set are: the VIF, which the driver registers as its data file, and
// the SADat file, which the VIF names. docs/driver-set.md tells what is in them.
#pragma once

#include <string>
#include <string_view>

#include "platform/spooler.h"

namespace vgl {

// Finds paths and names, from a printer's name, an open printer, a VIF or a driver's name. It has
// no state and keeps nothing between two calls; no failure is told beyond the result.
//
// Texts that go in may be null, which counts as empty; none may lie in an output. Outputs are
// emptied first. The result is 1 when an output isn't empty. 0: all are empty, because an output is
// null, an input is empty, or anything on the way is missing or fails. Whether a found file is
// there isn't looked at.
//
// What is given by a printer's name opens the printer through the guarded open, with the right to
// use it, and closes it again; each file and each folder is asked for in an opening of its own.
// While a driver installer is at work, all of this is empty. What is given by a handle opens and
// closes nothing; the printer's name beside the handle must not be empty and has no other part.
class CDrvFileLocator {
 public:
  // The folder of the driver's main file: the path in front of its last backslash, all of it when
  // it has none.
  int GetDriverDir(const char16_t* printer, std::u16string* out) const;
  int GetDriverDirByHandle(platform::HPRINTER handle, const char16_t* printer,
                           std::u16string* out) const;

  int GetDriverName(const char16_t* printer, std::u16string* out) const;

  // The driver's data file as it is registered when it has a path; else in the driver's folder, or
  // bare when there is none.
  int GetVifPath(const char16_t* printer, std::u16string* out) const;
  int GetVifPathByHandle(platform::HPRINTER handle, const char16_t* printer,
                         std::u16string* out) const;

  // The SADat file that the VIF names, in the driver's folder, or bare when there is none. Systems
  // that aren't of the NT family have a key of their own for it, in the section of the driver's
  // name.
  int GetSADatPath(const char16_t* printer, std::u16string* out) const;
  int GetSADatPathByHandle(platform::HPRINTER handle, const char16_t* printer,
                           std::u16string* out) const;

  // What a VIF says of its driver's name, and the SADat file that it names, in FolderOfVif, or
  // bare. Systems that aren't of the NT family find their key in the section of that driver's name.
  int GetDriverNameOfVif(const char16_t* vifPath, std::u16string* out) const;
  int GetSADatPathOfVif(const char16_t* vifPath, std::u16string* out) const;

  // The VIF and the folder of an installed driver; 1 when either is found. The name is compared
  // with its case, and the first driver of that name counts.
  int FindDriverFiles(const char16_t* driver, std::u16string* outVif, std::u16string* outDir) const;
  // The SADat file that the driver's VIF names, in the driver's folder, or bare.
  int GetSADatPathOfDriver(const char16_t* driver, std::u16string* out) const;
};

// The folder of a VIF that is known by its path: the text in front of the last backslash, if the
// path says ".VIF" in capitals. A path in other letters counts as having no folder; that is kept.
std::u16string FolderOfVif(std::u16string_view vifPath);

}  // namespace vgl
