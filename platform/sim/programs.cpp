#include "platform/sim/programs.h"

#include <algorithm>

#include "platform/sim/machine.h"
#include "platform/sim/object_handle.h"
#include "platform/sim/text.h"

namespace sim {

using namespace platform;

// What the handles of a process that was started, and of its first thread, stand for.
class Programs::Started final : public Waitable {
 public:
  Started(Machine& machine, const Process& process, std::u16string_view kind)
      : Waitable(machine.objects(), u""), m_process(process), m_kind(kind) {}

  std::u16string Describe() const override { return m_kind + u" " + m_process.imagePath(); }
  bool IsFreeFor(const Thread&) const override { return m_process.ended(); }
  std::uint32_t Take(Thread&) override { return WAIT_OBJECT_0; }

  void TellEnded(Scheduler& scheduler) { HandOver(scheduler); }

 private:
  const Process& m_process;
  std::u16string m_kind;
};

class Programs::StartedThread final : public Waitable {
 public:
  StartedThread(Machine& machine, const Process& process, const Thread& thread)
      : Waitable(machine.objects(), u""), m_process(process), m_thread(&thread) {}

  std::u16string Describe() const override { return u"thread of " + m_process.imagePath(); }
  bool IsFreeFor(const Thread&) const override { return m_thread == nullptr; }
  std::uint32_t Take(Thread&) override { return WAIT_OBJECT_0; }

  bool IsOf(const Thread& thread) const { return m_thread == &thread; }
  void TellEnded(Scheduler& scheduler) {
    m_thread = nullptr;
    HandOver(scheduler);
  }

 private:
  const Process& m_process;
  const Thread* m_thread;  // null once it has ended
};

namespace {

constexpr std::u16string_view kBlanks = u" \t";
constexpr std::size_t kLongestCommandLine = 32766;

// The beginning of a command line.
struct Program {
  const FileTree::Entry* entry = nullptr;  // null: there is none, `error` says why
  std::int32_t error = 0;
  std::u16string_view arguments;
};

std::u16string_view BehindBlanks(std::u16string_view text) {
  return text.substr(std::min(text.find_first_not_of(kBlanks), text.size()));
}

// Whether a name says where it is, so that it is looked for nowhere else.
bool HasPlace(std::u16string_view name) {
  if (name.size() >= 2 && name[1] == u':') return true;
  const std::size_t dots = std::min(name.find_first_not_of(u'.'), name.size());
  return dots <= 2 && dots < name.size() && (name[dots] == u'\\' || name[dots] == u'/');
}

bool HasExtension(std::u16string_view name) {
  return name.substr(name.find_last_of(u"\\/:") + 1).find(u'.') != std::u16string_view::npos;
}

// Where a name may stand for a program, in the order in which that is tried.
std::vector<std::u16string> Places(const SystemState& system, const std::u16string& name) {
  const std::u16string withExtension = HasExtension(name) ? name : name + u".exe";
  if (HasPlace(name)) return {name, withExtension};
  std::vector<std::u16string> places = {
      withExtension};  // the program's own folder, the current one
  for (const std::u16string& folder :
       {system.systemFolder, system.windowsFolder + u"\\system", system.windowsFolder}) {
    if (!folder.empty()) places.push_back(WithSeparator(folder) + withExtension);
  }
  return places;
}

Program FindPlaced(const FileTree& files, const FilePath& path) {
  if (path.error != 0) return {.error = path.error};
  const FileTree::Entry* entry = files.Find(path);
  if (entry == nullptr) return {.error = files.WhyMissing(path)};
  if (entry->IsFolder()) return {.error = ERROR_ACCESS_DENIED};
  if (path.endsInSeparator) return {.error = ERROR_INVALID_NAME};
  return {.entry = entry};
}

Program FindNamed(const Process& process, std::u16string_view name) {
  if (name.empty()) return {.error = ERROR_INVALID_PARAMETER};
  Machine& machine = process.machine();
  Program result;
  for (const std::u16string& place : Places(machine.system(), std::u16string(name))) {
    const Program found = FindPlaced(machine.files(), ResolvePath(place.c_str(), process));
    // A folder hides what would be tried behind it.
    if (found.entry != nullptr || found.error == ERROR_ACCESS_DENIED) return found;
    if (result.error == 0) result.error = found.error;
  }
  if (!HasPlace(name)) result.error = ERROR_FILE_NOT_FOUND;
  return result;
}

Program FindProgram(const Process& process, std::u16string_view commandLine) {
  if (commandLine.starts_with(u'"')) {
    const std::size_t end = std::min(commandLine.find(u'"', 1), commandLine.size());
    Program found = FindNamed(process, commandLine.substr(1, end - 1));
    found.arguments = BehindBlanks(commandLine.substr(std::min(end + 1, commandLine.size())));
    return found;
  }
  // Without quotes nobody knows where the name ends: each blank may be part of it.
  Program result;
  std::size_t end = 0;
  do {
    end = std::min(commandLine.find_first_of(kBlanks, end), commandLine.size());
    Program found = FindNamed(process, commandLine.substr(0, end));
    if (found.entry != nullptr) {
      found.arguments = BehindBlanks(commandLine.substr(end));
      return found;
    }
    if (result.error == 0) result.error = found.error;
  } while (end++ < commandLine.size());
  return result;
}

std::u16string_view WithoutQuotes(std::u16string_view name) {
  if (name.size() < 2 || name.front() != u'"' || name.back() != u'"') return name;
  return name.substr(1, name.size() - 2);
}

// What ShellExecuteW makes of an error of a start; no failure is above 32.
std::int64_t ShellResult(std::int32_t error) {
  constexpr std::int64_t kDone = 33;
  constexpr std::int64_t kLastFailure = 32;
  constexpr std::int64_t kNothingKnowsIt = 31;
  if (error == 0) return kDone;
  if (error == ERROR_BAD_EXE_FORMAT) return kNothingKnowsIt;
  return error > kLastFailure ? ERROR_FILE_NOT_FOUND : error;
}

// The error of the start; 0 when it was one.
std::int32_t RunForShell(Programs& programs, Process& starter,
                         const Programs::ShellExecution& execution) {
  // There is nothing but programs on the machine, and all that they can be is opened.
  const std::u16string verb = FoldCase(execution.verb);
  if (!verb.empty() && verb != FoldCase(u"open")) return ERROR_BAD_EXE_FORMAT;
  std::u16string commandLine = u"\"" + std::u16string(WithoutQuotes(execution.file)) + u"\"";
  if (!execution.parameters.empty()) commandLine += u" " + execution.parameters;
  ProcessInformation started;
  const std::int32_t error = programs.Run(starter, commandLine, &started);
  if (error != 0) return error;
  starter.CloseHandle(static_cast<std::uint64_t>(started.process));
  starter.CloseHandle(static_cast<std::uint64_t>(started.thread));
  return 0;
}

}  // namespace

Programs::Programs(Machine& machine) : m_machine(machine) {}
Programs::~Programs() = default;

void Programs::Add(std::u16string_view path, Body body) {
  if (!m_machine.files().Exists(path)) m_machine.files().WriteFile(path, "");
  m_bodies[FoldCase(ResolvePath(path, u"C:\\").text)] = std::move(body);
}

std::int32_t Programs::Run(Process& starter, std::u16string_view commandLine,
                           ProcessInformation* started) {
  if (commandLine.size() > kLongestCommandLine) return ERROR_FILENAME_EXCED_RANGE;
  const Program program = FindProgram(starter, commandLine);
  if (program.entry == nullptr) return program.error;
  if (program.entry->file->unreadable) return ERROR_ACCESS_DENIED;
  const std::u16string& path = program.entry->path;
  const std::u16string folded = FoldCase(path);
  const auto body = m_bodies.find(folded);
  if (body == m_bodies.end() && !folded.ends_with(u".exe")) return ERROR_BAD_EXE_FORMAT;

  m_machine.Trace(u"started " + path + u": " + std::u16string(commandLine));
  const std::u16string arguments(program.arguments);
  Process& process = body == m_bodies.end() ? m_machine.AddProcess(path, arguments)
                                            : m_machine.StartProcess(path, arguments, body->second);
  if (body == m_bodies.end()) process.BeginEnd(0);
  m_starts.push_back({.time = m_machine.now(),
                      .starterId = starter.id(),
                      .path = path,
                      .commandLine = std::u16string(commandLine),
                      .arguments = arguments,
                      .process = &process});
  *started = {.process = Open(starter, process, u"process"),
              .thread = Open(starter, process, u"thread of"),
              .processId = process.id(),
              .threadId = process.threads().empty() ? m_machine.scheduler().NewThreadId()
                                                    : process.threads().front()->id()};
  return 0;
}

HANDLE Programs::Open(Process& starter, const Process& process, std::u16string_view kind) {
  auto object = std::make_shared<Started>(m_machine, process, kind);
  m_started.push_back(object);
  return HANDLE{starter.AddHandle(std::make_shared<ObjectHandle>(std::move(object)))};
}

std::int64_t Programs::Execute(Process& starter, ShellExecution execution) {
  execution.time = m_machine.now();
  execution.starterId = starter.id();
  execution.result = ShellResult(RunForShell(*this, starter, execution));
  m_shellExecutions.push_back(execution);
  return execution.result;
}

HANDLE Programs::OpenThread(Process& process, const Thread& thread) {
  auto object = std::make_shared<StartedThread>(m_machine, process, thread);
  m_threads.push_back(object);
  return HANDLE{process.AddHandle(std::make_shared<ObjectHandle>(std::move(object)))};
}

void Programs::TellThreadEnded(const Thread& thread) {
  std::erase_if(m_threads, [](const auto& object) { return object.expired(); });
  for (const auto& object : m_threads)
    if (const auto open = object.lock(); open->IsOf(thread)) open->TellEnded(m_machine.scheduler());
}

void Programs::TellEnded() {
  std::erase_if(m_started, [](const auto& object) { return object.expired(); });
  for (const auto& object : m_started) object.lock()->TellEnded(m_machine.scheduler());
}

}  // namespace sim
