// From what users write to a question about a certain grasp.
#pragma once

#include <string>
#include <vector>

#include "grasp/grasp.h"
#include "grasp/question.h"
#include "host/error.h"

namespace grasp {

/// The question does not fit the grasp; what() says why.
class InquiryError : public zelhost::HostError {
 public:
  using HostError::HostError;
};

/// @param contacts names or numbers, of which kIndividual takes at least one, kPoint
/// exactly one and the others none. A text that is a contact's name is that contact,
/// also where it is a number too.
/// @throws InquiryError if there is no such contact, or one stands there twice, or if the
/// question has no answer for a single contact.
Inquiry make_inquiry(const Grasp& grasp, Question question,
                     const std::vector<std::string>& contacts);

}  // namespace grasp
