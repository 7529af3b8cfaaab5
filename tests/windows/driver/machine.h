// What the driver does to the machine beside the agents: files, registry, printers, other programs.
#pragma once

#include <windows.h>

#include <optional>
#include <string>

namespace driver {

bool WriteWholeFile(const std::wstring& path, const void* data, std::size_t bytes);
// Nothing when it can't be read.
std::optional<std::string> ReadWholeFile(const std::wstring& path);
bool IsFile(const std::wstring& path);
// With its closing backslash.
std::wstring TempFolder();

// The key is made when it isn't there. False when it can't be written.
bool SetNumber(HKEY hive, const std::wstring& key, const std::wstring& name, DWORD number);
bool SetBytes(HKEY hive, const std::wstring& key, const std::wstring& name, const void* data,
              std::size_t bytes);
bool SetText(HKEY hive, const std::wstring& key, const std::wstring& name,
             const std::wstring& text);

// The path, below HKEY_CURRENT_USER, of the record whose "Name" is that; empty when there is none.
std::wstring RecordOf(const std::wstring& name);

// As the spooler itself keeps a printer, which it finds there at its next opening.
bool PutPrinter(const std::wstring& printer, const std::wstring& port, const std::wstring& driver);
bool HasPrinter(const std::wstring& printer);
// These two give 0 or the system's error.
DWORD TakePrinterAway(const std::wstring& printer);
DWORD SetPrinterNumber(const std::wstring& printer, const std::wstring& name, DWORD number);

// Runs a program of the driver's own folder to its end, with the same output. Its exit code;
// nothing when it can't be started.
std::optional<DWORD> RunToItsEnd(std::wstring commandLine);

}  // namespace driver
