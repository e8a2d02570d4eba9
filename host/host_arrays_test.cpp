// Arrays between the host and plug-ins: lengths, and whose they are.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "host/host_fixture.h"

namespace zelhost {
namespace {

class Arrays : public HostTest {
 protected:
  Arrays() {
    built_ =
        instance([this](def_unittype* root) {
          unit_ = primitive_unit(TAG_INP, TAG_DYN, "F", TAG_INP, TAG_FLOAT, 1, TAG_OUT, TAG_DYN,
                                 "F", TAG_OUT, TAG_DYN, "I", TAG_OUT, TAG_STRING, 1, TAG_END, root);
          zel_name_unit("M", unit_);
          zel_set_method(unit_, [](def_unittype*) { return 0; });
        })
            .find("M")
            ->unit;
  }

  def_unittype* unit_ = nullptr;
  Unit* built_ = nullptr;
};

TEST_F(Arrays, HaveALength) {
  EXPECT_EQ(zel_dim_of_dyn_inp(unit_, 0, 0), 0);
  built_->inputs()[0].set(std::vector<float>{1, 2, 3});
  EXPECT_EQ(zel_dim_of_dyn_inp(unit_, 0, 0), 3);
  EXPECT_EQ(zel_floats_inp(unit_, 0)[2], 3.0F);
  EXPECT_EQ(said(), Texts{});
}

TEST_F(Arrays, AreAskedForWhereThereAreSome) {
  EXPECT_EQ(zel_dim_of_dyn_inp(unit_, 1, 0), 0);
  EXPECT_EQ(zel_dim_of_dyn_inp(unit_, 2, 0), 0);
  EXPECT_EQ(zel_dim_of_dyn_inp(unit_, -1, 0), 0);
  EXPECT_EQ(zel_dim_of_dyn_inp(nullptr, 0, 0), 0);
  built_->inputs()[0].set(std::vector<float>{1});
  EXPECT_EQ(zel_dim_of_dyn_inp(unit_, 0, 1), 0);
  EXPECT_EQ(said(),
            (Texts{"misuse: zel_dim_of_dyn_inp: M, input 1: the port is no array but 1 float",
                   "misuse: zel_dim_of_dyn_inp: M, input 2: there is no such port",
                   "misuse: zel_dim_of_dyn_inp: M, input -1: there is no such port",
                   "misuse: zel_dim_of_dyn_inp: the unit is null",
                   "misuse: zel_dim_of_dyn_inp: the third argument is not 0"}));
}

TEST_F(Arrays, AreTheHostsOnceHandedOver) {
  EXPECT_EQ(zel_reassign(unit_, 0, 0, 2, new float[2]{1, 2}), 0);
  EXPECT_EQ(zel_reassign(unit_, 0, 0, 1, new float[1]{3}), 0);
  EXPECT_EQ(built_->outputs()[0].value(), PortValue(std::vector<float>{3}));
  EXPECT_EQ(zel_reassign(unit_, 1, 0, 1, new std::int32_t[1]{4}), 0);
  EXPECT_EQ(built_->outputs()[1].value(), PortValue(std::vector<std::int32_t>{4}));
  EXPECT_EQ(zel_reassign(unit_, 0, 0, 0, nullptr), 0);
  EXPECT_EQ(zel_reassign(unit_, 0, 0, 0, new float[0]), 0);
  EXPECT_EQ(built_->outputs()[0].value(), PortValue(std::vector<float>{}));
  EXPECT_EQ(said(), Texts{});
}

TEST_F(Arrays, StayTheCallersWhenRefused) {
  float callers[1] = {1};
  EXPECT_NE(zel_reassign(unit_, 0, 0, -1, callers), 0);
  EXPECT_NE(zel_reassign(unit_, 0, 0, 1, nullptr), 0);
  EXPECT_NE(zel_reassign(unit_, 0, 1, 1, callers), 0);
  EXPECT_NE(zel_reassign(unit_, 2, 0, 1, callers), 0);
  EXPECT_NE(zel_reassign(unit_, 3, 0, 1, callers), 0);
  EXPECT_NE(zel_reassign(nullptr, 0, 0, 1, callers), 0);
  auto* const array = new float[1]{1};
  EXPECT_EQ(zel_reassign(unit_, 0, 0, 1, array), 0);
  EXPECT_NE(zel_reassign(unit_, 0, 0, 1, array), 0);
  EXPECT_EQ(built_->outputs()[0].value(), PortValue(std::vector<float>{1}));
  EXPECT_EQ(said(), (Texts{"misuse: zel_reassign: M, output 0: the length is -1",
                           "misuse: zel_reassign: M, output 0: the array is null and the length 1",
                           "misuse: zel_reassign: M, output 0: the third argument is not 0",
                           "misuse: zel_reassign: M, output 2: the port is no array but text",
                           "misuse: zel_reassign: M, output 3: there is no such port",
                           "misuse: zel_reassign: the unit is null",
                           "misuse: zel_reassign: M, output 0: the array is the host's already"}));
}

// It would be freed with the input and with the output.
TEST_F(Arrays, OfInputsCannotBeHandedOver) {
  built_->inputs()[0].set(std::vector<float>{1, 2, 3});
  EXPECT_NE(zel_reassign(unit_, 0, 0, 3, const_cast<float*>(zel_floats_inp(unit_, 0))), 0);
  EXPECT_EQ(built_->outputs()[0].array(), nullptr);
  EXPECT_EQ(said(), Texts{"misuse: zel_reassign: M, output 0: the array is the host's already"});
}

}  // namespace
}  // namespace zelhost
