#include "grasp/command/options.h"

#include <algorithm>
#include <map>
#include <thread>

#include "grasp/batch/random_grasps.h"
#include "host/command_line.h"
#include "version.h"

namespace grasp::command {
namespace {

constexpr unsigned kMaxWorkers = 1000;

const std::map<std::string, Question>& questions() {
  static const std::map<std::string, Question> all = [] {
    std::map<std::string, Question> by_name;
    for (const Question question : {Question::kExists, Question::kIndividual, Question::kPoint,
                                    Question::kFriction, Question::kAll})
      by_name.emplace(to_string(question), question);
    return by_name;
  }();
  return all;
}

unsigned cores() {
  return std::clamp(std::thread::hardware_concurrency(), 1U, kMaxWorkers);
}

// What the user wrote, before it is known which of the three it is about.
struct Written {
  std::string question = "exists";
  SingleOptions single;
  BatchOptions batch;
  RandomOptions random;
  Options common;
};

void add_question(CLI::App& app, Written& written) {
  app.add_option("--ask", written.question,
                 "What to ask: exists (is there an internal force?), individual (the largest mean "
                 "force on the contacts given by -c), point (the largest margin of the contact "
                 "given by -c), friction, all (the largest margins of the contacts with friction, "
                 "or of all)")
      ->type_name("QUESTION")
      ->capture_default_str()
      ->check([](const std::string& text) {
        return questions().count(text) == 1
                   ? std::string()
                   : "takes exists, individual, point, friction or all, not " + text;
      });
  app.add_option("-c,--contact", written.common.asked.contacts,
                 "A contact that the question is about: its name or its number, from 0; may be "
                 "given several times")
      ->type_name("CONTACT")
      ->allow_extra_args(false);
}

void add_one(CLI::App& app, Written& written) {
  app.add_option("GRASP", written.single.grasp, "Grasp as JSON; - is standard input")
      ->type_name("");
  app.add_flag("--json", written.single.json, "Print the answer as JSON")->disable_flag_override();
  app.add_option("--svg", written.single.svg, "Draw three views of the grasp to FILE")
      ->type_name("FILE");
  app.add_option("--html", written.single.html,
                 "Write a page to FILE that shows the grasp in 3D in any browser")
      ->type_name("FILE");
}

void add_batch(CLI::App& app, Written& written) {
  app.add_option("--batch", written.batch.input,
                 "Answer all grasps of LINES, one a line; - is standard input. Results come in "
                 "the order of the lines, one a line")
      ->type_name("LINES");
  app.add_option("-j,--jobs", written.batch.workers,
                 "How many grasps at a time; default: one a core")
      ->type_name("N")
      ->check(CLI::Range(1U, kMaxWorkers));
  app.add_option("-o,--output", written.batch.output,
                 "Write the results of a batch to FILE, which must not exist")
      ->type_name("FILE");
  app.add_flag("--resume", written.batch.resume,
               "Go on with the file of -o where an earlier run ended, however it did")
      ->disable_flag_override();
  app.add_option("--first-line", written.batch.first_line,
                 "The number of the first line, where LINES is a piece of something larger")
      ->type_name("N")
      ->check(CLI::Range(std::uint64_t{1}, std::uint64_t{1} << 53));
  app.add_flag("-q,--quiet", written.batch.quiet, "No progress and no summary of a batch")
      ->disable_flag_override();
}

void add_random(CLI::App& app, Written& written) {
  constexpr std::uint64_t kMax = std::uint64_t{1} << 53;
  app.add_option("--random", written.random.count, "Print N random grasps, one a line")
      ->type_name("N")
      ->check(CLI::Range(std::uint64_t{1}, kMax));
  app.add_option("--seed", written.random.seed, "Which random grasps")
      ->type_name("S")
      ->check(CLI::Range(std::uint64_t{0}, kMax))
      ->capture_default_str();
  app.add_option("--contacts", written.random.contacts,
                 "How many contacts a random grasp has, 2 to 12; default: a mixture")
      ->type_name("N")
      ->check(CLI::Range(RandomGrasps::kFewestContacts, RandomGrasps::kMaxContacts));
}

void add_common(CLI::App& app, Written& written) {
  app.add_flag(
         "--times", written.common.asked.times,
         "Put times into the results of --json and --batch, which then differ from run to run")
      ->disable_flag_override();
  app.add_option("--plugin", written.common.plugin,
                 "The unit's library: a path, or a name to look for beside this program")
      ->type_name("FILE")
      ->capture_default_str();
  app.add_option("--solver", written.common.solver,
                 "The command that the unit starts, as the shell takes it; default: the sdpsol "
                 "beside this program, or the one on the PATH")
      ->type_name("COMMAND");
}

// An option belongs to one of the three ways to use the program.
void expect_belongs(const CLI::App& app, const std::string& way,
                    std::initializer_list<const char*> options) {
  for (const char* const option : options)
    if (app.count(option) > 0)
      throw CLI::ValidationError(std::string(option) + " goes with " + way + " only");
}

Options sorted_out(const CLI::App& app, Written& written) {
  const bool is_batch = app.count("--batch") > 0;
  const bool is_random = app.count("--random") > 0;
  const int ways = (app.count("GRASP") > 0 ? 1 : 0) + (is_batch ? 1 : 0) + (is_random ? 1 : 0);
  if (ways != 1)
    throw CLI::ValidationError("takes either a grasp, or --batch with lines, or --random");
  if (is_batch || is_random) expect_belongs(app, "a single grasp", {"--json", "--svg", "--html"});
  if (!is_batch)
    expect_belongs(app, "--batch", {"--jobs", "--output", "--resume", "--first-line", "--quiet"});
  if (!is_random) expect_belongs(app, "--random", {"--seed", "--contacts"});
  if (is_random)
    expect_belongs(app, "a grasp or --batch",
                   {"--ask", "--contact", "--times", "--plugin", "--solver"});
  if (written.batch.resume && !written.batch.output)
    throw CLI::ValidationError("--resume goes on with the file of -o, which is missing");
  written.batch.times = written.common.asked.times;
  written.common.asked.question = questions().at(written.question);
  if (is_batch)
    written.common.what = written.batch;
  else if (is_random)
    written.common.what = written.random;
  else
    written.common.what = written.single;
  return written.common;
}

}  // namespace

zelhost::ParsedCommandLine<Options> parse_command_line(int argc, const char* const* argv) {
  CLI::App app{
      "Says whether a grasp can squeeze its object: whether contact forces exist that balance\n"
      "and stay inside every friction cone and bound, how large they and their margins can be.",
      "grasp"};
  app.set_version_flag("--version", std::string("grasp ") + project::kVersion);
  app.footer(
      "Exit status: 0 answered, also where there is no force; 1 a grasp or a question has an\n"
      "error, or the solver gave no answer (with --batch: on some line); 2 wrong usage; 3 a\n"
      "file could not be read or written; 4 out of memory or an internal error.");
  Written written;
  written.batch.workers = cores();
  add_one(app, written);
  add_question(app, written);
  add_batch(app, written);
  add_random(app, written);
  add_common(app, written);

  return zelhost::parse_with<Options>(app, argc, argv, [&] { return sorted_out(app, written); });
}

}  // namespace grasp::command
