#include "grasp/command/single.h"

#include <cerrno>
#include <iostream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <system_error>

#include "grasp/command/whole_file.h"
#include "grasp/grasp_file.h"
#include "grasp/inquiry.h"
#include "grasp/page_html.h"
#include "grasp/picture_svg.h"
#include "grasp/report_json.h"
#include "grasp/report_table.h"
#include "host/program.h"
#include "host/progress.h"
#include "host/standard_output.h"

namespace grasp::command {
namespace {

namespace fs = std::filesystem;
using zelhost::Json;

// Whether two paths lead to one file. Files that are still to be made are compared by name.
bool same_file(const fs::path& a, const fs::path& b) {
  std::error_code none;
  return fs::equivalent(a, b, none) || fs::weakly_canonical(a) == fs::weakly_canonical(b);
}

/// The files of a run, none of which may take the place of another.
struct Files {
  std::optional<fs::path> grasp;  ///< none: standard input
  std::optional<fs::path> svg;
  std::optional<fs::path> html;
};

// Standard output is for the answer, and what stands behind these names is not what it was
// when the command was started.
void expect_file(const std::optional<fs::path>& output, const std::string& option) {
  if (!output) return;
  const std::string name = output->lexically_normal().string();
  for (const char* const stream : {"/dev/std", "/dev/fd/", "/proc/"})
    if (name.rfind(stream, 0) == 0)
      throw zelhost::UsageError(output->string() + ": " + option + " takes the name of a file");
}

void expect_apart(const std::optional<fs::path>& output, const std::string& option,
                  const std::optional<fs::path>& other, const std::string& what,
                  const fs::path& name) {
  if (output && other && same_file(*output, *other))
    throw zelhost::UsageError(name.string() + ": " + option + " would be written over " + what);
}

Files files_of(const SingleOptions& single, const fs::path& home) {
  const auto at_home = [&home](const std::optional<fs::path>& path) {
    return path ? std::optional(home / *path) : std::nullopt;
  };
  Files files = {std::nullopt, at_home(single.svg), at_home(single.html)};
  if (single.grasp != "-") files.grasp = home / single.grasp;
  expect_file(files.svg, "--svg");
  expect_file(files.html, "--html");
  expect_apart(files.svg, "--svg", files.grasp, "the grasp", single.svg.value_or(""));
  expect_apart(files.html, "--html", files.grasp, "the grasp", single.html.value_or(""));
  expect_apart(files.html, "--html", files.svg, "--svg", single.html.value_or(""));
  return files;
}

// Errors call the file as the user did.
Json read_document(const SingleOptions& single, const Files& files) {
  if (files.grasp) return zelhost::read_json(*files.grasp, single.grasp);
  const std::string text{std::istreambuf_iterator<char>(std::cin), {}};
  return zelhost::parse_json(text, "standard input");
}

void write_pictures(const SingleOptions& single, const Files& files, const Grasp& grasp,
                    const Answer& answer) {
  if (files.svg) write_whole(*files.svg, single.svg->string(), draw_svg(grasp, answer));
  if (files.html) write_whole(*files.html, single.html->string(), draw_html(grasp, answer));
}

Answer ask(const Road& road, const Grasp& grasp, const Inquiry& inquiry) {
  const std::size_t count = grasp.contacts.size();
  const zelhost::Progress progress("\"" + std::string(to_string(inquiry.question)) + "\" of " +
                                   std::to_string(count) + (count == 1 ? " contact" : " contacts"));
  return Asker(road).ask(grasp, inquiry);
}

}  // namespace

int answer_single(const SingleOptions& single, const Options& options, const Road& road,
                  const fs::path& home) {
  const Files files = files_of(single, home);
  const Json document = read_document(single, files);
  const std::string name = files.grasp ? single.grasp : "standard input";
  const Grasp grasp = read_grasp(zelhost::JsonNode(document, name, ""));
  const Inquiry inquiry = make_inquiry(grasp, options.asked.question, options.asked.contacts);
  // What the unit prints is no part of the answer.
  const zelhost::ReservedOutput output;
  const Answer answer = ask(road, grasp, inquiry);
  write_pictures(single, files, grasp, answer);
  output.write(single.json ? to_text(to_json(grasp, answer, options.asked.times))
                           : to_table(grasp, answer));
  return zelhost::kExitDone;
}

}  // namespace grasp::command
