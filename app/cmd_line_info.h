// The record of one start: what the slash options of a command line or a parameter file tell a
// program of the suite, and the way back into a parameter file.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "app/param_file.h"

namespace vgl {

class CCmdLineBase {
 public:
  virtual ~CCmdLineBase() = default;

  std::u16string m_szCmdText;  // the raw text that the record was last read from

 protected:
  CCmdLineBase() = default;
  CCmdLineBase(const CCmdLineBase&) = default;
  CCmdLineBase& operator=(const CCmdLineBase&) = default;
};

// Texts are of any length. Those that came out of an option have at most 259 characters, but for a
// printer name that /KVT took from its record. A flag is 0 or 1. Fields that bear the name of an
// option are carried for other programs of the suite; the tray agent reads them and acts on none.
class CCmdLineInfo : public CCmdLineBase {
 public:
  // All fields at their defaults.
  CCmdLineInfo();

  // The record of a text, by ParseCommandLine, whose result is dropped: judge the record by its
  // fields. A null text counts as empty.
  explicit CCmdLineInfo(const char16_t* szCmdText);

  // Empties every text field and sets every number to 0. The raw text stays.
  void InitDefaults();

  // Applies the options of m_szCmdText on top of what the record holds, then those of the file that
  // /FU names, if any, whose text becomes m_szCmdText, then those of the file named in there, and
  // so on. A file that names one already read ends this, as if it named none. Each file stays open,
  // and nobody can change it, until all that it names is done; then it is removed if m_IconFrom is
  // 0. Looks up driver, port and model id at the end. Gives 1.
  //
  // A file that can't be read is removed if it lies in the temp folder and can at least be opened.
  // When it is the one that m_szCmdText itself names, nothing is looked up and the result is 0.
  // When it is an inner one, it ends the chain like one already read: what the files in front of it
  // told stands, they are removed as ever, and the result is 1.
  int ParseCommandLine();

  // Looks up driver and port of the printer unless both are known. 1 when both were known, or when
  // the printer told at least one: both are then replaced by what it told, be that empty. 0 leaves
  // both as they were.
  int ResolvePrinterInfo();

  // Looks up the model id of the driver unless it is known. 1 when it is known now.
  int ResolveModelID();

  // Makes an empty file of a new name in the temp folder. 1: m_szTempPath and m_szOutFileName name
  // it, and it is the caller's to remove; 0: m_szOutFileName is empty.
  int CreateParamFileName();

  // Writes the record into a new parameter file, which CreateParamFileName names and the caller
  // owns. 1 on success. 0 when a step fails or a line takes more than its 276 characters with
  // terminator: the file, if it was made, stays with the lines in front.
  int WriteParamFile();

  // The same after storing the three names in the record (null counts as empty); when it fails, no
  // file is left.
  int WriteParamFile(const char16_t* szPrinterName, const char16_t* szPortName,
                     const char16_t* szModelID);

  // Removes a file that can be opened for reading under this path or, failing that, under the temp
  // folder followed by it. The result of DeleteFileW as 1 or 0, 0 when there is no such file. Null
  // counts as empty. Fills m_szTempPath if it is empty.
  int DeleteParamFile(const char16_t* szPath);

  // The temp folder with its closing backslash, filled when first needed; ".\" when the system
  // doesn't tell one.
  std::u16string m_szTempPath;

  std::int32_t m_fRemove = 0;  // end the running agent of this printer instead of starting one
  std::u16string m_szPrinterName;
  std::u16string m_szDriverName;
  std::u16string m_szPortName;
  std::u16string m_szModelID;
  std::u16string m_szFileName;      // the parameter file as it was named last
  std::u16string m_szOutFileName;   // of CreateParamFileName, without the folder
  std::int32_t m_fIconInstall = 0;  // started by an installation
  std::int32_t m_IconFrom = 0;      // started by the Run key of: 0 none, 1 the user, 2 the machine

  // Crossed: /J sets m_szJI and is written from m_szJ; /JI sets m_szJ and is written from m_szJI.
  std::u16string m_szJ;
  std::u16string m_szJI;

  std::int32_t m_fS = 0;
  std::int32_t m_fE = 0;
  std::int32_t m_fU = 0;
  std::int32_t m_fC = 0;
  std::u16string m_szKVM;
  std::intptr_t m_nHwnd = 0;  // a window's handle: as text, its low 32 bits as a signed decimal
  std::int32_t m_fSPL = 0;
  std::int32_t m_fDP = 0;
  std::int32_t m_fA = 0;
  std::u16string m_szT;
  std::u16string m_szL;
  std::u16string m_szN;
  std::u16string m_szIC;
  std::u16string m_szCN;
  std::u16string m_szWPB;
  std::int32_t m_fASMRT = 0;
  std::int32_t m_fMA = 0;
  std::int32_t m_fWA = 0;
  std::u16string m_szTC;
  std::int32_t m_fPPOP = 0;
  std::u16string m_szX;
  std::u16string m_szPS;
  std::int32_t m_fBSR = 0;
  std::u16string m_szRP;
  std::int32_t m_fTD = 0;
  std::int32_t m_fPN = 0;
  std::int32_t m_fPR = 0;
  std::int32_t m_fMON = 0;
  std::int32_t m_fZM = 0;
  std::u16string m_szV;

 private:
  bool ReadOptions();
  void SetOption(std::u16string_view name, std::u16string_view value);
  void TakeNameOfRecord(std::u16string_view record);
  std::optional<ParamFile> OpenNamedFile();
  void Resolve();
};

}  // namespace vgl
