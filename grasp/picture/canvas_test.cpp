#include "grasp/picture/canvas.h"

#include <gtest/gtest.h>

#include <limits>

namespace grasp::picture {
namespace {

TEST(Number, HasTwoDigitsAtMostAndNoNegativeZero) {
  EXPECT_EQ(number(0), "0");
  EXPECT_EQ(number(-0.0), "0");
  EXPECT_EQ(number(-0.001), "0");
  EXPECT_EQ(number(100), "100");
  EXPECT_EQ(number(12.3456), "12.35");
  EXPECT_EQ(number(-12.5), "-12.5");
}

TEST(Number, IsANumberForWhatIsNone) {
  EXPECT_EQ(number(std::numeric_limits<double>::quiet_NaN()), "0");
  EXPECT_EQ(number(-std::numeric_limits<double>::infinity()), "0");
  EXPECT_EQ(number(1e300), "0");
}

TEST(Canvas, WritesAFileOfNestedGroups) {
  Canvas canvas;
  canvas.open("stroke=\"#000\"");
  canvas.line({1, 2}, {3.5, 4});
  canvas.text({5, 6}, U"a<b", {.size = 10, .bold = true}, Align::kMiddle);
  canvas.close();
  EXPECT_EQ(canvas.file(20, 10, U"a & b"),
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
            "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"20\" height=\"10\" "
            "viewBox=\"0 0 20 10\" font-family=\"Helvetica, Arial, 'Liberation Sans', "
            "'DejaVu Sans', sans-serif\">\n"
            "<title>a &amp; b</title>\n"
            "<rect width=\"100%\" height=\"100%\" fill=\"#fff\"/>\n"
            "<g stroke=\"#000\">\n"
            "<line x1=\"1\" y1=\"2\" x2=\"3.5\" y2=\"4\"/>\n"
            "<text x=\"5\" y=\"6\" font-size=\"10\" font-weight=\"bold\" "
            "text-anchor=\"middle\">a&lt;b</text>\n"
            "</g>\n"
            "</svg>\n");
}

}  // namespace
}  // namespace grasp::picture
