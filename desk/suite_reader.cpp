#include "desk/suite_reader.h"

#include <algorithm>
#include <optional>
#include <sstream>
#include <utility>

#include "Common/target_records.h"
#include "Common/text_conversion.h"
#include "app/param_file.h"
#include "desk/invitation_library.h"
#include "desk/run_helper.h"
#include "desk/started_program.h"
#include "desk/usage_log_file.h"
#include "desk/utility_library.h"
#include "platform/owned.h"

namespace desk {

using namespace platform;

namespace {

constexpr char16_t kRunKey[] = u"Software\\Microsoft\\Windows\\CurrentVersion\\Run";
constexpr std::uint32_t kMostNameChars = 16384;  // of a registry value's name, with terminator

using Lines = std::vector<std::string>;

// Nothing when it can't be read.
std::optional<std::string> FileBytes(const std::u16string& path) {
  const OwnedFile file(Os().files.CreateFileW(path.c_str(), GENERIC_READ,
                                              FILE_SHARE_READ | FILE_SHARE_WRITE, OPEN_EXISTING,
                                              FILE_ATTRIBUTE_NORMAL));
  if (!file) return std::nullopt;
  const std::uint32_t size = Os().files.GetFileSize(file.get(), nullptr);
  if (size == INVALID_FILE_SIZE) return std::nullopt;
  std::string bytes(size, '\0');
  std::uint32_t read = 0;
  if (!Os().files.ReadFile(file.get(), bytes.data(), static_cast<std::uint32_t>(bytes.size()),
                           &read))
    return std::nullopt;
  bytes.resize(read);
  return bytes;
}

// The names of what fits the pattern, in order.
std::vector<std::u16string> FilesOf(const std::u16string& pattern) {
  std::vector<std::u16string> names;
  FindData data;
  const HFIND search = Os().files.FindFirstFileW(pattern.c_str(), &data);
  if (search == INVALID_FIND_HANDLE) return names;
  do names.emplace_back(data.name);
  while (Os().files.FindNextFileW(search, &data));
  Os().files.FindClose(search);
  std::sort(names.begin(), names.end());
  return names;
}

void AddLinesOfLog(const char16_t* path, const char* start, Lines& lines) {
  std::istringstream log(FileBytes(path).value_or(""));
  for (std::string line; std::getline(log, line);) {
    if (line.ends_with('\r')) line.pop_back();
    lines.push_back(start + line);
  }
}

void AddTempFiles(Lines& lines) {
  for (const std::u16string& name : FilesOf(vgl::TempFolder() + u"K_Q*"))
    lines.push_back("temp folder: " + vgl::Utf8FromText(name));
}

// A value of the registry, in words.
struct ShownValue {
  std::string name;
  std::string text;
};

std::string InWords(std::uint32_t type, const std::string& bytes) {
  if (type == REG_DWORD && bytes.size() == 4) {
    std::uint32_t number = 0;
    for (std::size_t i = bytes.size(); i-- > 0;)
      number = number << 8 | static_cast<unsigned char>(bytes[i]);
    return std::to_string(number);
  }
  if (type != REG_SZ) return "(" + std::to_string(bytes.size()) + " bytes)";
  std::u16string text = vgl::TextFromUtf16Le(std::as_bytes(std::span(bytes)));
  return '"' + vgl::Utf8FromText(text.substr(0, text.find(u'\0'))) + '"';
}

// In the order of their names.
std::vector<ShownValue> ValuesOf(HKEY key) {
  std::vector<ShownValue> values;
  std::u16string name(kMostNameChars, u'\0');
  for (std::uint32_t index = 0;; ++index) {
    std::uint32_t chars = kMostNameChars;
    std::uint32_t type = 0;
    std::uint32_t bytes = 0;
    if (Os().registry.RegEnumValueW(key, index, name.data(), &chars, &type, nullptr, &bytes) !=
        ERROR_SUCCESS)
      break;
    std::string data(bytes, '\0');
    if (Os().registry.RegQueryValueExW(key, name.c_str(), &type, data.data(), &bytes) !=
        ERROR_SUCCESS)
      continue;
    data.resize(bytes);
    values.push_back({vgl::Utf8FromText({name.data(), chars}), InWords(type, data)});
  }
  std::sort(values.begin(), values.end(),
            [](const ShownValue& left, const ShownValue& right) { return left.name < right.name; });
  return values;
}

std::vector<std::u16string> SubKeysOf(HKEY key) {
  std::vector<std::u16string> names;
  char16_t name[MAX_PATH] = {};
  for (std::uint32_t index = 0;; ++index) {
    std::uint32_t chars = MAX_PATH;
    if (Os().registry.RegEnumKeyExW(key, index, name, &chars, nullptr, nullptr) != ERROR_SUCCESS)
      break;
    names.emplace_back(name, chars);
  }
  std::sort(names.begin(), names.end());
  return names;
}

OwnedKey OpenUserKey(const std::u16string& path) {
  OwnedKey key;
  // Left closed where there is none.
  static_cast<void>(
      Os().registry.RegOpenKeyExW(HKEY_CURRENT_USER, path.c_str(), KEY_READ, key.Out()));
  return key;
}

void AddRunValues(Lines& lines) {
  const OwnedKey run = OpenUserKey(kRunKey);
  if (!run) return;
  for (const ShownValue& value : ValuesOf(run.get())) {
    const bool isText = value.text.starts_with('"');
    lines.push_back("Run \"" + value.name +
                    "\": " + (isText ? value.text.substr(1, value.text.size() - 2) : value.text));
  }
}

// A key with all below it. `shown` is how its path stands in the line.
void AddRecord(const std::u16string& path, const std::u16string& shown, Lines& lines) {
  const OwnedKey key = OpenUserKey(path);
  if (!key) return;
  std::string values;
  for (const ShownValue& value : ValuesOf(key.get()))
    values += (values.empty() ? " " : ", ") + value.name + " " + value.text;
  lines.push_back("record " + vgl::Utf8FromText(shown) + ":" + values);
  for (const std::u16string& subKey : SubKeysOf(key.get())) {
    const std::u16string below = u"\\" + subKey;
    AddRecord(path + below, shown + below, lines);
  }
}

void AddRecords(const char16_t* branch, Lines& lines) {
  const OwnedKey key = OpenUserKey(branch);
  if (!key) return;
  for (const std::u16string& record : SubKeysOf(key.get())) {
    const std::u16string path = std::u16string(branch) + u"\\" + record;
    AddRecord(path, vgl::RunValueNameOfRecord(path), lines);
  }
}

void AddUsageLogs(Lines& lines) {
  const std::u16string folder = std::u16string(kUsageLogFolder) + u"\\";
  for (const std::u16string& name : FilesOf(folder + u"VGL_*.xml")) {
    const std::string start = "usage log " + vgl::Utf8FromText(name) + ": ";
    const std::optional<UsageLog> log = ParseUsageLog(FileBytes(folder + name).value_or(""));
    if (!log) {
      lines.push_back(start + "not in the form of one");
      continue;
    }
    for (std::size_t i = 0; i < log->counters.size(); ++i)
      if (log->counters[i] != 0)
        lines.push_back(start + "counter " + std::to_string(i) + " is " +
                        std::to_string(log->counters[i]));
  }
}

}  // namespace

Lines ReadSuite() {
  Lines lines;
  AddLinesOfLog(kRunHelperLog, "run helper: ", lines);
  AddLinesOfLog(kInvitationLog, "invitation library: ", lines);
  AddLinesOfLog(kUtilityLog, "utility library: ", lines);
  AddLinesOfLog(kProgramsLog, "program: ", lines);
  AddTempFiles(lines);
  AddRunValues(lines);
  AddRecords(vgl::kPrinterBranch, lines);
  AddRecords(vgl::kPortBranch, lines);
  AddUsageLogs(lines);
  if (lines.empty()) lines.emplace_back("nothing");
  return lines;
}

}  // namespace desk
