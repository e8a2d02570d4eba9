#include "host/command/list.h"

#include <algorithm>
#include <iomanip>
#include <ostream>
#include <string>

#include "host/command/reports.h"
#include "host/host.h"
#include "host/standard_output.h"
#include "host/text.h"

namespace zelrun {
namespace {

using zelhost::Instance;
using zelhost::Method;
using zelhost::on_one_line;
using zelhost::Port;
using zelhost::print;
using zelhost::Unit;

void print_dialog(const zelhost::Icon& icon, std::ostream& out) {
  std::size_t width = 0;
  for (const auto& field : icon.fields) width = std::max(width, on_one_line(field.label).size());
  for (const auto& field : icon.fields) {
    out << "  " << std::left << std::setw(static_cast<int>(width)) << on_one_line(field.label)
        << "  \"" << on_one_line(field.preset) << "\"\n";
  }
}

void print_ports(const char* direction, const std::deque<Port>& ports,
                 const std::map<int, std::string>& texts, const std::string& indent,
                 std::ostream& out) {
  for (std::size_t i = 0; i < ports.size(); ++i) {
    const auto text = texts.find(static_cast<int>(i));
    out << indent << direction << " " << i << "  " << std::left << std::setw(13)
        << to_string(ports[i].type()) << "  "
        << (text == texts.end() ? "" : on_one_line(text->second)) << "\n";
  }
}

void print_help(const std::string& help, const std::string& indent, std::ostream& out) {
  const std::string lines = zelhost::readable(help);
  std::size_t begin = 0;
  while (begin < lines.size()) {
    const std::size_t end = std::min(lines.find('\n', begin), lines.size());
    out << indent << on_one_line(lines.substr(begin, end - begin)) << "\n";
    begin = end + 1;
  }
}

void print_tree(const Instance& instance, const Unit& parent, const std::string& indent,
                std::ostream& out) {
  for (const Unit* const unit : parent.children()) {
    out << indent << on_one_line(unit->name) << "\n";
    if (const Method* const method = instance.find(unit->qualified_name())) {
      print_help(method->text.help, indent + "  ", out);
      print_ports("in ", unit->inputs(), method->text.inputs, indent + "  ", out);
      print_ports("out", unit->outputs(), method->text.outputs, indent + "  ", out);
    }
    print_tree(instance, *unit, indent + "  ", out);
  }
}

Instance create(zelhost::Host& host, const zelhost::Plugin& plugin, const zelhost::Icon& icon,
                std::ostream& err) {
  const ReportsSaid reports(host, err);
  try {
    return host.create(icon, icon.presets());
  } catch (const zelhost::CreationError& error) {
    throw zelhost::CreationError(plugin.file.string() + ": " + error.what());
  }
}

}  // namespace

void list_plugin(const zelhost::Plugin& plugin, std::ostream& out, std::ostream& err) {
  zelhost::Host host;
  print(out, [&plugin](std::ostream& text) {
    text << "folder " << on_one_line(plugin.folder) << ", for interface "
         << on_one_line(plugin.version) << "\n";
  });
  for (const auto& icon : plugin.icons) {
    const Instance instance = create(host, plugin, icon, err);
    print(out, [&](std::ostream& text) {
      text << "\nicon " << on_one_line(icon.name) << ", dialog\n";
      print_dialog(icon, text);
      text << "\nicon " << on_one_line(icon.name) << ", methods\n";
      print_tree(instance, instance.root(), "  ", text);
    });
  }
}

}  // namespace zelrun
