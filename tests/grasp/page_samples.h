// Grasps for tests of the page, with forces that were chosen by hand to be in balance.
#pragma once

#include <string>
#include <vector>

#include "grasp/answer.h"

namespace page_samples {

struct Sample {
  std::string file;  ///< name without ending
  grasp::Grasp grasp;
  grasp::Answer answer;
};

/// Of all kinds: with and without forces and hull, flat, tiny, huge, with nasty names.
std::vector<Sample> all_samples();

/// One of them by its file name.
Sample sample(const std::string& file);

/// Text that would end a script or become markup where it is not kept from it.
extern const char* const kNasty;

}  // namespace page_samples
