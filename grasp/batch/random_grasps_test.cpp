#include "grasp/batch/random_grasps.h"

#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <nlohmann/json.hpp>
#include <string>

#include "grasp/grasp_file.h"
#include "host/json_reader.h"

namespace grasp {
namespace {

Grasp read(const std::string& line) {
  const zelhost::Json document = zelhost::parse_json(line, "line");
  return read_grasp({document, "line", ""});
}

TEST(RandomGrasps, AreTheSameBytesOnEveryMachine) {
  RandomGrasps grasps(1);
  EXPECT_EQ(
      grasps.next(),
      R"({"name": "grasp 1", "friction": 0.7082, "max_force": 19.25, "centre": [-0.14544, -0.01951, -0.19159], "hull": {"centre": [-0.14544, -0.01951, -0.19159], "radius": 0.03079}, )"
      R"("contacts": [{"point": [-0.16278, -0.03415, -0.17082], "normal": [0.5531, 0.4243, -0.7217], "friction": 0.2553, "max_force": 22.37}, {"point": [-0.1301, -0.00945, -0.21666], "normal": [-0.4948, -0.3175, 0.8101]}, {"point": [-0.14667, -0.0129, -0.16186], "normal": [0.0281, -0.2156, -0.9737]}, {"point": [-0.13799, -0.02271, -0.22121], "normal": [-0.2074, 0.1156, 0.9797]}]})");
  // FNV-1a over the lines that follow.
  std::uint64_t hash = 14695981039346656037U;
  for (int i = 0; i < 1000; ++i)
    for (const char each : grasps.next())
      hash = (hash ^ static_cast<unsigned char>(each)) * 1099511628211U;
  EXPECT_EQ(hash, 1978826142675370008U);
}

TEST(RandomGrasps, FollowTheirSeed) {
  EXPECT_EQ(RandomGrasps(7).next(), RandomGrasps(7).next());
  EXPECT_NE(RandomGrasps(7).next(), RandomGrasps(8).next());
}

TEST(RandomGrasps, AreGraspsOfAHandsSize) {
  RandomGrasps grasps(2);
  std::map<std::size_t, int> counts;
  int frictionless = 0;
  for (int i = 1; i <= 500; ++i) {
    const Grasp grasp = read(grasps.next());
    EXPECT_EQ(grasp.name, "grasp " + std::to_string(i));
    ++counts[grasp.contacts.size()];
    for (const Contact& contact : grasp.contacts) {
      EXPECT_LT(contact.point.norm(), 0.5);
      EXPECT_GE(contact.bounds.back().lower, 0);
      EXPECT_LE(contact.bounds.back().lower, 0.5);
      EXPECT_GE(contact.bounds.back().upper, 5);
      EXPECT_LE(contact.bounds.back().upper, 30);
      if (contact.type == ContactType::kFrictionless) {
        ++frictionless;
        continue;
      }
      EXPECT_GE(contact.friction, 0.2);
      EXPECT_LE(contact.friction, 1);
    }
  }
  EXPECT_EQ(counts.size(), 7U);
  EXPECT_GT(counts[4], 250);
  EXPECT_GT(frictionless, 100);
}

TEST(RandomGrasps, HaveAsManyContactsAsIsAskedFor) {
  for (std::size_t count = RandomGrasps::kFewestContacts; count <= RandomGrasps::kMaxContacts;
       ++count) {
    RandomGrasps grasps(3, count);
    for (int i = 0; i < 20; ++i) EXPECT_EQ(read(grasps.next()).contacts.size(), count);
  }
}

}  // namespace
}  // namespace grasp
