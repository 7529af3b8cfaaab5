#include "platform/sim/named_objects.h"

#include <stdexcept>
#include <utility>

#include "platform/sim/machine.h"
#include "platform/sim/object_handle.h"
#include "platform/sim/security_calls.h"
#include "platform/sim/text.h"

namespace sim {

using namespace platform;

NamedObject::~NamedObject() {
  if (!m_name.empty()) m_objects.m_byName.erase(m_name);
}

void Waitable::HandOver(Scheduler& scheduler) {
  while (!m_waiters.empty() && IsFreeFor(*m_waiters.front()->thread)) {
    Waiter& waiter = *m_waiters.front();
    m_waiters.erase(m_waiters.begin());
    waiter.result = Take(*waiter.thread);
    scheduler.Wake(*waiter.thread);
  }
}

Mutex::~Mutex() { std::erase(m_objects.m_owned, this); }

bool Mutex::IsFreeFor(const Thread& thread) const {
  return m_owner == nullptr || m_owner == &thread;
}

std::uint32_t Mutex::Take(Thread& thread) {
  if (m_depth++ == 0) {
    m_owner = &thread;
    m_objects.m_owned.push_back(this);
  }
  return std::exchange(m_abandoned, false) ? WAIT_ABANDONED : WAIT_OBJECT_0;
}

void Mutex::Release(Scheduler& scheduler) {
  if (--m_depth == 0) Free(scheduler);
}

void Mutex::Abandon(Scheduler& scheduler) {
  m_abandoned = true;
  m_depth = 0;
  Free(scheduler);
}

void Mutex::Free(Scheduler& scheduler) {
  m_owner = nullptr;
  std::erase(m_objects.m_owned, this);
  HandOver(scheduler);
}

std::uint32_t Semaphore::Take(Thread&) {
  --m_count;
  return WAIT_OBJECT_0;
}

bool Semaphore::Release(std::int32_t count, Scheduler& scheduler) {
  if (count > m_maximum - m_count) return false;
  m_count += count;
  HandOver(scheduler);
  return true;
}

std::shared_ptr<NamedObject> NamedObjects::Find(const std::u16string& name) const {
  const auto found = m_byName.find(name);
  return found == m_byName.end() ? nullptr : found->second.lock();
}

std::optional<std::string> NamedObjects::DaclOf(const std::u16string& name) const {
  const std::shared_ptr<NamedObject> object = Find(name);
  if (object == nullptr) throw std::invalid_argument("no such object on the simulated machine");
  return object->dacl();
}

void NamedObjects::Publish(const std::shared_ptr<NamedObject>& object) {
  if (!object->name().empty()) m_byName[object->name()] = object;
}

void NamedObjects::Abandon(Thread& thread, Scheduler& scheduler) {
  const std::vector<Mutex*> owned = m_owned;
  for (Mutex* mutex : owned)
    if (mutex->IsOwnedBy(thread)) mutex->Abandon(scheduler);
}

std::u16string ObjectName(const char16_t* name) {
  constexpr std::u16string_view kLocal = u"Local\\";
  std::u16string_view view = View(name);
  if (view.starts_with(kLocal)) view.remove_prefix(kLocal.size());
  return std::u16string(view);
}

// All simulated processes run for one user, so who may open an object makes no difference.
HANDLE KernelObjectCalls::CreateMutexW(const SecurityAttributes* attributes, bool initialOwner,
                                       const char16_t* name) {
  Call call("CreateMutexW");
  if (call.Failure(ERROR_NO_SYSTEM_RESOURCES)) return HANDLE{};
  return CreateOrOpenObject<Mutex>(call, name, [&](NamedObjects& objects) {
    auto mutex = std::make_shared<Mutex>(objects, ObjectName(name));
    mutex->KeepDacl(DaclFrom(attributes));
    if (initialOwner) mutex->Take(call.thread());
    return mutex;
  });
}

HANDLE KernelObjectCalls::OpenMutexW(std::uint32_t, const char16_t* name) {
  Call call("OpenMutexW");
  if (call.Failure(ERROR_NO_SYSTEM_RESOURCES)) return HANDLE{};
  return OpenObject<Mutex>(call, name);
}

bool KernelObjectCalls::ReleaseMutex(HANDLE handle) {
  Call call("ReleaseMutex", Call::kRelease);
  if (call.Inert()) return true;
  if (call.Failure(ERROR_INVALID_HANDLE)) return false;
  std::shared_ptr<ObjectHandle> body;
  Mutex* mutex = FindObject<Mutex>(call, handle, body);
  if (mutex == nullptr) return false;
  if (!mutex->IsOwnedBy(call.thread())) {
    call.SetLastError(ERROR_NOT_OWNER);
    return false;
  }
  mutex->Release(m_machine.scheduler());
  return true;
}

HANDLE KernelObjectCalls::CreateSemaphoreW(std::int32_t initialCount, std::int32_t maximumCount,
                                           const char16_t* name) {
  Call call("CreateSemaphoreW");
  if (call.Failure(ERROR_NO_SYSTEM_RESOURCES)) return HANDLE{};
  if (maximumCount <= 0 || initialCount < 0 || initialCount > maximumCount) {
    call.SetLastError(ERROR_INVALID_PARAMETER);
    return HANDLE{};
  }
  return CreateOrOpenObject<Semaphore>(call, name, [&](NamedObjects& objects) {
    return std::make_shared<Semaphore>(objects, ObjectName(name), initialCount, maximumCount);
  });
}

bool KernelObjectCalls::ReleaseSemaphore(HANDLE handle, std::int32_t count,
                                         std::int32_t* previous) {
  Call call("ReleaseSemaphore", Call::kRelease);
  if (call.Inert()) return true;
  if (call.Failure(ERROR_INVALID_HANDLE)) return false;
  std::shared_ptr<ObjectHandle> body;
  Semaphore* semaphore = FindObject<Semaphore>(call, handle, body);
  if (semaphore == nullptr) return false;
  if (count <= 0) {
    call.SetLastError(ERROR_INVALID_PARAMETER);
    return false;
  }
  const std::int32_t before = semaphore->count();
  if (!semaphore->Release(count, m_machine.scheduler())) {
    call.SetLastError(ERROR_TOO_MANY_POSTS);
    return false;
  }
  if (previous != nullptr) *previous = before;
  return true;
}

std::uint32_t KernelObjectCalls::WaitForSingleObject(HANDLE handle, std::uint32_t milliseconds) {
  Call call("WaitForSingleObject");
  if (call.Failure(ERROR_INVALID_HANDLE)) return WAIT_FAILED;
  std::shared_ptr<ObjectHandle> body;
  Waitable* object = FindObject<Waitable>(call, handle, body);
  if (object == nullptr) return WAIT_FAILED;

  if (object->IsFreeFor(call.thread())) return object->Take(call.thread());
  struct Waiting {
    Waitable& object;
    Waitable::Waiter waiter;
    Waiting(Waitable& waitedFor, Thread& thread) : object(waitedFor), waiter{&thread, {}} {
      object.AddWaiter(waiter);
    }
    ~Waiting() { object.RemoveWaiter(waiter); }
  };
  const Waiting waiting(*object, call.thread());
  const std::uint64_t deadline = milliseconds == INFINITE ? kNever : m_machine.now() + milliseconds;
  while (!waiting.waiter.result) {
    if (m_machine.now() >= deadline) return WAIT_TIMEOUT;
    m_machine.scheduler().Block(deadline);
  }
  return *waiting.waiter.result;
}

bool KernelObjectCalls::CloseHandle(HANDLE handle) {
  Call call("CloseHandle", Call::kRelease);
  if (call.Inert()) return true;
  if (call.Failure(ERROR_INVALID_HANDLE)) return false;
  const auto number = static_cast<std::uint64_t>(handle);
  const auto body = call.process().FindHandle<HandleBody>(number);
  if (body == nullptr || !body->IsKernelObject()) {
    m_machine.Trace(u"closed what is no open handle");
    call.SetLastError(ERROR_INVALID_HANDLE);
    return false;
  }
  return call.process().CloseHandle(number);
}

}  // namespace sim
