// Everything that a run writes, as one.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "solver/command/files.h"
#include "solver/command/options.h"

namespace sdpsol {

enum class Output { kResult, kJson, kExport, kExportMargin };

class Outputs {
 public:
  /// Looks at every name before any file is touched, then removes what a former run
  /// left there, all of it even if one of the new files cannot be written.
  /// @throws UsageError, FileError.
  explicit Outputs(const Options& options);

  bool wants(Output output) const { return at(output).has_value(); }

  using Texts = std::vector<std::pair<Output, std::string>>;
  /// Writes the texts of wanted outputs. All files appear, or none does and
  /// @throws FileError; what is written into a pipe or a device cannot be taken back.
  void write(Texts texts);

 private:
  const std::optional<ResultFile>& at(Output output) const {
    return files_[static_cast<std::size_t>(output)];
  }
  std::optional<ResultFile>& at(Output output) { return files_[static_cast<std::size_t>(output)]; }

  std::array<std::optional<ResultFile>, 4> files_;
};

}  // namespace sdpsol
