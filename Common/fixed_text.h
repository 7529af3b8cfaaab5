// Text in a field of fixed size, as the suite's records and the system's calls have it.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace vgl {

// A text of at most `Capacity` - 1 characters; `Capacity` is in characters and counts the
// terminator. Everything is held inside the object. A new one is empty.
template <std::size_t Capacity>
class FixedText {
  static_assert(Capacity > 0 && Capacity <= UINT32_MAX);

 public:
  // Takes `text` up to its first U+0000. True when that fits with its terminator; otherwise false,
  // and the field holds what it held. Never cuts. `text` may lie inside this field.
  [[nodiscard]] bool Assign(std::u16string_view text) {
    const std::u16string_view taken = text.substr(0, text.find(u'\0'));
    if (taken.size() >= Capacity) return false;
    std::char_traits<char16_t>::move(m_text, taken.data(), taken.size());
    m_text[taken.size()] = u'\0';
    return true;
  }

  void Clear() { m_text[0] = u'\0'; }

  // The text up to its first U+0000, or to the field's end where a call left it without one. Both
  // stay good as long as the field. The pointer shows later changes of the text; the view keeps its
  // length, so take it anew after a change.
  const char16_t* c_str() const { return m_text; }
  std::u16string_view view() const { return m_text; }

  bool empty() const { return m_text[0] == u'\0'; }
  // In characters, without the terminator.
  std::size_t length() const { return view().size(); }

  // For a call that writes a text itself: room for capacity() characters with the terminator.
  char16_t* buffer() { return m_text; }
  static constexpr std::uint32_t capacity() { return static_cast<std::uint32_t>(Capacity); }

 private:
  char16_t m_text[Capacity + 1] = {};  // the last one is never handed out and stays U+0000
};

template <std::size_t Left, std::size_t Right>
bool operator==(const FixedText<Left>& left, const FixedText<Right>& right) {
  return left.view() == right.view();
}

// A path or a name: the size that the system and the suite agree on.
using PathText = FixedText<260>;

}  // namespace vgl
