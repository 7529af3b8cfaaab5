// Invitations to the driver set's dependent program, at moments that the set's own library decides.
//
// The library ("SMRT_PARLOS") is a closed part of the driver set; how it decides is its own affair.
// No failure is told: where anything is missing, nothing is due.
#pragma once

#include <cstdint>
#include <string>

#include "menu/printer_identity.h"
#include "platform/types.h"

namespace vgl {

// The exports of that library that the agent asks, beside the one that it tells of a printer that
// is gone. Texts are never null, end in their terminator and stay the caller's.
//
// How long to wait between two asks, in milliseconds; 0: no invitations for this printer.
inline constexpr char kParlosIsInvitationTimer[] = "FY08ParlosIsInvitationTimerW";
using ParlosIsInvitationTimerFunction = std::uint32_t (*)(const char16_t* printer,
                                                          const char16_t* driver);
// The level of the invitation that is due now; 0: none. The last three are always 0, -1 and 1.
inline constexpr char kParlosIsAllowInvitation[] = "FY08ParlosIsAllowInvitationW";
using ParlosIsAllowInvitationFunction = std::int32_t (*)(const char16_t* printer,
                                                         const char16_t* driver,
                                                         const char16_t* modelId, std::int32_t,
                                                         std::int32_t, std::int32_t);

// Who looks for the library: the name that the tray log has for it, and the longest text that it
// takes from the registry, in bytes (0: any).
struct InvitationAsker {
  const char16_t* logName;
  std::uint32_t mostBytes;
};

// The whole path of the library: from the registry where the profile says so, else from the install
// description by the driver's name. Only the profile is found by the printer and the model, of
// which each may be empty. Empty where none is named.
std::u16string FindInvitationLibrary(const InvitationAsker& asker, const char16_t* driverName,
                                     const char16_t* modelId, const char16_t* printerName);

// One that asks when invitations are due. It belongs to one thread.
class CSmartInvitation {
 public:
  CSmartInvitation() = default;
  // Frees the library that GetInvitationLevel loaded.
  virtual ~CSmartInvitation();
  CSmartInvitation(const CSmartInvitation&) = delete;
  CSmartInvitation& operator=(const CSmartInvitation&) = delete;

  // The path of the driver's library; the profile is looked for by this object's two names. Empty
  // where there is none, and for an empty driver name.
  std::u16string GetSmartParlosLibrary(const char16_t* driverName) const;

  // The period of asking in milliseconds, 0 where there are no invitations. The library is loaded
  // for this one call. Takes the printer's and the model's name over.
  std::uint32_t GetPeriodInvitation(const PrinterIdentity& identity);

  // The level of the invitation that is due, 0 for none. The library that the first call loads
  // stays loaded, and is asked ever after, also when another one is named meanwhile.
  //
  // This doesn't take names over: an object that was never asked for the period, as the agent's
  // long-lived one, has none, finds no profile and so always goes by the install description.
  std::int32_t GetInvitationLevel(const PrinterIdentity& identity);

  std::u16string strPrinterName;  // for lookups in the driver set
  std::u16string strModelId;
  platform::HMODULE m_hInstAllowInv{};  // the library, once an invitation was asked for
};

// The options by which the dependent program invites: a line each, without a line feed behind the
// last one, which is the port's. Where the port is empty the text ends in the line feed before it.
// Empty for level 0.
std::u16string MakeInvitationParameter(std::int32_t level, const PrinterIdentity& identity);

// Has the dependent program invite, by a parameter file that it removes, and counts that, whether
// the program could be started or not. Nothing without such a program, or without the file.
void StartInvitation(std::int32_t level, const PrinterIdentity& identity);

}  // namespace vgl
