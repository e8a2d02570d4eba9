#include "grasp/grasp.h"

namespace grasp {

std::size_t Grasp::components() const {
  std::size_t sum = 0;
  for (const Contact& contact : contacts) sum += contact.components();
  return sum;
}

std::string Grasp::label(std::size_t contact) const {
  const std::string& name_of_contact = contacts[contact].name;
  return name_of_contact.empty() ? std::to_string(contact) : name_of_contact;
}

}  // namespace grasp
