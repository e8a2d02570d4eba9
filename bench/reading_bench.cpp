// Reading a definition, from the text in memory to the problem that engines see,
// against std::from_chars over the numbers of the text alone. Goals for 100
// contacts: "ratio" 5, and 3 for "memory", the most that reading holds at once,
// beside the text, to the terms of the problem that it leaves.
//
// A program that reads one definition and ends gets its memory from the system,
// page by page, and that is a good part of what reading costs it. So memory goes
// back to the system after each round, except "with memory at hand".
#include <malloc.h>

#include <charconv>
#include <exception>
#include <iostream>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "bench/compare.h"
#include "bench/counted_heap.h"
#include "bench/random_numbers.h"
#include "bench/suite.h"
#include "solver/language/reader.h"
#include "solver/problem/structure.h"
#include "unit/sdpsol_compose.h"

namespace {

using sdpsol_internal::Composed;
using sdpsol_internal::Grasp;

// All contacts with friction, as many coordinates as their forces have freedoms.
std::string definition(Composed (*compose)(const Grasp&), std::size_t contacts) {
  const std::size_t components = 3 * contacts;
  const std::vector<double> base = bench::random_numbers(components * (components - 6));
  const std::vector<int> types(contacts, 3);
  const std::vector<double> friction(contacts, 0.5);
  const std::vector<double> bounds = bench::random_numbers(2 * components);
  return *compose({base, types, friction, bounds}).definition;
}

// The numbers that stand in the text, not the digits of names.
std::vector<std::string_view> numbers_in(std::string_view text) {
  std::vector<std::string_view> numbers;
  for (std::size_t at = 0; at < text.size();) {
    at = text.find_first_of("0123456789abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ", at);
    if (at == std::string_view::npos) break;
    double value = 0;
    const auto read = std::from_chars(text.data() + at, text.data() + text.size(), value);
    const auto length = static_cast<std::size_t>(read.ptr - (text.data() + at));
    if (length > 0) {
      numbers.push_back(text.substr(at, length));
      at += length;
    } else {
      at = text.find_first_not_of("0123456789abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ",
                                  at);
    }
  }
  return numbers;
}

struct Reading {
  std::optional<sdpsol::Source> source;
  sdpsol::Diagnostics diagnostics;
  std::optional<sdpsol::Model> model;
  std::optional<sdpsol::Problem> problem;

  void read(std::string text) {
    source.emplace("grasp", std::move(text));
    model = sdpsol::read_definition(*source, diagnostics);
    if (model) problem = sdpsol::build_problem(*model);
  }
};

enum class Memory { kFresh, kAtHand };

std::size_t entries(const sdpsol::Problem& problem) {
  std::size_t count = 0;
  for (const sdpsol::Block& block : problem.blocks) count += block.terms.size();
  return count;
}

void measure(benchmark::State& state, const std::string& text, Memory memory) {
  const bool fresh = memory == Memory::kFresh;
  // Keeps what is given back, and takes it where it can be kept.
  mallopt(M_TRIM_THRESHOLD, fresh ? 128 << 10 : 1 << 30);
  mallopt(M_MMAP_THRESHOLD, fresh ? 128 << 10 : 1 << 30);
  const std::vector<std::string_view> numbers = numbers_in(text);
  std::vector<double> values(numbers.size());
  std::optional<Reading> reading(std::in_place);
  std::string copy = text;
  bench::compare(
      state, bench::thread_seconds, [&] { reading->read(std::move(copy)); },
      [&] {
        for (std::size_t i = 0; i < values.size(); ++i) {
          const std::string_view number = numbers[i];
          std::from_chars(number.data(), number.data() + number.size(), values[i]);
        }
        benchmark::DoNotOptimize(values.data());
        benchmark::ClobberMemory();
      },
      [&] {
        if (!reading->problem) throw std::runtime_error("the definition is refused");
        reading.emplace();
        copy = text;
        if (fresh) malloc_trim(0);
      });

  const std::size_t before = bench::heap_in_use();
  bench::reset_heap_peak();
  reading->read(std::move(copy));
  const std::size_t held = bench::heap_peak() - before;
  const std::size_t terms = entries(*reading->problem) * sizeof(sdpsol::AffineTerm);
  state.counters["memory"] = static_cast<double>(held) / static_cast<double>(terms);
  state.counters["numbers"] = static_cast<double>(numbers.size());
}

struct Text {
  const char* name;
  Composed (*compose)(const Grasp&);
  std::vector<std::size_t> contacts;
};

void add_all(bench::Suite& suite) {
  const Text texts[] = {{"all_contacts", sdpsol_internal::compose_all, {4, 33, 100}},
                        {"exists", sdpsol_internal::compose_exists, {100}}};
  for (const Memory memory : {Memory::kFresh, Memory::kAtHand}) {
    const std::string with = memory == Memory::kFresh ? "/fresh_memory/" : "/memory_at_hand/";
    for (const Text& text : texts) {
      for (const std::size_t contacts : text.contacts) {
        suite
            .add(text.name + with + std::to_string(contacts),
                 [compose = text.compose, contacts, memory](benchmark::State& state) {
                   measure(state, definition(compose, contacts), memory);
                 })
            ->UseManualTime()
            ->Unit(benchmark::kMillisecond);
      }
    }
  }
}

}  // namespace

int main(int argc, char** argv) try {
  bench::Suite suite;
  add_all(suite);
  return suite.run(argc, argv);
} catch (const std::exception& error) {
  std::cerr << "reading_bench: " << error.what() << "\n";
  return 1;
}
