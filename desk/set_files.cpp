#include "desk/set_files.h"

#include <initializer_list>
#include <utility>

#include "Common/CVglLog.h"
#include "Common/log_library_exports.h"
#include "Common/path_lookup.h"
#include "Common/printer_library_exports.h"
#include "Common/text_conversion.h"
#include "Common/wide_format.h"
#include "menu/menu_head.h"
#include "platform/owned.h"
#include "profile/drv_file_locator.h"
#include "profile/language_selection.h"
#include "profile/multi_lang_ctrl.h"
#include "profile/profile_keys.h"

namespace desk {

using namespace platform;
using vgl::WideFormat;

namespace {

constexpr std::uint32_t kCaptionText = 1100;
constexpr std::uint32_t kBusyText = 35277;
constexpr std::uint16_t kIcons[] = {700, 701, 702};
constexpr std::int32_t kIconSize = 16;

// The first thing that a module lacks; empty when it has all.
std::u16string LackOfTexts(HMODULE module) {
  const OwnedMenu menu(Os().resources.LoadMenuW(module, vgl::kMenuResource));
  const HMENU popup = menu ? Os().menus.GetSubMenu(menu.get(), 0) : HMENU{};
  if (popup == HMENU{}) return u"menu 801 with a sub-menu: no agent runs";
  MenuItemInfo info{.mask = MIIM_STATE};
  if (!Os().menus.GetMenuItemInfoW(popup, 0, true, &info))
    return u"entry for the printer in menu 801";
  if (!Os().menus.GetMenuItemInfoW(popup, vgl::IDM_SET_ENV, false, &info))
    return u"entry 901 in menu 801";
  for (const std::uint32_t id : {kCaptionText, kBusyText}) {
    char16_t text[2];
    if (Os().resources.LoadStringW(module, id, text, 2) == 0) return WideFormat(u"text %u", id);
  }
  return {};
}

std::u16string LackOfIcons(HMODULE module) {
  for (const std::uint16_t id : kIcons) {
    const OwnedIcon icon(
        Os().resources.LoadImageW(module, id, IMAGE_ICON, kIconSize, kIconSize, LR_DEFAULTCOLOR));
    if (!icon) return WideFormat(u"icon %u", id);
  }
  return {};
}

std::u16string LackOfExports(HMODULE module, std::initializer_list<const char*> names) {
  for (const char* name : names)
    if (Os().modules.GetProcAddress(module, name) == nullptr)
      return u"export " + vgl::TextFromUtf8(name);
  return {};
}

// Adds what is found of one printer's set.
class Search {
 public:
  Search(const std::u16string& printer, const std::u16string& driver, const std::u16string& model,
         std::vector<SetFile>& files)
      : m_printer(printer), m_driver(driver), m_model(model), m_files(files) {}

  void Run() {
    FindProfile();
    FindLanguageManager();
    FindLanguage();
    FindResourceLibrary();
    FindBitmapLibrary();
    FindPrinterLibrary();
    FindUsageLogLibrary();
    FindRunHelper();
  }

 private:
  using Lookup = int (*)(vgl::PathText* out, const char16_t* driver, const char16_t* modelId,
                         const char16_t* printer);

  // The path that a lookup gives, empty when it fails.
  std::u16string Path(Lookup lookup) const {
    vgl::PathText path;
    lookup(&path, m_driver.c_str(), m_model.c_str(), m_printer.c_str());
    return std::u16string(path.view());
  }

  void Found(const char* what, std::u16string told) { m_files.push_back({what, std::move(told)}); }
  void NotFound(const char* what, std::u16string why) {
    m_files.push_back({what, std::move(why), false});
  }

  // A library that has to load and to have what `lackOf` looks for. `behind` is told behind a good
  // one, `without` behind one that can't be loaded.
  template <class LackOf>
  void FindLibrary(const char* what, const std::u16string& path, const std::u16string& behind,
                   const std::u16string& without, const LackOf& lackOf) {
    if (!vgl::FileExists(path.c_str())) return NotFound(what, path + u" isn't there" + without);
    const OwnedModule library(Os().modules.LoadLibraryW(path.c_str()));
    if (!library) return NotFound(what, path + u" is no library" + without);
    const std::u16string lack = lackOf(library.get());
    if (!lack.empty()) return NotFound(what, path + u" has no " + lack);
    Found(what, path + behind);
  }

  void FindProfile() {
    constexpr char kWhat[] = "profile";
    m_profile = Path(vgl::GetProfilePath);
    if (m_profile.empty())
      NotFound(kWhat, u"no value Profile of the driver and no value " + m_model +
                          u" of the profile branch names one: no agent runs");
    else if (!vgl::FileExists(m_profile.c_str()))
      NotFound(kWhat, m_profile + u" isn't there");
    else
      Found(kWhat, m_profile);
  }

  void FindLanguageManager() {
    constexpr char kWhat[] = "language manager";
    std::u16string vif;
    vgl::CDrvFileLocator().GetVifPath(m_printer.c_str(), &vif);
    const std::u16string name = vgl::ReadVifKey(vgl::kVifLmwLibrary, vif.c_str());
    if (name.empty()) return;
    const std::u16string path = Path(vgl::GetProcPath) + name;
    vgl::CMultiLangCtrl manager(m_printer.c_str(), m_driver.c_str(), m_model.c_str());
    if (!vgl::FileExists(path.c_str())) return NotFound(kWhat, path + u" isn't there");
    if (!manager.IsInitialized()) return NotFound(kWhat, path + u" is of no use");
    Found(kWhat, path);
    vgl::PathText library;
    std::uint32_t chars = vgl::PathText::capacity();
    if (manager.GetUiResourcePath(library.buffer(), &chars) == 1) m_ofManager = library.view();
  }

  void FindLanguage() {
    constexpr char kWhat[] = "language";
    vgl::PathText section;
    std::uint32_t size = vgl::PathText::capacity() * sizeof(char16_t);
    const std::int32_t result =
        vgl::SelectLanguageSection(section.buffer(), &size, m_profile.c_str());
    if (result >= 0 && !section.empty())
      Found(kWhat, std::u16string(section.view()));
    else
      NotFound(kWhat, u"the profile lists none whose resource library lies beside it");
  }

  void FindResourceLibrary() {
    constexpr char kWhat[] = "resource library";
    constexpr char16_t kWithout[] = u": no agent runs";
    m_resources = Path(vgl::GetResPath);
    if (m_resources.empty())
      return NotFound(kWhat, std::u16string(u"nothing names one") + kWithout);
    const bool isManagers = m_resources == m_ofManager;
    FindLibrary(kWhat, m_resources, isManagers ? u", from the language manager" : u"", kWithout,
                LackOfTexts);
  }

  void FindBitmapLibrary() {
    constexpr char kWhat[] = "bitmap library";
    const std::u16string path = Path(vgl::GetBmpPath);
    if (!path.empty())
      FindLibrary(kWhat, path, u"", u": the pictures are the resource library's", LackOfIcons);
    else if (!m_resources.empty())
      FindLibrary(kWhat, m_resources, u", as none is named", u"", LackOfIcons);
    else
      NotFound(kWhat, u"nothing names one");
  }

  void FindPrinterLibrary() {
    constexpr char kWhat[] = "printer library";
    constexpr char16_t kWithout[] = u": new records stay without settings, uses aren't counted";
    const std::u16string path = Path(vgl::GetPrnDllPath);
    if (path.empty())
      return NotFound(kWhat, WideFormat(u"the profile has no PrnDll in [%s]%s", m_model, kWithout));
    FindLibrary(kWhat, path, u"", kWithout, [](HMODULE library) {
      return LackOfExports(library, {vgl::kPrSetRegDefaultValue, vgl::kPrGetSerialID2});
    });
  }

  void FindUsageLogLibrary() {
    constexpr char kWhat[] = "usage log library";
    constexpr char16_t kWithout[] = u": uses aren't counted";
    if (vgl::ReadModelNumber(vgl::kProfileUsageLog, m_model.c_str(), m_profile.c_str()) != 1)
      return Found(kWhat, WideFormat(u"isn't asked, as VGL_LOG isn't 1 in [%s]", m_model));
    vgl::CVglLog log;
    log.m_nLogKind = vgl::VGLLOG_TRAYICON;
    log.m_csPrinterName = m_printer;
    log.m_csDriverName = m_driver;
    std::u16string path;
    if (log.GetLogRuFileName(&path) != 0)
      return NotFound(kWhat, std::u16string(u"the VIF names none that lies beside it") + kWithout);
    FindLibrary(kWhat, path, u"", kWithout, [](HMODULE library) {
      return LackOfExports(library, {vgl::kGetExtEscapeDeviceID, vgl::kIncrementMultiLog,
                                     vgl::kCreateLogFile, vgl::kReadLog});
    });
  }

  void FindRunHelper() {
    constexpr char kWhat[] = "run helper";
    const std::u16string path = Path(vgl::GetRunHelperPath);
    if (path.empty())
      NotFound(kWhat,
               u"neither K_QRX names one nor is K_QD21RX.EXE in InstallPath: no window opens");
    else
      Found(kWhat, path);
  }

  const std::u16string& m_printer;
  const std::u16string& m_driver;
  const std::u16string& m_model;
  std::vector<SetFile>& m_files;
  std::u16string m_profile;
  std::u16string m_ofManager;  // the resource library that the language manager gives
  std::u16string m_resources;
};

}  // namespace

std::vector<SetFile> FindSetFiles(const std::u16string& printer, const std::u16string& driver,
                                  const std::u16string& model) {
  std::vector<SetFile> files;
  Search(printer, driver, model, files).Run();
  return files;
}

}  // namespace desk
