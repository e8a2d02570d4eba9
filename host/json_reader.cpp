#include "host/json_reader.h"

#include <algorithm>
#include <cerrno>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <set>
#include <system_error>
#include <utility>
#include <vector>

#include "host/text.h"

namespace zelhost {
namespace {

// A longer place than this is cut, so that the reason behind it is seen.
constexpr std::size_t kLongestPlace = 1'000;

// Of an object: the document looks through all of them for the one that is added.
constexpr std::size_t kMaxKeys = 10'000;

std::string escaped(const std::string& key) {
  std::string text;
  for (const char c : key) {
    if (c == '~')
      text += "~0";
    else if (c == '/')
      text += "~1";
    else
      text += c;
  }
  return text;
}

// Follows the parser: knows where it is, and finds keys that stand twice, of which
// the document keeps only one.
class ParserFollower {
 public:
  explicit ParserFollower(std::string file) : file_(std::move(file)) {}

  /// @throws JsonError if there are too many keys.
  void see(Json::parse_event_t event, const Json& parsed) {
    switch (event) {
      case Json::parse_event_t::object_start:
        levels_.push_back({false, 0, {}, {}});
        break;
      case Json::parse_event_t::array_start:
        levels_.push_back({true, 0, {}, {}});
        break;
      case Json::parse_event_t::key:
        see_key(parsed.get<std::string>());
        break;
      case Json::parse_event_t::object_end:
      case Json::parse_event_t::array_end:
        levels_.pop_back();
        count_element();
        break;
      case Json::parse_event_t::value:
        count_element();
        break;
    }
  }

  /// @throws JsonError if a key stood twice.
  void end() const {
    if (!found_.empty()) fail_at(found_, "this key stands here twice");
  }

  /// @throws JsonError with the parser's place.
  [[noreturn]] void fail(const std::string& what) const { fail_at(place(), what); }

 private:
  struct Level {
    bool is_array;
    std::size_t index;
    std::string key;
    std::set<std::string> keys;
  };

  [[nodiscard]] std::string place() const {
    std::string pointer;
    for (const Level& each : levels_)
      pointer += "/" + (each.is_array ? std::to_string(each.index) : escaped(each.key));
    return pointer.empty() ? "/" : pointer;
  }

  [[noreturn]] void fail_at(const std::string& place, const std::string& what) const {
    throw JsonError(file_ + ": " + on_one_line(place, kLongestPlace) + ": " + what);
  }

  void see_key(const std::string& key) {
    Level& level = levels_.back();
    level.key = key;
    if (!level.keys.insert(key).second && found_.empty()) found_ = place();
    if (level.keys.size() > kMaxKeys)
      fail("an object can have " + std::to_string(kMaxKeys) + " keys");
  }

  void count_element() {
    if (!levels_.empty() && levels_.back().is_array) ++levels_.back().index;
  }

  std::string file_;
  std::vector<Level> levels_;
  std::string found_;
};

constexpr std::string_view kBlanks = " \t\r\n";

// What the library says without what it read last: line and column show that, and
// it may be bytes that are no text.
std::string reason_of(const Json::parse_error& error) {
  std::string what = error.what();
  const std::size_t reason = what.find("syntax error");
  if (reason != std::string::npos) what.erase(0, reason);
  const std::size_t read = what.find("; last read: '");
  if (read == std::string::npos) return what;
  const std::size_t expected = what.rfind("'; expected ");
  const bool is_behind = expected != std::string::npos && expected > read;
  return what.substr(0, read) + (is_behind ? what.substr(expected + 1) : "");
}

// What people who write JSON by hand get wrong most often, as the remedy.
// @param at the place where the text is no JSON any more; not its end.
std::string_view remedy(std::string_view text, std::size_t at, std::string_view reason) {
  const char here = text[at];
  const std::size_t last = text.substr(0, at).find_last_not_of(kBlanks);
  const char before = last == std::string_view::npos ? '\0' : text[last];
  const bool invalid = reason.find("invalid literal") != std::string_view::npos;
  const bool comma_possible = reason.find("parsing object -") != std::string_view::npos ||
                              reason.find("parsing array -") != std::string_view::npos;
  if (invalid && (here == '/' || here == '#' || here == '%')) return "JSON has no comments";
  if (invalid && here == '\'') return "texts stand in double quotes";
  if (invalid) return "a word or a number that is none; texts stand in double quotes";
  if ((here == ']' || here == '}') && before == ',') return "the comma before it is too many";
  if (comma_possible && here != ']' && here != '}' && here != ':')
    return "a comma is missing before it";
  return {};
}

// The quote that opens the text which ends at `end`.
std::size_t start_of_text(std::string_view text, std::size_t end) {
  std::size_t at = end;
  while (at > 0) {
    --at;
    if (text[at] == '"' && (at == 0 || text[at - 1] != '\\')) return at;
  }
  return end;
}

std::string line_and_column(std::string_view text, std::size_t at, std::size_t first_line) {
  const std::string_view before = text.substr(0, at);
  const auto line =
      first_line + static_cast<std::size_t>(std::count(before.begin(), before.end(), '\n'));
  const std::size_t line_start = before.rfind('\n') + 1;  // npos + 1 is 0
  return std::to_string(line) + ":" + std::to_string(at - line_start + 1);
}

// "FILE:LINE:COLUMN: WHAT" from the library's message and the place it names.
std::string syntax_error(const std::string& file, std::string_view text, std::size_t first_line,
                         const Json::parse_error& error) {
  if (text.find_first_not_of(kBlanks) == std::string_view::npos)
    return file + ":" + line_and_column(text, 0, first_line) + ": there is no text";
  std::string reason = reason_of(error);
  std::size_t at = std::min(error.byte == 0 ? 0 : error.byte - 1, text.size());
  // The library names the end of a text that it did not expect.
  if (reason.find("unexpected string literal") != std::string::npos) at = start_of_text(text, at);
  if (at < text.size()) {
    const std::string_view hint = remedy(text, at, reason);
    if (!hint.empty()) reason += " (" + std::string(hint) + ")";
  }
  return file + ":" + line_and_column(text, at, first_line) + ": " + reason;
}

std::string listed(std::initializer_list<std::string_view> first,
                   std::initializer_list<std::string_view> second) {
  std::string list;
  for (const auto& keys : {first, second}) {
    for (const std::string_view key : keys) {
      list += (list.empty() ? "\"" : ", \"") + std::string(key) + "\"";
    }
  }
  return list;
}

}  // namespace

std::string JsonNode::place() const {
  return file_ + ": " + (pointer_.empty() ? "/" : on_one_line(pointer_, kLongestPlace));
}

void JsonNode::fail(const std::string& what) const {
  throw JsonError(place() + ": " + what);
}

bool JsonNode::has(std::string_view key) const {
  return value_->contains(key);
}

void JsonNode::expect_keys(std::initializer_list<std::string_view> required,
                           std::initializer_list<std::string_view> optional) const {
  for (const auto& [key, node] : members("the keys " + listed(required, optional))) {
    const auto is_key = [&name = key](std::string_view known) { return known == name; };
    if (std::none_of(required.begin(), required.end(), is_key) &&
        std::none_of(optional.begin(), optional.end(), is_key)) {
      fail("unknown key \"" + key + "\"; the keys are " + listed(required, optional));
    }
  }
  for (const std::string_view key : required) {
    if (!has(key)) fail("the key \"" + std::string(key) + "\" is missing");
  }
}

JsonNode JsonNode::member(const std::string& key) const {
  return {value_->at(key), file_, pointer_ + "/" + escaped(key)};
}

JsonNode JsonNode::element(std::size_t i) const {
  return {value_->at(i), file_, pointer_ + "/" + std::to_string(i)};
}

std::vector<JsonNode> JsonNode::elements(std::string_view what) const {
  if (!value_->is_array()) fail("this takes " + std::string(what) + ", in [ ]");
  std::vector<JsonNode> nodes;
  nodes.reserve(value_->size());
  for (std::size_t i = 0; i < value_->size(); ++i) nodes.push_back(element(i));
  return nodes;
}

std::vector<std::pair<std::string, JsonNode>> JsonNode::members(std::string_view what) const {
  if (!value_->is_object()) fail("this takes " + std::string(what) + ", in { }");
  std::vector<std::pair<std::string, JsonNode>> nodes;
  nodes.reserve(value_->size());
  // Not by the key: the document looks for it among all of them.
  for (const auto& [key, value] : value_->items())
    nodes.emplace_back(key, JsonNode(value, file_, pointer_ + "/" + escaped(key)));
  return nodes;
}

std::string JsonNode::text(std::string_view what) const {
  if (!value_->is_string()) fail("this takes " + std::string(what) + ", as a text in quotes");
  auto text = value_->get<std::string>();
  // Plug-ins see a text up to there.
  if (text.find('\0') != std::string::npos) fail("a text cannot hold \\u0000, which ends it");
  return text;
}

Json read_json(const std::filesystem::path& file) {
  return read_json(file, file.string());
}

Json read_json(const std::filesystem::path& file, const std::string& name) {
  // A directory opens as a file does, and has no text.
  if (std::filesystem::is_directory(file))
    throw std::system_error(EISDIR, std::generic_category(), name);
  std::ifstream in(file, std::ios::binary);
  if (!in) throw std::system_error(errno, std::generic_category(), name);
  return parse_json(std::string{std::istreambuf_iterator<char>(in), {}}, name);
}

Json parse_json(std::string_view text, const std::string& file, std::size_t first_line) {
  // The parser takes one for the end of the text.
  const std::size_t nul = text.find('\0');
  if (nul != std::string_view::npos)
    throw JsonError(file + ":" + line_and_column(text, nul, first_line) +
                    ": a NUL byte stands here; JSON is text in UTF-8");
  ParserFollower follower(file);
  try {
    Json document = Json::parse(text, [&](int, Json::parse_event_t event, Json& parsed) {
      follower.see(event, parsed);
      return true;
    });
    follower.end();
    return document;
  } catch (const Json::parse_error& error) {
    throw JsonError(syntax_error(file, text, first_line, error));
  } catch (const Json::out_of_range&) {
    // Thrown before the parser tells of the number.
    follower.fail("the number is too large for double precision");
  }
}

}  // namespace zelhost
