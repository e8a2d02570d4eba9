#include "host/plugin.h"

#include <dlfcn.h>
#include <link.h>

#include <algorithm>
#include <system_error>

#include "host/text.h"

namespace zelhost {
namespace {

// How many bytes a record has: the library's table of symbols says it.
std::size_t size_of(const void* record) {
  Dl_info library{};
  void* symbol = nullptr;
  if (dladdr1(record, &library, &symbol, RTLD_DL_SYMENT) == 0 || symbol == nullptr) return 0;
  return static_cast<const ElfW(Sym)*>(symbol)->st_size;
}

// Reads the records of one library.
class Records {
 public:
  Records(std::filesystem::path file, void* library) : file_(std::move(file)), library_(library) {}

  Plugin read() {
    const std::string name = file_.stem().string();
    const auto& version = record<zel_version>("Kem_V_of_" + name);
    const auto& folder = record<zel_folder>("gsFolder_" + name);
    const auto* const icons = &record<zel_icon_entry>("gasIconsOfFolder_" + name);
    if (folder.icons != icons)
      fail("gsFolder_" + name + " does not lead to gasIconsOfFolder_" + name);

    Plugin plugin;
    plugin.file = file_;
    plugin.version = text(version.plugin, "Kem_V_of_" + name);
    text(version.host, "Kem_V_of_" + name);
    plugin.folder = text(folder.name, "gsFolder_" + name);
    const zel_icon_entry* const last = icons + size_of(icons) / sizeof *icons;
    for (const zel_icon_entry* entry = icons; entry == last || !is_end(*entry, name); ++entry) {
      if (entry == last) fail("gasIconsOfFolder_" + name + " has no end (an entry of empty texts)");
      plugin.icons.push_back(icon(*entry, plugin.folder, name));
    }
    if (plugin.icons.empty()) fail("gasIconsOfFolder_" + name + " has no icon");
    return plugin;
  }

 private:
  [[noreturn]] void fail(const std::string& what) const {
    throw PluginError(file_.string() + ": " + what);
  }

  template <class Record>
  const Record& record(const std::string& name) const {
    const void* const found = dlsym(library_, name.c_str());
    if (found == nullptr) {
      fail("there is no record " + name +
           " (a plug-in's records end in the name of its file, and are exported)");
    }
    if (size_of(found) < sizeof(Record)) {
      fail("the record " + name + " has " + std::to_string(size_of(found)) + " bytes instead of " +
           std::to_string(sizeof(Record)));
    }
    return *static_cast<const Record*>(found);
  }

  std::string text(const char* text, const std::string& record) const {
    if (text == nullptr) fail(record + " has a null where a text belongs");
    return text;
  }

  bool is_end(const zel_icon_entry& entry, const std::string& name) const {
    const bool named = !text(entry.icon, "gasIconsOfFolder_" + name).empty();
    if (named && entry.definition == nullptr)
      fail("gasIconsOfFolder_" + name + " has an icon without a definition");
    return !named;
  }

  Icon icon(const zel_icon_entry& entry, const std::string& folder, const std::string& name) const {
    Icon icon;
    icon.name = entry.icon;
    const std::string record_name = "ICONDEF_" + icon.name;
    if (text(entry.folder, "gasIconsOfFolder_" + name) != folder)
      fail("gasIconsOfFolder_" + name + " has an icon of another folder");
    if (&record<ZelIconDef_>(record_name) != entry.definition)
      fail("gasIconsOfFolder_" + name + " does not lead to " + record_name);
    icon.definition = entry.definition;
    if (icon.definition->create == nullptr || icon.definition->second == nullptr)
      fail(record_name + " has a null where a function belongs");
    if (text(icon.definition->name, record_name) != icon.name)
      fail(record_name + " has another name than its entry");
    text(icon.definition->text, record_name);
    text(icon.definition->buttons, record_name);
    try {
      icon.fields = read_dialog(text(icon.definition->dialog, record_name));
    } catch (const DialogError& error) {
      fail(record_name + ": " + error.what());
    }
    return icon;
  }

  std::filesystem::path file_;
  void* library_;
};

// As much of a name as an error shows, so that the reason behind it is seen.
std::string cut(const std::filesystem::path& file) {
  constexpr std::size_t kLongest = 1'000;
  return on_one_line(file.string(), kLongest);
}

}  // namespace

std::vector<std::string> Icon::presets() const {
  std::vector<std::string> texts;
  for (const DialogField& field : fields) texts.push_back(field.preset);
  return texts;
}

const Icon* Plugin::find(std::string_view icon) const {
  const auto found = std::find_if(icons.begin(), icons.end(),
                                  [icon](const Icon& each) { return each.name == icon; });
  return found == icons.end() ? nullptr : &*found;
}

Plugin load_plugin(const std::filesystem::path& file) {
  // A name without "/" would be looked for in the system's folders.
  const auto path = std::filesystem::absolute(file);
  void* const library = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (library == nullptr) {
    const char* const why = dlerror();
    throw PluginError(why == nullptr ? path.string() + ": cannot be loaded" : why);
  }
  return Records(path, library).read();
}

std::filesystem::path find_plugin(const std::string& name, const std::filesystem::path& base,
                                  const std::vector<std::filesystem::path>& folders) {
  std::filesystem::path file = name;
  if (file.extension() != ".so") file += ".so";
  std::error_code error;
  if (name.find('/') != std::string::npos) {
    file = base / file;
    if (std::filesystem::exists(file, error)) return file;
    throw MissingPlugin(cut(file) + ": " + (error ? error.message() : "no such file"));
  }
  std::string places;
  for (const auto& folder : folders) {
    if (std::filesystem::exists(folder / file, error)) return folder / file;
    places += (places.empty() ? "" : ", ") + folder.string();
    if (error) places += " (" + error.message() + ")";
  }
  throw MissingPlugin("no plug-in " + cut(file) + " in " + places);
}

std::vector<std::filesystem::path> folders_beside_program() {
  std::error_code unknown;
  const auto program = std::filesystem::read_symlink("/proc/self/exe", unknown);
  if (unknown) return {};
  const auto libraries = program.parent_path().parent_path() / "lib";
  return {libraries, libraries / "zel"};
}

}  // namespace zelhost
