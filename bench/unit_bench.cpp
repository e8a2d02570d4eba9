// The driver's own work, each as a ratio to the floor beneath it, measured in
// the same run: composing a definition against formatting its numbers alone,
// parsing a result against copying the text and converting its numbers alone.
// The counter "ratio" is what counts; goals: 2 for composing, 4 for parsing, at
// every size from 10^4 to 10^6 entries. Beyond a few megabytes the memory of the
// lists, fetched page by page, adds to what an entry costs.
#include <array>
#include <charconv>
#include <cstring>
#include <exception>
#include <iostream>
#include <stdexcept>
#include <string>
#include <vector>

#include "bench/compare.h"
#include "bench/random_numbers.h"
#include "bench/suite.h"
#include "unit/sdpsol_compose.h"
#include "unit/sdpsol_text.h"
#include "unit/sdpsol_wrapper.h"

namespace {

void compose_contacts(benchmark::State& state) {
  const auto contacts = static_cast<std::size_t>(state.range(0));
  const std::size_t components = 3 * contacts;
  const std::vector<double> base = bench::random_numbers(components * (components - 6));
  const std::vector<int> types(contacts, 3);
  const std::vector<double> friction = bench::random_numbers(contacts);
  const std::vector<double> bounds = bench::random_numbers(2 * components);
  // Every number that the text holds; a friction coefficient stands there three times.
  std::vector<double> numbers = base;
  for (int copy = 0; copy < 3; ++copy) {
    numbers.insert(numbers.end(), friction.begin(), friction.end());
  }
  numbers.insert(numbers.end(), bounds.begin(), bounds.end());
  std::string buffer(numbers.size() * 16, ' ');

  bench::compare(
      state, bench::thread_seconds,
      [&] {
        auto composed = sdpsol_internal::compose_all({base, types, friction, bounds});
        benchmark::DoNotOptimize(composed.definition->data());
      },
      [&] {
        char* to = buffer.data();
        for (const double number : numbers) {
          to = std::to_chars(to, to + 16, number, std::chars_format::general, 6).ptr;
        }
        benchmark::DoNotOptimize(buffer.data());
        benchmark::ClobberMemory();
      });
}

constexpr std::string_view kHeading = "*** Objective value\nobjective = 1.5\n\n*** Variables\n";

std::string shortest(double number) {
  std::array<char, 32> digits;
  return {digits.data(), std::to_chars(digits.data(), digits.data() + 32, number).ptr};
}

std::string scalar_result(const std::vector<double>& numbers) {
  std::string text(kHeading);
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    sdpsol_internal::append(text, "x", i, " = ", shortest(numbers[i]), "\n\n");
  }
  return text;
}

std::string matrix_result(const std::vector<double>& numbers) {
  std::string text(kHeading);
  text += "X =\n[\n";
  for (const double number : numbers) sdpsol_internal::append(text, "  ", shortest(number), ",\n");
  text += "]\n\n";
  return text;
}

void parse(benchmark::State& state, const std::vector<double>& numbers, const std::string& text) {
  // The numbers alone, back to back: what any reader has to convert.
  std::string digits;
  std::vector<std::size_t> ends;
  for (const double number : numbers) {
    digits += shortest(number);
    ends.push_back(digits.size());
  }
  std::string copy(text.size(), ' ');
  std::vector<double> values(numbers.size());
  sdpsol_wrapper driver("", "", "");
  driver.resultText = text;

  bench::compare(
      state, bench::thread_seconds,
      [&] {
        // The lists grow anew each time, as in a program that solves once.
        driver.lastResult = {};
        driver.parseResult();
        benchmark::DoNotOptimize(driver.lastResult.variableValues.data());
      },
      [&] {
        std::memcpy(copy.data(), text.data(), text.size());
        benchmark::DoNotOptimize(copy.data());
        const char* from = digits.data();
        for (std::size_t i = 0; i < values.size(); ++i) {
          const char* const end = digits.data() + ends[i];
          std::from_chars(from, end, values[i]);
          from = end;
        }
        benchmark::DoNotOptimize(values.data());
        benchmark::ClobberMemory();
      });
  if (driver.lastResult.variableValues != numbers) throw std::runtime_error("the values differ");
}

void parse_scalars(benchmark::State& state) {
  const std::vector<double> numbers =
      bench::random_numbers(static_cast<std::size_t>(state.range(0)));
  parse(state, numbers, scalar_result(numbers));
}

void parse_matrix(benchmark::State& state) {
  const auto order = static_cast<std::size_t>(state.range(0));
  const std::vector<double> numbers = bench::random_numbers(order * order);
  parse(state, numbers, matrix_result(numbers));
}

}  // namespace

int main(int argc, char** argv) try {
  bench::Suite suite;
  // 100 contacts have a base of 300 x 294, 33 and 315 a tenth and ten times its entries.
  suite.add("compose_contacts", compose_contacts)
      ->Arg(4)
      ->Arg(33)
      ->Arg(100)
      ->Arg(315)
      ->UseManualTime();
  suite.add("parse_scalars", parse_scalars)
      ->RangeMultiplier(10)
      ->Range(10'000, 1'000'000)
      ->UseManualTime();
  suite.add("parse_matrix", parse_matrix)->Arg(100)->Arg(400)->Arg(1000)->UseManualTime();
  return suite.run(argc, argv);
} catch (const std::exception& error) {
  std::cerr << "unit_bench: " << error.what() << "\n";
  return 1;
}
