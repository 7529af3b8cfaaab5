// Invitations to the driver set's dependent program, at moments that the set's own library decides.
#pragma once

#include <string>

#include "platform/types.h"

namespace vgl {

class CSmartInvitation {
 public:
  CSmartInvitation() = default;
  virtual ~CSmartInvitation() = default;
  CSmartInvitation(const CSmartInvitation&) = delete;
  CSmartInvitation& operator=(const CSmartInvitation&) = delete;

  std::u16string strPrinterName;  // for lookups in the driver set
  std::u16string strModelId;
  platform::HMODULE m_hInstAllowInv{};  // the library, once an invitation was asked for
};

}  // namespace vgl
