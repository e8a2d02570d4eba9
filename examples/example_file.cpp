#include "examples/example_file.h"

#include <algorithm>
#include <charconv>
#include <fstream>
#include <map>
#include <numeric>
#include <sstream>
#include <string_view>
#include <system_error>

namespace examples {
namespace {

using Numbers = std::vector<double>;

// Every occurrence of a keyword with its numbers, in the file's order.
struct Sections {
  std::string file;
  std::string title;
  std::map<std::string, std::vector<Numbers>> of;

  [[noreturn]] void fail(const std::string& why) const { throw ExampleError(file + ": " + why); }

  [[nodiscard]] const Numbers& single(const std::string& keyword) const {
    const auto found = of.find(keyword);
    if (found == of.end()) fail("'" + keyword + "' is missing");
    if (found->second.size() != 1) fail("'" + keyword + "' is there twice");
    return found->second.front();
  }

  // A list of non-negative whole numbers below `limit`.
  [[nodiscard]] std::vector<int> counts(const std::string& keyword, int limit) const {
    std::vector<int> list;
    for (const double number : single(keyword)) {
      if (!(number >= 0 && number < limit) || number != static_cast<int>(number))
        fail("'" + keyword + "' takes whole numbers from 0 to " + std::to_string(limit - 1));
      list.push_back(static_cast<int>(number));
    }
    return list;
  }
};

Sections read_sections(const std::filesystem::path& path,
                       const std::vector<std::string_view>& keywords) {
  Sections sections;
  sections.file = path.filename().string();
  std::ifstream in(path);
  if (!in) sections.fail("cannot be read");

  Numbers* numbers = nullptr;
  int line_number = 0;
  for (std::string line; std::getline(in, line);) {
    ++line_number;
    std::istringstream words(line.substr(0, line.find('#')));
    for (std::string word; words >> word;) {
      if (word == "title") {
        std::getline(words >> std::ws, sections.title);
      } else if (std::find(keywords.begin(), keywords.end(), word) != keywords.end()) {
        numbers = &sections.of[word].emplace_back();
      } else {
        double number = 0;
        const char* const end = word.data() + word.size();
        const auto read = std::from_chars(word.data(), end, number);
        if (read.ec != std::errc() || read.ptr != end || numbers == nullptr)
          sections.fail("line " + std::to_string(line_number) + ": '" + word +
                        "' is neither a keyword nor one of its numbers");
        numbers->push_back(number);
      }
    }
  }
  return sections;
}

}  // namespace

std::size_t Grasp::components() const {
  return first_component(types.size());
}

std::size_t Grasp::first_component(std::size_t contact) const {
  const auto end = types.begin() + static_cast<std::ptrdiff_t>(contact);
  return static_cast<std::size_t>(std::accumulate(types.begin(), end, 0));
}

Grasp read_grasp(const std::filesystem::path& file) {
  const Sections sections =
      read_sections(file, {"contacts", "friction", "bounds", "base", "individual", "point"});
  Grasp grasp;
  grasp.title = sections.title;
  grasp.types = sections.counts("contacts", 4);
  if (grasp.types.empty() ||
      !std::all_of(grasp.types.begin(), grasp.types.end(), [](int t) { return t == 1 || t == 3; }))
    sections.fail("'contacts' takes one or more types, each 1 or 3");
  const auto contacts = grasp.types.size();
  grasp.friction = sections.single("friction");
  if (grasp.friction.size() != contacts) sections.fail("'friction' takes one number per contact");
  grasp.bounds = sections.single("bounds");
  if (grasp.bounds.size() != 2 * grasp.components())
    sections.fail("'bounds' takes two numbers per force component");
  grasp.base = sections.single("base");
  if (grasp.base.empty() || grasp.base.size() % grasp.components() != 0)
    sections.fail("'base' takes one row per force component");
  grasp.individual = sections.counts("individual", static_cast<int>(contacts));
  const auto point = sections.counts("point", static_cast<int>(contacts));
  if (point.size() != 1) sections.fail("'point' takes one contact");
  grasp.point = static_cast<std::uint32_t>(point.front());
  return grasp;
}

Lmi read_lmi(const std::filesystem::path& file) {
  const Sections sections = read_sections(file, {"strict", "size", "matrix"});
  Lmi lmi;
  lmi.title = sections.title;
  const auto strict = sections.counts("strict", 2);
  if (strict.size() != 1) sections.fail("'strict' takes 0 or 1");
  lmi.strict = strict.front() == 1;
  const auto sizes = sections.counts("size", 1000);
  if (sizes.size() != 1 || sizes.front() == 0) sections.fail("'size' takes one size");
  const auto size = static_cast<std::size_t>(sizes.front());

  const auto found = sections.of.find("matrix");
  if (found == sections.of.end()) sections.fail("'matrix' is missing");
  for (const Numbers& numbers : found->second) {
    if (numbers.size() != size * size) sections.fail("each 'matrix' takes size x size numbers");
    auto& matrix = lmi.matrices.emplace_back();
    for (auto row = numbers.begin(); row != numbers.end(); row += sizes.front())
      matrix.emplace_back(row, row + sizes.front());
  }
  return lmi;
}

}  // namespace examples
