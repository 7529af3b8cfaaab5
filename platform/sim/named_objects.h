// Kernel objects of the simulated machine that processes share by name: mutexes, semaphores, and
// what sections (section_calls.h) have in common with them.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/kernel_objects.h"
#include "platform/sim/process.h"

namespace sim {

class NamedObjects;
class Scheduler;

// What kernel handles stand for, with a name or without. It goes, and its name with it, when its
// last handle is closed.
class NamedObject {
 public:
  NamedObject(NamedObjects& objects, std::u16string name)
      : m_objects(objects), m_name(std::move(name)) {}
  virtual ~NamedObject();
  NamedObject(const NamedObject&) = delete;
  NamedObject& operator=(const NamedObject&) = delete;

  const std::u16string& name() const { return m_name; }
  // The access list that it was made with, as DaclFrom of security_calls.h gives it.
  const std::optional<std::string>& dacl() const { return m_dacl; }
  void KeepDacl(std::optional<std::string> dacl) { m_dacl = std::move(dacl); }
  virtual std::u16string Describe() const = 0;

 protected:
  NamedObjects& m_objects;

 private:
  std::u16string m_name;  // empty: unnamed
  std::optional<std::string> m_dacl;
};

// What can be waited for.
class Waitable : public NamedObject {
 public:
  using NamedObject::NamedObject;

  virtual bool IsFreeFor(const Thread& thread) const = 0;
  // Takes the object for `thread`; only when it is free. What the wait gives.
  virtual std::uint32_t Take(Thread& thread) = 0;

  // A thread that waits, and what its wait gives once the object was handed to it.
  struct Waiter {
    Thread* thread;
    std::optional<std::uint32_t> result;
  };
  void AddWaiter(Waiter& waiter) { m_waiters.push_back(&waiter); }
  void RemoveWaiter(Waiter& waiter) { std::erase(m_waiters, &waiter); }

 protected:
  // Gives the object, as far as it is free, to those that wait for it, the longest first.
  void HandOver(Scheduler& scheduler);

 private:
  std::vector<Waiter*> m_waiters;
};

class Mutex final : public Waitable {
 public:
  using Waitable::Waitable;
  ~Mutex() override;

  std::u16string Describe() const override { return u"mutex " + name(); }
  bool IsFreeFor(const Thread& thread) const override;
  std::uint32_t Take(Thread& thread) override;
  bool IsOwnedBy(const Thread& thread) const { return m_owner == &thread; }
  // Gives one ownership back.
  void Release(Scheduler& scheduler);
  // The owner has ended without giving it back.
  void Abandon(Scheduler& scheduler);

 private:
  void Free(Scheduler& scheduler);

  Thread* m_owner = nullptr;
  std::uint32_t m_depth = 0;
  bool m_abandoned = false;
};

class Semaphore final : public Waitable {
 public:
  Semaphore(NamedObjects& objects, std::u16string name, std::int32_t initial, std::int32_t maximum)
      : Waitable(objects, std::move(name)), m_count(initial), m_maximum(maximum) {}

  std::u16string Describe() const override { return u"semaphore " + name(); }
  bool IsFreeFor(const Thread&) const override { return m_count > 0; }
  std::uint32_t Take(Thread& thread) override;
  std::int32_t count() const { return m_count; }
  // False when the maximum would be passed; nothing changes then.
  bool Release(std::int32_t count, Scheduler& scheduler);

 private:
  std::int32_t m_count;
  std::int32_t m_maximum;
};

class NamedObjects {
 public:
  // Whether any process holds a handle to an object of that name.
  bool Exists(const std::u16string& name) const { return m_byName.contains(name); }

  // The bytes of the access list that the mutex or section of that name was made with: nothing when
  // it has default security, no bytes when everybody may do everything. Asking for a name that
  // isn't there throws.
  std::optional<std::string> DaclOf(const std::u16string& name) const;

  // --- for the simulation ---

  // Null when there is none of that name; an empty name finds nothing.
  std::shared_ptr<NamedObject> Find(const std::u16string& name) const;
  void Publish(const std::shared_ptr<NamedObject>& object);
  // Gives up the mutexes that an ending thread owns; waiters find them abandoned.
  void Abandon(Thread& thread, Scheduler& scheduler);

 private:
  friend class NamedObject;
  friend class Mutex;
  std::map<std::u16string, std::weak_ptr<NamedObject>> m_byName;
  std::vector<Mutex*> m_owned;
};

class KernelObjectCalls final : public platform::KernelObjects {
 public:
  explicit KernelObjectCalls(Machine& machine) : m_machine(machine) {}

  platform::HANDLE CreateMutexW(const platform::SecurityAttributes* attributes, bool initialOwner,
                                const char16_t* name) override;
  platform::HANDLE OpenMutexW(std::uint32_t access, const char16_t* name) override;
  bool ReleaseMutex(platform::HANDLE mutex) override;
  platform::HANDLE CreateSemaphoreW(std::int32_t initialCount, std::int32_t maximumCount,
                                    const char16_t* name) override;
  bool ReleaseSemaphore(platform::HANDLE semaphore, std::int32_t count,
                        std::int32_t* previous) override;
  std::uint32_t WaitForSingleObject(platform::HANDLE object, std::uint32_t milliseconds) override;
  bool CloseHandle(platform::HANDLE handle) override;

 private:
  Machine& m_machine;
};

}  // namespace sim
