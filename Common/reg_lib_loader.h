// Loads the registry library and binds its exports.
#pragma once

#include <cstdint>
#include <string>

#include "Common/reg_lib_location.h"
#include "Common/reg_lib_table.h"
#include "platform/process_wide.h"

namespace vgl {

// The library of this process, null while none is loaded. The loaders share it: one loads, the
// others find it here.
extern platform::ProcessWideValue<platform::HMODULE> g_hRegLibModule;

// A loader for texts of `Char`: char or char16_t. Main thread only.
template <class Char>
class CRegLibLoader {
 public:
  CRegLibLoader() = default;
  CRegLibLoader(const CRegLibLoader&) = delete;
  CRegLibLoader& operator=(const CRegLibLoader&) = delete;
  // Frees the library, whichever loader has loaded it: the other one's table is useless from then
  // on.
  ~CRegLibLoader();

  // Finds the library from `input` and loads it, unless it is loaded already or `input` is null;
  // then binds the table, or empties it when there is no library. 1 or 0: whether the library is
  // loaded, whatever became of the table. An empty input finds nothing.
  std::int32_t Load(RegLibStart start, const Char* input);

  const CRegLibTable<Char>& table() const { return m_table; }
  // The file that this loader found, whether or not it could be loaded; empty when it found none.
  const std::basic_string<Char>& path() const { return m_path; }
  // 1 when it was this loader that loaded the library.
  std::int32_t didLoad() const { return m_fDidLoad; }

 private:
  void LoadModule(const std::basic_string<Char>& path);

  std::basic_string<Char> m_path;
  std::int32_t m_fDidLoad = 0;
  CRegLibTable<Char> m_table;
};

using CRegLibLoaderA = CRegLibLoader<char>;
using CRegLibLoaderW = CRegLibLoader<char16_t>;
extern template class CRegLibLoader<char>;
extern template class CRegLibLoader<char16_t>;

}  // namespace vgl
