#include "platform/sim/module_calls.h"

#include <memory>

#include "platform/sim/code_page.h"
#include "platform/sim/machine.h"
#include "platform/sim/text.h"

namespace sim {

using namespace platform;

namespace {

constexpr HMODULE kProgram{0x140000000};

bool HasFolder(std::u16string_view name) {
  return name.find_first_of(u"\\/:") != std::u16string_view::npos;
}

std::u16string_view LastName(std::u16string_view path) {
  return path.substr(path.find_last_of(u"\\/:") + 1);
}

// A name without extension is a .DLL; a point at its end says that it has none.
std::u16string WithExtension(std::u16string_view path) {
  std::u16string whole(path);
  if (LastName(whole).find(u'.') == std::u16string_view::npos) whole += u".DLL";
  if (whole.ends_with(u'.')) whole.pop_back();
  return whole;
}

std::u16string FolderOf(const Process& process) {
  const std::u16string& image = process.imagePath();
  return image.substr(0, image.rfind(u'\\') + 1);
}

HMODULE FindLoaded(const Process& process, std::u16string_view path) {
  const std::u16string wanted = FoldCase(path);
  HMODULE found{};
  process.ForEachHandle<LoadedLibrary>([&](std::uint64_t handle, const LoadedLibrary& loaded) {
    const std::u16string folded = FoldCase(loaded.path());
    if (wanted == folded || wanted == LastName(folded)) found = HMODULE{handle};
  });
  return found;
}

std::shared_ptr<LoadedLibrary> FindLibrary(const Call& call, HMODULE module) {
  return FindLoadedLibrary(call.process(), module);
}

// Asks a library for `key`, a name or an ordinal.
template <class Key>
ExportedFunction FindExport(const Call& call, HMODULE module, Key key) {
  const std::shared_ptr<LoadedLibrary> loaded = FindLibrary(call, module);
  const Library* resident = call.machine().libraries().Resident(module);
  const bool isProgram = module == HMODULE{} || module == kProgram;  // which exports nothing
  const Library* exports = loaded == nullptr ? resident : loaded->exports();
  const ExportedFunction found = exports == nullptr ? nullptr : exports->Find(key);
  if (found == nullptr) {
    const bool isModule = loaded != nullptr || resident != nullptr || isProgram;
    call.SetLastError(isModule ? ERROR_PROC_NOT_FOUND : ERROR_MOD_NOT_FOUND);
  }
  return found;
}

}  // namespace

std::shared_ptr<LoadedLibrary> FindLoadedLibrary(const Process& process, HMODULE module) {
  return process.FindHandle<LoadedLibrary>(static_cast<std::uint64_t>(module));
}

HMODULE ModuleCalls::GetModuleHandleW(const char16_t* name) {
  Call call("GetModuleHandleW");
  if (call.Failure(ERROR_NO_SYSTEM_RESOURCES)) return HMODULE{};
  if (name == nullptr) return kProgram;
  const std::u16string wanted = WithExtension(View(name));
  HMODULE found = FindLoaded(call.process(), wanted);
  if (found == HMODULE{}) found = m_machine.libraries().FindResident(wanted);
  if (found != HMODULE{}) return found;
  const std::u16string image = FoldCase(call.process().imagePath());
  if (FoldCase(wanted) == image || FoldCase(wanted) == LastName(image)) return kProgram;
  call.SetLastError(ERROR_MOD_NOT_FOUND);
  return HMODULE{};
}

std::uint32_t ModuleCalls::GetModuleFileNameW(HMODULE module, char16_t* path, std::uint32_t chars) {
  Call call("GetModuleFileNameW");
  if (call.Failure(ERROR_NO_SYSTEM_RESOURCES)) return 0;
  const std::shared_ptr<LoadedLibrary> loaded = FindLibrary(call, module);
  if (loaded == nullptr && module != HMODULE{} && module != kProgram) {
    call.SetLastError(ERROR_MOD_NOT_FOUND);
    return 0;
  }
  const std::u16string& whole = loaded == nullptr ? call.process().imagePath() : loaded->path();
  const std::uint32_t copied = CopyCut(whole, path, chars);
  const bool cut = copied < whole.size();
  call.SetLastError(cut ? ERROR_INSUFFICIENT_BUFFER : ERROR_SUCCESS);
  return cut ? chars : copied;
}

std::u16string ModuleCalls::WholePath(const Process& process, const std::u16string& path) const {
  if (HasFolder(path)) return ResolvePath(path.c_str(), process).text;
  // The program's folder is its current one, too.
  for (const std::u16string& folder :
       {FolderOf(process), m_machine.system().systemFolder, m_machine.system().windowsFolder}) {
    if (folder.empty()) continue;
    std::u16string whole = WithSeparator(folder) + path;
    if (m_machine.files().Exists(whole)) return whole;
  }
  return {};
}

HMODULE ModuleCalls::Load(const Call& call, std::u16string_view given) {
  const auto fail = [&](std::int32_t error) {
    call.SetLastError(error);
    return HMODULE{};
  };
  const std::u16string path = WithExtension(given);
  const std::u16string whole = WholePath(call.process(), path);
  HMODULE module = FindLoaded(call.process(), path);
  if (module == HMODULE{}) module = FindLoaded(call.process(), whole);
  if (const auto loaded = FindLibrary(call, module)) {
    loaded->AddLoad();
    return module;
  }

  const FilePath file = ResolvePath(whole, u"C:\\");
  const FileTree::Entry* entry = m_machine.files().Find(file);
  if (entry == nullptr) return fail(ERROR_MOD_NOT_FOUND);
  if (entry->IsFolder() || entry->file->unreadable) return fail(ERROR_ACCESS_DENIED);
  Library* exports = m_machine.libraries().Find(file.text);
  std::shared_ptr<const PeFile> content = PeFile::Read(entry->file->bytes);
  if (exports == nullptr && content == nullptr) return fail(ERROR_BAD_EXE_FORMAT);
  auto loaded = std::make_shared<LoadedLibrary>(exports == nullptr ? entry->path : exports->path(),
                                                exports, std::move(content));
  m_machine.Trace(u"loaded library " + loaded->path());
  return HMODULE{call.process().AddHandle(std::move(loaded))};
}

HMODULE ModuleCalls::LoadLibraryW(const char16_t* path) {
  Call call("LoadLibraryW");
  if (call.Failure(ERROR_MOD_NOT_FOUND)) return HMODULE{};
  return Load(call, View(path));
}

HMODULE ModuleCalls::LoadLibraryA(const char* path) {
  Call call("LoadLibraryA");
  if (call.Failure(ERROR_MOD_NOT_FOUND)) return HMODULE{};
  return Load(call, FromCodePage(ViewNarrow(path)));
}

bool ModuleCalls::FreeLibrary(HMODULE module) {
  Call call("FreeLibrary", Call::kRelease);
  if (call.Inert()) return true;
  if (call.Failure(ERROR_MOD_NOT_FOUND)) return false;
  const std::shared_ptr<LoadedLibrary> loaded = FindLibrary(call, module);
  if (loaded == nullptr) {
    call.SetLastError(module == HMODULE{} ? ERROR_INVALID_HANDLE : ERROR_MOD_NOT_FOUND);
    return false;
  }
  if (loaded->DropLoad()) return true;
  m_machine.Trace(u"freed library " + loaded->path());
  return call.process().CloseHandle(static_cast<std::uint64_t>(module));
}

ExportedFunction ModuleCalls::GetProcAddress(HMODULE library, const char* name) {
  Call call("GetProcAddress");
  if (call.Failure(ERROR_PROC_NOT_FOUND)) return nullptr;
  return FindExport(call, library, ViewNarrow(name));
}

ExportedFunction ModuleCalls::GetProcAddress(HMODULE library, std::uint16_t ordinal) {
  Call call("GetProcAddress");
  if (call.Failure(ERROR_PROC_NOT_FOUND)) return nullptr;
  return FindExport(call, library, ordinal);
}

}  // namespace sim
