#include "host/check/captured_text.h"

#include <algorithm>

namespace zelcheck {
namespace {

constexpr std::size_t kKept = 1000;

}  // namespace

void CapturedText::append(std::string_view text) {
  const std::size_t begins = std::min(text.size(), kKept - first_.size());
  first_ += text.substr(0, begins);
  last_ += text.substr(begins);
  if (last_.size() > kKept) {
    left_out_ += last_.size() - kKept;
    last_.erase(0, last_.size() - kKept);
  }
}

std::string CapturedText::text() const {
  if (left_out_ == 0) return first_ + last_;
  return first_ + "\n... " + std::to_string(left_out_) + " bytes ...\n" + last_;
}

}  // namespace zelcheck
