// The environment in which instances live: it makes and owns the units that
// plug-ins ask for, and checks what they ask.
#pragma once

#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <string_view>
#include <thread>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "host/error.h"
#include "host/instance.h"
#include "host/plugin.h"
#include "host/unit.h"
#include "zel/zel.h"

namespace zelhost {

/// The plug-in gave no instance; what() says what it reported.
class CreationError : public HostError {
 public:
  using HostError::HostError;
};

/// Something a plug-in said, or did against the interface.
struct Report {
  enum class Kind {
    kError,   ///< the plug-in called error_msg
    kMisuse,  ///< the plug-in called an operation with what it does not take
  };
  Kind kind = Kind::kError;
  /// Of an error: as error_msg was given it.
  int code = 0;
  /// The operation, and what was wrong.
  std::string text;

  friend bool operator==(const Report&, const Report&) = default;
};

enum class Direction { kInput, kOutput };

/// A process has one host at a time, since a plug-in's calls lead to the one set
/// of operations of the process. One thread: the one that made it.
class Host {
 public:
  /// @throws std::logic_error if there is a host already.
  Host();
  ~Host();
  Host(const Host&) = delete;
  Host& operator=(const Host&) = delete;
  Host(Host&&) = delete;
  Host& operator=(Host&&) = delete;

  /// Creates an instance as a user does who fills in the icon's dialog.
  /// @param dialog the texts of the editable fields, in their order.
  /// @return valid as long as the host. @throws CreationError, also where the plug-in
  /// throws.
  Instance create(const Icon& icon, std::vector<std::string> dialog);

  /// As above, below the given parent: for those who want to see what a plug-in
  /// does with one that is no unit.
  /// @param texts if not null, takes what the plug-in described.
  /// @return the instance's root; null where the plug-in gives none. @throws whatever
  /// the plug-in throws.
  Unit* create_root(const Icon& icon, std::vector<std::string> dialog, def_unittype* parent,
                    MethodTexts* texts = nullptr);

  /// Runs the method of a unit. @return what the method returned.
  /// @throws std::invalid_argument if the unit has no method; whatever the method throws.
  int fire(Unit& unit);

  /// What has been reported since the last call, oldest first: a hundred reports, and
  /// then one that says how many more there were.
  std::vector<Report> take_reports();

  /// Is told of every operation that a plug-in calls, before it happens, with the
  /// unit it is about (null where there is none, or none of this host's).
  using Observer = std::function<void(std::string_view operation, const Unit* unit)>;
  void observe(Observer observer) { observer_ = std::move(observer); }

  /// From now on the host makes this many more units and then none.
  void limit_units(std::size_t count) { units_left_ = count; }

  /// The unit under which instances are created.
  [[nodiscard]] Unit& environment() { return *environment_; }

  /// Whether an operation may go ahead: from another thread it may not, which is
  /// noted as misuse. The only function that another thread may call.
  bool admits(const char* operation);

  /// Reports that an operation has ended without effect, for want of memory.
  void refuse_without_memory(const char* operation) noexcept;

  // The operations. Their contracts are those of zel/zel.h, but that they throw
  // std::bad_alloc.

  struct UnitDescription {
    std::vector<PortType> inputs;
    std::vector<PortType> outputs;
    def_unittype* parent = nullptr;
  };
  def_unittype* make_unit(const UnitDescription& description);
  /// The descriptors of a unit were none. @return null.
  def_unittype* refuse_unit(std::string_view why);
  void name_unit(const char* name, def_unittype* unit);
  void export_methods(def_unittype* unit);
  void set_root(def_unittype* root);
  void set_label(def_unittype* root, const char* text);
  [[nodiscard]] bool is_unit(const def_unittype* unit);
  void report_error(int code, const char* text);
  void describe_method(const char* method, const char* help);
  void select_method(const char* method);
  void describe_port(Direction direction, int port, const char* text);
  char* dialog_text(int field);
  int array_length(const def_unittype* unit, int input, int reserved);
  /// @return whether the array is the host's now.
  bool replace_array(const def_unittype* unit, int output, int reserved, int length, void* array);

 private:
  struct Creation;

  [[nodiscard]] Unit* find(const def_unittype* unit) const;
  // The unit, after telling the observer of the operation; null and a report if it is none.
  Unit* expect_unit(const char* operation, const def_unittype* unit);
  Port* expect_array(const char* operation, const def_unittype* unit, Direction direction,
                     int port);
  // Whether an array that the unit's method hands over is the host's already.
  [[nodiscard]] bool is_owned(const void* array, const Unit& unit) const;
  // Whether an icon's create runs; reports if not.
  bool expect_creation(const char* operation);
  // Turns what other threads have called into reports.
  void report_strays();
  void tell_observer(const char* operation, const Unit* unit);
  void misuse(const char* operation, std::string_view what);
  void report(Report report);

  std::unordered_map<const def_unittype*, std::unique_ptr<Unit>> units_;
  Unit* environment_ = nullptr;
  // Those that plug-ins handed over and that are not replaced yet.
  std::unordered_set<const void*> owned_arrays_;
  // The texts of all dialogs, where TVAL leads to. They stay, overwritten: a plug-in that
  // looks at them too late then fails always, and not only now and then.
  std::deque<std::vector<std::string>> dialogs_;
  // What an icon's create leaves behind, while it runs.
  std::unique_ptr<Creation> creation_;
  std::vector<Report> reports_;
  const std::thread::id thread_ = std::this_thread::get_id();
  std::mutex strays_mutex_;
  // The operations that other threads have called.
  std::set<std::string> strays_;
  std::size_t more_reports_ = 0;
  Observer observer_;
  std::size_t units_left_ = static_cast<std::size_t>(-1);
};

}  // namespace zelhost
