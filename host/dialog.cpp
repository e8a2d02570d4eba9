#include "host/dialog.h"

#include "host/text.h"

namespace zelhost {
namespace {

// The part of `text` from `begin` to the next `end`; `begin` moves behind it.
std::string_view enclosed(std::string_view text, std::size_t& begin, std::string_view end) {
  const std::size_t found = text.find(end, begin);
  if (found == std::string_view::npos) {
    throw DialogError("dialog text, character " + std::to_string(begin - 2) + ": \"" +
                      std::string(text.substr(begin - 2, 2)) + "\" has no \"" + std::string(end) +
                      "\"");
  }
  const std::string_view inside = text.substr(begin, found - begin);
  begin = found + end.size();
  return inside;
}

std::string label_of(std::string_view line) {
  std::string_view label = trimmed(line);
  if (!label.empty() && label.back() == ':') label = trimmed(label.substr(0, label.size() - 1));
  return std::string(label);
}

}  // namespace

std::vector<DialogField> read_dialog(std::string_view text) {
  std::vector<DialogField> fields;
  std::string line;
  std::size_t at = 0;
  while (at < text.size()) {
    if (text[at] != '%') {
      line += text[at++];
      continue;
    }
    if (++at == text.size()) throw DialogError("dialog text: it ends with a \"%\"");
    const char code = text[at++];
    if (code == '{') {
      fields.push_back({label_of(line), std::string(enclosed(text, at, "%}"))});
      line.clear();
    } else if (code == '[') {
      enclosed(text, at, "%]");
      line.clear();
    } else if (code == 'n') {
      line.clear();
    } else if (is_digit(code)) {
      // A number before the letter of the code.
      while (at < text.size() && is_digit(text[at])) ++at;
      if (at < text.size()) ++at;
    }
  }
  return fields;
}

}  // namespace zelhost
