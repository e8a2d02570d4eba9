// Reading JSON that people write: what is said about what is wrong.
#include "host/json_reader.h"

#include <gtest/gtest.h>

#include <functional>
#include <nlohmann/json.hpp>
#include <system_error>

#include "tests/support/message_of.h"
#include "tests/support/test_folder.h"

namespace zelhost {
namespace {

using test_support::message_of;
using test_support::TestFolder;

class ReadJson : public testing::Test {
 protected:
  std::string error(std::string_view text) {
    const std::string path = folder_.file("a.json", text);
    std::string what = message_of<JsonError>([&] { read_json(path); });
    if (what.rfind(path, 0) == 0) what.replace(0, path.size(), "a.json");
    return what;
  }

  TestFolder folder_;
};

TEST_F(ReadJson, KeepsTheOrderOfTheFile) {
  const Json json = read_json(folder_.file("a.json", R"({"b": 1, "a": [2.5, "x"]})"));
  EXPECT_EQ(json.dump(), R"({"b":1,"a":[2.5,"x"]})");
}

TEST_F(ReadJson, PointsAtTheCharacterThatDoesNotBelong) {
  EXPECT_EQ(error("{\n  \"a\": [1,\n  ,2]\n}").substr(0, 23), "a.json:3:3: syntax erro");
  EXPECT_EQ(error("").substr(0, 23), "a.json:1:1: there is no");
  EXPECT_EQ(error("{\"a\": 1").substr(0, 23), "a.json:1:8: syntax erro");
}

TEST_F(ReadJson, RefusesANulByteWhereverItStands) {
  using namespace std::string_view_literals;
  EXPECT_EQ(error("{}\n \0 and more"sv),
            "a.json:2:2: a NUL byte stands here; JSON is text in UTF-8");
  EXPECT_EQ(error("[\"a\0\"]"sv), "a.json:1:4: a NUL byte stands here; JSON is text in UTF-8");
  EXPECT_EQ(error("{\0\"\0a\0"sv), "a.json:1:2: a NUL byte stands here; JSON is text in UTF-8");
}

TEST_F(ReadJson, FindsKeysThatStandTwice) {
  EXPECT_EQ(error(R"({"a": 1, "b": [{}, {"c": [], "c": 2}]})"),
            "a.json: /b/1/c: this key stands here twice");
  EXPECT_EQ(error(R"({"a/~": 1, "a/~": 2})"), "a.json: /a~1~0: this key stands here twice");
  EXPECT_EQ(error(R"({"a": {"x": 1}, "b": {"x": 1}})"), "no error");
}

TEST_F(ReadJson, NamesKeysOnOneShortLine) {
  EXPECT_EQ(error("{\"a\\n\\u001b[31m\": 1, \"a\\n\\u001b[31m\": 2}"),
            "a.json: /a ?[31m: this key stands here twice");
  const std::string key(100'000, 'k');
  EXPECT_EQ(error("{\"" + key + "\": [1e400]}"),
            "a.json: /" + key.substr(0, 999) + "...: the number is too large for double precision");
}

TEST_F(ReadJson, SaysWhichFileCannotBeRead) {
  EXPECT_THROW(read_json(folder_.path("nothing")), std::system_error);
  EXPECT_THROW(read_json(folder_.path()), std::system_error);
}

TEST_F(ReadJson, RefusesNumbersBeyondDoubles) {
  EXPECT_EQ(error("[0, 1e400]"), "a.json: /1: the number is too large for double precision");
}

class Node : public testing::Test {
 protected:
  static JsonNode node(const Json& json) { return {json, "f", ""}; }
};

TEST_F(Node, NamesUnknownAndMissingKeys) {
  const Json json = {{"a", 1}, {"x", 2}};
  EXPECT_EQ(message_of<JsonError>([&] { node(json).expect_keys({"a"}, {"b"}); }),
            "f: /: unknown key \"x\"; the keys are \"a\", \"b\"");
  EXPECT_EQ(message_of<JsonError>([&] {
              node(json).expect_keys({"a", "c"}, {"x"});
            }),
            "f: /: the key \"c\" is missing");
  EXPECT_EQ(message_of<JsonError>([&] { node(json).expect_keys({"a"}, {"x"}); }), "no error");
}

TEST_F(Node, CarriesItsPlace) {
  const Json json = {{"a/b", {1, "x"}}};
  const JsonNode element = node(json).member("a/b").elements("things")[1];
  EXPECT_EQ(element.pointer(), "/a~1b/1");
  EXPECT_EQ(message_of<JsonError>([&] { element.fail("is odd"); }), "f: /a~1b/1: is odd");
}

TEST_F(Node, FailsOnOneLineOfSomeLength) {
  const std::string key = "a\n" + std::string(1'000'000, 'k');
  const Json json = {{key, 1}};
  EXPECT_EQ(message_of<JsonError>([&] { node(json).expect_keys({"a"}); }).substr(0, 30),
            "f: /: unknown key \"a kkkkkkkkk");
  EXPECT_LT(message_of<JsonError>([&] { node(json).expect_keys({"a"}); }).size(), 11'000U);
  EXPECT_EQ(message_of<JsonError>([&] { node(json).member(key).fail("is odd"); }),
            "f: /a " + std::string(997, 'k') + "...: is odd");
}

TEST_F(Node, SaysWhatItTakes) {
  const Json number = 1;
  EXPECT_EQ(message_of<JsonError>([&] { (void)node(number).elements("wires"); }),
            "f: /: this takes wires, in [ ]");
  EXPECT_EQ(message_of<JsonError>([&] { (void)node(number).members("fields"); }),
            "f: /: this takes fields, in { }");
  EXPECT_EQ(message_of<JsonError>([&] { (void)node(number).text("a name"); }),
            "f: /: this takes a name, as a text in quotes");
}

}  // namespace
}  // namespace zelhost
