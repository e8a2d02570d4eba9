#include "grasp/batch/test_batch.h"

#include <unistd.h>

#include <csignal>
#include <nlohmann/json.hpp>
#include <stdexcept>

namespace grasp {

std::string obedient_answer(std::uint64_t number, const std::string& text) {
  return nlohmann::ordered_json{{"line", number}, {"text", text}, {"verdict", "FEASIBLE"}}.dump();
}

MakeAnswerLine obedient_lines() {
  return [](const PrintedText&) -> AnswerLine {
    return [](std::uint64_t number, const std::string& text) -> LineAnswer {
      if (text == "bad") return error_line(number, "", "this is bad");
      if (text == "throw") throw std::runtime_error("thrown");
      if (text == "die") std::raise(SIGKILL);
      // The first worker that has it makes the mark.
      if (text == "die once" && access("../died", F_OK) != 0) {
        test_support::write_file("../died", "");
        std::raise(SIGKILL);
      }
      if (text == "slow") usleep(50'000);
      if (text == "infeasible")
        return {"INFEASIBLE",
                "{\"line\":" + std::to_string(number) + ",\"verdict\":\"INFEASIBLE\"}"};
      return {"FEASIBLE", obedient_answer(number, text)};
    };
  };
}

}  // namespace grasp
