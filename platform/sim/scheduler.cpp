#include "platform/sim/scheduler.h"

#include <algorithm>
#include <stdexcept>

#include "platform/sim/process.h"

namespace sim {

namespace {
thread_local Thread* t_current = nullptr;
}

Thread* CurrentThread() { return t_current; }
void SetCurrentThread(Thread* thread) { t_current = thread; }

Scheduler::Scheduler(std::uint64_t seed)
    : m_seed(seed),
      m_random(seed),
      m_conductor(std::make_unique<Thread>(m_nextThreadId, nullptr)),
      m_running(m_conductor.get()) {
  m_nextThreadId += 4;
  m_conductor->m_state = Thread::State::Running;
}

Scheduler::~Scheduler() { ReapEnded(); }

Thread& Scheduler::Start(Process* process, std::function<void()> body) {
  m_threads.push_back(std::make_unique<Thread>(m_nextThreadId, process));
  m_nextThreadId += 4;
  Thread& thread = *m_threads.back();
  MakeReady(thread);
  thread.m_host = std::thread([this, &thread, body = std::move(body)] { RunThread(thread, body); });
  return thread;
}

void Scheduler::RunThread(Thread& thread, const std::function<void()>& body) {
  thread.m_baton.acquire();
  t_current = &thread;
  body();
  thread.m_state = Thread::State::Ended;
  Thread& next = ChooseNext();
  m_running = &next;
  next.m_baton.release();
}

void Scheduler::Block(std::uint64_t deadline) {
  Thread& self = Running();
  self.m_state = Thread::State::Blocked;
  self.m_blockedAt = m_now;
  self.m_deadline = deadline;
  self.m_turn = ++m_turns;
  if (deadline != kNever) m_sleepers.insert({{deadline, self.m_turn}, &self});
  SwitchAway(self);
}

void Scheduler::Wake(Thread& thread) {
  if (thread.m_state == Thread::State::Blocked) MakeReady(thread);
}

void Scheduler::MakeReady(Thread& thread) {
  if (thread.m_deadline != kNever) m_sleepers.erase({{thread.m_deadline, thread.m_turn}, &thread});
  thread.m_deadline = kNever;
  thread.m_state = Thread::State::Ready;
  m_ready.push_back(&thread);
}

void Scheduler::Yield() {
  Thread& self = Running();
  MakeReady(self);
  SwitchAway(self);
}

void Scheduler::MayInterleave() {
  if (m_seed == 0 || m_ready.empty()) return;
  if (m_random() % 2 == 0) Yield();
}

bool Scheduler::AwaitQuiet(std::uint64_t until) {
  Thread& self = *m_conductor;
  if (m_running != &self) throw std::logic_error("only the conductor lets the machine run");
  self.m_state = Thread::State::AwaitsQuiet;
  self.m_deadline = until;
  m_stuck = false;
  SwitchAway(self);
  self.m_deadline = kNever;
  ReapEnded();
  return !m_stuck;
}

std::uint64_t Scheduler::NextDeadline() const {
  return m_sleepers.empty() ? kNever : m_sleepers.begin()->first.first;
}

Thread& Scheduler::ChooseNext() {
  for (;;) {
    while (!m_sleepers.empty() && m_sleepers.begin()->first.first <= m_now)
      MakeReady(*m_sleepers.begin()->second);
    if (!m_ready.empty()) {
      const std::size_t index = m_seed == 0 ? 0 : m_random() % m_ready.size();
      Thread& next = *m_ready[index];
      m_ready.erase(m_ready.begin() + static_cast<std::ptrdiff_t>(index));
      return next;
    }
    const bool awaited = m_conductor->m_state == Thread::State::AwaitsQuiet;
    if (awaited && m_conductor->m_deadline <= m_now) return *m_conductor;
    const std::uint64_t due = std::min(NextDeadline(), awaited ? m_conductor->m_deadline : kNever);
    const bool waitsInVain = m_conductor->m_state == Thread::State::Blocked &&
                             m_conductor->m_deadline == kNever &&
                             due - m_conductor->m_blockedAt > kLongestWait;
    if (due == kNever || waitsInVain) {
      m_stuck = true;
      return *m_conductor;
    }
    m_now = due;
  }
}

void Scheduler::SwitchAway(Thread& self) {
  Thread& next = ChooseNext();
  if (&next != &self) {
    m_running = &next;
    next.m_baton.release();
    self.m_baton.acquire();
  }
  const bool blocked = self.m_state == Thread::State::Blocked;
  self.m_state = Thread::State::Running;
  if (blocked && m_stuck && &self == m_conductor.get())
    throw std::logic_error("every simulated thread waits for something that never comes");
  if (self.process() != nullptr && self.process()->ending()) {
    self.unwinding = true;
    throw ProcessEnded{};
  }
}

void Scheduler::ReapEnded() {
  // The records stay: a message that is being handled may still name its sender.
  const auto firstEnded = std::stable_partition(
      m_threads.begin(), m_threads.end(),
      [](const auto& thread) { return thread->m_state != Thread::State::Ended; });
  for (auto ended = firstEnded; ended != m_threads.end(); ++ended) {
    (*ended)->m_host.join();
    m_ended.push_back(std::move(*ended));
  }
  m_threads.erase(firstEnded, m_threads.end());
}

}  // namespace sim
