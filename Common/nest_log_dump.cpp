// The nest log's dumps of binary data: a status reply and the hexadecimal table.

#include <algorithm>
#include <cstddef>
#include <span>

#include "Common/log_stream.h"
#include "Common/nest_log.h"

namespace vgl {

namespace {

constexpr char16_t kStatusTitle[] = u"Binary Status Reply:";
constexpr std::size_t kRowBytes = 16;

using Bytes = std::span<const std::uint8_t>;

// Two digits a byte, blanks between them, none behind the title's colon.
std::u16string StatusLine(Bytes data) {
  std::u16string line = kStatusTitle;
  for (const std::uint8_t byte : data) line += WideFormat(u"%02X ", byte);
  line.back() = u'\n';
  return line;
}

// The title's colon makes the file a named stream of "Binary Status Reply" on NTFS. It stays: that
// is where every program of the suite has put these dumps.
void AppendStatusFile(Bytes data) {
  PathText path;
  CLogStream stream;
  if (FormatTo(path, u"C:\\%s.bin", kStatusTitle) &&
      stream.Open(path.c_str(), CLogStream::Sharing::Everybody)) {
    stream.WriteBytes(data.data(), static_cast<std::uint32_t>(data.size()));
  }
}

// "00000010 : 41 42 ...    : AB\n"; `bytes` has up to 16.
std::u16string TableRow(std::size_t offset, Bytes bytes) {
  std::u16string digits;
  std::u16string characters;
  for (const std::uint8_t byte : bytes) {
    digits += WideFormat(u"%02X ", byte);
    characters += byte >= 0x20 && byte <= 0x7E ? static_cast<char16_t>(byte) : u'.';
  }
  digits.resize(kRowBytes * 3, u' ');
  return WideFormat(u"%08X : %s: %s\n", offset, digits, characters);
}

}  // namespace

void CNestLog::PrintBinaryStatus(const void* data, std::int32_t length, std::int32_t mode) const {
  if (g_bNestLogEnabled == 0 || data == nullptr || length < 1) return;
  const Bytes bytes(static_cast<const std::uint8_t*>(data), static_cast<std::size_t>(length));
  if (mode == 1) {
    Print(StatusLine(bytes));
  } else {
    AppendStatusFile(bytes);
  }
}

void CNestLog::DumpHexTable(const char16_t* path, const void* data, std::int32_t length,
                            const char16_t* title) {
  if (g_bNestLogEnabled == 0 || data == nullptr || length < 0) return;
  const Bytes bytes(static_cast<const std::uint8_t*>(data), static_cast<std::size_t>(length));
  AppendRaw(path, u"\n");
  if (title != nullptr) AppendRaw(path, u"%s", title);
  AppendRaw(path,
            u"Addr     : 00 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F : 0123456789ABCDEF\n");
  AppendRaw(path,
            u"---------+-------------------------------------------------+-----------------\n");
  for (std::size_t offset = 0; offset < bytes.size(); offset += kRowBytes) {
    // The row is the template itself, as in all programs of the suite, so that their tables agree:
    // "%%" in the data comes out as "%". A directive stands as it is for want of an argument, so no
    // row can fail to format.
    AppendRaw(path,
              TableRow(offset, bytes.subspan(offset, std::min(kRowBytes, bytes.size() - offset))));
  }
  AppendRaw(path, u"\n");
}

}  // namespace vgl
