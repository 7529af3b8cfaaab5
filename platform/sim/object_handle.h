// Handles to the simulated machine's named objects: what the calls on mutexes, semaphores and
// sections share.
#pragma once

#include <memory>
#include <string>
#include <utility>

#include "platform/sim/machine.h"
#include "platform/sim/named_objects.h"

namespace sim {

class ObjectHandle final : public HandleBody {
 public:
  explicit ObjectHandle(std::shared_ptr<NamedObject> object) : m_object(std::move(object)) {}
  std::u16string Describe() const override { return m_object->Describe(); }
  NamedObject& object() const { return *m_object; }

 private:
  std::shared_ptr<NamedObject> m_object;
};

// A name as the machine keeps it: the session's own unless it begins with "Global\"; "Local\" only
// says so.
std::u16string ObjectName(const char16_t* name);

// A handle to the object of that name, or to the one that `make` gives when there is none; `make`
// may give null with the error set.
template <class T, class Make>
platform::HANDLE CreateOrOpenObject(Call& call, const char16_t* name, const Make& make) {
  NamedObjects& objects = call.machine().objects();
  std::shared_ptr<NamedObject> object = objects.Find(ObjectName(name));
  if (object != nullptr && dynamic_cast<T*>(object.get()) == nullptr) {
    call.SetLastError(platform::ERROR_INVALID_HANDLE);
    return platform::HANDLE{};
  }
  call.SetLastError(object == nullptr ? platform::ERROR_SUCCESS : platform::ERROR_ALREADY_EXISTS);
  if (object == nullptr) {
    object = make(objects);
    if (object == nullptr) return platform::HANDLE{};
    objects.Publish(object);
  }
  return platform::HANDLE{
      call.process().AddHandle(std::make_shared<ObjectHandle>(std::move(object)))};
}

// A handle to the object of that name, which must be of that kind.
template <class T>
platform::HANDLE OpenObject(Call& call, const char16_t* name) {
  std::shared_ptr<NamedObject> object = call.machine().objects().Find(ObjectName(name));
  if (dynamic_cast<T*>(object.get()) == nullptr) {
    call.SetLastError(object == nullptr ? platform::ERROR_FILE_NOT_FOUND
                                        : platform::ERROR_INVALID_HANDLE);
    return platform::HANDLE{};
  }
  return platform::HANDLE{
      call.process().AddHandle(std::make_shared<ObjectHandle>(std::move(object)))};
}

// The open object of that kind, or null with the error set; `body` keeps it alive.
template <class T>
T* FindObject(Call& call, platform::HANDLE handle, std::shared_ptr<ObjectHandle>& body) {
  body = call.process().FindHandle<ObjectHandle>(static_cast<std::uint64_t>(handle));
  T* object = body == nullptr ? nullptr : dynamic_cast<T*>(&body->object());
  if (object == nullptr) call.SetLastError(platform::ERROR_INVALID_HANDLE);
  return object;
}

}  // namespace sim
