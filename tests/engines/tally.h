// What many judgements come to, by family, and the bounds that they must keep.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

#include "tests/engines/judge.h"

namespace sdpsol::testing {

class Tally {
 public:
  Tally();

  void add(std::uint64_t index, const Judgement& judgement);
  /// A problem that ended the process it was solved in, or took it for ever.
  void add_unanswered(std::uint64_t index, const std::string& how);

  /// What was planted, how much of it was decided, and what was wrong, class by class.
  void print_classes(std::ostream& out) const;
  /// A line per family and one for all.
  void print_table(std::ostream& out) const;
  /// What is wrong, and then what was left open although it has room: the first few
  /// of each, by number.
  void print_failures(std::ostream& out) const;
  /// The bounds that are broken, in words. None may be.
  std::vector<std::string> broken_bounds() const;

 private:
  struct Counts {
    int problems = 0;
    int both_decided = 0;
    int only_first = 0;
    int only_reference = 0;
    int certified = 0;  ///< by the first, decided or not
    int with_room = 0;  ///< planted, and so to be decided
    int first_left_room = 0;
    int reference_left_room = 0;
    int against_truth = 0;
    int against_each_other = 0;
    int fallbacks = 0;
    int fallbacks_that_helped = 0;
    int claims_of_fallbacks = 0;  ///< among them: not merely a better objective
    int objectives = 0;
    int silent_disagreements = 0;
    int disagreements_with_gap = 0;
    int first_gaps = 0;
    int reference_gaps = 0;
    double worst = 0;  ///< of the differences that no gap explains
    std::vector<float> first_microseconds;
    std::vector<float> reference_microseconds;
  };
  struct ClassCounts {
    int problems = 0;
    int decided = 0;
    int wrong = 0;
    int optima = 0;  ///< planted, where the first has an objective
    int missed_optima = 0;
    int silently_missed_optima = 0;
  };
  struct Note {
    std::uint64_t index = 0;
    std::string text;
  };

  static void count(Counts& counts, const Judgement& judgement);
  static void count(ClassCounts& counts, const Judgement& judgement);
  static void print_line(std::ostream& out, const char* name, const Counts& counts);

  std::vector<Counts> families_;
  Counts all_;
  std::array<ClassCounts, kProblemClasses> classes_;
  int unanswered_ = 0;
  std::vector<Note> wrong_;
  std::vector<Note> open_;
};

}  // namespace sdpsol::testing
