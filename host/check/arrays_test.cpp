#include "host/check/arrays.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdint>
#include <deque>
#include <string>
#include <vector>

#include "host/check/child.h"
#include "host/test_port_types.h"

namespace zelcheck {
namespace {

using zelhost::kFloatArray;
using zelhost::kIntegerArray;
using zelhost::Port;
using zelhost::PortKind;
using zelhost::PortType;

using Texts = std::vector<std::string>;

// Of an array that is none from new[]. It is not freed: the process ends before.
Texts wrong_with(float* array) {
  const ChildEnd end = run_in_child(
      [array](const Notes& notes) {
        std::deque<Port> outputs;
        outputs.emplace_back(kFloatArray).take(array, 2);
        for (const std::string& complaint : unsound_arrays(outputs)) notes.fact(complaint);
        notes.done();
        _exit(0);
      },
      60);
  EXPECT_EQ(end.complaints, Texts{});
  return end.facts;
}

TEST(Arrays, AreSoundFromNew) {
  for (const int length : {0, 1, 2, 5, 6, 7, 1000, 10'000'000}) {
    std::deque<Port> outputs;
    const auto size = static_cast<std::size_t>(length);
    outputs.emplace_back(kFloatArray).take(new float[size](), length);
    outputs.emplace_back(kIntegerArray).take(new std::int32_t[size](), length);
    EXPECT_EQ(unsound_arrays(outputs), Texts{}) << length;
  }
}

TEST(Arrays, AreSoundWhereThereAreNone) {
  std::deque<Port> outputs;
  outputs.emplace_back(kFloatArray);
  outputs.emplace_back(PortType{PortKind::kFloats, 3});
  outputs.emplace_back(PortType{PortKind::kText, 1});
  EXPECT_EQ(unsound_arrays(outputs), Texts{});
}

TEST(Arrays, AreNotSoundIfTheyAreTooShort) {
  std::deque<Port> outputs;
  outputs.emplace_back(kFloatArray).take(new float[6](), 7);
  outputs.emplace_back(kIntegerArray).take(new std::int32_t[1000](), 1000);
  outputs.emplace_back(kIntegerArray).take(new std::int32_t[6](), 1'000'000);
  EXPECT_EQ(unsound_arrays(outputs),
            (Texts{"output 0: the array has no room for 7 elements, but for 6",
                   "output 2: the array has no room for 1000000 elements, but for 6"}));
}

TEST(Arrays, AreNotSoundIfTheyAreNotFromNew) {
  const Texts not_from_new = {"output 0: the array is not from new[]"};
  const std::vector<float> numbers(20);
  auto* const first = const_cast<float*>(numbers.data());
  EXPECT_EQ(wrong_with(first), Texts{});
  EXPECT_EQ(wrong_with(first + 1), not_from_new);
  EXPECT_EQ(wrong_with(first + 4), not_from_new);
}

TEST(Arrays, AreNotSoundIfTheyAreVariables) {
  static float fixed[2] = {};
  float local[2] = {};
  const Texts expected = {"output 0: the array is not from new[] but a local variable"};
  EXPECT_EQ(wrong_with(local), expected);
  EXPECT_EQ(wrong_with(fixed),
            Texts{"output 0: the array is not from new[] but a variable of zelcheck_test"});
}

}  // namespace
}  // namespace zelcheck
