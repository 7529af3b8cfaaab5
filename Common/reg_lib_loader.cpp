#include "Common/reg_lib_loader.h"

#include "Common/reg_lib_text.h"

namespace vgl {

using namespace platform;

ProcessWideValue<HMODULE> g_hRegLibModule;

template <class Char>
CRegLibLoader<Char>::~CRegLibLoader() {
  m_table.Clear();
  if (g_hRegLibModule == HMODULE{}) return;
  Os().modules.FreeLibrary(g_hRegLibModule);
  g_hRegLibModule = HMODULE{};
}

template <class Char>
std::int32_t CRegLibLoader<Char>::Load(RegLibStart start, const Char* input) {
  if (g_hRegLibModule == HMODULE{} && input != nullptr && *input != Char{})
    LoadModule(CDrvPathCache<Char>(start, input).LibraryPath());
  if (g_hRegLibModule == HMODULE{}) {
    m_table.Clear();
    return 0;
  }
  m_table.Bind(g_hRegLibModule);
  return 1;
}

template <class Char>
void CRegLibLoader<Char>::LoadModule(const std::basic_string<Char>& path) {
  if (!RegLibText<Char>::FileExists(path.c_str())) return;
  m_path = path;
  g_hRegLibModule = RegLibText<Char>::Load(m_path.c_str());
  m_fDidLoad = g_hRegLibModule != HMODULE{} ? 1 : 0;
}

template class CRegLibLoader<char>;
template class CRegLibLoader<char16_t>;

}  // namespace vgl
