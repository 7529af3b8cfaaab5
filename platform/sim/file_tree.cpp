#include "platform/sim/file_tree.h"

#include <algorithm>
#include <stdexcept>

#include "platform/sim/machine.h"
#include "platform/sim/text.h"

namespace sim {

using namespace platform;

namespace {

// Two openings get along when each lets the other do what it does. One that does nothing with the
// content (it asks for attributes alone) gets along with all.
bool Bears(const FileUse& use, const FileUse& other) {
  return (!other.reads || (use.share & FILE_SHARE_READ) != 0) &&
         (!other.writes || (use.share & FILE_SHARE_WRITE) != 0) &&
         (!other.deletes || (use.share & FILE_SHARE_DELETE) != 0);
}

bool IsIdle(const FileUse& use) { return !use.reads && !use.writes && !use.deletes; }

FilePath Resolve(std::u16string_view path) {
  FilePath resolved = ResolvePath(path, u"C:\\");
  if (resolved.error != 0) throw std::invalid_argument("not a path of the simulated machine");
  return resolved;
}

FindData MakeFindData(std::u16string_view name, const FileTree::Entry& entry) {
  FindData data;
  data.attributes = entry.Attributes();
  data.size = entry.IsFolder() ? 0 : entry.file->bytes.size();
  name.copy(data.name, MAX_PATH - 1);
  return data;
}

}  // namespace

bool FileNode::Admits(const FileUse& use) const {
  return IsIdle(use) || std::all_of(uses.begin(), uses.end(), [&](const FileUse* other) {
           return IsIdle(*other) || (Bears(*other, use) && Bears(use, *other));
         });
}

FileTree::FileTree(Machine& machine) {
  for (const std::u16string& folder :
       {std::u16string(u"C:\\Windows\\System32"), std::u16string(u"C:\\ProgramData"),
        std::u16string(u"C:\\Program Files"), std::u16string(u"C:\\Users\\User"),
        machine.system().tempFolder})
    MakeFolder(folder);
}

void FileTree::MakeFolder(std::u16string_view path) {
  const FilePath folder = Resolve(path);
  if (Find(folder) != nullptr) return;
  MakeFoldersOf(folder);
  m_entries[FoldCase(folder.text)] = {PathAsMade(folder), nullptr};
}

void FileTree::WriteFile(std::u16string_view path, std::string_view bytes) {
  const FilePath file = Resolve(path);
  const Entry* entry = Find(file);
  if (entry != nullptr && entry->IsFolder())
    throw std::invalid_argument("a folder can't be written");
  if (entry == nullptr) MakeFoldersOf(file);
  (entry == nullptr ? Add(file) : entry->file)->bytes = bytes;
}

void FileTree::WriteUtf16(std::u16string_view path, std::u16string_view text) {
  std::string bytes;
  for (const char16_t c : text) {
    bytes += static_cast<char>(c & 0xFF);
    bytes += static_cast<char>(c >> 8);
  }
  WriteFile(path, bytes);
}

std::optional<std::string> FileTree::ReadFile(std::u16string_view path) const {
  const Entry* entry = Find(Resolve(path));
  if (entry == nullptr || entry->IsFolder()) return std::nullopt;
  return entry->file->bytes;
}

bool FileTree::Exists(std::u16string_view path) const { return Find(Resolve(path)) != nullptr; }

void FileTree::Remove(std::u16string_view path) {
  const FilePath removed = Resolve(path);
  const std::u16string below = WithSeparator(FoldCase(removed.text));
  std::erase_if(m_entries, [&](const auto& entry) { return entry.first.starts_with(below); });
  Erase(removed);
}

void FileTree::MakeUnreadable(std::u16string_view path) { Existing(path).unreadable = true; }

void FileTree::MakeReadOnly(std::u16string_view path) {
  Existing(path).attributes |= FILE_ATTRIBUTE_READONLY;
}

std::vector<std::u16string> FileTree::List() const {
  std::vector<std::u16string> paths;
  for (const auto& [key, entry] : m_entries)
    if (!entry.IsFolder()) paths.push_back(entry.path);
  return paths;
}

const FileTree::Entry* FileTree::Find(const FilePath& path) const {
  const auto found = m_entries.find(FoldCase(path.text));
  return found == m_entries.end() ? nullptr : &found->second;
}

std::int32_t FileTree::WhyMissing(const FilePath& path) const {
  return IsFolder(path.Folder()) ? ERROR_FILE_NOT_FOUND : ERROR_PATH_NOT_FOUND;
}

bool FileTree::IsFolder(std::u16string_view path) const {
  const auto found = m_entries.find(FoldCase(path));
  return found != m_entries.end() && found->second.IsFolder();
}

std::shared_ptr<FileNode> FileTree::Add(const FilePath& path) {
  auto node = std::make_shared<FileNode>();
  node->path = PathAsMade(path);
  m_entries[FoldCase(path.text)] = {node->path, node};
  return node;
}

void FileTree::Erase(const FilePath& path) { m_entries.erase(FoldCase(path.text)); }

std::vector<FindData> FileTree::Search(const FilePath& pattern) const {
  std::vector<FindData> found;
  if (!HasWildcards(pattern.Name())) {
    const Entry* entry = Find(pattern);
    if (entry != nullptr && !pattern.IsRoot() && !pattern.endsInSeparator)
      found.push_back(MakeFindData(entry->path.substr(entry->path.rfind(u'\\') + 1), *entry));
    return found;
  }

  if (!IsFolder(pattern.Folder())) return found;
  const std::u16string wanted = FoldCase(pattern.Name());
  const std::u16string folder = WithSeparator(FoldCase(pattern.Folder()));
  const bool inRoot = folder.size() == pattern.rootLength;
  for (const std::u16string_view self : {u".", u".."})
    if (!inRoot && FitsPattern(self, wanted)) found.push_back(MakeFindData(self, Entry{}));
  for (auto at = m_entries.upper_bound(folder);
       at != m_entries.end() && at->first.starts_with(folder); ++at) {
    const std::u16string_view name = std::u16string_view(at->first).substr(folder.size());
    if (name.find(u'\\') == std::u16string_view::npos && FitsPattern(name, wanted))
      found.push_back(
          MakeFindData(std::u16string_view(at->second.path).substr(folder.size()), at->second));
  }
  return found;
}

void FileTree::TellWritten(std::uint32_t processId, const std::u16string& path,
                           std::string_view bytes) {
  if (m_observer) m_observer(processId, path, bytes);
}

FileNode& FileTree::Existing(std::u16string_view path) {
  const Entry* entry = Find(Resolve(path));
  if (entry == nullptr || entry->IsFolder()) throw std::invalid_argument("there is no such file");
  return *entry->file;
}

void FileTree::MakeFoldersOf(const FilePath& path) {
  if (!path.IsRoot()) MakeFolder(path.Folder());
}

// With the names above it as they are in the tree.
std::u16string FileTree::PathAsMade(const FilePath& path) const {
  if (path.IsRoot()) return path.text;
  return WithSeparator(m_entries.at(FoldCase(path.Folder())).path) + std::u16string(path.Name());
}

}  // namespace sim
