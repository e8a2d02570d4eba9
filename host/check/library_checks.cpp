#include "host/check/library_checks.h"

#include <dlfcn.h>

#include <set>
#include <string>

namespace zelcheck {
namespace {

// Without the file's name before it, which the reader knows.
std::string reason(std::string what, const std::filesystem::path& file) {
  const std::string prefix = file.string() + ": ";
  if (what.rfind(prefix, 0) == 0) what.erase(0, prefix.size());
  return what;
}

}  // namespace

void check_loads(const std::filesystem::path& file, const Notes& notes) {
  if (dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL) != nullptr) return;
  const char* const why = dlerror();
  notes.complain(why == nullptr ? "it cannot be loaded" : reason(why, file));
}

void check_records(const std::filesystem::path& file, const Notes& notes) {
  try {
    const zelhost::Plugin plugin = zelhost::load_plugin(file);
    for (const zelhost::Icon& icon : plugin.icons) notes.fact(icon.name);
  } catch (const zelhost::PluginError& error) {
    notes.complain(reason(error.what(), file));
  }
}

void check_dialog(const zelhost::Icon& icon, const Notes& notes) {
  std::set<std::string> labels;
  int number = 0;
  for (const zelhost::DialogField& field : icon.fields) {
    if (field.label.empty())
      notes.complain("field " + std::to_string(number) + " has no label");
    else if (!labels.insert(field.label).second)
      notes.complain("two fields are labelled \"" + field.label + "\"");
    ++number;
  }
}

}  // namespace zelcheck
