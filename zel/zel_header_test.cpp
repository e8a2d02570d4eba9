// The interface header alone, as C++, and that C and C++ see the same in it.
#include "zel/zel.h"

// Not before the header, which needs nothing else.
#include <gtest/gtest.h>

#include <string>
#include <type_traits>

#include "zel/zel_header_facts.h"

extern "C" zel_facts zel_facts_of_c(void);

namespace {

template <auto operation, class Signature>
constexpr bool kIs = std::is_same_v<decltype(operation), Signature*>;

// A plug-in is compiled against these and bound to whatever host loads it.
static_assert(kIs<primitive_unit, def_unittype*(int, ...)>);
static_assert(kIs<zel_name_unit, void(const char*, def_unittype*)>);
static_assert(kIs<zel_indicate_export_of_methods, void(def_unittype*)>);
static_assert(kIs<return_unit, void(def_unittype*)>);
static_assert(kIs<label, void(def_unittype*, const char*)>);
static_assert(kIs<is_not_unit, int(const def_unittype*)>);
static_assert(kIs<error_msg, int(int, const char*, int, int)>);
static_assert(kIs<kem_iconform_for_method, void(const char*, const char*, int, int)>);
static_assert(kIs<SET_INFO_FOR_METHOD, void(const char*)>);
static_assert(kIs<INFO_FOR_INP, void(int, const char*)>);
static_assert(kIs<INFO_FOR_OUT, void(int, const char*)>);
static_assert(kIs<TVAL, char*(int)>);
static_assert(kIs<zel_dim_of_dyn_inp, int(const def_unittype*, int, int)>);
static_assert(kIs<zel_reassign, int(const def_unittype*, int, int, int, void*)>);

void expect_true(const zel_facts& facts) {
  ASSERT_GT(facts.count, 50);
  ASSERT_LE(facts.count, kMaxFacts);
  for (int i = 0; i < facts.count; ++i) {
    EXPECT_EQ(facts.list[i].found, facts.list[i].wanted) << facts.list[i].what;
  }
}

TEST(ZelHeader, HoldsItsTagsRecordsAndAccessorsInCxx) {
  expect_true(all_zel_facts());
}

TEST(ZelHeader, HoldsItsTagsRecordsAndAccessorsInC) {
  expect_true(zel_facts_of_c());
}

TEST(ZelHeader, SaysTheSameInBothLanguages) {
  const zel_facts cxx = all_zel_facts();
  const zel_facts c = zel_facts_of_c();
  ASSERT_EQ(c.count, cxx.count);
  for (int i = 0; i < c.count; ++i) {
    EXPECT_EQ(std::string(c.list[i].what), cxx.list[i].what);
    EXPECT_EQ(c.list[i].found, cxx.list[i].found) << c.list[i].what;
  }
}

}  // namespace
