// Simulated threads and virtual time.
//
// Each simulated thread has a host thread for its stack, and one baton says which of them runs: so
// calls that wait really block, nested loops nest, and nothing needs a lock. The host thread that
// made the machine is the conductor: it lets the others run and gets the baton back when they are
// all waiting and the time that it asked for has come. The clock moves only when nobody is ready.
#pragma once

#include <semaphore.h>

#include <cstdint>
#include <deque>
#include <functional>
#include <limits>
#include <memory>
#include <random>
#include <set>
#include <thread>
#include <utility>
#include <vector>

namespace sim {

class Process;

inline constexpr std::uint64_t kNever = std::numeric_limits<std::uint64_t>::max();

// How long the conductor, inside a simulated process, may wait for something that has no time of
// its own, in milliseconds; after that a test is taken to hang, though timers of others go on.
inline constexpr std::uint64_t kLongestWait = 24ULL * 60 * 60 * 1000;

// Unwinds the stack of a simulated thread whose process has ended. Nothing but the simulation
// catches it; it derives from nothing, so that no handler takes it by accident.
struct ProcessEnded {};

// What a host thread waits for when it isn't its turn. It waits in the kernel at once: turns are
// long, and spinning would take the time of the one whose turn it is.
class Baton {
 public:
  Baton() { sem_init(&m_semaphore, 0, 0); }
  ~Baton() { sem_destroy(&m_semaphore); }
  Baton(const Baton&) = delete;
  Baton& operator=(const Baton&) = delete;

  void release() { sem_post(&m_semaphore); }
  void acquire() {
    while (sem_wait(&m_semaphore) != 0) continue;  // a signal came between
  }

 private:
  sem_t m_semaphore;
};

class Thread {
 public:
  Thread(std::uint32_t id, Process* process) : m_id(id), m_process(process) {}

  std::uint32_t id() const { return m_id; }
  Process* process() const { return m_process; }
  std::int32_t lastError = 0;

  // True from the moment that this thread is being unwound: its calls have no effect any more.
  bool unwinding = false;

 private:
  friend class Scheduler;
  friend class Inside;
  enum class State { Ready, Running, Blocked, AwaitsQuiet, Ended };

  std::uint32_t m_id;
  Process* m_process;
  State m_state = State::Blocked;
  std::uint64_t m_deadline = kNever;  // while blocked or awaiting quiet
  std::uint64_t m_blockedAt = 0;
  std::uint64_t m_turn = 0;  // orders sleepers of one deadline
  Baton m_baton;
  std::thread m_host;
};

class Scheduler {
 public:
  // Seed 0 lets a thread run until it waits, and those that are ready take turns. With any other,
  // MayInterleave lets another one go first as often as not.
  explicit Scheduler(std::uint64_t seed);
  ~Scheduler();
  Scheduler(const Scheduler&) = delete;
  Scheduler& operator=(const Scheduler&) = delete;

  std::uint64_t now() const { return m_now; }
  std::uint64_t Random() { return m_random(); }
  // The number of a thread that is never run.
  std::uint32_t NewThreadId() { return std::exchange(m_nextThreadId, m_nextThreadId + 4); }
  Thread& conductor() { return *m_conductor; }

  // Makes a thread that will run `body`. It is ready at once and starts when it is chosen.
  Thread& Start(Process* process, std::function<void()> body);

  // Has the calling thread wait until it is woken or the time `deadline` has come, whichever is
  // first. Throws ProcessEnded when its process has ended meanwhile.
  void Block(std::uint64_t deadline);

  // Makes a blocked thread ready; it finds out itself whether what it waits for has come.
  void Wake(Thread& thread);

  // Lets the other ready threads go first.
  void Yield();

  // Called at every platform call: may let another thread go on instead, by the seed.
  void MayInterleave();

  // For the conductor: lets everybody run until all of them wait and the time `until` has come.
  // False when it came back early as nobody has anything to do, ever.
  bool AwaitQuiet(std::uint64_t until);

  // When the next blocked thread is due; kNever when none waits for a time.
  std::uint64_t NextDeadline() const;

  // Waits for the host threads of simulated threads that have ended.
  void ReapEnded();

 private:
  using Sleepers = std::set<std::pair<std::pair<std::uint64_t, std::uint64_t>, Thread*>>;

  Thread& Running() const { return *m_running; }
  Thread& ChooseNext();
  void SwitchAway(Thread& self);
  void MakeReady(Thread& thread);
  void RunThread(Thread& thread, const std::function<void()>& body);

  std::uint64_t m_now = 0;
  std::uint64_t m_turns = 0;
  std::uint64_t m_seed;
  std::mt19937_64 m_random;
  std::uint32_t m_nextThreadId = 0x2000;
  bool m_stuck = false;
  std::unique_ptr<Thread> m_conductor;
  std::vector<std::unique_ptr<Thread>> m_threads;
  std::vector<std::unique_ptr<Thread>> m_ended;
  std::deque<Thread*> m_ready;
  Sleepers m_sleepers;
  Thread* m_running;
};

// The simulated thread that the calling host thread stands for, null if none.
Thread* CurrentThread();
void SetCurrentThread(Thread* thread);

}  // namespace sim
