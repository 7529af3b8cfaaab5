// Sections: named regions of memory that processes share, and views of them.
//
// Names are those of kernel_objects.h: a section's name lives while any process holds a handle to
// it, its bytes while any holds a handle or a view. A new one is all zeros.
#pragma once

#include "platform/security.h"
#include "platform/types.h"

namespace platform {

inline constexpr std::uint32_t PAGE_READWRITE = 4;
inline constexpr std::uint32_t FILE_MAP_ALL_ACCESS = 0xF001F;

inline constexpr std::int32_t ERROR_INVALID_ADDRESS = 487;

class Sections {
 public:
  virtual ~Sections() = default;

  // Makes a section of `sizeLow` bytes (and `sizeHigh` times 4 GiB), or opens the one of that name,
  // whose size then stays (a null name makes an unnamed one). `file` is what backs it,
  // INVALID_HANDLE_VALUE for the page file; `protection` is PAGE_READWRITE. `attributes` tell who
  // may open a newly made one; null stands for default security. The handle is the caller's, closed
  // by CloseHandle; HANDLE{} on failure: 87 for no bytes, 6 when the name belongs to an object of
  // another kind. On success the last error is 183 when it existed, else 0.
  virtual HANDLE CreateFileMappingW(HANDLE file, const SecurityAttributes* attributes,
                                    std::uint32_t protection, std::uint32_t sizeHigh,
                                    std::uint32_t sizeLow, const char16_t* name) = 0;

  // HANDLE{} with 2 when there is no section of that name, 6 when it belongs to an object of
  // another kind.
  virtual HANDLE OpenFileMappingW(std::uint32_t access, const char16_t* name) = 0;

  // The section's first `bytes` bytes (0: all of it), rounded up to whole pages of 4096, as memory
  // of this process; what lies behind them is not the caller's. Null on failure, among them 5 for
  // more bytes than the section's size rounded up likewise. Views of one section show the same
  // bytes. The view is the caller's, to be given back by UnmapViewOfFile; it outlives the section's
  // handles.
  virtual void* MapViewOfFile(HANDLE section, std::uint32_t access, std::uint64_t bytes) = 0;

  // `view` is what MapViewOfFile gave. False with 487 for what doesn't lie in a view.
  virtual bool UnmapViewOfFile(const void* view) = 0;
};

}  // namespace platform
