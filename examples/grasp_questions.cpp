// grasp_questions SDPSOL FILE...: asks the command SDPSOL about example files
// (.grasp: the five internal-force questions, .lmi: feasibility) through the
// unit's driver, and prints the answers.
//
// Exit: 0 every question had a run that gave a verdict, 1 one had not, 2 wrong
// usage, 3 a file could not be read or the working folder not be made.
#include <exception>
#include <filesystem>
#include <iostream>
#include <vector>

#include "examples/report.h"

namespace {

bool answer_grasp(sdpsol_wrapper& solver, const std::filesystem::path& file) {
  const auto grasp = examples::read_grasp(file);
  std::cout << "== " << file.filename().string() << ": " << grasp.title << "\n   "
            << grasp.types.size() << " contacts, " << grasp.components()
            << " force components, a nullspace of dimension " << grasp.coordinates() << "\n\n";
  bool all_ran = true;
  for (const auto question : examples::kQuestions) {
    if (!examples::askable(grasp, question)) {
      std::cout << examples::question_text(grasp, question)
                << "\n  not asked: the objective would be divided by the number of contacts minus "
                   "one, which is 0\n\n";
      continue;
    }
    const auto answer = examples::ask(solver, grasp, question);
    std::cout << examples::report(grasp, question, answer) << "\n";
    all_ran = all_ran && answer.verdict != examples::Verdict::kFailed;
  }
  return all_ran;
}

bool answer_lmi(sdpsol_wrapper& solver, const std::filesystem::path& file) {
  const auto lmi = examples::read_lmi(file);
  const auto answer = examples::ask(solver, lmi);
  std::cout << "== " << file.filename().string() << ": " << lmi.title << "\n\n"
            << examples::report(lmi, answer) << "\n";
  return answer.verdict != examples::Verdict::kFailed;
}

int answer_all(const std::vector<std::filesystem::path>& arguments) {
  const examples::WorkingFolder folder;
  sdpsol_wrapper solver = folder.solver(arguments.front().string());
  bool all_ran = true;
  for (auto file = arguments.begin() + 1; file != arguments.end(); ++file) {
    const bool ran =
        file->extension() == ".lmi" ? answer_lmi(solver, *file) : answer_grasp(solver, *file);
    all_ran = all_ran && ran;
  }
  return all_ran ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    const std::vector<std::filesystem::path> arguments(argv + 1, argv + argc);
    if (arguments.size() < 2) {
      std::cerr << "usage: grasp_questions SDPSOL FILE...\n";
      return 2;
    }
    return answer_all(arguments);
  } catch (const std::exception& error) {
    std::cerr << "grasp_questions: " << error.what() << "\n";
    return 3;
  }
}
