// The files and folders of the simulated machine.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/files.h"
#include "platform/sim/file_path.h"

namespace sim {

class Machine;

// What an opening does with a file and lets others do meanwhile.
struct FileUse {
  bool reads = false;
  bool writes = false;
  bool deletes = false;
  std::uint32_t share = 0;
};

// A file. It lives while it is in the tree or open.
struct FileNode {
  std::u16string path;  // in the case that it was made with
  std::string bytes;
  std::uint32_t attributes = platform::FILE_ATTRIBUTE_ARCHIVE;
  bool unreadable = false;
  std::vector<const FileUse*> uses;  // of the handles that are open

  bool IsReadOnly() const { return (attributes & platform::FILE_ATTRIBUTE_READONLY) != 0; }
  // Whether the openings there are bear one more, and it them.
  bool Admits(const FileUse& use) const;
};

class FileTree {
 public:
  // Sees what a process wrote between opening a file and closing it.
  using WriteObserver = std::function<void(std::uint32_t processId, const std::u16string& path,
                                           std::string_view newBytes)>;

  explicit FileTree(Machine& machine);
  FileTree(const FileTree&) = delete;
  FileTree& operator=(const FileTree&) = delete;

  // A path here is as a program in the folder C:\ would give it.

  // Makes a folder with all folders above it.
  void MakeFolder(std::u16string_view path);
  // Makes or replaces a file, and the folders above it.
  void WriteFile(std::u16string_view path, std::string_view bytes);
  // UTF-16 little-endian without byte-order mark, as parameter files are.
  void WriteUtf16(std::u16string_view path, std::u16string_view text);
  // Nothing when there is no such file.
  std::optional<std::string> ReadFile(std::u16string_view path) const;
  bool Exists(std::u16string_view path) const;
  // Takes a file away, even an open one, or a folder with all that is in it.
  void Remove(std::u16string_view path);
  // From now on opening the file fails with access denied. It can still be found and deleted.
  void MakeUnreadable(std::u16string_view path);
  void MakeReadOnly(std::u16string_view path);
  // Full paths of all files, in order.
  std::vector<std::u16string> List() const;
  // Calls `observer` with what a process wrote, when it closes the file.
  void OnAppend(WriteObserver observer) { m_observer = std::move(observer); }

  // From now on a read gives at most that many bytes, as one from a network may; 0: nothing.
  void LimitReads(std::uint32_t bytes) { m_mostBytesOfRead = bytes; }

  // --- for the simulation ---

  std::uint32_t mostBytesOfRead() const { return m_mostBytesOfRead; }

  struct Entry {
    std::u16string path;
    std::shared_ptr<FileNode> file;  // null for a folder

    bool IsFolder() const { return file == nullptr; }
    std::uint32_t Attributes() const {
      return IsFolder() ? platform::FILE_ATTRIBUTE_DIRECTORY : file->attributes;
    }
  };

  // Null when there is nothing of that path.
  const Entry* Find(const FilePath& path) const;
  // Why there is nothing: file not found, or path not found when its folder isn't there either.
  std::int32_t WhyMissing(const FilePath& path) const;
  bool IsFolder(std::u16string_view path) const;
  // A new empty file in a folder that is there.
  std::shared_ptr<FileNode> Add(const FilePath& path);
  void Erase(const FilePath& path);
  // What in the folder of `pattern` fits its last name.
  std::vector<platform::FindData> Search(const FilePath& pattern) const;
  void TellWritten(std::uint32_t processId, const std::u16string& path, std::string_view bytes);

 private:
  std::uint32_t m_mostBytesOfRead = UINT32_MAX;
  FileNode& Existing(std::u16string_view path);
  void MakeFoldersOf(const FilePath& path);
  std::u16string PathAsMade(const FilePath& path) const;

  std::map<std::u16string, Entry> m_entries;  // by their folded paths
  WriteObserver m_observer;
};

}  // namespace sim
