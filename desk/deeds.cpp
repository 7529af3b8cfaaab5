#include "desk/deeds.h"

#include <algorithm>

#include "Common/target_records.h"
#include "Common/text_conversion.h"
#include "Common/wide_format.h"
#include "app/agent_messages.h"
#include "desk/default_machine.h"
#include "platform/sim/text.h"

namespace desk {

using namespace platform;

namespace {

constexpr char16_t kAskerPath[] = u"C:\\Program Files\\KAVRO\\VGL3\\session_driver.exe";
constexpr char16_t kInstallerPath[] = u"C:\\KAVRO\\SETUP.EXE";

std::string NoSuchPrinter(const std::u16string& printer) {
  return "there is no printer \"" + vgl::Utf8FromText(printer) + "\"";
}

// A number's bytes, the lowest first.
std::string LowFirst(std::uint64_t number, std::size_t count) {
  std::string bytes;
  for (; bytes.size() < count; number >>= 8) bytes.push_back(static_cast<char>(number & 0xFF));
  return bytes;
}

// What a person reads there. Of what its owner draws the item's data is the text, which stays in
// the owner's memory for as long as the menu.
std::u16string LabelOf(const sim::MenuItem& item) {
  if ((item.type & MFT_OWNERDRAW) == 0) return item.text;
  const auto* text = reinterpret_cast<const char16_t*>(item.itemData);
  return text == nullptr ? u"" : text;
}

// The path of the record whose "Name" is that; empty when there is none.
std::u16string RecordOf(const sim::RegistryTree& registry, const std::u16string& name) {
  for (const char16_t* branch : {vgl::kPrinterBranch, vgl::kPortBranch})
    for (const std::u16string& key : registry.SubKeys(HKEY_CURRENT_USER, branch)) {
      std::u16string path = std::u16string(branch) + u"\\" + key;
      const auto stored = registry.String(HKEY_CURRENT_USER, path, u"Name");
      if (stored && sim::FoldCase(*stored) == sim::FoldCase(name)) return path;
    }
  return u"";
}

}  // namespace

std::string Deeds::AwaitReady(const sim::Process& agent) {
  constexpr std::uint64_t kPatience = 60000;
  const sim::Window* window = nullptr;
  m_machine.RunUntil(
      [&] {
        window = m_machine.desktop().FindOf(agent, vgl::kTrayWindowClass);
        return agent.ended() || window != nullptr;
      },
      kPatience);
  if (window == nullptr) return "has no window";
  const sim::Inside asker(m_machine, kAskerPath);
  Os().windowing.SendMessageW(window->handle, WM_NULL, 0, 0);
  return agent.ended() ? "has ended" : "";
}

std::string Deeds::UseMouse(sim::Process& agent, Command::Kind kind) {
  const sim::TrayIcon* icon = m_machine.tray().FindOf(agent);
  if (icon == nullptr) return "has no icon";
  if (kind == Command::Kind::Click)
    m_machine.tray().Click(*icon);
  else if (kind == Command::Kind::DoubleClick)
    m_machine.tray().DoubleClick(*icon);
  else
    m_machine.tray().RightClick(*icon);
  return "";
}

sim::OpenMenu* Deeds::MenuOf(const sim::Process& agent) {
  for (sim::OpenMenu* menu : m_machine.desktop().menus().List())
    if (menu->thread->process() == &agent) return menu;
  return nullptr;
}

std::string Deeds::Choose(const sim::Process& agent, std::uint32_t id) {
  sim::OpenMenu* menu = MenuOf(agent);
  if (menu == nullptr) return "shows no menu";
  // The mouse comes over the entry first, which is drawn anew.
  m_machine.desktop().menus().PointAt(*menu, id);
  m_machine.Settle();
  if (m_machine.desktop().menus().Choose(*menu, id)) return "";
  return "shows a menu in which entry " + std::to_string(id) + " can't be chosen";
}

std::string Deeds::Dismiss(const sim::Process& agent) {
  sim::OpenMenu* menu = MenuOf(agent);
  if (menu == nullptr) return "shows no menu";
  m_machine.desktop().menus().Dismiss(*menu);
  return "";
}

std::string Deeds::ReadMenu(const sim::Process& agent, std::vector<MenuLine>& entries) {
  const sim::OpenMenu* menu = MenuOf(agent);
  if (menu == nullptr) return "shows no menu";
  for (const auto& [item, area, isSelected, drawn] : menu->shown)
    entries.push_back({.id = item.id,
                       .type = item.type,
                       .state = item.state,
                       .label = vgl::Utf8FromText(LabelOf(item))});
  return "";
}

std::string Deeds::Answer(const sim::Process& agent) {
  const std::vector<sim::Window*> boxes = m_machine.desktop().Boxes();
  const auto box = std::find_if(boxes.rbegin(), boxes.rend(), [&](const sim::Window* open) {
    return open->thread->process() == &agent;
  });
  if (box == boxes.rend()) return "shows no message box";
  m_machine.desktop().Answer(**box);
  return "";
}

void Deeds::Hold(const std::vector<std::uint32_t>& keys) {
  for (const std::uint32_t key : keys) {
    m_machine.desktop().HoldKey(static_cast<std::int32_t>(key));
    m_heldKeys.push_back(key);
  }
}

void Deeds::Release() {
  for (const std::uint32_t key : m_heldKeys)
    m_machine.desktop().ReleaseKey(static_cast<std::int32_t>(key));
  m_heldKeys.clear();
}

std::string Deeds::AddPrinter(const Command& command) {
  const std::u16string printer = vgl::TextFromUtf8(command.text);
  if (m_machine.spooler().HasPrinter(printer))
    return "there is a printer \"" + command.text + "\" already";
  m_machine.spooler().AddPrinter({.name = printer,
                                  .port = vgl::TextFromUtf8(command.port),
                                  .driver = vgl::TextFromUtf8(command.driver)});
  return "";
}

std::string Deeds::DeletePrinter(const std::u16string& printer) {
  if (!m_machine.spooler().HasPrinter(printer)) return NoSuchPrinter(printer);
  m_machine.spooler().RemovePrinter(printer);
  return "";
}

std::string Deeds::SetData(const std::u16string& printer, const std::u16string& name,
                           std::uint32_t value) {
  if (!m_machine.spooler().HasPrinter(printer)) return NoSuchPrinter(printer);
  m_machine.spooler().SetData(printer, u"PrinterDriverData", name, REG_DWORD, LowFirst(value, 4));
  return "";
}

std::string Deeds::SelectIcon(sim::Process& agent, const std::u16string& name, std::uint32_t icon) {
  const std::u16string record = RecordOf(m_machine.registry(), name);
  if (record.empty()) return "there is no record of \"" + vgl::Utf8FromText(name) + "\"";
  const sim::Window* window = m_machine.desktop().FindOf(agent, vgl::kTrayWindowClass);
  if (window == nullptr) return "the agent has no window";
  m_machine.registry().SetDword(HKEY_CURRENT_USER, record, u"TrayIconSelected", icon);
  m_machine.desktop().Post(window->handle, vgl::WM_VGL3_UPDATE_ICON);
  return "";
}

void Deeds::SetValue(const Command& command) {
  const std::u16string key = vgl::TextFromUtf8(command.text);
  const std::u16string name = vgl::TextFromUtf8(command.name);
  if (command.isText)
    m_machine.registry().SetString(HKEY_CURRENT_USER, key, name, vgl::TextFromUtf8(command.value));
  else
    m_machine.registry().SetDword(HKEY_CURRENT_USER, key, name, command.number);
}

void Deeds::SetTime(const Command& command) {
  const std::int64_t now =
      m_machine.system().startSeconds + static_cast<std::int64_t>(m_machine.now() / 1000);
  m_machine.registry().SetBytes(HKEY_CURRENT_USER, vgl::TextFromUtf8(command.text),
                                vgl::TextFromUtf8(command.name), REG_BINARY,
                                LowFirst(static_cast<std::uint64_t>(now - command.number), 8));
}

void Deeds::Autostart(const std::u16string& fileName, const std::u16string& valueName) {
  m_machine.registry().SetString(
      HKEY_CURRENT_USER, u"Software\\Microsoft\\Windows\\CurrentVersion\\Run", valueName,
      vgl::WideFormat(u"\"%s\" /FU \"%s%s\"", kAgentPath, m_machine.system().tempFolder, fileName));
}

void Deeds::StartInstaller() {
  m_installer = &m_machine.StartProcess(kInstallerPath, u"", [](const char16_t*) {
    Os().objects.CreateMutexW(nullptr, false, kInstallerMutex);
    Os().objects.WaitForSingleObject(Os().objects.CreateSemaphoreW(0, 1, nullptr), INFINITE);
    return 0U;
  });
}

void Deeds::EndInstaller() {
  m_machine.EndProcess(*m_installer, 0);
  m_installer = nullptr;
}

}  // namespace desk
