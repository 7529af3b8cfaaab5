// A process-wide variable. In the Windows build it is a plain variable; on the simulated machine,
// where several agents share one host process, it resolves to the running simulated process's copy.
#pragma once

#include <type_traits>

namespace platform {

#ifdef _WIN32

template <class T>
class ProcessWide {
 public:
  T& get() { return m_value; }

 private:
  T m_value{};
};

#else

// The running process's copy of the variable at `key`, made by `make` when it is first asked for
// and freed by `destroy` when the process has ended. Given by the simulation.
void* ProcessCopy(const void* key, void* (*make)(), void (*destroy)(void*));

template <class T>
class ProcessWide {
 public:
  T& get() {
    return *static_cast<T*>(ProcessCopy(
        this, [] { return static_cast<void*>(new T{}); },
        [](void* value) { delete static_cast<T*>(value); }));
  }
};

#endif

// `g_name.get()` reads best where the variable is an object; a number or pointer can be used as it
// stands through these.
template <class T>
class ProcessWideValue : public ProcessWide<T> {
  static_assert(std::is_scalar_v<T>);

 public:
  operator T() {
    return this->get();
  }  // NOLINT(google-explicit-constructor): stands for the variable
  T operator->() requires std::is_pointer_v<T> { return this->get(); }
  ProcessWideValue& operator=(T value) {
    this->get() = value;
    return *this;
  }
};

}  // namespace platform
