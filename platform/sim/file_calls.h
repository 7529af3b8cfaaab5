// The platform's calls on files.
#pragma once

#include "platform/files.h"

namespace sim {

class Machine;

class FileCalls final : public platform::Files {
 public:
  explicit FileCalls(Machine& machine) : m_machine(machine) {}

  platform::HANDLE CreateFileW(const char16_t* path, std::uint32_t access, std::uint32_t share,
                               std::uint32_t disposition, std::uint32_t attributes) override;
  bool ReadFile(platform::HANDLE file, void* data, std::uint32_t bytes,
                std::uint32_t* read) override;
  bool WriteFile(platform::HANDLE file, const void* data, std::uint32_t bytes,
                 std::uint32_t* written) override;
  std::uint32_t GetFileSize(platform::HANDLE file, std::uint32_t* high) override;
  std::uint32_t SetFilePointer(platform::HANDLE file, std::int32_t distance,
                               std::uint32_t method) override;
  bool DeleteFileW(const char16_t* path) override;
  platform::HFIND FindFirstFileW(const char16_t* pattern, platform::FindData* data) override;
  platform::HFIND FindFirstFileA(const char* pattern, platform::FindDataA* data) override;
  bool FindNextFileW(platform::HFIND search, platform::FindData* data) override;
  bool FindClose(platform::HFIND search) override;
  std::uint32_t GetFileAttributesW(const char16_t* path) override;
  std::uint32_t GetTempPathW(std::uint32_t chars, char16_t* path) override;
  std::uint32_t GetTempFileNameW(const char16_t* folder, const char16_t* prefix,
                                 std::uint32_t unique, char16_t* name) override;

 private:
  Machine& m_machine;
};

}  // namespace sim
