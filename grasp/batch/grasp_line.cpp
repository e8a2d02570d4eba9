#include "grasp/batch/grasp_line.h"

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <system_error>
#include <utility>

#include "grasp/asker.h"
#include "grasp/grasp_file.h"
#include "grasp/inquiry.h"
#include "grasp/process/worker.h"
#include "grasp/report_json.h"
#include "host/json_reader.h"

namespace grasp {
namespace {

using zelhost::Json;

std::string name_in(const Json& document) {
  if (!document.is_object()) return "";
  const auto name = document.find("name");
  return name != document.end() && name->is_string() ? name->get<std::string>() : "";
}

// An error of the solver where its files find no room is none of the line: all lines
// behind it would have it too.
void expect_room_for_files() {
  constexpr const char* kProbe = "probe";
  std::ofstream probe(kProbe, std::ios::binary);
  errno = 0;
  probe << std::string(std::size_t{1} << 16, ' ') << std::flush;
  const int why = errno;
  const bool is_written = probe.good();
  probe.close();
  std::remove(kProbe);
  if (!is_written)
    throw WorkerUnfit("the scratch folder " + std::filesystem::current_path().string() +
                      " cannot be written: " + std::generic_category().message(why));
}

// In a worker, with the one instance of the unit that it has.
class GraspLines {
 public:
  GraspLines(const Road& road, LineQuestion question, const PrintedText& printed)
      : asker_(road), question_(std::move(question)), printed_(printed) {}

  LineAnswer answer(std::uint64_t number, const std::string& text) {
    std::string name;
    try {
      const Json document = zelhost::parse_json(text, "line", number);
      name = name_in(document);
      const Grasp grasp = read_grasp({document, "line " + std::to_string(number), ""});
      const Inquiry inquiry = make_inquiry(grasp, question_.question, question_.contacts);
      const Answer answer = asker_.ask(grasp, inquiry);
      Json line = {{"line", number}};
      line.update(to_json(grasp, answer, question_.times));
      return {std::string(to_string(answer.verdict)),
              line.dump(-1, ' ', false, Json::error_handler_t::replace)};
    } catch (const AskError& error) {
      expect_room_for_files();
      return error_line(number, name, with_printed(error.what(), printed_.text()));
    } catch (const std::exception& error) {
      return error_line(number, name, error.what());
    }
  }

 private:
  Asker asker_;
  LineQuestion question_;
  const PrintedText& printed_;
};

}  // namespace

MakeAnswerLine answer_grasps(Road road, LineQuestion question) {
  return [road = std::move(road), question = std::move(question)](const PrintedText& printed) {
    // Shared, since a function object has to be copyable.
    const auto lines = std::make_shared<GraspLines>(road, question, printed);
    return [lines](std::uint64_t number, const std::string& text) {
      return lines->answer(number, text);
    };
  };
}

}  // namespace grasp
