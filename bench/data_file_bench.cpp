// How long it takes to read one value from a data file of the driver set. Nothing is kept between
// two reads, so a menu of 79 entries does this some hundreds of times before it shows.
//
// "ratio" is the time in passes over the same bytes by memchr, once for each line, which look for
// the ends of the lines and do nothing else. (A single memchr, which finds nothing, takes a
// fraction of that: MemchrOfNothing.)

// Its conversion of character sets has no use here.
#define SI_NO_CONVERSION
#include <SimpleIni.h>
#include <glib.h>
#include <ini.h>

#include <cstring>
#include <string>
#include <string_view>

#include "bench/ratio.h"
#include "platform/sim/machine.h"
#include "profile/dat_text_file.h"
#include "profile/drv_info_reader.h"
#include "profile/install_desc.h"

namespace {

constexpr char16_t kVif[] = u"C:\\d\\D.VIF";
constexpr char16_t kData[] = u"C:\\d\\D.DAT";
constexpr char16_t kMenuKey[] = u"Software\\KAVRO\\VGL3\\Driver\\KAVRO Studio 7200\\Menu";

std::size_t LinesOf(std::string_view bytes) {
  std::size_t lines = 0;
  const char* at = bytes.data();
  const char* const end = at + bytes.size();
  while (at != end) {
    const void* feed = std::memchr(at, '\n', static_cast<std::size_t>(end - at));
    if (feed == nullptr) break;
    at = static_cast<const char*>(feed) + 1;
    ++lines;
  }
  return lines;
}

// An install description as driver sets have it: values of a menu, some with conditions, some
// comments. The value that is asked for is the last one.
std::string Description(int lines) {
  std::string text =
      "[Install]\r\n"
      "REGPATH = DRV, \"HKEY_LOCAL_MACHINE\\Software\\KAVRO\\VGL3\\Driver\\KAVRO Studio 7200\"\r\n"
      "REGPATH = MENU, "
      "\"HKEY_LOCAL_MACHINE\\Software\\KAVRO\\VGL3\\Driver\\KAVRO Studio 7200\\Menu\"\r\n";
  for (int i = 3; i < lines - 1; ++i) {
    const std::string number = std::to_string(i);
    switch (i % 5) {
      case 0:
        text += "; entry " + number + "\r\n";
        break;
      case 1:
        text += "REGENTER = MENU, \"" + number + "\", 0x" + number + "\r\n";
        break;
      case 2:
        text += "REGENTER = MENU, \"" + number + "\", DRIVERDIR+\"\\tool" + number +
                ".exe /P %s\", WINNT\r\n";
        break;
      default:
        text += "REGENTER = MENU, \"" + number + "\", \"Entry " + number + " of the menu\"\r\n";
    }
  }
  return text + "REGENTER = MENU, \"Last\", \"found\"\r\n";
}

// A machine with that description, and this thread inside a process of it.
class DescribedMachine {
 public:
  explicit DescribedMachine(std::string description)
      : m_description(std::move(description)), m_inside(m_machine) {
    m_machine.files().WriteFile(kVif, "[CommonDrvInfo]\r\nSADat=D.DAT\r\n");
    m_machine.files().WriteFile(kData, m_description);
    m_machine.spooler().AddDriver(
        {.name = u"KAVRO Studio 7200", .driverPath = u"C:\\d\\D.DLL", .dataFile = kVif});
    m_machine.spooler().AddPrinter(
        {.name = u"Studio 7200", .port = u"USB001", .driver = u"KAVRO Studio 7200"});
  }
  const std::string& description() const { return m_description; }

 private:
  std::string m_description;
  sim::Machine m_machine;
  sim::Inside m_inside;
};

// All of it: the printer opened twice through the guard, the VIF and the description read, on the
// simulated machine.
void ReadValueOfPrinter(benchmark::State& state) {
  const DescribedMachine machine(Description(static_cast<int>(state.range(0))));
  const vgl::CDrvInfoReader reader;
  if (reader.GetString(u"Studio 7200", kMenuKey, u"Last") != u"found") std::abort();
  bench::Measure(
      state, [&] { return reader.GetString(u"Studio 7200", kMenuKey, u"Last").size(); },
      [&] { return LinesOf(machine.description()); });
}

// The description alone, which a VIF leads to.
void ReadValueOfVif(benchmark::State& state) {
  const DescribedMachine machine(Description(static_cast<int>(state.range(0))));
  const vgl::CDrvInfoReader reader;
  if (reader.GetStringOfVif(kVif, kMenuKey, u"Last") != u"found") std::abort();
  bench::Measure(
      state, [&] { return reader.GetStringOfVif(kVif, kMenuKey, u"Last").size(); },
      [&] { return LinesOf(machine.description()); });
}

void MemchrPass(benchmark::State& state) {
  const std::string text = Description(static_cast<int>(state.range(0)));
  for (auto _ : state) {
    benchmark::ClobberMemory();
    benchmark::DoNotOptimize(LinesOf(text));
  }
}

void MemchrOfNothing(benchmark::State& state) {
  const std::string text = Description(static_cast<int>(state.range(0)));
  for (auto _ : state) {
    benchmark::ClobberMemory();
    benchmark::DoNotOptimize(std::memchr(text.data(), '\0', text.size()));
  }
}

void Sizes(benchmark::internal::Benchmark* benchmark) {
  for (const int lines : {100, 1000, 10000}) benchmark->Arg(lines);
}
BENCHMARK(MemchrOfNothing)->Apply(Sizes);
BENCHMARK(MemchrPass)->Apply(Sizes);
BENCHMARK(ReadValueOfVif)->Apply(Sizes);
BENCHMARK(ReadValueOfPrinter)->Apply(Sizes);

// --- Section and key: the file is read and one key of its last section looked up, by the agent's
// reader and by others, each in the way that it is made for.

std::string Sections(int lines) {
  std::string text;
  for (int i = 0; i < lines - 2; ++i) {
    if (i % 10 == 0) text += "[Section" + std::to_string(i / 10) + "]\n";
    text += "Key" + std::to_string(i % 10) + "=value " + std::to_string(i) + "\n";
  }
  return text + "[Last]\nKey=found\n";
}

template <class Read>
void MeasureSections(benchmark::State& state, const Read& read) {
  const DescribedMachine machine(Sections(static_cast<int>(state.range(0))));
  if (read(machine.description()) != 5) std::abort();
  bench::Measure(
      state, [&] { return read(machine.description()); },
      [&] { return LinesOf(machine.description()); });
}

// From the simulated machine's file, the copy into the reader's buffer included.
void SectionByDatTextFile(benchmark::State& state) {
  MeasureSections(state, [](const std::string&) {
    vgl::CDatTextFile file;
    std::u16string value;
    file.Open(kData);
    file.FindSection(u"Last");
    file.FindKey(u"Key", value);
    return value.size();
  });
}

// Calls back for every key and keeps nothing.
void SectionByInih(benchmark::State& state) {
  MeasureSections(state, [](const std::string& text) {
    std::string value;
    ini_parse_string(
        text.c_str(),
        [](void* user, const char* section, const char* name, const char* found) {
          if (std::strcmp(section, "Last") == 0 && std::strcmp(name, "Key") == 0)
            *static_cast<std::string*>(user) = found;
          return 1;
        },
        &value);
    return value.size();
  });
}

void SectionBySimpleIni(benchmark::State& state) {
  MeasureSections(state, [](const std::string& text) {
    CSimpleIniA ini;
    ini.LoadData(text);
    return std::strlen(ini.GetValue("Last", "Key", ""));
  });
}

void SectionByGLib(benchmark::State& state) {
  MeasureSections(state, [](const std::string& text) {
    GKeyFile* file = g_key_file_new();
    g_key_file_load_from_data(file, text.data(), text.size(), G_KEY_FILE_NONE, nullptr);
    char* value = g_key_file_get_string(file, "Last", "Key", nullptr);
    const std::size_t length = value == nullptr ? 0 : std::strlen(value);
    g_free(value);
    g_key_file_free(file);
    return length;
  });
}

BENCHMARK(SectionByDatTextFile)->Arg(1000);
BENCHMARK(SectionByInih)->Arg(1000);
BENCHMARK(SectionBySimpleIni)->Arg(1000);
BENCHMARK(SectionByGLib)->Arg(1000);

}  // namespace
