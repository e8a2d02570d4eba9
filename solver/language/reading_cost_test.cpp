// What reading costs, counted and not timed: every byte that is asked of the
// heap in this program goes through the operators below.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <new>
#include <string>
#include <vector>

#include "solver/language/reader.h"

namespace {

struct Heap {
  std::size_t live = 0;
  std::size_t peak = 0;
  std::size_t total = 0;  ///< everything ever allocated: bounds what was copied
};
Heap heap;

// The size is kept in front of each block.
constexpr std::size_t kHeader = alignof(std::max_align_t);

}  // namespace

void* operator new(std::size_t size) {
  void* const block = std::malloc(size + kHeader);
  if (block == nullptr) throw std::bad_alloc();
  *static_cast<std::size_t*>(block) = size;
  heap.live += size;
  heap.total += size;
  heap.peak = std::max(heap.peak, heap.live);
  return static_cast<char*>(block) + kHeader;
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  try {
    return operator new(size);
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

void operator delete(void* pointer) noexcept {
  if (pointer == nullptr) return;
  void* const block = static_cast<char*>(pointer) - kHeader;
  heap.live -= *static_cast<std::size_t*>(block);
  std::free(block);
}

void operator delete(void* pointer, std::size_t) noexcept {
  operator delete(pointer);
}

namespace sdpsol {
namespace {

struct Cost {
  std::size_t peak = 0;   ///< bytes held at once, beyond the text
  std::size_t total = 0;  ///< bytes allocated, one after the other
  std::size_t model = 0;  ///< bytes of the terms of the conditions, written out
};

Cost cost_of(const std::string& text) {
  const Source source("t.def", text);
  Diagnostics diagnostics;
  const Heap before = heap;
  heap.peak = heap.live;
  const std::optional<Model> model = read_definition(source, diagnostics);
  EXPECT_TRUE(model) << diagnostics.render(source);
  Cost cost{heap.peak - before.live, heap.total - before.total, 0};
  if (!model) return cost;
  for (const Condition& condition : model->conditions) {
    cost.model += written_out_size(condition.difference.terms, model->forms) * sizeof(AffineTerm);
  }
  return cost;
}

// All contacts with friction: what the host asks about the biggest grasps.
std::string grasp(int contacts) {
  const int components = 3 * contacts;
  const int unknowns = components - 6;
  std::string text = "BIGM=300000;\n";
  for (int j = 0; j < unknowns; ++j) text += "variable z" + std::to_string(j) + ";\n";
  for (int k = 0; k < components; ++k) {
    text += "x" + std::to_string(k) + "=";
    for (int j = 0; j < unknowns; ++j) {
      text += j > 0 ? "+-0.0" : "0.0";
      text += std::to_string(1 + (k * 7919 + j * 104729) % 99991) + "*z" + std::to_string(j);
    }
    text += ";\n";
  }
  const auto x = [](int k) { return "x" + std::to_string(k); };
  for (int i = 0; i < contacts; ++i) {
    const std::string normal = x(3 * i + 2) + "*0.5";
    const std::vector<std::string> rows{normal + ",0," + x(3 * i),
                                        "0," + normal + "," + x(3 * i + 1),
                                        x(3 * i) + "," + x(3 * i + 1) + "," + normal};
    text += "P" + std::to_string(i) + "=[\n";
    for (const std::string& row : rows) text += row + (&row == &rows.back() ? "\n];\n" : ";\n");
  }
  for (int k = 0; k < components; ++k) {
    text += x(k) + ">-10;\n";
    text += x(k) + "<10;\n";
  }
  text += "[";
  for (int i = 0; i < contacts; ++i) {
    const int right = components - 3 * (i + 1);
    if (i > 0) text += "zeros(3," + std::to_string(3 * i) + "),";
    text += "P" + std::to_string(i);
    if (right > 0) text += ",zeros(3," + std::to_string(right) + ");\n";
  }
  return text + "]>0;\n";
}

TEST(ReadingCost, HoldsAtMostThreeTimesTheModel) {
  const Cost cost = cost_of(grasp(100));
  EXPECT_EQ(cost.model, (7U * 100U * 294U + 2U * 300U * 294U + 600U) * sizeof(AffineTerm));
  EXPECT_LT(cost.peak, 3 * cost.model);
}

TEST(ReadingCost, GrowsWithTheTermsOfAGrasp) {
  const Cost small = cost_of(grasp(30));
  const Cost large = cost_of(grasp(60));
  const double growth = static_cast<double>(large.model) / static_cast<double>(small.model);
  EXPECT_LT(static_cast<double>(large.total), 1.2 * growth * static_cast<double>(small.total));
}

// Twice the length may cost twice as much and a little more.
void expect_linear(const char* what, std::string (*text)(int), int length) {
  const Cost once = cost_of(text(length));
  const Cost twice = cost_of(text(2 * length));
  EXPECT_LT(static_cast<double>(twice.total), 2.3 * static_cast<double>(once.total)) << what;
}

std::string increasing_sum(int n) {
  std::string text = "variable v(10000,1); variable x; E = 0";
  for (int i = 1; i <= n; ++i) text += "+v(" + std::to_string(i) + ",1)";
  return text + "; E > 0;";
}

std::string decreasing_sum(int n) {
  std::string text = "variable v(10000,1); E = 0";
  for (int i = n; i > 0; --i) text += "-2*v(" + std::to_string(i) + ",1)";
  return text + "; E > 0;";
}

std::string block_row(int n) {
  std::string text = "variable x; E = [x";
  for (int i = 1; i < n; ++i) text += ",2*x";
  return text + "]; E > 0;";
}

std::string block_column(int n) {
  std::string text = "variable x; E = [x, zeros(1,9)";
  for (int i = 1; i < n; ++i) text += "; 2*x, zeros(1,9)";
  return text + "]*ones(10,1); E > 0;";
}

std::string statements(int n) {
  std::string text = "variable x;\n";
  for (int i = 0; i < n; ++i)
    text += "a" + std::to_string(i) + " = x; a" + std::to_string(i) + ">0;\n";
  return text;
}

TEST(ReadingCost, IsLinearInTheLengthOfWhatIsComposed) {
  // Long enough for the unknowns, which are the same number in each, not to matter.
  expect_linear("increasing sum", increasing_sum, 5000);
  expect_linear("decreasing sum", decreasing_sum, 5000);
  expect_linear("block row", block_row, 5000);
  expect_linear("block column", block_column, 5000);
  expect_linear("statements", statements, 20'000);
}

}  // namespace
}  // namespace sdpsol
