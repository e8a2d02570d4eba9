#include "host/command/run.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <nlohmann/json.hpp>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>

#include "host/command/interrupts.h"
#include "host/command/reports.h"
#include "host/host.h"
#include "host/literal.h"
#include "host/network.h"
#include "host/progress.h"
#include "host/standard_output.h"
#include "host/text.h"

namespace zelrun {
namespace {

using zelhost::Json;
using zelhost::on_one_line;
using zelhost::print;
using zelhost::Step;

// A table shows the first of many elements, JSON shows all.
constexpr std::size_t kShownElements = 12;
// A longer name is cut: it widens the column of all.
constexpr std::size_t kLongestLabel = 200;
constexpr std::string_view kIndent = "  ";

std::string heading(const Step& step) {
  return on_one_line(step.instance + "  " + step.method.name, kLongestLabel);
}

std::string port_text(const Step& step, std::size_t output) {
  const auto text = step.method.text.outputs.find(static_cast<int>(output));
  return text == step.method.text.outputs.end() ? "output " + std::to_string(output) : text->second;
}

std::string label_of(const Step& step, std::size_t output) {
  return std::string(kIndent) + on_one_line(port_text(step, output), kLongestLabel);
}

// In milliseconds, with one decimal.
std::string in_milliseconds(double seconds) {
  std::array<char, 32> digits;
  char* const end =
      std::to_chars(digits.data(), digits.data() + 32, seconds * 1e3, std::chars_format::fixed, 1)
          .ptr;
  return {digits.data(), end};
}

std::string in_column(const std::string& text, std::size_t width) {
  return text + std::string(text.size() < width ? width - text.size() : 0, ' ') + "  ";
}

std::size_t widest_label(const std::vector<Step>& steps) {
  std::size_t width = 0;
  for (const Step& step : steps) {
    width = std::max(width, heading(step).size());
    for (std::size_t i = 0; i < step.method.unit->outputs().size(); ++i)
      width = std::max(width, label_of(step, i).size());
  }
  return width;
}

std::string shown(const Json& value) {
  if (value.is_string()) return on_one_line(value.get_ref<const std::string&>());
  if (value.is_number_float()) {
    std::array<char, 32> digits;
    return {digits.data(),
            std::to_chars(digits.data(), digits.data() + 32, value.get<double>()).ptr};
  }
  if (!value.is_array()) return value.dump();
  std::string text = "[" + std::to_string(value.size()) + "]";
  for (std::size_t i = 0; i < value.size() && i < kShownElements; ++i)
    text += " " + shown(value[i]);
  return value.size() > kShownElements ? text + " ..." : text;
}

// Prints each firing as it ends.
class Table {
 public:
  explicit Table(std::ostream& out) : out_(out) {}

  void begin(const std::string& title, const std::vector<Step>& steps) {
    if (!title.empty())
      print(out_, [&title](std::ostream& out) { out << on_one_line(title) << "\n"; });
    label_width_ = widest_label(steps);
  }

  void firing(const Step& step, double seconds) {
    print(out_, [&](std::ostream& out) {
      out << "\n" << in_column(heading(step), label_width_) << in_milliseconds(seconds) << " ms\n";
      const auto& outputs = step.method.unit->outputs();
      for (std::size_t i = 0; i < outputs.size(); ++i) {
        out << in_column(label_of(step, i), label_width_)
            << shown(to_json(outputs[i].value(), outputs[i].type())) << "\n";
      }
    });
  }

  void error(const std::string&) {}
  void end() {}

 private:
  std::ostream& out_;
  std::size_t label_width_ = 0;
};

// Collects everything for one document.
class Document {
 public:
  void begin(const std::string& title, const std::vector<Step>&) {
    if (!title.empty()) document_["title"] = title;
    document_["firings"] = Json::array();
  }

  void firing(const Step& step, double seconds) {
    Json outputs = Json::array();
    const auto& ports = step.method.unit->outputs();
    for (std::size_t i = 0; i < ports.size(); ++i) {
      outputs.push_back({{"port", i},
                         {"text", port_text(step, i)},
                         {"value", to_json(ports[i].value(), ports[i].type())}});
    }
    document_["firings"].push_back({{"instance", step.instance},
                                    {"method", step.method.name},
                                    {"seconds", seconds},
                                    {"outputs", outputs}});
  }

  void error(const std::string& what) { document_["error"] = what; }
  void end() {
    output_.write(document_.dump(2, ' ', false, Json::error_handler_t::replace) + "\n");
  }

 private:
  zelhost::ReservedOutput output_;
  Json document_;
};

zelhost::Network load(zelhost::Host& host, const zelhost::NetworkFile& file,
                      const Folders& plugin_folders, std::ostream& err) {
  const ReportsSaid reports(host, err);
  return {host, file, plugin_folders};
}

// Fires a step, with a line on the terminal that says so. @return why it failed;
// nothing if it did its work.
std::optional<std::string> fire(zelhost::Network& network, std::size_t index) {
  const auto& steps = network.steps();
  const Step& step = steps[index];
  try {
    const zelhost::Progress progress("[" + std::to_string(index + 1) + "/" +
                                     std::to_string(steps.size()) + "] " + heading(step));
    network.fire(step);
    return {};
  } catch (const zelhost::MethodError& error) {
    return error.what();
  }
}

// @throws Interrupted, with the document or the table ended.
template <class Printer>
zelhost::ExitStatus run_with(Printer& printer, const RunOptions& options,
                             const Folders& plugin_folders, std::ostream& err) {
  const zelhost::NetworkFile file = zelhost::read_network(options.network);
  const InterruptWatch interrupts;
  zelhost::Host host;
  zelhost::Network network = load(host, file, plugin_folders, err);

  printer.begin(file.title, network.steps());
  std::optional<std::string> error;
  int signal = interrupts.noticed();
  for (std::size_t i = 0; i < network.steps().size() && !error && signal == 0; ++i) {
    const auto start = std::chrono::steady_clock::now();
    error = fire(network, i);
    const std::chrono::duration<double> time = std::chrono::steady_clock::now() - start;
    signal = interrupts.noticed();
    if (signal != 0) error = heading(network.steps()[i]) + ": interrupted";
    if (error) {
      error = options.network.string() + ": /order/" + std::to_string(i) + ": " + *error;
      err << "zelrun: error: " << on_one_line(*error) << "\n";
      printer.error(*error);
    }
    say_reports(host, err);
    if (!error) printer.firing(network.steps()[i], time.count());
  }
  printer.end();
  if (signal != 0) throw Interrupted{signal};
  return error ? zelhost::kExitFailed : zelhost::kExitDone;
}

}  // namespace

zelhost::ExitStatus run_network(const RunOptions& options, const Folders& plugin_folders,
                                std::ostream& out, std::ostream& err) {
  if (options.json) {
    Document document;
    return run_with(document, options, plugin_folders, err);
  }
  Table table(out);
  return run_with(table, options, plugin_folders, err);
}

}  // namespace zelrun
