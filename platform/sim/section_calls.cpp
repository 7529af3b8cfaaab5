#include "platform/sim/section_calls.h"

#include <sys/mman.h>
#include <unistd.h>

#include <memory>
#include <string>
#include <utility>

#include "platform/sim/machine.h"
#include "platform/sim/object_handle.h"
#include "platform/sim/security_calls.h"
#include "platform/sim/text.h"

namespace sim {

using namespace platform;

namespace {

constexpr std::size_t kPage = 4096;
// A host program can have some 65,000 mappings, and the page behind a view is one of its own: on a
// machine with more views than this the later ones go without.
constexpr std::size_t kViewsWithPageBehind = 4096;

std::size_t WholePages(std::size_t bytes) { return (bytes + kPage - 1) / kPage * kPage; }

// The bytes of a section. They live while a handle or a view does.
class SectionBytes {
 public:
  explicit SectionBytes(std::uint32_t bytes) : m_size(WholePages(bytes)) {
    m_file = memfd_create("section", MFD_CLOEXEC);
    if (m_file >= 0 && ftruncate(m_file, static_cast<off_t>(m_size)) != 0) {
      close(m_file);
      m_file = -1;
    }
  }
  ~SectionBytes() {
    if (m_file >= 0) close(m_file);
  }
  SectionBytes(const SectionBytes&) = delete;
  SectionBytes& operator=(const SectionBytes&) = delete;

  bool IsThere() const { return m_file >= 0; }
  std::size_t size() const { return m_size; }
  // Lets the memory at `address` show the bytes; with MAP_PRIVATE a copy of them.
  bool ShowAt(void* address, std::size_t bytes, int sharing) const {
    return mmap(address, bytes, PROT_READ | PROT_WRITE, sharing | MAP_FIXED, m_file, 0) !=
           MAP_FAILED;
  }

 private:
  std::size_t m_size;  // in whole pages
  int m_file;
};

class Section final : public NamedObject {
 public:
  Section(NamedObjects& objects, std::u16string name, std::shared_ptr<const SectionBytes> bytes)
      : NamedObject(objects, std::move(name)), m_bytes(std::move(bytes)) {}

  std::u16string Describe() const override { return u"section " + name(); }
  const std::shared_ptr<const SectionBytes>& bytes() const { return m_bytes; }

 private:
  std::shared_ptr<const SectionBytes> m_bytes;
};

}  // namespace

class SectionCalls::View final : public HandleBody {
 public:
  View(SectionCalls& calls, const Process& process, std::u16string name,
       std::shared_ptr<const SectionBytes> bytes, Region region)
      : m_calls(calls),
        m_process(process),
        m_name(std::move(name)),
        m_bytes(std::move(bytes)),
        m_region(region) {}

  ~View() override {
    m_calls.m_views.erase(m_region.address);
    if (m_isGivenBack) {
      Free(m_region);
      return;
    }
    // The process has ended: what its threads still write there reaches nobody.
    m_bytes->ShowAt(m_region.address, m_region.bytes, MAP_PRIVATE);
    m_calls.m_leftBehind.push_back({&m_process, m_region});
  }

  std::u16string Describe() const override { return u"view of " + m_name; }
  bool IsKernelObject() const override { return false; }
  void GiveBack() { m_isGivenBack = true; }

 private:
  SectionCalls& m_calls;
  const Process& m_process;
  std::u16string m_name;
  std::shared_ptr<const SectionBytes> m_bytes;
  Region m_region;
  bool m_isGivenBack = false;
};

SectionCalls::~SectionCalls() {
  for (const LeftBehind& left : m_leftBehind) Free(left.region);
}

void SectionCalls::Free(const Region& region) { munmap(region.address, region.reserved); }

void SectionCalls::FreeOfEndedProcesses() {
  std::erase_if(m_leftBehind, [](const LeftBehind& left) {
    if (left.process->ended()) Free(left.region);
    return left.process->ended();
  });
}

HANDLE SectionCalls::CreateFileMappingW(HANDLE file, const SecurityAttributes* attributes,
                                        std::uint32_t protection, std::uint32_t sizeHigh,
                                        std::uint32_t sizeLow, const char16_t* name) {
  Call call("CreateFileMappingW");
  if (call.Failure(ERROR_NO_SYSTEM_RESOURCES)) return HANDLE{};
  if (file != INVALID_HANDLE_VALUE || protection != PAGE_READWRITE || sizeHigh != 0) {
    call.SetLastError(ERROR_NOT_SUPPORTED);
    return HANDLE{};
  }
  if (sizeLow == 0) {
    call.SetLastError(ERROR_INVALID_PARAMETER);
    return HANDLE{};
  }
  return CreateOrOpenObject<Section>(
      call, name, [&](NamedObjects& objects) -> std::shared_ptr<Section> {
        auto bytes = std::make_shared<const SectionBytes>(sizeLow);
        if (!bytes->IsThere()) {
          call.SetLastError(ERROR_NOT_ENOUGH_MEMORY);
          return nullptr;
        }
        m_machine.Trace(u"made section " + ObjectName(name) + u": " + Decimal(sizeLow) + u" bytes");
        auto section = std::make_shared<Section>(objects, ObjectName(name), std::move(bytes));
        section->KeepDacl(DaclFrom(attributes));
        return section;
      });
}

HANDLE SectionCalls::OpenFileMappingW(std::uint32_t, const char16_t* name) {
  Call call("OpenFileMappingW");
  if (call.Failure(ERROR_NO_SYSTEM_RESOURCES)) return HANDLE{};
  return OpenObject<Section>(call, name);
}

void* SectionCalls::MapViewOfFile(HANDLE handle, std::uint32_t, std::uint64_t bytes) {
  Call call("MapViewOfFile");
  if (call.Failure(ERROR_NOT_ENOUGH_MEMORY)) return nullptr;
  std::shared_ptr<ObjectHandle> body;
  const Section* section = FindObject<Section>(call, handle, body);
  if (section == nullptr) return nullptr;
  if (bytes > section->bytes()->size()) {
    call.SetLastError(ERROR_ACCESS_DENIED);
    return nullptr;
  }
  FreeOfEndedProcesses();
  const std::size_t shown = bytes == 0 ? section->bytes()->size() : WholePages(bytes);
  const std::size_t reserved = shown + (m_views.size() < kViewsWithPageBehind ? kPage : 0);
  void* address = mmap(nullptr, reserved, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, /*fd=*/-1, 0);
  if (address == MAP_FAILED) {
    call.SetLastError(ERROR_NOT_ENOUGH_MEMORY);
    return nullptr;
  }
  if (!section->bytes()->ShowAt(address, shown, MAP_SHARED)) {
    munmap(address, reserved);
    call.SetLastError(ERROR_NOT_ENOUGH_MEMORY);
    return nullptr;
  }
  m_views[address] = call.process().AddHandle(std::make_shared<View>(
      *this, call.process(), section->name(), section->bytes(), Region{address, shown, reserved}));
  return address;
}

bool SectionCalls::UnmapViewOfFile(const void* address) {
  Call call("UnmapViewOfFile", Call::kRelease);
  if (call.Inert()) return true;
  if (call.Failure(ERROR_INVALID_ADDRESS)) return false;
  const auto found = m_views.find(address);
  const std::uint64_t handle = found == m_views.end() ? 0 : found->second;
  const std::shared_ptr<View> view = call.process().FindHandle<View>(handle);
  if (view == nullptr) {
    call.SetLastError(ERROR_INVALID_ADDRESS);
    return false;
  }
  view->GiveBack();
  return call.process().CloseHandle(handle);
}

}  // namespace sim
