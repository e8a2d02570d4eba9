#include "examples/example_file.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <fstream>

namespace examples {
namespace {

// A file of the given text, gone at the end of the test.
class ExampleFile : public testing::Test {
 protected:
  ~ExampleFile() override { std::filesystem::remove(path_); }

  const std::filesystem::path& holding(const std::string& text) {
    std::ofstream(path_) << text;
    return path_;
  }

  std::string grasp_error(const std::string& text) {
    try {
      read_grasp(holding(text));
    } catch (const ExampleError& error) {
      return error.what();
    }
    return "no error";
  }

  const std::string name_ = "example-file-test-" + std::to_string(getpid());

 private:
  const std::filesystem::path path_ = std::filesystem::temp_directory_path() / name_;
};

const std::string kGrasp =
    "title one finger, one roller\n"
    "contacts 3 1\nfriction 0.5 0\n"
    "bounds -1 1 -2 2 0 3 # the finger\n 0 4\n"
    "base 1 2\n3 4\n5 6\n7 8e-1\n"
    "individual 1 0\npoint 1\n";

TEST_F(ExampleFile, ReadsEveryListOfAGrasp) {
  const Grasp grasp = read_grasp(holding(kGrasp));
  EXPECT_EQ(grasp.title, "one finger, one roller");
  EXPECT_EQ(grasp.types, (std::vector{3, 1}));
  EXPECT_EQ(grasp.friction, (std::vector{0.5, 0.0}));
  EXPECT_EQ(grasp.bounds, (std::vector{-1.0, 1.0, -2.0, 2.0, 0.0, 3.0, 0.0, 4.0}));
  EXPECT_EQ(grasp.base, (std::vector{1.0, 2.0, 3.0, 4.0, 5.0, 6.0, 7.0, 0.8}));
  EXPECT_EQ(grasp.individual, (std::vector{1, 0}));
  EXPECT_EQ(grasp.point, 1U);
  EXPECT_EQ(grasp.components(), 4U);
  EXPECT_EQ(grasp.coordinates(), 2U);
  EXPECT_EQ(grasp.first_component(1), 3U);
}

TEST_F(ExampleFile, ReadsTheMatricesOfAnLmi) {
  const Lmi lmi = read_lmi(holding("strict 0 size 2 matrix 1 2 3 4 matrix 5 6 7 8"));
  EXPECT_FALSE(lmi.strict);
  const std::vector<std::vector<std::vector<double>>> matrices = {{{1, 2}, {3, 4}},
                                                                  {{5, 6}, {7, 8}}};
  EXPECT_EQ(lmi.matrices, matrices);
}

TEST_F(ExampleFile, NamesTheFileThatIsNotThere) {
  EXPECT_THROW(
      try { read_grasp("/nowhere/a.grasp"); } catch (const ExampleError& error) {
        EXPECT_STREQ(error.what(), "a.grasp: cannot be read");
        throw;
      },
      ExampleError);
}

TEST_F(ExampleFile, RefusesWordsThatAreNoNumbers) {
  EXPECT_EQ(grasp_error("contacts 3 1\nfriction 0.5 0.5x\n"),
            name_ + ": line 2: '0.5x' is neither a keyword nor one of its numbers");
  EXPECT_EQ(grasp_error("7\n"),
            name_ + ": line 1: '7' is neither a keyword nor one of its numbers");
}

TEST_F(ExampleFile, RefusesListsThatDoNotFit) {
  const auto with = [](const std::string& part, const std::string& other) {
    std::string text = kGrasp;
    return text.replace(text.find(part), part.size(), other);
  };
  EXPECT_EQ(grasp_error(with("contacts 3 1", "contacts 3 2")),
            name_ + ": 'contacts' takes one or more types, each 1 or 3");
  EXPECT_EQ(grasp_error(with("contacts 3 1", "contacts 3.5")),
            name_ + ": 'contacts' takes whole numbers from 0 to 3");
  EXPECT_EQ(grasp_error(with("friction 0.5 0", "friction 0.5")),
            name_ + ": 'friction' takes one number per contact");
  EXPECT_EQ(grasp_error(with(" 0 4\n", " 0\n")),
            name_ + ": 'bounds' takes two numbers per force component");
  EXPECT_EQ(grasp_error(with("7 8e-1", "7")), name_ + ": 'base' takes one row per force component");
  EXPECT_EQ(grasp_error(with("individual 1 0", "individual 2")),
            name_ + ": 'individual' takes whole numbers from 0 to 1");
  EXPECT_EQ(grasp_error(with("point 1", "point")), name_ + ": 'point' takes one contact");
  EXPECT_EQ(grasp_error(with("point 1", "")), name_ + ": 'point' is missing");
  EXPECT_EQ(grasp_error(kGrasp + "point 1"), name_ + ": 'point' is there twice");
}

}  // namespace
}  // namespace examples
