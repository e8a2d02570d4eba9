// What the host finds in this plug-in before there is an instance: version,
// folder, icon with its dialog, and the help texts of every method and port.
// The texts are part of the interface, spelling and blanks included.
#include "unit/kem_sdpsol.h"

#include <initializer_list>

#include "unit/zel_sdpsol.h"

namespace {

constexpr const char* kNullspaceBase = "Nullspace Base";
constexpr const char* kFriction = "Friction constraints";
constexpr const char* kForces = "Force constraints";
constexpr const char* kTypes = "Contact Types";
constexpr const char* kParameters = "Parameter values: NU,GAMMA,MAXITER,ABSTOL,RELTOL,BIGM";
constexpr const char* kFeasible = "bool feasible";
constexpr const char* kValues = "variable values";
constexpr const char* kObjective = "objective value";
constexpr const char* kErrorCode = "error code";
constexpr const char* kNoForces = "0 if no forces found";
constexpr const char* kEpsilons = "epsilons, one for each contact";

void describe(const char* method, const char* help, std::initializer_list<const char*> inputs,
              std::initializer_list<const char*> outputs) {
  kem_iconform_for_method(method, help, 0, 0);
  SET_INFO_FOR_METHOD(method);
  int input = 0;
  for (const char* text : inputs) INFO_FOR_INP(input++, text);
  int output = 0;
  for (const char* text : outputs) INFO_FOR_OUT(output++, text);
}

void describe_methods() {
  describe("General:Set_Definition", " set definition string in sdpsol format %n",
           {"Definiton String"}, {});
  describe("General:Set_Params",
           " set runtime parameters for sdpsol additionally to a given definition %n  for use "
           "after set_definition. Will also be overwritten by non general methods%n",
           {kParameters}, {});
  describe("General:Run_Sdpsol", " start command line util on given definition %n", {},
           {"Error code"});
  describe("General:Get_Default_Params",
           " get default parameters used by sdpsol if no parameters set %n", {}, {kParameters});
  describe("General:Get_Result", " get Results from sdpsol %n", {},
           {kFeasible, kValues, kObjective, kErrorCode});
  describe("Is_Feasible", " proof of feasibility for Standard LMI given as Matrices%n",
           {"number of matrices", "values", "=0 for no strictly feasibility"},
           {kFeasible, kValues, kObjective, kErrorCode});
  describe("IntForce:Exists", " returns epsilon>0 if internal force exists, 0 if not%n",
           {kNullspaceBase, kFriction, kForces, kTypes}, {"bool, 1 if forces found"});
  describe("IntForce:Maximize_All",
           " returns epsilon>0 as epsilon-average after maximizing all epsilons if internal force "
           "exists, 0 if not%n",
           {kNullspaceBase, kFriction, kForces, kTypes},
           {kNoForces, "average friction_epsilon + frictionless_epsilon, 0 if no forces found",
            kEpsilons});
  describe("IntForce:Maximize_FrictConts",
           " returns epsilon>0 as average epsilon of all maximized epsilons of contacts wth "
           "friction if internal force exists, 0 if not%n",
           {kNullspaceBase, kFriction, kForces, kTypes},
           {kNoForces, "average epsilon, 0 if no forces found", kEpsilons});
  describe("IntForce:Maximize_PointCont",
           " returns epsilon>0 as maximal force on given point contact if internal force exists, "
           "0 if not%n",
           {kNullspaceBase, kFriction, kForces, kTypes, "Number of contact force to maximize"},
           {kNoForces, "epsilon"});
  describe("IntForce:Maximize_Individual",
           " returns epsilon>0 as average of all maximized epsilons if internal force exists, 0 if "
           "not%n",
           {kNullspaceBase, kFriction, kForces, kTypes, "Contacts for epsilon maximization"},
           {kNoForces, "average epsilon"});
}

def_unittype* _fun1_sdpsol(int, int, const ZelIconDef_*, def_unittype* parent) {
  describe_methods();
  char* const result_file = TVAL(2);
  char* const definition_file = TVAL(1);
  char* const command = TVAL(0);
  return sdpsol(parent, command, definition_file, result_file);
}

int _fun2_sdpsol(int, int, const ZelIconDef_*, def_unittype*) {
  return 1;
}

constexpr char gacThisFolder[] = "sdpsol";

constexpr const char* kInterfaceVersion = "7.9 17/07/02 QZ";

}  // namespace

const ZelIconDef_ ICONDEF_sdpsol = {nullptr,
                                    _fun1_sdpsol,
                                    _fun2_sdpsol,
                                    " unit sdpsol - wrapps sdpsol command line programm %n"
                                    " sdpsol command : %{sdpsol%}%32t %n"
                                    " definition file: %{sdpsol.in%}%32t %n"
                                    " result file    : %{sdpsol.out%}%32t %n"
                                    " change the filenames if you want to run %n"
                                    " more than one instance of sdpsol%n"
                                    " %[%0:1:0:10d %l`Cancel%d%l`Ok%]%H ",
                                    " %[%0:1:0:10d %l`Cancel%d%l`Ok%]%H ",
                                    "sdpsol",
                                    "",
                                    nullptr};

const zel_icon_entry gasIconsOfFolder_sdpsol[2] = {
    {gacThisFolder, "sdpsol", &ICONDEF_sdpsol, nullptr, nullptr},
    {"", "", nullptr, nullptr, nullptr}};

const zel_folder gsFolder_sdpsol = {nullptr, "sdpsol", gasIconsOfFolder_sdpsol};

const zel_version Kem_V_of_sdpsol = {kInterfaceVersion, kInterfaceVersion};
