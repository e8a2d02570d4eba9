#include "grasp/question.h"

namespace grasp {

std::string_view to_string(Question question) {
  switch (question) {
    case Question::kExists:
      return "exists";
    case Question::kIndividual:
      return "individual";
    case Question::kPoint:
      return "point";
    case Question::kFriction:
      return "friction";
    case Question::kAll:
      return "all";
  }
  return {};
}

}  // namespace grasp
