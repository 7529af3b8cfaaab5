// What an install description holds once it is read: registry keys with a tag each, and values that
// belong to a key by its tag.
#pragma once

#include <cstdint>
#include <string>

#include "profile/sync_list.h"

namespace vgl {

// A line REGPATH = tag, "HKEY_LOCAL_MACHINE\path".
struct CRegPathEntry {
  virtual ~CRegPathEntry() = default;

  std::u16string m_csTag;
  std::u16string m_csPath;  // what stands behind the hive
};

// A line REGENTER = tag, "name", value, condition, ...
struct CRegEnterEntry {
  virtual ~CRegEnterEntry() = default;

  std::u16string m_csTag;
  std::u16string m_csName;
  std::uint32_t m_uType = 0;   // REG_SZ or REG_DWORD
  std::u16string m_csText;     // of a string, with its folder in place of the folder's word
  std::int64_t m_nNumber = 0;  // of a number; always one of 32 bits with sign
};

using CRegPathList = CSyncList<CRegPathEntry>;
using CRegEnterList = CSyncList<CRegEnterEntry>;

}  // namespace vgl
