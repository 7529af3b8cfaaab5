// Where the registry library is: in the driver's folder, under the name that the driver's VIF
// gives.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace vgl {

// What a search starts from.
enum class RegLibStart : std::uint8_t { Printer, Driver, Vif, Library };

// One search, a temporary object; `Char` is char (texts in the system's code page) or char16_t. It
// finds out each of its parts at most once.
template <class Char>
class CDrvPathCache {
 public:
  using Text = std::basic_string<Char>;

  // `input` is the name of a printer, that of a driver (case is ignored) or the path of a VIF or of
  // the library itself. A printer is opened through the guarded open, and closed again.
  CDrvPathCache(RegLibStart start, const Char* input);

  // The path where the library should be; whether there is a file isn't looked at. Without a name
  // from a VIF it is K_WRDEF1.DLL, and without a folder the bare name: a printer or driver that
  // nothing is known of leads to K_WRDEF1.DLL, too.
  const Text& LibraryPath();

 private:
  void AskPrinter(const Char* printer);
  void AskDrivers(const Char* driver);
  template <class Info>
  void TakeDriver(const Info& driver);

  std::optional<Text> m_directory;  // nothing: there is none
  std::optional<Text> m_vif;
  std::optional<Text> m_library;  // nothing: not found out yet
};

extern template class CDrvPathCache<char>;
extern template class CDrvPathCache<char16_t>;

}  // namespace vgl
