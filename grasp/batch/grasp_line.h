// A line of a batch that holds a grasp.
#pragma once

#include <string>
#include <vector>

#include "grasp/batch/line_answer.h"
#include "grasp/question.h"
#include "grasp/road.h"

namespace grasp {

/// What is asked about a grasp, or about every grasp of a batch, in the words of a user.
struct LineQuestion {
  Question question = Question::kExists;
  /// Names or numbers, which each grasp has for itself.
  std::vector<std::string> contacts = {};
  /// Whether times belong into the answers.
  bool times = false;
};

/// Answers lines as docs/batches.md describes: {"line": 7, and what is known of the
/// grasp}. The texts of errors do not name the input, so that parts of a batch can be
/// put together to what the whole would have given.
MakeAnswerLine answer_grasps(Road road, LineQuestion question);

}  // namespace grasp
