// Definitions that get new parameters, by the driver and by the rules one after the
// other, with a copy of the text for every cut: the same text, also the second time.
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <locale>
#include <sstream>
#include <string>

#include "fuzz/oracle.h"
#include "unit/sdpsol_wrapper.h"

namespace {

using Parameters = sdpsol_wrapper::parameters;

// Cuts one occurrence after the other. One without a ";" behind it stays.
std::string without(const std::string& keyword, std::string text) {
  std::size_t start = text.find(keyword);
  while (start != std::string::npos) {
    const std::size_t semicolon = text.find(';', start);
    if (semicolon == std::string::npos) break;
    std::size_t end = semicolon + 1;
    const bool starts_line = start == 0 || text[start - 1] == '\n';
    if (starts_line && end < text.size() && text[end] == '\n') ++end;
    const std::string before = text.substr(0, start);
    const std::string behind = text.substr(end);
    text = before + behind;
    start = text.find(keyword, start);
  }
  return text;
}

std::string by_the_rules(std::string text, const Parameters& p) {
  for (const char* keyword : {"NU", "GAMMA", "MAXITER", "ABSTOL", "RELTOL", "BIGM"}) {
    text = without(keyword, text);
  }
  std::ostringstream block;
  block.imbue(std::locale::classic());
  block << "NU=" << p.NU << ";\n";
  block << "GAMMA=" << p.GAMMA << ";\n";
  block << "MAXITER=" << p.MAXITER << ";\n";
  block << "ABSTOL=" << p.ABSTOL << ";\n";
  block << "RELTOL=" << p.RELTOL << ";\n";
  block << "BIGM=" << p.BIGM << ";\n";
  return block.str() + text;
}

// Numbers of any size and kind: the last bytes of the input, which are text as well.
Parameters from_end_of(const std::string& text) {
  std::array<char, 5 * sizeof(double) + sizeof(std::int32_t)> bytes{};
  if (text.size() < bytes.size()) return sdpsol_wrapper("", "", "").getDefaultParameters();
  text.copy(bytes.data(), bytes.size(), text.size() - bytes.size());
  const char* at = bytes.data();
  const auto take = [&at](auto& number) {
    std::memcpy(&number, at, sizeof number);
    at += sizeof number;
  };
  Parameters p;
  take(p.NU);
  take(p.GAMMA);
  take(p.ABSTOL);
  take(p.RELTOL);
  take(p.BIGM);
  take(p.MAXITER);
  return p;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  sdpsol_wrapper driver("", "", "");
  driver.definition = fuzz::text_of(data, size);
  std::string expected = driver.definition;
  const Parameters odd = from_end_of(driver.definition);
  for (const Parameters& p : {odd, driver.getDefaultParameters()}) {
    driver.setParameters(p);
    expected = by_the_rules(std::move(expected), p);
    fuzz::require(driver.definition == expected, "another text than by the rules");
  }
  return 0;
}
