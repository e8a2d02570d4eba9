#include "grasp/inquiry.h"

#include <algorithm>
#include <charconv>

namespace grasp {
namespace {

// "0 "thumb", 1, 2 "index"".
std::string listed(const Grasp& grasp) {
  std::string list;
  for (std::size_t i = 0; i < grasp.contacts.size(); ++i) {
    list += (i == 0 ? "" : ", ") + std::to_string(i);
    if (!grasp.contacts[i].name.empty()) list += " \"" + grasp.contacts[i].name + "\"";
  }
  return list;
}

std::size_t find(const Grasp& grasp, const std::string& contact) {
  const auto has_name = [&contact](const Contact& each) { return each.name == contact; };
  const auto named = std::find_if(grasp.contacts.begin(), grasp.contacts.end(), has_name);
  if (named != grasp.contacts.end() && !contact.empty())
    return static_cast<std::size_t>(named - grasp.contacts.begin());
  std::size_t number = 0;
  const char* const end = contact.data() + contact.size();
  const auto read = std::from_chars(contact.data(), end, number);
  if (read.ec != std::errc() || read.ptr != end || number >= grasp.contacts.size())
    throw InquiryError("there is no contact \"" + contact + "\"; there are " + listed(grasp));
  return number;
}

void expect_count(Question question, std::size_t count) {
  const std::string name(to_string(question));
  switch (question) {
    case Question::kIndividual:
      if (count == 0)
        throw InquiryError("the question \"individual\" takes the contacts it is about");
      break;
    case Question::kPoint:
      if (count != 1)
        throw InquiryError("the question \"point\" takes one contact, not " +
                           std::to_string(count));
      break;
    case Question::kExists:
    case Question::kFriction:
    case Question::kAll:
      if (count != 0)
        throw InquiryError("the question \"" + name + "\" is about all contacts and takes none");
      break;
  }
}

}  // namespace

Inquiry make_inquiry(const Grasp& grasp, Question question,
                     const std::vector<std::string>& contacts) {
  expect_count(question, contacts.size());
  const bool divides = question == Question::kFriction || question == Question::kAll;
  if (divides && grasp.contacts.size() == 1)
    throw InquiryError("the question \"" + std::string(to_string(question)) +
                       "\" divides by the number of contacts minus one, which is 0 here; ask "
                       "\"exists\" or \"point\" about a single contact");
  Inquiry inquiry{question, {}};
  for (const std::string& contact : contacts) {
    const std::size_t number = find(grasp, contact);
    if (std::count(inquiry.contacts.begin(), inquiry.contacts.end(), number) > 0)
      throw InquiryError("contact \"" + contact + "\" stands there twice");
    inquiry.contacts.push_back(number);
  }
  return inquiry;
}

}  // namespace grasp
