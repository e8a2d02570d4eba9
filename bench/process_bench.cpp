// A whole solve of four contacts, from writing the definition to the parsed
// result, against starting an empty static program through the same shell.
// Since every solve starts the command anew, that is the least it can cost.
//
// Each goal for "ratio" stands beside it.
#include <benchmark/benchmark.h>

#include <Eigen/Geometry>
#include <Eigen/QR>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <iostream>
#include <string>
#include <vector>

#include "bench/compare.h"
#include "unit/sdpsol_wrapper.h"

namespace {

// The lists that the driver's builders take.
struct Grasp {
  std::vector<double> base;
  std::vector<int> types;
  std::vector<double> friction;
  std::vector<double> bounds;
};

// Four fingertips on a ball of 6 cm, at no two equal angles, so that no
// coefficient of the orthonormal base is 0, as in a measured grasp. Lengths in
// metres, forces in newton.
Grasp four_contacts() {
  const std::vector<Eigen::Vector3d> directions = {
      {0.9, 0.2, 0.35}, {-0.5, 0.85, 0.1}, {-0.35, -0.9, 0.25}, {0.1, -0.05, -1.0}};
  Eigen::Matrix<double, 6, 12> map;
  Grasp grasp;
  for (std::size_t i = 0; i < directions.size(); ++i) {
    const Eigen::Vector3d normal = -directions[i].normalized();
    const Eigen::Vector3d point = -0.03 * normal;
    const Eigen::Vector3d tangential_1 = normal.unitOrthogonal();
    const auto column = 3 * static_cast<Eigen::Index>(i);
    Eigen::Matrix3d frame;
    frame << tangential_1, normal.cross(tangential_1), normal;
    map.block<3, 3>(0, column) = frame;
    for (Eigen::Index k = 0; k < 3; ++k) map.block<3, 1>(3, column + k) = point.cross(frame.col(k));
    grasp.types.push_back(3);
    grasp.friction.push_back(0.5);
    for (const double bound : {-20.0, 20.0, -20.0, 20.0, 0.0, 20.0}) grasp.bounds.push_back(bound);
  }
  // The last columns of Q in map' = Q R are orthogonal to every row of the map.
  const Eigen::HouseholderQR<Eigen::Matrix<double, 12, 6>> qr(map.transpose());
  const Eigen::Matrix<double, 12, 12> q = qr.householderQ();
  for (Eigen::Index row = 0; row < 12; ++row)
    for (Eigen::Index column = 6; column < 12; ++column) grasp.base.push_back(q(row, column));
  return grasp;
}

// A new folder for a driver's files, gone with the object. Its name goes to the
// shell unquoted, so it stands in /tmp whatever TMPDIR says.
class WorkingFolder {
 public:
  WorkingFolder() {
    std::string name = "/tmp/process-bench.XXXXXX";
    if (mkdtemp(name.data()) == nullptr) std::abort();
    path_ = name;
  }
  ~WorkingFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  WorkingFolder(const WorkingFolder&) = delete;
  WorkingFolder& operator=(const WorkingFolder&) = delete;
  WorkingFolder(WorkingFolder&&) = delete;
  WorkingFolder& operator=(WorkingFolder&&) = delete;

  [[nodiscard]] sdpsol_wrapper solver() const {
    return {"'" SDPSOL_COMMAND "'", path_ / "definition", path_ / "result"};
  }

 private:
  std::filesystem::path path_;
};

// One question with its driver, whose definition every round runs again.
struct Case {
  const char* name;
  double goal;
  std::function<void(sdpsol_wrapper&, const Grasp&)> ask;
  bool failed = false;
  WorkingFolder folder = {};
  sdpsol_wrapper solver = folder.solver();
};

void solve(benchmark::State& state, Case& run) {
  bench::compare(
      state, bench::wall_seconds, [&] { run.failed = run.solver.run() != 0 || run.failed; },
      [&] { run.failed = std::system(EMPTY_PROCESS) != 0 || run.failed; });
  state.counters["goal"] = run.goal;
}

}  // namespace

int main(int argc, char** argv) {
  Case cases[] = {
      {"exists", 3,
       [](sdpsol_wrapper& solver, const Grasp& g) {
         solver.internalForceExists(g.base, g.types, g.friction, g.bounds);
       }},
      {"individual", 4.5,
       [](sdpsol_wrapper& solver, const Grasp& g) {
         solver.internalForceMaximizeIndividual(g.base, g.types, g.friction, g.bounds,
                                                {0, 1, 2, 3});
       }},
      {"friction", 4.5,
       [](sdpsol_wrapper& solver, const Grasp& g) {
         solver.internalForceMaximizeFrictionContacts(g.base, g.types, g.friction, g.bounds,
                                                      nullptr);
       }},
      {"all", 4.5,
       [](sdpsol_wrapper& solver, const Grasp& g) {
         solver.internalForceMaximizeAll(g.base, g.types, g.friction, g.bounds, nullptr);
       }},
      {"point", 4.5, [](sdpsol_wrapper& solver, const Grasp& g) {
         solver.internalForceMaximizePointContact(g.base, g.types, g.friction, g.bounds, 0);
       }}};
  for (Case& run : cases) {
    // Composes the definition; a time for a grasp without forces would mean nothing.
    run.ask(run.solver, four_contacts());
    run.failed = run.solver.lastResult.errorCode != 0 || !run.solver.lastResult.feasible;
    if (run.failed) continue;
    benchmark::RegisterBenchmark(run.name, [&run](benchmark::State& state) { solve(state, run); })
        ->UseManualTime()
        ->Iterations(500)
        ->Unit(benchmark::kMillisecond);
  }
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
  benchmark::RunSpecifiedBenchmarks();

  int failures = 0;
  for (const Case& run : cases) {
    if (!run.failed) continue;
    std::cerr << "process_bench: " << run.name << ": a run failed or found no internal force\n";
    ++failures;
  }
  return failures == 0 ? 0 : 1;
}
