#include "platform/sim/machine.h"

#include <utility>

#include "platform/sim/drawing_calls.h"
#include "platform/sim/file_calls.h"
#include "platform/sim/menu_calls.h"
#include "platform/sim/module_calls.h"
#include "platform/sim/process_calls.h"
#include "platform/sim/profile_calls.h"
#include "platform/sim/registry_calls.h"
#include "platform/sim/resource_calls.h"
#include "platform/sim/section_calls.h"
#include "platform/sim/security_calls.h"
#include "platform/sim/shell_calls.h"
#include "platform/sim/small_calls.h"
#include "platform/sim/spooler_calls.h"
#include "platform/sim/system_libraries.h"
#include "platform/sim/text.h"
#include "platform/sim/windowing_calls.h"

namespace sim {

struct Machine::Services {
  explicit Services(Machine& machine)
      : registry(machine),
        files(machine),
        profiles(machine),
        objects(machine),
        process(machine),
        modules(machine),
        windowing(machine),
        shell(machine),
        system(machine),
        nls(machine),
        sections(machine),
        spooler(machine),
        resources(machine),
        menus(machine, windowing),
        drawing(machine) {}

  RegistryCalls registry;
  FileCalls files;
  ProfileCalls profiles;
  KernelObjectCalls objects;
  ProcessCalls process;
  ModuleCalls modules;
  WindowingCalls windowing;
  ShellCalls shell;
  SystemCalls system;
  LanguageCalls nls;
  SectionCalls sections;
  SpoolerCalls spooler;
  SecurityCalls security;
  ResourceCalls resources;
  MenuCalls menus;
  DrawingCalls drawing;
};

Machine::Machine(std::uint64_t seed)
    : m_scheduler(seed),
      m_files(*this),
      m_libraries(*this),
      m_desktop(*this),
      m_tray(*this),
      m_programs(*this),
      m_services(std::make_unique<Services>(*this)),
      m_platform(new platform::Platform{
          m_services->registry, m_services->files, m_services->profiles, m_services->objects,
          m_services->process, m_services->modules, m_services->windowing, m_services->shell,
          m_services->system, m_services->nls, m_services->sections, m_services->spooler,
          m_services->security, m_services->resources, m_services->menus, m_services->drawing}) {
  AddSystemLibraries(m_libraries);
}

Machine::~Machine() {
  m_observer = nullptr;
  for (const auto& process : m_processes) process->BeginEnd(1);
  Settle();
}

Process& Machine::AddProcess(std::u16string imagePath, std::u16string commandLine) {
  m_processes.push_back(std::make_unique<Process>(*this, m_nextProcessId, std::move(imagePath),
                                                  std::move(commandLine)));
  m_nextProcessId += 4;
  return *m_processes.back();
}

Process& Machine::StartProcess(std::u16string imagePath, std::u16string commandLine, Body body) {
  Process& process = AddProcess(std::move(imagePath), std::move(commandLine));
  Thread& thread = m_scheduler.Start(&process, [this, &process, body = std::move(body)] {
    Thread& self = *CurrentThread();
    self.unwinding = process.ending();
    if (!self.unwinding) {
      Trace(u"started: " + process.imagePath() + u" " + process.commandLine());
      try {
        process.BeginEnd(body(process.commandLine().c_str()));
      } catch (const ProcessEnded&) {
      }
      Trace(u"ended with code " + Decimal(process.exitCode()));
    }
    FinishThread(self);
  });
  process.AddThread(thread);
  return process;
}

Thread& Machine::StartThread(Process& process, std::function<void()> body) {
  Thread& thread = m_scheduler.Start(&process, [this, &process, body = std::move(body)] {
    Thread& self = *CurrentThread();
    self.unwinding = process.ending();
    if (!self.unwinding) {
      try {
        body();
      } catch (const ProcessEnded&) {
      }
    }
    FinishThread(self);
  });
  process.AddThread(thread);
  return thread;
}

void Machine::FinishThread(Thread& thread) {
  thread.unwinding = true;
  m_programs.TellThreadEnded(thread);
  m_objects.Abandon(thread, m_scheduler);
  m_desktop.DropThread(thread);
  thread.process()->RemoveThread(thread);
  if (!thread.process()->ended()) return;
  thread.process()->FreeWideVariables();
  m_programs.TellEnded();
}

void Machine::EndProcess(Process& process, std::uint32_t exitCode) {
  process.BeginEnd(exitCode);
  Settle();
}

bool Machine::RunUntil(const std::function<bool()>& condition, std::uint64_t limit) {
  const std::uint64_t end = now() + limit;
  for (;;) {
    Settle();
    if (condition()) return true;
    const std::uint64_t next = m_scheduler.NextDeadline();
    if (next > end) {
      m_scheduler.AwaitQuiet(end);
      return condition();
    }
    m_scheduler.AwaitQuiet(next);
  }
}

bool Machine::RunUntilEnded(const Process& process, std::uint64_t limit) {
  return RunUntil([&] { return process.ended(); }, limit);
}

void Machine::Trace(std::u16string text) {
  const Thread* thread = CurrentThread();
  const Process* process = thread == nullptr ? nullptr : thread->process();
  Event event{now(), process == nullptr ? 0 : process->id(), std::move(text)};
  if (m_observer) m_observer(event);
  if (m_keepsTrace) m_trace.push_back(std::move(event));
}

Inside::Inside(Machine& machine, std::u16string imagePath)
    : m_machine(machine), m_process(machine.AddProcess(std::move(imagePath), u"")) {
  Thread& thread = machine.scheduler().conductor();
  thread.m_process = &m_process;
  thread.unwinding = false;
  m_process.AddThread(thread);
  SetCurrentThread(&thread);
}

Inside::~Inside() {
  m_process.BeginEnd(0);
  Thread& thread = *CurrentThread();
  m_machine.FinishThread(thread);
  SetCurrentThread(nullptr);
  thread.m_process = nullptr;
  thread.unwinding = false;
}

bool Inside::EndsProcess(const std::function<void()>& body) {
  try {
    body();
  } catch (const ProcessEnded&) {
  }
  return m_process.ending();
}

}  // namespace sim
