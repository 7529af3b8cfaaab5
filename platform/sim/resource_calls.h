// The platform's calls on the resources of loaded libraries.
#pragma once

#include <string>
#include <utility>

#include "platform/resources.h"
#include "platform/sim/pe_resources.h"
#include "platform/sim/process.h"

namespace sim {

class Machine;

// A picture that a process has loaded.
class LoadedPicture : public HandleBody {
 public:
  LoadedPicture(Picture picture, std::u16string name)
      : m_picture(std::move(picture)), m_name(std::move(name)) {}
  std::u16string Describe() const override { return m_name; }
  bool IsKernelObject() const override { return false; }

  const Picture& picture() const { return m_picture; }

 private:
  Picture m_picture;
  std::u16string m_name;
};

class LoadedBitmap final : public LoadedPicture {
 public:
  using LoadedPicture::LoadedPicture;
};

// An icon, and the size that it was asked for in.
class LoadedIcon final : public LoadedPicture {
 public:
  LoadedIcon(Picture picture, std::u16string name, std::uint32_t width, std::uint32_t height)
      : LoadedPicture(std::move(picture), std::move(name)), m_width(width), m_height(height) {}

  std::uint32_t width() const { return m_width; }
  std::uint32_t height() const { return m_height; }

 private:
  std::uint32_t m_width;
  std::uint32_t m_height;
};

class ResourceCalls final : public platform::Resources {
 public:
  explicit ResourceCalls(Machine& machine) : m_machine(machine) {}

  std::int32_t LoadStringW(platform::HMODULE module, std::uint32_t id, char16_t* text,
                           std::int32_t chars) override;
  platform::HMENU LoadMenuW(platform::HMODULE module, std::uint16_t id) override;
  platform::HICON LoadImageW(platform::HMODULE module, std::uint16_t id, std::uint32_t type,
                             std::int32_t width, std::int32_t height, std::uint32_t flags) override;
  bool DestroyIcon(platform::HICON icon) override;
  platform::HBITMAP LoadBitmapW(platform::HMODULE module, std::uint16_t id) override;

 private:
  std::uint16_t Language() const;

  Machine& m_machine;
};

}  // namespace sim
