// Texts of results, read by the driver and by a slow second parser: equal in every field,
// in the return and in the exception. A scan without an end would be a timeout.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>

#include "fuzz/oracle.h"
#include "unit/sdpsol_wrapper.h"
#include "unit/test_readings.h"

namespace {

// Of a scan that goes round in a circle both have the beginning, each as much of it as it
// took to notice.
void cut_to(std::size_t length, sdpsol_wrapper::result& last) {
  last.variableNames.resize(length);
  last.variableValues.resize(length);
  last.valueCount = static_cast<int>(length);
}

void require_parallel(const sdpsol_wrapper::result& last) {
  fuzz::require(last.variableNames.size() == last.variableValues.size() &&
                    last.valueCount == static_cast<int>(last.variableValues.size()),
                "names, values and their number are not parallel");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text = fuzz::text_of(data, size);
  unit_test::Reading ours = unit_test::by_driver(text);
  unit_test::Reading reference = unit_test::by_reference(text);
  require_parallel(ours.last);
  if (ours.code == 1 && reference.code == 1) {
    const std::size_t common =
        std::min(ours.last.variableValues.size(), reference.last.variableValues.size());
    fuzz::require(common > 0, "a circle without an entry");
    cut_to(common, ours.last);
    cut_to(common, reference.last);
  }
  fuzz::require(ours.code == reference.code, "another return");
  fuzz::require(ours.error == reference.error, "another exception");
  fuzz::require(ours.last.errorCode == reference.last.errorCode, "another errorCode");
  fuzz::require(ours.last.feasible == reference.last.feasible, "another verdict");
  fuzz::require(fuzz::same_bits(ours.last.objectiveValue, reference.last.objectiveValue),
                "another objective");
  fuzz::require(ours.last.variableNames == reference.last.variableNames, "other names");
  fuzz::require(std::equal(ours.last.variableValues.begin(), ours.last.variableValues.end(),
                           reference.last.variableValues.begin(),
                           reference.last.variableValues.end(), fuzz::same_bits),
                "other values");
  return 0;
}
