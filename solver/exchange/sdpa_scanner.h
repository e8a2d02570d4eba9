// The words of a file in the SDPA sparse format, and which of them are numbers.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "solver/language/number.h"
#include "solver/language/source.h"

namespace sdpsol {

/// Walks over a text word by word. Blanks and the separators , ( ) { } stand
/// between words and mean nothing else; "=" is a word of its own. Lines whose
/// first character, blanks aside, is " or * are comments and passed over.
class SdpaScanner {
 public:
  /// @param begin where to start: the beginning of the text, or of a word.
  explicit SdpaScanner(std::string_view text, std::uint32_t begin = 0);

  /// Goes on to the next word. False where the text ends before it.
  bool next();
  /// Likewise, but stays in the line that the current word stands in.
  bool next_on_line();
  /// Goes on to the end of this line, in front of its line break.
  void skip_line();

  Span span() const { return word_; }
  std::string_view word() const { return text_.substr(word_.begin, word_.end - word_.begin); }
  /// The place behind the last character of the text that is no blank.
  Span end_of_text() const;

 private:
  void skip_blanks();
  void take_word();

  std::string_view text_;
  std::size_t at_ = 0;
  bool at_line_start_ = true;
  Span word_;
};

/// The whole number that the word is, with "+" or "-" in front or none; what no
/// 64 bits hold comes out as the nearest number that they do. Nothing if it is none.
std::optional<std::int64_t> scan_whole(std::string_view word);

/// The number that the word is, as programs in C or Fortran write it: "+1.0e+00",
/// "1.", ".5", "1.0D+3", "0.25-101" (an exponent of three digits takes the place of
/// its letter).
ScannedNumber scan_real(std::string_view word);

/// True for the words with which programs write what is no finite number: "nan",
/// "-inf", "Infinity".
bool is_nan_or_infinity(std::string_view word);

/// True where the word begins as a number does.
bool resembles_number(std::string_view word);

}  // namespace sdpsol
