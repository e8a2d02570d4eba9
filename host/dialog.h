// An icon's creation dialog: the fields that a user fills in, read out of the
// dialog's text.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace zelhost {

/// The text does not hold together; what() says where.
class DialogError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

struct DialogField {
  /// What stands before the field on its line, without blanks around it and the
  /// colon behind it. May be empty.
  std::string label;
  /// What stands in the field until the user changes it.
  std::string preset;

  friend bool operator==(const DialogField&, const DialogField&) = default;
};

/// The fields of a dialog text in their order. Of the language of dialogs it knows
///   %{TEXT%}  an editable field with its preset text
///   %n        a line break
///   %[...%]   a row of buttons, skipped
///   %NNt      the width of the field before it, and every other %, digits and a
///             letter: skipped.
/// @throws DialogError if a field or a row of buttons does not end, or a "%" is
/// the last character.
std::vector<DialogField> read_dialog(std::string_view text);

}  // namespace zelhost
