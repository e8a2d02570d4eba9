// What can be asked about the internal forces of a grasp.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace grasp {

enum class Question {
  kExists,      ///< is there an internal force?
  kIndividual,  ///< the largest mean force on some contacts
  kPoint,       ///< the largest margin of one contact
  kFriction,    ///< the largest margins of all contacts with friction
  kAll,         ///< the largest margins of all contacts
};

/// A question with what it is about. Contacts count from 0.
struct Inquiry {
  Question question = Question::kExists;
  /// Of kIndividual at least one, each once; of kPoint exactly one; empty for the others.
  std::vector<std::size_t> contacts = {};
};

/// "exists", "individual", "point", "friction", "all": as users write it.
std::string_view to_string(Question question);

}  // namespace grasp
