// An open file of a simulated process.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "platform/sim/file_tree.h"
#include "platform/sim/process.h"

namespace sim {

// What stands behind a file handle. Closing it ends its sharing and puts what was done to the file
// into the trace.
class OpenFile final : public HandleBody {
 public:
  enum class Origin { kExisted, kEmptied, kMade };

  OpenFile(Process& process, std::shared_ptr<FileNode> file, const FileUse& use, bool appendsOnly,
           Origin origin);
  ~OpenFile() override;

  std::u16string Describe() const override { return u"file " + m_file->path; }

  bool Reads() const { return m_use.reads; }
  bool Writes() const { return m_use.writes; }
  std::uint64_t Size() const { return m_file->bytes.size(); }
  std::uint64_t Position() const { return m_position; }
  void MoveTo(std::uint64_t position) { m_position = position; }

  // The number of bytes that there were to read.
  std::uint32_t Read(char* data, std::uint32_t bytes);
  // False when the file would become larger than the disk takes.
  bool Write(std::string_view data);

 private:
  std::u16string WhatWasDone() const;

  Process& m_process;
  std::shared_ptr<FileNode> m_file;
  FileUse m_use;
  bool m_appendsOnly;
  Origin m_origin;
  std::uint64_t m_position = 0;
  std::uint64_t m_sizeWhenOpened;
  std::string m_written;            // in the order of the writing
  bool m_wroteBehindTheEnd = true;  // and nowhere else
};

}  // namespace sim
