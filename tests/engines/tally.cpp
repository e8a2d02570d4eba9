#include "tests/engines/tally.h"

#include <algorithm>
#include <cstdio>

namespace sdpsol::testing {
namespace {

constexpr std::size_t kMaxNotes = 20;

bool is_verdict(Claim claim) {
  return claim == Claim::kFeasible || claim == Claim::kInfeasible;
}

const char* name_of(ProblemClass of) {
  switch (of) {
    case ProblemClass::kPoint:
      return "planted points with room";
    case ProblemClass::kCertificate:
      return "planted certificates inside cones";
    case ProblemClass::kBorder:
      return "on the border";
  }
  return "";
}

double median(std::vector<float> values) {
  if (values.empty()) return 0;
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return static_cast<double>(*middle);
}

std::string sentence(const char* format, int count, int of) {
  char text[200];
  std::snprintf(text, sizeof text, format, count, of);
  return text;
}

}  // namespace

Tally::Tally() : families_(engine_families().size()) {}

void Tally::count(Counts& counts, const Judgement& j) {
  const bool first = is_verdict(j.first);
  const bool reference = is_verdict(j.reference);
  ++counts.problems;
  counts.both_decided += first && reference;
  counts.only_first += first && !reference;
  counts.only_reference += !first && reference;
  counts.certified += j.first != Claim::kNone;
  counts.with_room += j.has_room;
  counts.first_left_room += j.first_left_room;
  counts.reference_left_room += j.reference_left_room;
  counts.against_truth += j.first_against_truth || j.reference_against_truth;
  counts.against_each_other += j.against_each_other;
  counts.fallbacks += j.fell_back();
  counts.fallbacks_that_helped += j.fallback_helped();
  counts.claims_of_fallbacks += j.claim_is_of_fallback;
  counts.objectives += j.both_have_objectives;
  counts.silent_disagreements += j.disagree_silently();
  counts.disagreements_with_gap += j.disagree_with_gap();
  counts.first_gaps += j.first_has_gap;
  counts.reference_gaps += j.reference_has_gap;
  if (j.both_have_objectives && !j.disagree_with_gap()) {
    counts.worst = std::max(counts.worst, j.difference);
  }
  counts.first_microseconds.push_back(
      static_cast<float>(1e6 * (j.first_seconds + j.fallback_seconds)));
  counts.reference_microseconds.push_back(static_cast<float>(1e6 * j.reference_seconds));
}

void Tally::count(ClassCounts& counts, const Judgement& j) {
  ++counts.problems;
  counts.decided += is_verdict(j.first);
  counts.wrong += j.wrong();
  counts.optima += j.optimum_is_known;
  counts.missed_optima += j.misses_optimum();
  counts.silently_missed_optima += j.misses_optimum_silently();
}

void Tally::add(std::uint64_t index, const Judgement& judgement) {
  count(families_[family_of(index)], judgement);
  count(all_, judgement);
  count(classes_[static_cast<std::size_t>(judgement.problem_class)], judgement);
  const std::string text = text_of(judgement);
  if (judgement.wrong() && wrong_.size() < kMaxNotes) wrong_.push_back({index, text});
  const bool open = judgement.first_left_room || judgement.reference_left_room;
  if (open && open_.size() < kMaxNotes) open_.push_back({index, text});
}

void Tally::add_unanswered(std::uint64_t index, const std::string& how) {
  ++unanswered_;
  if (wrong_.size() < kMaxNotes) wrong_.push_back({index, how});
}

void Tally::print_line(std::ostream& out, const char* name, const Counts& c) {
  char line[400];
  std::snprintf(line, sizeof line,
                "%-24s %7d %7d %5d %5d %7d  %7d %4d %4d  %5d %5d  %5d %6d %5d  %6d %5d %5d %5d %5d "
                "%8.1e %7.0f %7.0f\n",
                name, c.problems, c.both_decided, c.only_first, c.only_reference, c.certified,
                c.with_room, c.first_left_room, c.reference_left_room, c.against_truth,
                c.against_each_other, c.fallbacks, c.fallbacks_that_helped, c.claims_of_fallbacks,
                c.objectives, c.silent_disagreements, c.disagreements_with_gap, c.first_gaps,
                c.reference_gaps, c.worst, median(c.first_microseconds),
                median(c.reference_microseconds));
  out << line;
}

void Tally::print_classes(std::ostream& out) const {
  out << "class                                problems decided    open   wrong   optima  missed "
         "silently\n";
  for (std::size_t c = 0; c < classes_.size(); ++c) {
    const ClassCounts& counts = classes_[c];
    char line[200];
    std::snprintf(line, sizeof line, "%-36s %8d %7d %7d %7d  %7d %7d %8d\n",
                  name_of(static_cast<ProblemClass>(c)), counts.problems, counts.decided,
                  counts.problems - counts.decided, counts.wrong, counts.optima,
                  counts.missed_optima, counts.silently_missed_optima);
    out << line;
  }
}

void Tally::print_table(std::ostream& out) const {
  out << "                                  decided by                     to be decided"
         "   contradict  fallbacks                      objectives                     median us\n"
         "family                  problems    both first   ref certif.      all  1st  ref"
         "  truth  each    all helped claim     all apart w.gap  1stg  refg    worst     1st     "
         "ref\n";
  for (std::size_t f = 0; f < families_.size(); ++f) {
    if (families_[f].problems > 0) print_line(out, engine_families()[f], families_[f]);
  }
  print_line(out, "all", all_);
}

void Tally::print_failures(std::ostream& out) const {
  for (const Note& note : wrong_) {
    out << "wrong " << note.index << " (" << engine_families()[family_of(note.index)]
        << "): " << note.text << '\n';
  }
  for (const Note& note : open_) {
    out << "open " << note.index << " (" << engine_families()[family_of(note.index)]
        << "): " << note.text << '\n';
  }
}

std::vector<std::string> Tally::broken_bounds() const {
  std::vector<std::string> broken;
  const auto none = [&](const char* what, int count) {
    if (count > 0) broken.push_back(sentence(what, count, all_.problems));
  };
  none("%d of %d problems without an answer", unanswered_);
  none("%d of %d verdicts against what was planted", all_.against_truth);
  none("%d of %d pairs of verdicts or bounds against each other", all_.against_each_other);
  none("%d of %d pairs of objectives apart, without a gap to say so", all_.silent_disagreements);
  int missed = 0;
  for (const ClassCounts& counts : classes_) missed += counts.silently_missed_optima;
  none("%d of %d objectives off the planted optimum, without a gap to say so", missed);
  if (100 * all_.fallbacks_that_helped >= std::max(all_.problems, 1)) {
    broken.push_back(sentence("the fallback decided %d of %d problems, 1 %% or more",
                              all_.fallbacks_that_helped, all_.problems));
  }
  for (const ProblemClass of : {ProblemClass::kPoint, ProblemClass::kCertificate}) {
    const ClassCounts& counts = classes_[static_cast<std::size_t>(of)];
    const int open = counts.problems - counts.decided;
    if (1000 * open > counts.problems) {
      broken.push_back(std::string(name_of(of)) + ": " +
                       sentence("%d of %d left open, more than 1 in 1,000", open, counts.problems));
    }
  }
  return broken;
}

}  // namespace sdpsol::testing
