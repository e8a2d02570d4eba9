#include "grasp/batch/line_reader.h"

#include <fcntl.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "host/descriptor.h"
#include "tests/support/test_folder.h"

namespace grasp {
namespace {

using Lines = std::vector<InputLine>;

constexpr std::size_t kLongest = 100'000;

Lines lines_of(const std::string& text) {
  const test_support::TestFolder folder;
  const zelhost::Descriptor file(open(folder.file("lines", text).c_str(), O_RDONLY));
  LineReader reader(file.get(), kLongest, "lines");
  Lines lines;
  for (;;) {
    const bool was_at_end = reader.is_at_end();
    if (auto line = reader.next())
      lines.push_back(*line);
    else if (was_at_end)
      return lines;
    else
      reader.read_more();
  }
}

TEST(LineReader, HasNoLinesWhereThereAreNone) {
  EXPECT_EQ(lines_of(""), Lines{});
}

TEST(LineReader, TakesALastLineWithoutLineBreak) {
  EXPECT_EQ(lines_of("a\nbc"), (Lines{{"a", 2, false}, {"bc", 2, false}}));
  EXPECT_EQ(lines_of("a\nbc\n"), (Lines{{"a", 2, false}, {"bc", 3, false}}));
}

TEST(LineReader, TakesEmptyLinesAndCarriageReturns) {
  EXPECT_EQ(lines_of("\n\r\na\r\n\r"),
            (Lines{{"", 1, false}, {"", 2, false}, {"a", 3, false}, {"", 1, false}}));
  EXPECT_EQ(lines_of("a\rb\r\r\n"), (Lines{{"a\rb\r", 6, false}}));
}

TEST(LineReader, PutsLinesTogetherThatABufferDoesNotHold) {
  const std::string half(70'000, 'x');
  const std::string whole(kLongest, 'y');
  EXPECT_TRUE(lines_of(half + "\n" + whole + "\r\nz") ==
              (Lines{{half, 70'001, false}, {whole, kLongest + 2, false}, {"z", 1, false}}));
}

TEST(LineReader, PassesOverWhatIsTooLong) {
  const std::string longer(kLongest + 1, 'x');
  const std::string much_longer(1'000'000, 'x');
  EXPECT_TRUE(lines_of(longer + "\na\n" + much_longer) ==
              (Lines{{"", kLongest + 2, true}, {"a", 2, false}, {"", 1'000'000, true}}));
}

}  // namespace
}  // namespace grasp
