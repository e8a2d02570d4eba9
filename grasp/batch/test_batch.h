// What tests of batches share: a batch of lines with its result.
#pragma once

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "grasp/batch/batch.h"
#include "tests/support/test_folder.h"

namespace grasp {

struct BatchEnd {
  BatchStatus status = kBatchDone;
  std::string result;
  std::string said;
};

/// A folder for input, result and the workers' scratch folders, and runs in it.
class TestBatch {
 public:
  TestBatch() {
    std::filesystem::create_directory(scratch_);
    setenv("TMPDIR", scratch_.c_str(), 1);
    options.input = folder_.path("input");
    options.output = folder_.path("result");
  }
  ~TestBatch() { unsetenv("TMPDIR"); }
  TestBatch(const TestBatch&) = delete;
  TestBatch& operator=(const TestBatch&) = delete;
  TestBatch(TestBatch&&) = delete;
  TestBatch& operator=(TestBatch&&) = delete;

  /// Writes what is there before the run.
  void set_input(const std::string& text) const { test_support::write_file(options.input, text); }
  void set_result(const std::string& text) const {
    test_support::write_file(*options.output, text);
  }
  [[nodiscard]] std::string result() const {
    return test_support::content_of(options.output.value());
  }
  void remove_result() const { std::filesystem::remove(*options.output); }

  [[nodiscard]] BatchEnd run(const MakeAnswerLine& make) const {
    std::ostringstream said;
    const BatchStatus status = run_batch(options, make, said);
    std::ostringstream result;
    if (std::filesystem::is_regular_file(*options.output))
      result << std::ifstream(*options.output).rdbuf();
    std::string text = said.str();
    for (auto at = text.find(folder_.path()); at != std::string::npos;
         at = text.find(folder_.path()))
      text.erase(at, folder_.path().size() + 1);
    return {status, result.str(), text};
  }

  [[nodiscard]] bool scratch_is_empty() const { return std::filesystem::is_empty(scratch_); }
  [[nodiscard]] const test_support::TestFolder& folder() const { return folder_; }

  BatchOptions options;

 private:
  test_support::TestFolder folder_;
  std::filesystem::path scratch_ = folder_.path("a scratch");
};

/// Answers a line by what it says, without any solver.
MakeAnswerLine obedient_lines();

/// What it answers to an ordinary line.
std::string obedient_answer(std::uint64_t number, const std::string& text);

}  // namespace grasp
