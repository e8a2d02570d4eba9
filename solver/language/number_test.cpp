#include "solver/language/number.h"

#include <gtest/gtest.h>

#include <string>

namespace sdpsol {
namespace {

using Status = ScannedNumber::Status;

void expect_number(std::string_view text, double value, std::size_t length) {
  const ScannedNumber scanned = scan_number(text);
  EXPECT_EQ(scanned.status, Status::kNumber) << text;
  EXPECT_EQ(scanned.value, value) << text;
  EXPECT_EQ(scanned.length, length) << text;
}

void expect_status(std::string_view text, Status status, std::size_t length) {
  const ScannedNumber scanned = scan_number(text);
  EXPECT_EQ(scanned.status, status) << text;
  EXPECT_EQ(scanned.length, length) << text;
}

TEST(ScanNumber, ReadsTheNearestDouble) {
  expect_number("1", 1, 1);
  expect_number("0.5;", 0.5, 3);
  expect_number(".5*z", 0.5, 2);
  expect_number("5.", 5, 2);
  expect_number("1e-07,", 1e-07, 5);
  expect_number("1.5E+06", 1.5e6, 7);
  expect_number("0.1", 0.1, 3);
  expect_number("9007199254740993", 9007199254740992.0, 16);
  expect_number("1.7976931348623157e308", 1.7976931348623157e308, 22);
}

TEST(ScanNumber, StopsBeforeOperatorsAndBlanks) {
  expect_number("2-3", 2, 1);
  expect_number("2 x", 2, 1);
  expect_number("2'", 2, 1);
}

TEST(ScanNumber, TakesUnderflowForZero) {
  expect_number("1e-400", 0, 6);
  expect_number("1e-99999999999999999999", 0, 23);
  expect_number("0." + std::string(400, '0') + "1", 0, 403);
  expect_number("123e-500", 0, 8);
  expect_number("0e999", 0, 5);
  expect_number("4.9406564584124654e-324", 4.9406564584124654e-324, 23);
}

TEST(ScanNumber, ReportsOverflow) {
  expect_status("1e309", Status::kOverflow, 5);
  expect_status("1e+99999999999999999999", Status::kOverflow, 23);
  expect_status("1" + std::string(400, '0'), Status::kOverflow, 401);
  expect_status("0.001e400", Status::kOverflow, 9);
}

TEST(ScanNumber, RejectsWhatTouchesANumber) {
  expect_status("1.2.3;", Status::kMalformed, 5);
  expect_status("1e", Status::kMalformed, 2);
  expect_status("1e+", Status::kMalformed, 2);
  expect_status("2x", Status::kMalformed, 2);
  expect_status("0x10", Status::kMalformed, 4);
  expect_status("1_000", Status::kMalformed, 5);
}

}  // namespace
}  // namespace sdpsol
