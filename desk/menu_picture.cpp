#include "desk/menu_picture.h"

#include <charconv>
#include <fstream>
#include <ostream>

#include "Common/text_conversion.h"
#include "desk/default_machine.h"
#include "desk/paint/menu_painter.h"
#include "desk/player.h"
#include "desk/sample.h"

namespace desk {

namespace {

// "07,01": the numbers that a profile's list of languages has, as one identifier.
std::optional<std::uint16_t> LanguageFrom(const std::string& text) {
  constexpr unsigned kMostPrimary = 0x3FF;
  constexpr unsigned kMostSub = 0x3F;
  unsigned primary = 0;
  unsigned sub = 0;
  const char* const end = text.data() + text.size();
  const auto [comma, mistake] = std::from_chars(text.data(), end, primary, 16);
  if (mistake != std::errc{} || comma == end || *comma != ',') return std::nullopt;
  const auto [last, otherMistake] = std::from_chars(comma + 1, end, sub, 16);
  if (otherMistake != std::errc{} || last != end) return std::nullopt;
  if (primary == 0 || primary > kMostPrimary || sub > kMostSub) return std::nullopt;
  return static_cast<std::uint16_t>(sub << 10 | primary);
}

class MenuPicture {
 public:
  MenuPicture(const MenuPictureOptions& options, std::ostream& err)
      : m_options(options), m_err(err) {
    m_machine.drawing().measure = [this](std::u16string_view text, const platform::LogFont& font) {
      return m_fonts.Measure(text, font);
    };
  }

  int Draw() {
    if (!PutSample()) return kBadSample;
    sim::OpenMenu* menu = OpenTheMenu();
    if (menu == nullptr) return kNoMenu;
    if (!Select(*menu)) return kBadSample;
    return Write(PaintMenu(*menu, m_machine.drawing(), m_fonts, m_options.scale)) ? 0 : kBadSample;
  }

 private:
  bool Fail(const std::string& what) {
    m_err << "vgldesk menu: " << what << '\n';
    return false;
  }

  bool PutSample() {
    if (!m_options.language.empty()) {
      const std::optional<std::uint16_t> language = LanguageFrom(m_options.language);
      if (!language) {
        return Fail(
            '"' + m_options.language +
            "\" is no language; it takes its two numbers as a profile has them, as in 07,01");
      }
      m_machine.system().userLanguage = *language;
    }
    std::string error;
    SetUpSuite(m_machine);
    const std::filesystem::path folder = SampleFolder(m_options.sample);
    const bool isPut =
        LoadSample(m_machine, folder, error) && ReadSampleOptions(folder, m_agentOptions, error);
    return isPut || Fail(error);
  }

  // Null when there is none, which is told.
  sim::OpenMenu* OpenTheMenu() {
    constexpr std::uint64_t kStartTakes = 2000;  // the longest wait for a predecessor, and more
    const sim::Process& agent = StartAgent(m_machine, vgl::TextFromUtf8(m_agentOptions));
    m_machine.RunFor(kStartTakes);
    if (const sim::TrayIcon* icon = m_machine.tray().FindOf(agent)) {
      m_machine.tray().RightClick(*icon);
      m_machine.Settle();
    }
    const std::vector<sim::OpenMenu*> open = m_machine.desktop().menus().List();
    if (!open.empty()) return open.front();
    Fail("no menu opens" + WhatIsSeenInstead(agent));
    return nullptr;
  }

  std::string WhatIsSeenInstead(const sim::Process& agent) {
    for (const sim::Window* box : m_machine.desktop().Boxes())
      return "; there is a message box instead: " + vgl::Utf8FromText(box->text);
    if (agent.ended())
      return ": the agent has ended, with code " + std::to_string(agent.exitCode());
    return m_machine.tray().FindOf(agent) == nullptr ? ": the agent has no icon" : "";
  }

  bool Select(sim::OpenMenu& menu) {
    if (!m_options.selected) return true;
    for (const sim::ShownItem& shown : menu.shown) {
      if (shown.item.id != *m_options.selected || !shown.item.CanBeChosen()) continue;
      m_machine.desktop().menus().PointAt(menu, shown.item.id);
      m_machine.Settle();
      return true;
    }
    return Fail("the menu has no entry " + std::to_string(*m_options.selected) +
                " that can be chosen");
  }

  bool Write(const Image& image) {
    const std::string bytes = EncodePng(image);
    std::ofstream file;
    if (!bytes.empty()) file.open(m_options.file, std::ios::binary);
    file << bytes << std::flush;
    return (!bytes.empty() && file) || Fail(m_options.file + " can't be written");
  }

  const MenuPictureOptions& m_options;
  std::ostream& m_err;
  Fonts m_fonts;  // in front of the machine, which asks them while it lives
  sim::Machine m_machine;
  std::string m_agentOptions;
};

}  // namespace

int DrawMenu(const MenuPictureOptions& options, std::ostream& err) {
  return MenuPicture(options, err).Draw();
}

}  // namespace desk
