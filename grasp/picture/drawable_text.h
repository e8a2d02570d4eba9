// Names as people write them, made into text that can be drawn: which characters,
// how wide, cut or wrapped to a width.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace grasp::picture {

/// The characters of a UTF-8 text. What XML does not allow, what would move the text
/// around it (controls, marks of writing direction) and what is no UTF-8 becomes U+FFFD;
/// tabs and ends of lines become blanks.
std::u32string drawable(std::string_view utf8);

/// As UTF-8, with the characters that mean something in XML written as entities.
std::string xml_text(const std::u32string& text);

/// How wide the text is at most, in units of the font's size. The font that will be
/// used is not known here: these are the advance widths of the widest of the common
/// sans-serif fonts, rounded up.
double text_width(const std::u32string& text, bool bold);

/// The text, or as much of its beginning as fits before an ellipsis.
/// @param width in units of the font's size.
std::u32string cut(const std::u32string& text, double width, bool bold);

/// Lines that are not wider than width; broken at blanks, and in words that are wider
/// than a line. Where there would be more than most lines the last one ends in an
/// ellipsis.
std::vector<std::u32string> wrap(const std::u32string& text, double width, std::size_t most);

}  // namespace grasp::picture
