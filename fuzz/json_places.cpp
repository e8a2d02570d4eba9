#include "fuzz/json_places.h"

#include <algorithm>
#include <charconv>
#include <nlohmann/json.hpp>
#include <optional>

#include "fuzz/oracle.h"

namespace fuzz {
namespace {

using zelhost::Json;

/// The number at the front of `text`, which has a colon behind it; both are taken away.
std::optional<std::size_t> take_number(std::string_view& text) {
  std::size_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end == text.data() + text.size() || *end != ':') return {};
  text.remove_prefix(static_cast<std::size_t>(end - text.data()) + 1);
  return number;
}

void require_line_and_column(std::string_view place, std::string_view text) {
  const auto line = take_number(place);
  const auto column = take_number(place);
  require(line && column && place.size() > 1, "neither a line and a column nor a reason");
  for (std::size_t above = 1; above < *line; ++above) {
    const std::size_t end = text.find('\n');
    require(end != std::string_view::npos, "a line that the text does not have");
    text.remove_prefix(end + 1);
  }
  const std::size_t length = std::min(text.find('\n'), text.size());
  require(*line >= 1 && *column >= 1 && *column <= length + 1,
          "a column that the line does not have");
}

bool leads_somewhere(const Json& document, const std::string& pointer) {
  if (pointer == "/") return true;
  try {
    return document.contains(Json::json_pointer(pointer));
  } catch (const Json::parse_error&) {
    return false;
  }
}

/// @param rest a pointer, a colon and the reason. A key may hold a colon too.
void require_pointer(const std::string& rest, std::string_view text) {
  require(rest.starts_with('/'), "no place");
  bool leads = false;
  const Json document = Json::parse(text, nullptr, false);
  // What is shown on one line is not what stands there; of a key that stands twice the
  // document has one; and where there is no document, there is nothing to lead to.
  const bool is_shown_otherwise = rest.find('?') != std::string::npos ||
                                  rest.find("...") != std::string::npos ||
                                  rest.ends_with("this key stands here twice");
  for (std::size_t at = rest.find(": "); at != std::string::npos; at = rest.find(": ", at + 1)) {
    leads = leads || (at + 2 < rest.size() && (is_shown_otherwise || document.is_discarded() ||
                                               leads_somewhere(document, rest.substr(0, at))));
  }
  require(leads, "a pointer that leads nowhere: " + rest);
}

}  // namespace

void require_placed(const zelhost::JsonError& error, const std::string& file,
                    std::string_view text) {
  const std::string what = error.what();
  require(what.starts_with(file + ":"), "an error without the file's name: " + what);
  const std::string rest = what.substr(file.size() + 1);
  if (rest.starts_with(' ')) {
    require_pointer(rest.substr(1), text);
  } else {
    require_line_and_column(rest, text);
  }
}

}  // namespace fuzz
