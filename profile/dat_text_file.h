// The reader of data files whose keys repeat: the system's own reader finds only the first of
// several equal keys. docs/driver-set.md tells the form of a file.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

namespace vgl {

// The bytes of such a file as text, in place of what `text` holds: each byte is a character by sign
// extension (0x80 to 0xFF become U+FF80 to U+FFFF). No code page is applied, the files are ASCII.
void Widen(std::string_view bytes, std::u16string& text);
// Whether such bytes are that text, but for the case of A to Z.
bool EqualsText(std::string_view bytes, std::u16string_view text);

// A data file, held whole in memory and read forward; only FindSection goes back. Texts
// are those of Widen. Nothing of a file is reported as wrong.
//
// Names compare without regard to the case of A to Z. Outputs are emptied first; a name given must
// not lie inside an output of the same call.
class CDatTextFile {
 public:
  CDatTextFile() = default;
  CDatTextFile(const CDatTextFile&) = delete;
  CDatTextFile& operator=(const CDatTextFile&) = delete;

  // Reads the file and closes it again; nobody may write to it meanwhile. 1 when it was read and
  // isn't empty (a file whose size has 0xFFFFFFFF as its lower half can't be told from an unknown
  // one, and isn't read). 0 when there is no path, no such file, nothing in it, no memory for it,
  // or when it can't be opened or read; the object is empty then, whatever it held before.
  int Open(const std::u16string& path);

  // Goes behind the first header line "[name]", looking from the top of the file. 1 when there is
  // one. 0 when there is none (the position is the file's end then) and for an empty name (the
  // position is its top).
  int FindSection(std::u16string_view name);

  // The value of the next line with that key. The position is behind that line then, so that the
  // next call gives the next one. 1 when there is one; 0 for an empty name and at the end of the
  // search: that is the end of the file, or a line with an opening bracket at both of its ends, as
  // "[", "[[" or "[end["; another call goes on behind such a line. A section's header ends nothing.
  int FindKey(std::u16string_view name, std::u16string& value);

  // The same without a copy: the value's bytes, which lie in this object until it is opened anew.
  // `name` must be one that a key can have: without outer blanks and without an equals sign.
  int FindKeyInPlace(std::u16string_view name, std::string_view& value);

  // The next line that isn't empty without its comment and its outer blanks, without them. 0 at the
  // end of the file.
  int ReadLine(std::u16string& line);

  // The next line without its comment, with its line feed and its blanks. 0 at the end of the file.
  int ReadRawLine(std::u16string& line);

  // The two sides of the first equals sign in a line, without their outer blanks. 1 when neither is
  // empty; otherwise 0, and both outputs are empty. `line` must not lie inside an output.
  static int SplitKeyValue(std::u16string_view line, std::u16string& name, std::u16string& value);

 private:
  bool LoadFrom(const std::u16string& path);
  bool NextRawLine(std::string_view& text, bool& endsWithLineFeed);
  bool NextLine(std::string_view& text);

  std::unique_ptr<char[]> m_pBuffer;
  std::size_t m_nLength = 0;    // in bytes
  std::size_t m_nPosition = 0;  // of the next byte to read
};

}  // namespace vgl
