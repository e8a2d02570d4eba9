#include "grasp/inquiry.h"

#include <gtest/gtest.h>

#include "grasp/test_grasps.h"

namespace grasp {
namespace {

using Contacts = std::vector<std::size_t>;

// Contact 2 has a name that is a number, contact 1 has none.
Grasp four() {
  const Contact any = contact_at({0, 0, 0}, {1, 0, 0});
  return grasp_of({named(any, "thumb"), any, named(any, "3"), named(any, "little finger")});
}

std::string error(const Grasp& grasp, Question question, const std::vector<std::string>& contacts) {
  try {
    static_cast<void>(make_inquiry(grasp, question, contacts));
  } catch (const InquiryError& refused) {
    return refused.what();
  }
  return "no error";
}

TEST(MakeInquiry, TakesContactsByNameAndByNumber) {
  const Inquiry inquiry = make_inquiry(four(), Question::kIndividual, {"1", "thumb"});
  EXPECT_EQ(inquiry.question, Question::kIndividual);
  EXPECT_EQ(inquiry.contacts, (Contacts{1, 0}));
  EXPECT_EQ(make_inquiry(four(), Question::kPoint, {"little finger"}).contacts, Contacts{3});
  EXPECT_EQ(make_inquiry(four(), Question::kPoint, {"0"}).contacts, Contacts{0});
}

TEST(MakeInquiry, TakesATextThatIsANameForTheNameAlsoIfItIsANumber) {
  EXPECT_EQ(make_inquiry(four(), Question::kPoint, {"3"}).contacts, Contacts{2});
  EXPECT_EQ(make_inquiry(four(), Question::kPoint, {"2"}).contacts, Contacts{2});
}

TEST(MakeInquiry, TakesNoContactsWhereAllAreMeant) {
  for (const Question question : {Question::kExists, Question::kFriction, Question::kAll})
    EXPECT_TRUE(make_inquiry(four(), question, {}).contacts.empty());
}

TEST(MakeInquiry, RefusesContactsThatAreNotThereAndListsThoseThatAre) {
  const std::string there = R"("; there are 0 "thumb", 1, 2 "3", 3 "little finger")";
  for (const std::string contact :
       {"index", "4", "-1", "+1", "1.0", "1x", " 1", "", "Thumb", "99999999999999999999999"})
    EXPECT_EQ(error(four(), Question::kPoint, {contact}),
              "there is no contact \"" + contact + there);
}

TEST(MakeInquiry, RefusesAContactThatStandsThereTwiceByAnyOfItsNames) {
  EXPECT_EQ(error(four(), Question::kIndividual, {"1", "1"}), "contact \"1\" stands there twice");
  EXPECT_EQ(error(four(), Question::kIndividual, {"thumb", "1", "0"}),
            "contact \"0\" stands there twice");
}

TEST(MakeInquiry, RefusesTooFewAndTooManyContacts) {
  EXPECT_EQ(error(four(), Question::kIndividual, {}),
            "the question \"individual\" takes the contacts it is about");
  EXPECT_EQ(error(four(), Question::kPoint, {}), "the question \"point\" takes one contact, not 0");
  EXPECT_EQ(error(four(), Question::kPoint, {"0", "1"}),
            "the question \"point\" takes one contact, not 2");
  EXPECT_EQ(error(four(), Question::kExists, {"0"}),
            "the question \"exists\" is about all contacts and takes none");
  EXPECT_EQ(error(four(), Question::kFriction, {"0"}),
            "the question \"friction\" is about all contacts and takes none");
  EXPECT_EQ(error(four(), Question::kAll, {"0"}),
            "the question \"all\" is about all contacts and takes none");
}

TEST(MakeInquiry, RefusesToDivideByTheNumberOfContactsMinusOneOfASingleContact) {
  const Grasp one = grasp_of({contact_at({0, 0, 0}, {1, 0, 0})});
  const std::string reason =
      " divides by the number of contacts minus one, which is 0 here; ask \"exists\" or "
      "\"point\" about a single contact";
  EXPECT_EQ(error(one, Question::kFriction, {}), "the question \"friction\"" + reason);
  EXPECT_EQ(error(one, Question::kAll, {}), "the question \"all\"" + reason);
  EXPECT_EQ(error(one, Question::kExists, {}), "no error");
  EXPECT_EQ(error(one, Question::kIndividual, {"0"}), "no error");
  EXPECT_EQ(error(one, Question::kPoint, {"0"}), "no error");
}

}  // namespace
}  // namespace grasp
