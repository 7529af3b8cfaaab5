#include "desk/language_manager.h"

#include <cstring>
#include <type_traits>

#include "platform/platform.h"
#include "platform/sim/machine.h"
#include "profile/lmw_exports.h"

namespace desk {

using namespace platform;
using vgl::kLmwNoRoom;
using vgl::kLmwSuccess;

namespace {

constexpr std::uint64_t kFirstContext = 0x4C4D570000000001;

LanguageManager& Manager() {
  return sim::RunningProcess().machine().libraries().State<LanguageManager>();
}

// A field of a block at its place, as a library that knows nothing of our structures finds it.
template <class T>
T FieldAt(const void* block, std::size_t offset) {
  T field{};
  std::memcpy(&field, static_cast<const char*>(block) + offset, sizeof field);
  return field;
}

std::u16string TextAt(const void* block, std::size_t offset) {
  const auto* text = FieldAt<const char16_t*>(block, offset);
  return text == nullptr ? u"" : text;
}

LanguageManager::Block ReadBlock(std::uint32_t mode, const void* block) {
  LanguageManager::Block read{.mode = mode};
  read.driver = TextAt(block, 0);
  read.vif = TextAt(block, 8);
  if (mode == vgl::kLmwModeFile) {
    read.mark = FieldAt<std::uint16_t>(block, 16);
    return read;
  }
  read.mark = FieldAt<std::uint64_t>(block, 16);
  read.printer = TextAt(block, 24);
  read.handle = FieldAt<std::uint64_t>(block, 32);
  return read;
}

// Whether the context is open; a call with one that isn't is noted.
bool IsOpen(std::uint64_t context) {
  const bool open = Manager().openContexts.contains(context);
  if (!open) ++Manager().unknownContexts;
  return open;
}

// Hands a text over into `*chars` characters.
std::int32_t Give(std::u16string_view text, char16_t* out, std::uint32_t* chars) {
  const auto needed = static_cast<std::uint32_t>(text.size() + 1);
  const bool fits = out != nullptr && *chars >= needed;
  *chars = needed;
  if (!fits) return kLmwNoRoom;
  out[text.copy(out, text.size())] = u'\0';
  return kLmwSuccess;
}

std::u16string PathInVif(const char16_t* vif, const char16_t* section, const char16_t* key) {
  std::u16string name(MAX_PATH, u'\0');
  name.resize(
      Os().profiles.GetPrivateProfileStringW(section, key, u"", name.data(), MAX_PATH, vif));
  return name.empty() || name.find(u'\\') != std::u16string::npos ? name : Manager().folder + name;
}

std::int32_t Initialize(std::uint32_t mode, const void* block, std::uint64_t* context) {
  static_assert(std::is_same_v<decltype(&Initialize), vgl::LMWInitializeFunction>);
  LanguageManager& manager = Manager();
  manager.blocks.push_back(ReadBlock(mode, block));
  *context = kFirstContext + manager.blocks.size();  // a refusal leaves something there, too
  if (!(mode == vgl::kLmwModePrinter ? manager.takesPrinterMode : manager.takesFileMode)) return 0;
  manager.openContexts[*context] = manager.blocks.back().vif;
  return kLmwSuccess;
}

std::int32_t UnInitialize(std::uint64_t context) {
  static_assert(std::is_same_v<decltype(&UnInitialize), vgl::LMWUnInitializeFunction>);
  if (!IsOpen(context)) return 0;
  Manager().openContexts.erase(context);
  return kLmwSuccess;
}

std::int32_t GetLibraryPath(std::uint64_t context, const char16_t* section, const char16_t* key,
                            char16_t* path, std::uint32_t* chars) {
  static_assert(std::is_same_v<decltype(&GetLibraryPath), vgl::LMWGetLibraryPathFunction>);
  LanguageManager& manager = Manager();
  manager.keys.push_back(std::u16string(section) + u"/" + key);
  if (!IsOpen(context)) return 0;
  if (manager.pathResult) return *manager.pathResult;
  const auto known = manager.paths.find(key);
  const std::u16string found =
      known != manager.paths.end()
          ? known->second
          : PathInVif(manager.openContexts.at(context).c_str(), section, key);
  return found.empty() ? 0 : Give(found, path, chars);
}

std::int32_t GetInformation(std::uint64_t context, std::uint32_t code, const void* input,
                            std::uint32_t inputSize, void* out, std::uint32_t* size) {
  static_assert(std::is_same_v<decltype(&GetInformation), vgl::LMWGetInformationFunction>);
  LanguageManager& manager = Manager();
  LanguageManager::Request request{
      .code = code, .input = {}, .hasInput = input != nullptr, .hasRoom = out != nullptr};
  request.size = *size;
  const std::size_t unit = code == vgl::kLmwInkCode ? sizeof(char16_t) : 1;
  if (input != nullptr) request.input.assign(static_cast<const char*>(input), inputSize * unit);
  manager.requests.push_back(request);
  if (!IsOpen(context)) return 0;
  if (manager.informationResult) return *manager.informationResult;
  if (out != nullptr && manager.informationResultWithRoom)
    return *manager.informationResultWithRoom;
  const auto known = manager.texts.find(code);
  return known == manager.texts.end() ? 0 : Give(known->second, static_cast<char16_t*>(out), size);
}

}  // namespace

sim::Library& AddLanguageManager(sim::Machine& machine, std::u16string_view path) {
  sim::Library& library = machine.libraries().Add(path);
  library.Export<&Initialize>(1, vgl::kLMWInitialize);
  library.Export<&UnInitialize>(2, vgl::kLMWUnInitialize);
  library.Export<&GetLibraryPath>(3, vgl::kLMWGetLibraryPath);
  library.Export<&GetInformation>(4, vgl::kLMWGetInformation);
  machine.libraries().State<LanguageManager>().folder = path.substr(0, path.rfind(u'\\') + 1);
  return library;
}

}  // namespace desk
