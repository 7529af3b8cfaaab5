// The grammar of the suite's option texts: which options stand in one, and which value each has.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace vgl {

// One option as it stands in a text. The name is a part of that text.
struct SeenOption {
  std::u16string_view name;  // without the slash, and without digits of a length; may be empty
  std::uint32_t length =
      0;  // the value's length in characters as the text tells it; 0: by its quotes
  std::size_t lastSkipped = 0;  // where the value is looked for from: the last character in front
                                // of the quote, slash, line feed or end that follows the name
};

// Walks over the options of a text from front to back. The text must outlive the walker, and ends
// at its first U+0000.
//
// By its definition the grammar is read in passes: the pass for option number N starts at the front
// of the text, skips N options and delivers the next. What a pass does depends on the text alone,
// and skipping option N is the only thing that pass N + 1 does and pass N doesn't. So pass N + 1
// comes to option N in the very state in which pass N left off there, and can as well go on from
// that state: the position, whether it stands outside quotes, and the length of the last option.
// This is what is kept here between two options, and it makes one walk of what would be a walk for
// each option.
class COptionWalker {
 public:
  explicit COptionWalker(std::u16string_view text);

  // The next option; nothing at the end of the text.
  std::optional<SeenOption> Next();

  // The value of the option that Next gave last, of any length; a part of the text. Empty when it
  // has none. Nothing when a length is given and no quote follows, which ends the reading of
  // options.
  std::optional<std::u16string_view> Value();

 private:
  SeenOption ReadOption();
  std::u16string_view QuotedValue() const;
  std::size_t QuoteFrom(std::size_t position);

  std::u16string_view m_text;
  SeenOption m_option;
  std::size_t m_nPosition = 0;
  bool m_bOutsideQuotes = true;
  std::size_t m_nNextQuote = 0;  // of QuoteFrom
};

}  // namespace vgl
