// Texts of creation dialogs: refused with a reason, or read as fields, which mean the same
// fields when they are written as the plainest dialog that has them.
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "fuzz/oracle.h"
#include "host/dialog.h"

namespace {

std::string plainest(const std::vector<zelhost::DialogField>& fields) {
  std::string text;
  for (const zelhost::DialogField& field : fields) {
    text += field.label + ": %{" + field.preset + "%}%10t%n";
  }
  return text;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text = fuzz::text_of(data, size);
  std::vector<zelhost::DialogField> fields;
  try {
    fields = zelhost::read_dialog(text);
  } catch (const zelhost::DialogError& error) {
    fuzz::require(std::string(error.what()).starts_with("dialog text"), "no reason");
    return 0;
  }
  for (const zelhost::DialogField& field : fields) {
    fuzz::require(field.label.find('%') == std::string::npos, "a code in a label");
    fuzz::require(text.find("%{" + field.preset + "%}") != std::string::npos,
                  "a preset that the text does not have");
  }
  fuzz::require(zelhost::read_dialog(plainest(fields)) == fields, "other fields");
  return 0;
}
