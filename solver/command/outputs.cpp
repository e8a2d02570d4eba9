#include "solver/command/outputs.h"

#include <exception>

#include "solver/command/paths.h"

namespace sdpsol {

Outputs::Outputs(const Options& options) {
  std::array<std::optional<std::string>, 4> names = {options.result, options.json, options.exported,
                                                     options.exported_margin};
  if (prints_result(options)) names[static_cast<std::size_t>(Output::kResult)] = kStandardStream;
  std::vector<std::string> wanted;
  for (const auto& name : names) {
    if (name && name->empty()) throw UsageError("the name of an output file is empty");
    if (name) wanted.push_back(*name);
  }
  refuse_same_files(options.definition, wanted);

  std::exception_ptr first_error;
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (!names[i]) continue;
    try {
      files_[i].emplace(*names[i]);
    } catch (const FileError&) {
      if (!first_error) first_error = std::current_exception();
    }
  }
  if (first_error) std::rethrow_exception(first_error);
}

void Outputs::write(Texts texts) {
  for (auto& wanted : texts) at(wanted.first)->stage(std::move(wanted.second));
  std::vector<const ResultFile*> published;
  try {
    // A pipe whose reader has gone fails only when it is written into.
    for (const bool regular : {false, true}) {
      for (const auto& [output, text] : texts) {
        ResultFile& file = *at(output);
        if (file.is_regular() != regular) continue;
        file.publish();
        published.push_back(&file);
      }
    }
  } catch (const FileError&) {
    for (const ResultFile* file : published) file->withdraw();
    throw;
  }
}

}  // namespace sdpsol
