// Reading JSON files that people write: every error names the place, and nothing
// that is not understood is passed over.
#pragma once

#include <filesystem>
#include <initializer_list>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "host/error.h"

namespace zelhost {

/// Objects keep the order of the file.
using Json = nlohmann::ordered_json;

/// What is wrong with a file; what() is "FILE: PLACE: WHAT", where PLACE is a
/// JSON pointer, or "FILE:LINE:COLUMN: WHAT" where the text is no JSON.
class JsonError : public HostError {
 public:
  using HostError::HostError;
};

/// A value with its place. Refers to the document, which must live longer.
class JsonNode {
 public:
  JsonNode(const Json& value, std::string file, std::string pointer)
      : value_(&value), file_(std::move(file)), pointer_(std::move(pointer)) {}

  [[nodiscard]] const Json& value() const { return *value_; }
  [[nodiscard]] const std::string& pointer() const { return pointer_; }
  [[nodiscard]] bool has(std::string_view key) const;

  /// "FILE: POINTER", as errors begin.
  [[nodiscard]] std::string place() const;

  /// @throws JsonError with this node's place.
  [[noreturn]] void fail(const std::string& what) const;

  /// Checks that this is an object which has the required keys and no others
  /// than those and the optional ones. @throws JsonError.
  void expect_keys(std::initializer_list<std::string_view> required,
                   std::initializer_list<std::string_view> optional = {}) const;

  /// A member of an object, which must be there.
  [[nodiscard]] JsonNode member(const std::string& key) const;

  /// An element of an array, which must be there.
  [[nodiscard]] JsonNode element(std::size_t i) const;

  /// The elements of an array. @param what says what it is an array of, for the
  /// error that it is none. @throws JsonError.
  [[nodiscard]] std::vector<JsonNode> elements(std::string_view what) const;

  /// The members of an object, with their keys. @throws JsonError if it is none.
  [[nodiscard]] std::vector<std::pair<std::string, JsonNode>> members(std::string_view what) const;

  /// @throws JsonError if it is no text, or holds a NUL character.
  [[nodiscard]] std::string text(std::string_view what) const;

 private:
  const Json* value_;
  std::string file_;
  std::string pointer_;
};

/// Parses a file. A key that stands twice in one object is an error.
/// @throws JsonError; std::system_error if the file cannot be read.
Json read_json(const std::filesystem::path& file);

/// As above. @param name what errors call the file.
Json read_json(const std::filesystem::path& file, const std::string& name);

/// As read_json, of a text that is there already.
/// @param file what errors call it. @param first_line number of the text's first line.
/// @throws JsonError.
Json parse_json(std::string_view text, const std::string& file, std::size_t first_line = 1);

}  // namespace zelhost
