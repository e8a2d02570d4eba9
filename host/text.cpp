#include "host/text.h"

namespace zelhost {

std::string readable(std::string_view help) {
  std::string lines;
  while (!help.empty()) {
    const std::size_t end = help.find("%n");
    const std::string_view line = trimmed(help.substr(0, end));
    if (!line.empty()) {
      if (!lines.empty()) lines += '\n';
      lines += line;
    }
    help = end == std::string_view::npos ? std::string_view() : help.substr(end + 2);
  }
  return lines;
}

}  // namespace zelhost
