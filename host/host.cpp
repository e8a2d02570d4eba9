#include "host/host.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "host/platform.h"

namespace zelhost {
namespace {

// A plug-in may report the same in a loop.
constexpr std::size_t kMaxReports = 100;

std::string quoted(const char* text) {
  return text == nullptr ? "null" : "\"" + std::string(text) + "\"";
}

std::string error_text(int code) {
  switch (code) {
    case 2:
      return "the parent is no unit";
    case 30:
      return "the unit could not be created";
    default:
      return "unknown error";
  }
}

}  // namespace

struct Host::Creation {
  explicit Creation(std::vector<std::string>& texts_of_fields) : dialog(texts_of_fields) {}
  // A plug-in that reads them later shall not find what it hopes for.
  ~Creation() {
    for (std::string& text : dialog) std::fill(text.begin(), text.end(), '?');
  }
  Creation(const Creation&) = delete;
  Creation& operator=(const Creation&) = delete;
  Creation(Creation&&) = delete;
  Creation& operator=(Creation&&) = delete;

  std::vector<std::string>& dialog;
  MethodTexts texts;
  std::optional<std::string> selected;
  Unit* root = nullptr;
};

Host::Host() {
  if (current_host() != nullptr) throw std::logic_error("a process has one host at a time");
  auto environment =
      std::make_unique<Unit>(nullptr, std::vector<PortType>(), std::vector<PortType>());
  environment_ = environment.get();
  units_.emplace(environment_->record(), std::move(environment));
  set_current_host(this);
}

Host::~Host() {
  set_current_host(nullptr);
}

Instance Host::create(const Icon& icon, std::vector<std::string> dialog) {
  const std::size_t reports_before = reports_.size();
  MethodTexts texts;
  Unit* root = nullptr;
  std::string why = "icon " + icon.name + ": ";
  try {
    root = create_root(icon, std::move(dialog), environment_->record(), &texts);
    why += "no instance was created";
  } catch (const std::exception& error) {
    why += std::string("create threw: ") + error.what();
  } catch (...) {
    why += "create threw";
  }
  if (root != nullptr && root->parent() != environment_) {
    misuse("create", "it returned a unit that is no child of the parent it was given");
    root = nullptr;
  }
  if (root == nullptr) {
    for (std::size_t i = reports_before; i < reports_.size(); ++i) why += "; " + reports_[i].text;
    throw CreationError(why);
  }
  return {*root, std::move(texts)};
}

Unit* Host::create_root(const Icon& icon, std::vector<std::string> dialog, def_unittype* parent,
                        MethodTexts* texts) {
  // Ends with the call, also when the plug-in throws.
  struct Scope {
    explicit Scope(Host& host) : host_(host) {}
    ~Scope() { host_.creation_.reset(); }
    Scope(const Scope&) = delete;
    Scope& operator=(const Scope&) = delete;
    Host& host_;
  };
  const Scope scope(*this);
  creation_ = std::make_unique<Creation>(dialogs_.emplace_back(std::move(dialog)));

  def_unittype* const root = icon.definition->create(0, 0, icon.definition, parent);
  report_strays();
  if (texts != nullptr) *texts = std::move(creation_->texts);
  if (root == nullptr) return nullptr;
  Unit* const unit = find(root);
  if (unit == nullptr) misuse("create", "it returned what is no unit of this host");
  return unit;
}

int Host::fire(Unit& unit) {
  if (!unit.is_method()) throw std::invalid_argument("the unit has no method");
  // What the method points to as its texts need not live beyond it.
  int status = 0;
  try {
    status = unit.record()->method(unit.record());
  } catch (...) {
    for (Port& output : unit.outputs()) output.restore_text();
    throw;
  }
  for (Port& output : unit.outputs()) output.keep_text();
  return status;
}

std::vector<Report> Host::take_reports() {
  report_strays();
  std::vector<Report> reports = std::exchange(reports_, {});
  const std::size_t more = std::exchange(more_reports_, 0);
  if (more > 0)
    reports.push_back({Report::Kind::kMisuse, 0,
                       "the interface, or reports an error, " + std::to_string(more) +
                           (more == 1 ? " time more" : " times more")});
  return reports;
}

void Host::refuse_without_memory(const char* operation) noexcept {
  try {
    misuse(operation, "there is no memory for it");
  } catch (const std::bad_alloc&) {
    ++more_reports_;
  }
}

bool Host::admits(const char* operation) {
  if (std::this_thread::get_id() == thread_) return true;
  // The reports are this host's thread's.
  const std::lock_guard lock(strays_mutex_);
  strays_.insert(operation);
  return false;
}

// Operations on units.

def_unittype* Host::make_unit(const UnitDescription& description) {
  Unit* const parent = expect_unit("primitive_unit", description.parent);
  if (parent == nullptr || !expect_creation("primitive_unit") || units_left_ == 0) return nullptr;
  auto unit = std::make_unique<Unit>(parent, description.inputs, description.outputs);
  def_unittype* const record = unit->record();
  const auto made = units_.emplace(record, std::move(unit)).first;
  try {
    parent->add_child(*made->second);
  } catch (...) {
    units_.erase(made);
    throw;
  }
  --units_left_;
  return record;
}

def_unittype* Host::refuse_unit(std::string_view why) {
  misuse("primitive_unit", why);
  return nullptr;
}

void Host::name_unit(const char* name, def_unittype* unit) {
  Unit* const named = expect_unit("zel_name_unit", unit);
  if (named == nullptr || !expect_creation("zel_name_unit")) return;
  if (name == nullptr || *name == '\0') return misuse("zel_name_unit", "the name is empty");
  // The unit under which instances are created has no siblings.
  if (named->parent() == nullptr) return misuse("zel_name_unit", "the unit is the host's own");
  for (const Unit* const sibling : named->parent()->children()) {
    if (sibling != named && sibling->name == name)
      return misuse("zel_name_unit", "a sibling is named " + quoted(name) + " already");
  }
  named->name = name;
}

void Host::export_methods(def_unittype* unit) {
  Unit* const exporting = expect_unit("zel_indicate_export_of_methods", unit);
  if (exporting == nullptr || !expect_creation("zel_indicate_export_of_methods")) return;
  exporting->exports = true;
}

void Host::set_root(def_unittype* root) {
  Unit* const unit = expect_unit("return_unit", root);
  if (unit == nullptr || !expect_creation("return_unit")) return;
  if (creation_->root != nullptr) return misuse("return_unit", "called a second time");
  if (!unit->children().empty()) return misuse("return_unit", "the root has children already");
  creation_->root = unit;
}

void Host::set_label(def_unittype* root, const char* text) {
  Unit* const unit = expect_unit("label", root);
  if (unit == nullptr || !expect_creation("label")) return;
  if (text == nullptr) return misuse("label", "the text is null");
  unit->label = text;
}

bool Host::is_unit(const def_unittype* unit) {
  const Unit* const found = find(unit);
  tell_observer("is_not_unit", found);
  return found != nullptr;
}

void Host::report_error(int code, const char* text) {
  tell_observer("error_msg", nullptr);
  report({Report::Kind::kError, code,
          (text == nullptr ? std::string() : std::string(text)) + ": error " +
              std::to_string(code) + ": " + error_text(code)});
}

// Operations while an instance is created.

void Host::describe_method(const char* method, const char* help) {
  tell_observer("kem_iconform_for_method", nullptr);
  if (!expect_creation("kem_iconform_for_method")) return;
  if (method == nullptr || help == nullptr)
    return misuse("kem_iconform_for_method", "a text is null");
  creation_->texts[method].help = help;
}

void Host::select_method(const char* method) {
  tell_observer("SET_INFO_FOR_METHOD", nullptr);
  if (!expect_creation("SET_INFO_FOR_METHOD")) return;
  if (method == nullptr) return misuse("SET_INFO_FOR_METHOD", "the name is null");
  creation_->selected = method;
}

void Host::describe_port(Direction direction, int port, const char* text) {
  const bool input = direction == Direction::kInput;
  const char* const operation = input ? "INFO_FOR_INP" : "INFO_FOR_OUT";
  tell_observer(operation, nullptr);
  if (!expect_creation(operation)) return;
  if (!creation_->selected) return misuse(operation, "no method is selected");
  if (text == nullptr || port < 0)
    return misuse(operation, "port " + std::to_string(port) + ", text " + quoted(text));
  MethodText& texts = creation_->texts[*creation_->selected];
  (input ? texts.inputs : texts.outputs)[port] = text;
}

char* Host::dialog_text(int field) {
  tell_observer("TVAL", nullptr);
  if (!expect_creation("TVAL")) return nullptr;
  auto& dialog = creation_->dialog;
  if (field < 0 || static_cast<std::size_t>(field) >= dialog.size()) {
    misuse("TVAL", "the dialog has no field " + std::to_string(field));
    return nullptr;
  }
  return dialog[static_cast<std::size_t>(field)].data();
}

// Operations on arrays.

int Host::array_length(const def_unittype* unit, int input, int reserved) {
  const Port* const port = expect_array("zel_dim_of_dyn_inp", unit, Direction::kInput, input);
  if (port == nullptr) return 0;
  if (reserved != 0) {
    misuse("zel_dim_of_dyn_inp", "the third argument is not 0");
    return 0;
  }
  return port->length();
}

bool Host::replace_array(const def_unittype* unit, int output, int reserved, int length,
                         void* array) {
  Port* const port = expect_array("zel_reassign", unit, Direction::kOutput, output);
  if (port == nullptr) return false;
  std::string why;
  if (reserved != 0) why = "the third argument is not 0";
  if (length < 0) why = "the length is " + std::to_string(length);
  if (array == nullptr && length > 0)
    why = "the array is null and the length " + std::to_string(length);
  if (array != nullptr && is_owned(array, *find(unit))) why = "the array is the host's already";
  if (!why.empty()) {
    misuse("zel_reassign",
           find(unit)->qualified_name() + ", output " + std::to_string(output) + ": " + why);
    return false;
  }
  if (array != nullptr) owned_arrays_.insert(array);
  owned_arrays_.erase(port->array());
  port->take(array, length);
  return true;
}

// Checks.

Unit* Host::find(const def_unittype* unit) const {
  const auto found = units_.find(unit);
  return found == units_.end() ? nullptr : found->second.get();
}

Unit* Host::expect_unit(const char* operation, const def_unittype* unit) {
  Unit* const found = find(unit);
  tell_observer(operation, found);
  if (found == nullptr)
    misuse(operation, unit == nullptr ? "the unit is null" : "the unit is none of this host's");
  return found;
}

Port* Host::expect_array(const char* operation, const def_unittype* unit, Direction direction,
                         int port) {
  Unit* const found = expect_unit(operation, unit);
  if (found == nullptr) return nullptr;
  const bool input = direction == Direction::kInput;
  auto& ports = input ? found->inputs() : found->outputs();
  const std::string which =
      found->qualified_name() + (input ? ", input " : ", output ") + std::to_string(port);
  if (port < 0 || static_cast<std::size_t>(port) >= ports.size()) {
    misuse(operation, which + ": there is no such port");
    return nullptr;
  }
  Port& wanted = ports[static_cast<std::size_t>(port)];
  const PortKind kind = wanted.type().kind;
  if (kind != PortKind::kFloatArray && kind != PortKind::kIntegerArray) {
    misuse(operation, which + ": the port is no array but " + to_string(wanted.type()));
    return nullptr;
  }
  return &wanted;
}

bool Host::is_owned(const void* array, const Unit& unit) const {
  // A method sees no other inputs than those of its unit.
  const auto& inputs = unit.inputs();
  return owned_arrays_.count(array) != 0 ||
         std::any_of(inputs.begin(), inputs.end(),
                     [array](const Port& input) { return input.array() == array; });
}

bool Host::expect_creation(const char* operation) {
  if (!creation_) misuse(operation, "called while no instance is created");
  return creation_ != nullptr;
}

void Host::tell_observer(const char* operation, const Unit* unit) {
  if (observer_) observer_(operation, unit);
}

void Host::report_strays() {
  const std::lock_guard lock(strays_mutex_);
  for (const std::string& operation : std::exchange(strays_, {}))
    misuse(operation.c_str(), "called from another thread than the host's");
}

void Host::misuse(const char* operation, std::string_view what) {
  report({Report::Kind::kMisuse, 0, std::string(operation) + ": " + std::string(what)});
}

void Host::report(Report report) {
  if (reports_.size() < kMaxReports)
    reports_.push_back(std::move(report));
  else
    ++more_reports_;
}

}  // namespace zelhost
