#include "tests/windows/driver/machine.h"

#include <winspool.h>

#include <fstream>
#include <iterator>

namespace driver {

namespace {

bool SetValue(HKEY hive, const std::wstring& key, const std::wstring& name, DWORD type,
              const void* data, std::size_t bytes) {
  HKEY open = nullptr;
  if (RegCreateKeyExW(hive, key.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &open, nullptr) !=
      ERROR_SUCCESS)
    return false;
  const LSTATUS status = RegSetValueExW(open, name.c_str(), 0, type, static_cast<const BYTE*>(data),
                                        static_cast<DWORD>(bytes));
  RegCloseKey(open);
  return status == ERROR_SUCCESS;
}

std::wstring TextOf(const std::wstring& key, const wchar_t* name) {
  wchar_t text[300] = {};
  DWORD bytes = sizeof text - sizeof *text;
  RegGetValueW(HKEY_CURRENT_USER, key.c_str(), name, RRF_RT_REG_SZ, nullptr, text, &bytes);
  return text;
}

// A printer that is open with all rights.
class HeldPrinter {
 public:
  explicit HeldPrinter(const std::wstring& name) {
    PRINTER_DEFAULTSW defaults = {nullptr, nullptr, PRINTER_ALL_ACCESS};
    std::wstring writable = name;
    if (!OpenPrinterW(writable.data(), &m_handle, &defaults)) m_error = GetLastError();
  }
  ~HeldPrinter() {
    if (m_error == 0) ClosePrinter(m_handle);
  }
  HeldPrinter(const HeldPrinter&) = delete;
  HeldPrinter& operator=(const HeldPrinter&) = delete;

  DWORD error() const { return m_error; }
  HANDLE get() const { return m_handle; }

 private:
  HANDLE m_handle = nullptr;
  DWORD m_error = 0;
};

}  // namespace

bool WriteWholeFile(const std::wstring& path, const void* data, std::size_t bytes) {
  HANDLE file = CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                            FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) return false;
  DWORD written = 0;
  const bool done = WriteFile(file, data, static_cast<DWORD>(bytes), &written, nullptr) != 0;
  CloseHandle(file);
  return done && written == bytes;
}

std::optional<std::string> ReadWholeFile(const std::wstring& path) {
  std::ifstream file(path.c_str(), std::ios::binary);
  if (!file) return std::nullopt;
  return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

bool IsFile(const std::wstring& path) {
  return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES;
}

std::wstring TempFolder() {
  wchar_t path[MAX_PATH + 1] = {};
  GetTempPathW(MAX_PATH + 1, path);
  return path;
}

bool SetNumber(HKEY hive, const std::wstring& key, const std::wstring& name, DWORD number) {
  return SetValue(hive, key, name, REG_DWORD, &number, sizeof number);
}

bool SetBytes(HKEY hive, const std::wstring& key, const std::wstring& name, const void* data,
              std::size_t bytes) {
  return SetValue(hive, key, name, REG_BINARY, data, bytes);
}

bool SetText(HKEY hive, const std::wstring& key, const std::wstring& name,
             const std::wstring& text) {
  return SetValue(hive, key, name, REG_SZ, text.c_str(), (text.size() + 1) * sizeof(wchar_t));
}

std::wstring RecordOf(const std::wstring& name) {
  for (const wchar_t* branch : {L"Software\\KAVRO\\VGL3\\VGLData\\KVLTarget",
                                L"Software\\KAVRO\\VGL3\\VGLData\\KVNTarget"}) {
    HKEY key = nullptr;
    if (RegOpenKeyExW(HKEY_CURRENT_USER, branch, 0, KEY_READ, &key) != ERROR_SUCCESS) continue;
    std::wstring found;
    wchar_t record[MAX_PATH] = {};
    for (DWORD index = 0; found.empty(); ++index) {
      DWORD chars = MAX_PATH;
      if (RegEnumKeyExW(key, index, record, &chars, nullptr, nullptr, nullptr, nullptr) !=
          ERROR_SUCCESS)
        break;
      const std::wstring path = std::wstring(branch) + L"\\" + record;
      if (lstrcmpiW(TextOf(path, L"Name").c_str(), name.c_str()) == 0) found = path;
    }
    RegCloseKey(key);
    if (!found.empty()) return found;
  }
  return L"";
}

bool PutPrinter(const std::wstring& printer, const std::wstring& port, const std::wstring& driver) {
  const std::wstring key = L"System\\CurrentControlSet\\Control\\Print\\Printers\\" + printer;
  const auto text = [&](const wchar_t* name, const std::wstring& value) {
    return SetText(HKEY_LOCAL_MACHINE, key, name, value);
  };
  return text(L"Name", printer) && text(L"Port", port) && text(L"Printer Driver", driver) &&
         text(L"Print Processor", L"WinPrint") && text(L"Datatype", L"RAW") &&
         SetNumber(HKEY_LOCAL_MACHINE, key, L"Attributes", 0) &&
         SetNumber(HKEY_LOCAL_MACHINE, key, L"Status", 0);
}

bool HasPrinter(const std::wstring& printer) { return HeldPrinter(printer).error() == 0; }

DWORD TakePrinterAway(const std::wstring& printer) {
  const HeldPrinter open(printer);
  if (open.error() != 0) return open.error();
  return DeletePrinter(open.get()) ? 0 : GetLastError();
}

DWORD SetPrinterNumber(const std::wstring& printer, const std::wstring& name, DWORD number) {
  const HeldPrinter open(printer);
  if (open.error() != 0) return open.error();
  std::wstring writable = name;
  return SetPrinterDataW(open.get(), writable.data(), REG_DWORD, reinterpret_cast<BYTE*>(&number),
                         sizeof number);
}

std::optional<DWORD> RunToItsEnd(std::wstring commandLine) {
  STARTUPINFOW startup = {};
  startup.cb = sizeof startup;
  PROCESS_INFORMATION program = {};
  if (!CreateProcessW(nullptr, commandLine.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr,
                      &startup, &program))
    return std::nullopt;
  WaitForSingleObject(program.hProcess, INFINITE);
  DWORD code = 1;
  GetExitCodeProcess(program.hProcess, &code);
  CloseHandle(program.hThread);
  CloseHandle(program.hProcess);
  return code;
}

}  // namespace driver
