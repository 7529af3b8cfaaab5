#include "platform/sim/file_calls.h"

#include <algorithm>
#include <limits>
#include <memory>
#include <utility>
#include <vector>

#include "platform/sim/code_page.h"
#include "platform/sim/machine.h"
#include "platform/sim/open_file.h"
#include "platform/sim/text.h"

namespace sim {

using namespace platform;

namespace {

class OpenSearch final : public HandleBody {
 public:
  OpenSearch(std::u16string pattern, std::vector<FindData> found)
      : m_pattern(std::move(pattern)), m_found(std::move(found)) {}

  std::u16string Describe() const override { return u"search " + m_pattern; }
  bool IsKernelObject() const override { return false; }

  // False behind the last.
  bool Next(FindData* data) {
    if (m_next == m_found.size()) return false;
    *data = m_found[m_next++];
    return true;
  }

 private:
  std::u16string m_pattern;
  std::vector<FindData> m_found;
  std::size_t m_next = 0;
};

// Sets the thread's last error and gives a call's mark of failure.
template <class T>
T Fail(const Call& call, std::int32_t error, T failed) {
  call.SetLastError(error);
  return failed;
}

// Null with the error set when that is no open file.
std::shared_ptr<OpenFile> FindOpenFile(const Call& call, HANDLE file) {
  auto open = call.process().FindHandle<OpenFile>(static_cast<std::uint64_t>(file));
  if (open == nullptr) call.SetLastError(ERROR_INVALID_HANDLE);
  return open;
}

FileUse UseOf(std::uint32_t access, std::uint32_t share) {
  return {.reads = (access & GENERIC_READ) != 0,
          .writes = (access & (GENERIC_WRITE | FILE_APPEND_DATA)) != 0,
          .deletes = false,
          .share = share};
}

// Why a path of which there is something can't be opened so; 0 when it can.
std::int32_t WhyNotOpen(const FilePath& path, const FileTree::Entry& entry, const FileUse& use,
                        std::uint32_t disposition) {
  if (disposition == CREATE_NEW) return ERROR_FILE_EXISTS;
  if (entry.IsFolder()) return ERROR_ACCESS_DENIED;
  if (path.endsInSeparator) return ERROR_INVALID_NAME;
  const FileNode& file = *entry.file;
  const bool changes = use.writes || disposition == CREATE_ALWAYS;
  if (file.unreadable || (file.IsReadOnly() && changes)) return ERROR_ACCESS_DENIED;
  return file.Admits(use) ? 0 : ERROR_SHARING_VIOLATION;
}

// Why a path of which there is nothing can't be opened so; 0 when it can be made.
std::int32_t WhyNotMake(const FileTree& tree, const FilePath& path, std::uint32_t disposition) {
  const std::int32_t missing = tree.WhyMissing(path);
  if (missing == ERROR_PATH_NOT_FOUND || disposition == OPEN_EXISTING) return missing;
  return path.endsInSeparator ? ERROR_INVALID_NAME : 0;
}

std::uint32_t AttributesOfNewFile(std::uint32_t given) {
  return (given & (FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_TEMPORARY)) | FILE_ATTRIBUTE_ARCHIVE;
}

HFIND FindFirst(const Call& call, const char16_t* pattern, FindData* data) {
  const FilePath resolved = ResolvePath(pattern, call.process(), Wildcards::kInLastName);
  if (resolved.error != 0) return Fail(call, resolved.error, INVALID_FIND_HANDLE);

  const FileTree& tree = call.machine().files();
  auto search = std::make_shared<OpenSearch>(resolved.text, tree.Search(resolved));
  if (!search->Next(data)) return Fail(call, tree.WhyMissing(resolved), INVALID_FIND_HANDLE);
  return HFIND{call.process().AddHandle(std::move(search))};
}

std::u16string TempName(std::u16string_view folder, const char16_t* prefix, std::uint32_t number) {
  return WithSeparator(folder) + std::u16string(View(prefix).substr(0, 3)) + Hex(number) + u".tmp";
}

}  // namespace

HANDLE FileCalls::CreateFileW(const char16_t* path, std::uint32_t access, std::uint32_t share,
                              std::uint32_t disposition, std::uint32_t attributes) {
  Call call("CreateFileW");
  if (call.Failure(ERROR_ACCESS_DENIED)) return INVALID_HANDLE_VALUE;
  if (disposition < CREATE_NEW || disposition > OPEN_ALWAYS)
    return Fail(call, ERROR_INVALID_PARAMETER, INVALID_HANDLE_VALUE);
  const FilePath resolved = ResolvePath(path, call.process());
  if (resolved.error != 0) return Fail(call, resolved.error, INVALID_HANDLE_VALUE);

  FileTree& tree = m_machine.files();
  const FileUse use = UseOf(access, share);
  const FileTree::Entry* entry = tree.Find(resolved);
  const std::int32_t error = entry == nullptr ? WhyNotMake(tree, resolved, disposition)
                                              : WhyNotOpen(resolved, *entry, use, disposition);
  if (error != 0) return Fail(call, error, INVALID_HANDLE_VALUE);

  OpenFile::Origin origin = OpenFile::Origin::kExisted;
  const std::shared_ptr<FileNode> file = entry == nullptr ? tree.Add(resolved) : entry->file;
  if (entry == nullptr) origin = OpenFile::Origin::kMade;
  if (entry != nullptr && disposition == CREATE_ALWAYS) {
    if (!file->bytes.empty()) origin = OpenFile::Origin::kEmptied;
    file->bytes.clear();
  }
  if (entry == nullptr || disposition == CREATE_ALWAYS)
    file->attributes = AttributesOfNewFile(attributes);
  if (disposition == CREATE_ALWAYS || disposition == OPEN_ALWAYS)
    call.SetLastError(entry == nullptr ? ERROR_SUCCESS : ERROR_ALREADY_EXISTS);
  const bool appendsOnly = (access & FILE_APPEND_DATA) != 0 && (access & GENERIC_WRITE) == 0;
  return HANDLE{call.process().AddHandle(
      std::make_shared<OpenFile>(call.process(), file, use, appendsOnly, origin))};
}

bool FileCalls::ReadFile(HANDLE file, void* data, std::uint32_t bytes, std::uint32_t* read) {
  Call call("ReadFile");
  if (read != nullptr) *read = 0;
  if (call.Failure(ERROR_ACCESS_DENIED)) return false;
  const std::shared_ptr<OpenFile> open = FindOpenFile(call, file);
  if (open == nullptr) return false;
  if (!open->Reads()) return Fail(call, ERROR_ACCESS_DENIED, false);
  const std::uint32_t count =
      open->Read(static_cast<char*>(data), std::min(bytes, m_machine.files().mostBytesOfRead()));
  if (read != nullptr) *read = count;
  return true;
}

bool FileCalls::WriteFile(HANDLE file, const void* data, std::uint32_t bytes,
                          std::uint32_t* written) {
  Call call("WriteFile");
  if (written != nullptr) *written = 0;
  if (call.Failure(ERROR_ACCESS_DENIED)) return false;
  const std::shared_ptr<OpenFile> open = FindOpenFile(call, file);
  if (open == nullptr) return false;
  if (!open->Writes()) return Fail(call, ERROR_ACCESS_DENIED, false);
  if (!open->Write({static_cast<const char*>(data), bytes}))
    return Fail(call, ERROR_DISK_FULL, false);
  if (written != nullptr) *written = bytes;
  return true;
}

std::uint32_t FileCalls::GetFileSize(HANDLE file, std::uint32_t* high) {
  Call call("GetFileSize");
  if (call.Failure(ERROR_ACCESS_DENIED)) return INVALID_FILE_SIZE;
  const std::shared_ptr<OpenFile> open = FindOpenFile(call, file);
  if (open == nullptr) return INVALID_FILE_SIZE;
  if (high != nullptr) *high = static_cast<std::uint32_t>(open->Size() >> 32);
  return static_cast<std::uint32_t>(open->Size());
}

std::uint32_t FileCalls::SetFilePointer(HANDLE file, std::int32_t distance, std::uint32_t method) {
  Call call("SetFilePointer");
  if (call.Failure(ERROR_INVALID_PARAMETER)) return INVALID_SET_FILE_POINTER;
  const std::shared_ptr<OpenFile> open = FindOpenFile(call, file);
  if (open == nullptr) return INVALID_SET_FILE_POINTER;
  if (method > FILE_END) return Fail(call, ERROR_INVALID_PARAMETER, INVALID_SET_FILE_POINTER);

  const std::uint64_t from = method == FILE_BEGIN     ? 0
                             : method == FILE_CURRENT ? open->Position()
                                                      : open->Size();
  const std::int64_t position = static_cast<std::int64_t>(from) + distance;
  if (position < 0) return Fail(call, ERROR_NEGATIVE_SEEK, INVALID_SET_FILE_POINTER);
  if (position > std::numeric_limits<std::uint32_t>::max())
    return Fail(call, ERROR_INVALID_PARAMETER, INVALID_SET_FILE_POINTER);
  open->MoveTo(static_cast<std::uint64_t>(position));
  return static_cast<std::uint32_t>(position);
}

bool FileCalls::DeleteFileW(const char16_t* path) {
  Call call("DeleteFileW");
  if (call.Failure(ERROR_ACCESS_DENIED)) return false;
  const FilePath resolved = ResolvePath(path, call.process());
  if (resolved.error != 0) return Fail(call, resolved.error, false);

  FileTree& tree = m_machine.files();
  const FileTree::Entry* entry = tree.Find(resolved);
  if (entry == nullptr) return Fail(call, tree.WhyMissing(resolved), false);
  if (entry->IsFolder()) return Fail(call, ERROR_ACCESS_DENIED, false);
  if (resolved.endsInSeparator) return Fail(call, ERROR_INVALID_NAME, false);
  if (entry->file->IsReadOnly()) return Fail(call, ERROR_ACCESS_DENIED, false);
  const FileUse deletion{.deletes = true,
                         .share = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE};
  if (!entry->file->Admits(deletion)) return Fail(call, ERROR_SHARING_VIOLATION, false);
  const std::u16string name = entry->path;
  tree.Erase(resolved);
  m_machine.Trace(u"deleted file " + name);
  return true;
}

HFIND FileCalls::FindFirstFileW(const char16_t* pattern, FindData* data) {
  Call call("FindFirstFileW");
  if (call.Failure(ERROR_ACCESS_DENIED)) return INVALID_FIND_HANDLE;
  return FindFirst(call, pattern, data);
}

HFIND FileCalls::FindFirstFileA(const char* pattern, FindDataA* data) {
  Call call("FindFirstFileA");
  if (call.Failure(ERROR_ACCESS_DENIED)) return INVALID_FIND_HANDLE;
  FindData wide;
  const HFIND search = FindFirst(call, FromCodePage(ViewNarrow(pattern)).c_str(), &wide);
  if (search == INVALID_FIND_HANDLE) return search;
  *data = {.attributes = wide.attributes, .size = wide.size};
  ToCodePage(View(wide.name)).copy(data->name, MAX_PATH - 1);
  return search;
}

bool FileCalls::FindNextFileW(HFIND search, FindData* data) {
  Call call("FindNextFileW");
  if (call.Failure(ERROR_NO_MORE_FILES)) return false;
  const auto open = call.process().FindHandle<OpenSearch>(static_cast<std::uint64_t>(search));
  if (open == nullptr) return Fail(call, ERROR_INVALID_HANDLE, false);
  return open->Next(data) || Fail(call, ERROR_NO_MORE_FILES, false);
}

bool FileCalls::FindClose(HFIND search) {
  Call call("FindClose", Call::kRelease);
  if (call.Inert()) return true;
  if (call.Failure(ERROR_INVALID_HANDLE)) return false;
  const auto number = static_cast<std::uint64_t>(search);
  if (call.process().FindHandle<OpenSearch>(number) == nullptr)
    return Fail(call, ERROR_INVALID_HANDLE, false);
  return call.process().CloseHandle(number);
}

std::uint32_t FileCalls::GetFileAttributesW(const char16_t* path) {
  Call call("GetFileAttributesW");
  if (call.Failure(ERROR_ACCESS_DENIED)) return INVALID_FILE_ATTRIBUTES;
  const FilePath resolved = ResolvePath(path, call.process());
  if (resolved.error != 0) return Fail(call, resolved.error, INVALID_FILE_ATTRIBUTES);

  const FileTree& tree = m_machine.files();
  const FileTree::Entry* entry = tree.Find(resolved);
  if (entry == nullptr) return Fail(call, tree.WhyMissing(resolved), INVALID_FILE_ATTRIBUTES);
  if (!entry->IsFolder() && resolved.endsInSeparator)
    return Fail(call, ERROR_INVALID_NAME, INVALID_FILE_ATTRIBUTES);
  return entry->Attributes();
}

std::uint32_t FileCalls::GetTempPathW(std::uint32_t chars, char16_t* path) {
  Call call("GetTempPathW");
  if (call.Failure(ERROR_ACCESS_DENIED)) return 0;
  const std::u16string& folder = m_machine.system().tempFolder;
  if (folder.empty()) return Fail(call, ERROR_PATH_NOT_FOUND, 0u);
  const std::u16string temp = WithSeparator(folder);
  const auto length = static_cast<std::uint32_t>(temp.size());
  if (chars <= length) return length + 1;
  path[temp.copy(path, length)] = u'\0';
  return length;
}

std::uint32_t FileCalls::GetTempFileNameW(const char16_t* folder, const char16_t* prefix,
                                          std::uint32_t unique, char16_t* name) {
  Call call("GetTempFileNameW");
  if (call.Failure(ERROR_ACCESS_DENIED)) return 0;
  constexpr std::uint32_t kLongestName = 14;  // of the temp file, with "\" and terminator
  if (View(folder).size() > MAX_PATH - kLongestName) return Fail(call, ERROR_BUFFER_OVERFLOW, 0u);
  FileTree& tree = m_machine.files();
  if (!tree.IsFolder(ResolvePath(folder, call.process()).text))
    return Fail(call, ERROR_DIRECTORY, 0u);

  const auto give = [&](std::uint32_t number) {
    const std::u16string path = TempName(View(folder), prefix, number);
    name[path.copy(name, MAX_PATH - 1)] = u'\0';
    return number;
  };
  if (unique != 0) return give(unique & 0xFFFF);

  const auto start = static_cast<std::uint32_t>(m_machine.scheduler().Random() & 0xFFFF);
  for (std::uint32_t step = 0; step <= 0xFFFF; ++step) {
    const std::uint32_t number = (start + step) & 0xFFFF;
    const FilePath path =
        ResolvePath(TempName(View(folder), prefix, number).c_str(), call.process());
    if (path.error != 0) return Fail(call, path.error, 0u);
    if (number == 0 || tree.Find(path) != nullptr) continue;
    m_machine.Trace(u"made " + tree.Add(path)->path);
    return give(number);
  }
  return Fail(call, ERROR_FILE_EXISTS, 0u);
}

}  // namespace sim
