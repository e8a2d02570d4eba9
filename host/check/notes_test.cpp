#include "host/check/notes.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <string>
#include <vector>

namespace zelcheck {
namespace {

using Texts = std::vector<std::string>;

// The bytes of some notes. They fit into a pipe.
template <class Writer>
std::string bytes_of(const Writer& write_notes) {
  std::array<int, 2> ends = {};
  EXPECT_EQ(pipe2(ends.data(), O_NONBLOCK), 0);
  write_notes(Notes(ends[1]));
  std::array<char, 65536> buffer;
  const ssize_t size = read(ends[0], buffer.data(), buffer.size());
  close(ends[0]);
  close(ends[1]);
  return {buffer.data(), size < 0 ? 0 : static_cast<std::size_t>(size)};
}

TEST(Notes, AreReadInWhateverPiecesTheyCome) {
  const std::string bytes = bytes_of([](const Notes& notes) {
    notes.at("first");
    notes.complain("wrong");
    notes.complain("");
    notes.fact(std::string("with a \0 in it", 14));
    notes.done();
  });
  for (std::size_t piece = 1; piece <= bytes.size(); ++piece) {
    NotesReader reader;
    for (std::size_t i = 0; i < bytes.size(); i += piece) {
      EXPECT_FALSE(reader.is_done());
      reader.take(std::string_view(bytes).substr(i, piece));
    }
    EXPECT_EQ(reader.complaints(), (Texts{"first: wrong", "first: "}));
    EXPECT_EQ(reader.facts(), Texts{std::string("with a \0 in it", 14)});
    EXPECT_TRUE(reader.is_done());
  }
}

TEST(Notes, AreNotTakenBeforeTheyAreComplete) {
  const std::string bytes = bytes_of([](const Notes& notes) { notes.complain("wrong"); });
  NotesReader reader;
  reader.take(std::string_view(bytes).substr(0, bytes.size() - 1));
  EXPECT_EQ(reader.complaints(), Texts{});
  reader.take(std::string_view(bytes).substr(bytes.size() - 1));
  EXPECT_EQ(reader.complaints(), Texts{"wrong"});
}

TEST(Notes, StageStandsBeforeWhatFollowsUntilThereIsAnother) {
  const std::string bytes = bytes_of([](const Notes& notes) {
    notes.complain("a");
    notes.at("first");
    notes.at("second");
    notes.complain("b");
  });
  NotesReader reader;
  EXPECT_EQ(reader.staged("c"), "c");
  reader.take(bytes);
  EXPECT_EQ(reader.complaints(), (Texts{"a", "second: b"}));
  EXPECT_EQ(reader.staged("c"), "second: c");
}

TEST(Notes, AreLostWithoutHarmWhereNobodyTakesThem) {
  const Notes notes(-1);
  notes.complain("unheard");
  notes.done();
}

}  // namespace
}  // namespace zelcheck
