#include "Common/target_records.h"

#include "Common/wide_format.h"
#include "platform/owned.h"

namespace vgl {

using namespace platform;

namespace {

// A record's "Name" has at most 260 characters, and other programs store it with or without its
// terminator; the buffer ends in one either way.
constexpr std::uint32_t kNameChars = 260;

bool RecordIsOf(HKEY branch, const char16_t* subKey, const char16_t* name) {
  OwnedKey record;
  if (Os().registry.RegOpenKeyExW(branch, subKey, KEY_READ, record.Out()) != ERROR_SUCCESS)
    return false;
  char16_t stored[kNameChars + 2] = {};
  std::uint32_t bytes = (kNameChars + 1) * sizeof(char16_t);
  if (Os().registry.RegQueryValueExW(record.get(), u"Name", nullptr, stored, &bytes) !=
      ERROR_SUCCESS)
    return false;
  if (stored[kNameChars] != u'\0') return false;
  return Os().nls.lstrcmpiW(stored, name) == 0;
}

}  // namespace

int FindTargetKey(const char16_t* name, bool isPort, PathText& outKey) {
  outKey.Clear();
  const char16_t* branchPath = isPort ? kPortBranch : kPrinterBranch;
  OwnedKey branch;
  if (Os().registry.RegOpenKeyExW(HKEY_CURRENT_USER, branchPath, KEY_READ, branch.Out()) !=
      ERROR_SUCCESS)
    return 4;
  for (std::uint32_t index = 0;; ++index) {
    PathText subKey;
    std::uint32_t chars = PathText::capacity();
    Os().registry.RegEnumKeyExW(branch.get(), index, subKey.buffer(), &chars, nullptr, nullptr);
    if (subKey.empty()) return 1;
    if (RecordIsOf(branch.get(), subKey.c_str(), name))
      return FormatTo(outKey, u"%s\\%s", branchPath, subKey) ? 0 : 1;
  }
}

std::u16string RunValueNameOfRecord(std::u16string_view recordPath) {
  const std::u16string_view branch(kDataBranch);
  std::u16string name(recordPath);
  for (std::size_t at = name.find(branch); at != std::u16string::npos; at = name.find(branch, at))
    name.erase(at, branch.size());
  return name.empty() ? name : name.substr(1);
}

}  // namespace vgl
