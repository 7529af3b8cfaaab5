#include "platform/sim/file_path.h"

#include <algorithm>
#include <vector>

#include "platform/sim/process.h"
#include "platform/sim/text.h"
#include "platform/types.h"

namespace sim {

using namespace platform;

namespace {

constexpr std::u16string_view kLiteralPrefix = u"\\\\?\\";

bool HasDrive(std::u16string_view path) {
  if (path.size() < 2 || path[1] != u':') return false;
  const char16_t letter = FoldCase(path[0]);
  return letter >= u'a' && letter <= u'z';
}

// Of an absolute path; 0 when it names no drive and no whole share.
std::size_t RootLength(std::u16string_view path) {
  if (HasDrive(path)) return 3;
  const std::size_t server = path.find(u'\\', 2);
  if (server == std::u16string_view::npos) return 0;
  const std::size_t share = path.find(u'\\', server + 1);
  return share == std::u16string_view::npos ? 0 : share + 1;
}

std::u16string MakeAbsolute(std::u16string_view path, std::u16string_view currentFolder) {
  const std::u16string current = WithSeparator(currentFolder);
  if (path.starts_with(u"\\\\")) return std::u16string(path);
  if (path.starts_with(u"\\"))
    return current.substr(0, RootLength(current)) + std::u16string(path.substr(1));
  if (!HasDrive(path)) return current + std::u16string(path);
  if (path.substr(2).starts_with(u"\\")) return std::u16string(path);
  const std::u16string_view drive = path.substr(0, 2);
  const bool sameDrive = FoldCase(drive) == FoldCase(current.substr(0, 2));
  return (sameDrive ? current : std::u16string(drive) + u"\\") + std::u16string(path.substr(2));
}

bool IsInvalid(char16_t c, bool wildcardsAreValid) {
  if (c == u'*' || c == u'?') return !wildcardsAreValid;
  return c < u' ' || c == u'"' || c == u'<' || c == u'>' || c == u'|';
}

// The names of a path without its root, as "." and ".." have them.
std::vector<std::u16string_view> Names(std::u16string_view path) {
  std::vector<std::u16string_view> names;
  while (!path.empty()) {
    const std::size_t length = std::min(path.find(u'\\'), path.size());
    const std::u16string_view name = path.substr(0, length);
    path.remove_prefix(std::min(length + 1, path.size()));
    if (name == u"..") {
      if (!names.empty()) names.pop_back();
    } else if (!name.empty() && name != u".") {
      names.push_back(name);
    }
  }
  return names;
}

FilePath Invalid(std::int32_t error) {
  FilePath path;
  path.error = error;
  return path;
}

}  // namespace

std::u16string_view FilePath::Name() const {
  const std::u16string_view view = text;
  return IsRoot() ? std::u16string_view{} : view.substr(view.rfind(u'\\') + 1);
}

std::u16string_view FilePath::Folder() const {
  const std::u16string_view view = text;
  return IsRoot() ? view : view.substr(0, std::max(view.rfind(u'\\'), rootLength));
}

FilePath ResolvePath(std::u16string_view given, std::u16string_view currentFolder,
                     Wildcards wildcards) {
  if (given.empty()) return Invalid(ERROR_PATH_NOT_FOUND);
  std::u16string slashed(given);
  std::replace(slashed.begin(), slashed.end(), u'/', u'\\');
  if (slashed.starts_with(kLiteralPrefix)) slashed.erase(0, kLiteralPrefix.size());
  const std::u16string absolute = WithSeparator(MakeAbsolute(slashed, currentFolder));

  FilePath path;
  path.rootLength = RootLength(absolute);
  if (path.rootLength == 0) return Invalid(ERROR_PATH_NOT_FOUND);
  path.text = absolute.substr(0, path.rootLength);

  const std::u16string_view rest = std::u16string_view(absolute).substr(path.rootLength);
  const std::vector<std::u16string_view> names = Names(rest);
  for (const std::u16string_view& name : names) {
    const bool isLast = &name == &names.back();
    const bool wildcardsAreValid = isLast && wildcards == Wildcards::kInLastName;
    if (std::any_of(name.begin(), name.end(),
                    [&](char16_t c) { return IsInvalid(c, wildcardsAreValid); }))
      return Invalid(ERROR_INVALID_NAME);
    path.text += name;
    if (!isLast) path.text += u'\\';
  }
  path.endsInSeparator = !path.IsRoot() && slashed.ends_with(u'\\');
  if (path.text.size() >= MAX_PATH) return Invalid(ERROR_PATH_NOT_FOUND);
  return path;
}

FilePath ResolvePath(const char16_t* given, const Process& process, Wildcards wildcards) {
  const std::u16string_view image = process.imagePath();
  const std::size_t end = image.rfind(u'\\');
  return ResolvePath(View(given), end == std::u16string_view::npos ? u"C:\\" : image.substr(0, end),
                     wildcards);
}

std::u16string WithSeparator(std::u16string_view folder) {
  std::u16string text(folder);
  if (!text.ends_with(u'\\')) text += u'\\';
  return text;
}

bool HasWildcards(std::u16string_view name) {
  return name.find_first_of(u"*?") != std::u16string_view::npos;
}

bool FitsPattern(std::u16string_view name, std::u16string_view pattern) {
  const auto at = [&](std::size_t index) {
    return index < pattern.size() ? pattern[index] : char16_t{};
  };
  // Where to go on when a character doesn't fit: the last star takes one more.
  std::size_t star = std::u16string_view::npos, taken = 0;
  std::size_t n = 0, p = 0;
  while (n < name.size()) {
    if (at(p) == u'*') {
      star = p++;
      taken = n;
    } else if (at(p) == u'?' && name[n] == u'.') {
      ++p;  // in front of a dot it may stand for nothing
    } else if (at(p) == u'?' || at(p) == name[n]) {
      ++p;
      ++n;
    } else if (star != std::u16string_view::npos) {
      p = star + 1;
      n = ++taken;
    } else {
      return false;
    }
  }
  // At the end of a name a wildcard may stand for nothing, and so may a dot in front of one.
  const auto isWildcard = [](char16_t c) { return c == u'*' || c == u'?'; };
  while (isWildcard(at(p)) || (at(p) == u'.' && isWildcard(at(p + 1)))) ++p;
  return p == pattern.size();
}

}  // namespace sim
