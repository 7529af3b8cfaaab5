#include "platform/sim/open_file.h"

#include <algorithm>
#include <utility>

#include "platform/sim/machine.h"
#include "platform/sim/text.h"

namespace sim {

namespace {
constexpr std::uint64_t kLargestFile = std::uint64_t{1} << 28;
}

OpenFile::OpenFile(Process& process, std::shared_ptr<FileNode> file, const FileUse& use,
                   bool appendsOnly, Origin origin)
    : m_process(process),
      m_file(std::move(file)),
      m_use(use),
      m_appendsOnly(appendsOnly),
      m_origin(origin),
      m_sizeWhenOpened(m_file->bytes.size()) {
  m_file->uses.push_back(&m_use);
}

OpenFile::~OpenFile() {
  std::erase(m_file->uses, &m_use);
  if (m_process.ending()) return;  // the system closed it: nothing that the program did
  Machine& machine = m_process.machine();
  if (const std::u16string done = WhatWasDone(); !done.empty()) machine.Trace(done);
  if (!m_written.empty()) machine.files().TellWritten(m_process.id(), m_file->path, m_written);
}

std::u16string OpenFile::WhatWasDone() const {
  const std::u16string bytes = Decimal(m_written.size()) + u" bytes to " + m_file->path;
  if (m_written.empty()) {
    if (m_origin == Origin::kMade) return u"made " + m_file->path;
    if (m_origin == Origin::kEmptied) return u"emptied " + m_file->path;
    return {};
  }
  return (m_origin == Origin::kExisted && m_wroteBehindTheEnd ? u"appended " : u"wrote ") + bytes;
}

std::uint32_t OpenFile::Read(char* data, std::uint32_t bytes) {
  if (m_position >= Size()) return 0;
  const std::size_t count = m_file->bytes.copy(data, bytes, m_position);
  m_position += count;
  return static_cast<std::uint32_t>(count);
}

bool OpenFile::Write(std::string_view data) {
  if (data.empty()) return true;
  const std::uint64_t at = m_appendsOnly ? Size() : m_position;
  const std::uint64_t end = at + data.size();
  if (end > kLargestFile) return false;
  if (end > Size()) m_file->bytes.resize(end);
  std::copy(data.begin(), data.end(), m_file->bytes.begin() + static_cast<std::ptrdiff_t>(at));
  m_position = end;
  m_written += data;
  m_wroteBehindTheEnd = m_wroteBehindTheEnd && at >= m_sizeWhenOpened;
  return true;
}

}  // namespace sim
