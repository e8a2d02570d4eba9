// What a host and a linker see of the plug-in before there is an instance: the
// records, byte by byte, and the symbols.
#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <map>
#include <memory>
#include <set>
#include <sstream>
#include <string>

#include "unit/plugin.h"

namespace {

using unit_test::exported;
using unit_test::icon;
using unit_test::plugin_file;

constexpr const char* kButtons = " %[%0:1:0:10d %l`Cancel%d%l`Ok%]%H ";

// As the host finds them: rows of pointers.
using Slot = const void* const;

TEST(IconRecord, HoldsTheDialogToTheByte) {
  EXPECT_EQ(std::string(icon().dialog),
            " unit sdpsol - wrapps sdpsol command line programm %n sdpsol command : "
            "%{sdpsol%}%32t %n definition file: %{sdpsol.in%}%32t %n result file    : "
            "%{sdpsol.out%}%32t %n change the filenames if you want to run %n more than one "
            "instance of sdpsol%n %[%0:1:0:10d %l`Cancel%d%l`Ok%]%H ");
}

TEST(IconRecord, HoldsTheButtonsAgainByThemselves) {
  EXPECT_EQ(std::string(icon().buttons), kButtons);
  EXPECT_TRUE(std::string(icon().dialog).ends_with(kButtons));
}

TEST(IconRecord, HasEightSlotsInOrder) {
  Slot* const slots = exported<Slot>("ICONDEF_sdpsol");
  EXPECT_EQ(slots[0], nullptr);
  EXPECT_EQ(slots[1], reinterpret_cast<const void*>(icon().create));
  EXPECT_EQ(slots[2], reinterpret_cast<const void*>(icon().second));
  EXPECT_NE(slots[1], nullptr);
  EXPECT_NE(slots[2], nullptr);
  EXPECT_NE(slots[1], slots[2]);
  EXPECT_EQ(slots[3], icon().dialog);
  EXPECT_EQ(slots[4], icon().buttons);
  EXPECT_EQ(std::string(static_cast<const char*>(slots[5])), "sdpsol");
  EXPECT_EQ(std::string(static_cast<const char*>(slots[6])), "");
  EXPECT_EQ(slots[7], nullptr);
}

TEST(IconTable, HoldsOneIconAndATerminator) {
  const auto* const table = exported<const zel_icon_entry>("gasIconsOfFolder_sdpsol");
  EXPECT_EQ(std::string(table[0].folder), "sdpsol");
  EXPECT_EQ(std::string(table[0].icon), "sdpsol");
  EXPECT_EQ(table[0].definition, &icon());
  EXPECT_EQ(table[0].unused_first, nullptr);
  EXPECT_EQ(table[0].unused_last, nullptr);
  EXPECT_EQ(std::string(table[1].folder), "");
  EXPECT_EQ(std::string(table[1].icon), "");
  EXPECT_EQ(table[1].definition, nullptr);
  EXPECT_EQ(table[1].unused_first, nullptr);
  EXPECT_EQ(table[1].unused_last, nullptr);
}

TEST(FolderRecord, NamesTheFolderAndItsIcons) {
  const auto* const folder = exported<const zel_folder>("gsFolder_sdpsol");
  EXPECT_EQ(folder->unused, nullptr);
  EXPECT_EQ(std::string(folder->name), "sdpsol");
  EXPECT_EQ(folder->icons, exported<const zel_icon_entry>("gasIconsOfFolder_sdpsol"));
}

TEST(VersionRecord, PointsTwiceAtOneText) {
  Slot* const slots = exported<Slot>("Kem_V_of_sdpsol");
  EXPECT_EQ(std::string(static_cast<const char*>(slots[0])), "7.9 17/07/02 QZ");
  EXPECT_EQ(slots[0], slots[1]);
}

// The dynamic symbols as `nm` lists them: name (with its version) to type.
std::map<std::string, char> dynamic_symbols(const std::string& options) {
  const std::string command =
      std::string(SDPSOL_NM) + " --dynamic --format=posix " + options + " " + plugin_file();
  std::unique_ptr<FILE, int (*)(FILE*)> pipe(popen(command.c_str(), "r"), pclose);
  std::string text;
  std::array<char, 4096> block{};
  while (pipe != nullptr && std::fgets(block.data(), block.size(), pipe.get()) != nullptr) {
    text += block.data();
  }
  std::map<std::string, char> symbols;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    std::istringstream words(line);
    std::string name;
    char type = '?';
    words >> name >> type;
    symbols[name] = type;
  }
  return symbols;
}

#if defined(SDPSOL_SANITIZE)
constexpr bool kInstrumented = true;
#else
constexpr bool kInstrumented = false;
#endif

TEST(Symbols, ExportedAreTheConstructorAndTheRecordsAlone) {
  if (kInstrumented) GTEST_SKIP() << "the sanitizers export symbols of their own";
  std::set<std::string> names;
  for (const auto& [name, type] : dynamic_symbols("--defined-only")) names.insert(name);
  const std::set<std::string> expected{"ICONDEF_sdpsol", "Kem_V_of_sdpsol",
                                       "gasIconsOfFolder_sdpsol", "gsFolder_sdpsol", "sdpsol"};
  EXPECT_EQ(names, expected);
}

TEST(Symbols, WantedAreTheHostsOperationsAndTheStandardLibrarysAlone) {
  if (kInstrumented) GTEST_SKIP() << "the sanitizers want symbols of their own";
  std::set<std::string> of_the_host;
  std::set<std::string> unknown;
  for (const auto& [name, type] : dynamic_symbols("--undefined-only")) {
    const std::string version = name.substr(std::min(name.find('@'), name.size()));
    const bool standard = version.starts_with("@GLIBC_") || version.starts_with("@GLIBCXX_") ||
                          version.starts_with("@CXXABI_") || version.starts_with("@GCC_");
    if (standard) continue;
    (version.empty() && type == 'U' ? of_the_host : unknown).insert(name);
  }
  const std::set<std::string> operations{
      "INFO_FOR_INP",   "INFO_FOR_OUT", "SET_INFO_FOR_METHOD",     "TVAL",
      "error_msg",      "is_not_unit",  "kem_iconform_for_method", "label",
      "primitive_unit", "return_unit",  "zel_dim_of_dyn_inp",      "zel_indicate_export_of_methods",
      "zel_name_unit",  "zel_reassign"};
  EXPECT_EQ(of_the_host, operations);
  // Hooks of the toolchain, each of which may be missing.
  for (const char* hook :
       {"_ITM_deregisterTMCloneTable", "_ITM_registerTMCloneTable", "__gmon_start__"}) {
    unknown.erase(hook);
  }
  EXPECT_EQ(unknown, std::set<std::string>());
}

}  // namespace
