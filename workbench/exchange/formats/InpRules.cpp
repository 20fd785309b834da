#include "workbench/exchange/formats/InpRules.h"

#include <algorithm>
#include <map>
#include <span>

namespace qd::workbench {

namespace {

// Sections and materials are made of many cards; the rest is in the order of the alphabet.
constexpr InpRule kRules[] = {{"BOUNDARY", "n"},
                              {"BOUNDARYF", "e"},
                              {"CFLUX", "n"},
                              {"CLOAD", "n"},
                              {"CONTACTPAIR", "ss"},
                              {"CONTACTFILE", ""},
                              {"CONTACTOUTPUT", ""},
                              {"CONTACTPRINT", ""},
                              {"COUPLING", ""},
                              {"KINEMATIC", "", InpRule::kCard, "COUPLING"},
                              {"DISTRIBUTING", "", InpRule::kCard, "COUPLING"},
                              {"DESIGNVARIABLES", "(n)", InpRule::kField},
                              {"DFLUX", "e"},
                              {"DISTRIBUTINGCOUPLING", "n"},
                              {"DISTRIBUTION", "e"},
                              {"DLOAD", "e"},
                              {"DSFLUX", "s"},
                              {"DSLOAD", "s"},
                              {"ELFILE", ""},
                              {"ELPRINT", ""},
                              {"ELEMENTOUTPUT", ""},
                              {"ELSET", "(e)", InpRule::kField},
                              {"EQUATION", "(n..)", InpRule::kCard},
                              {"EQUATIONF", "(e...)", InpRule::kCard},
                              {"FACEPRINT", ""},
                              {"FILM", "e"},
                              {"INITIALCONDITIONS", "n"},
                              {"MASSFLOW", "e"},
                              {"MODELCHANGE", "(e)", InpRule::kField},
                              {"MPC", "(n)", InpRule::kCard},
                              {"NETWORKMPC", "(n..)", InpRule::kCard},
                              {"NODALTHICKNESS", "n"},
                              {"NODEFILE", ""},
                              {"NODEOUTPUT", ""},
                              {"NODEPRINT", ""},
                              {"NORMAL", "en"},
                              {"NSET", "(n)", InpRule::kField},
                              {"OBJECTIVE", ""},
                              {"PRE-TENSIONSECTION", ""},
                              {"RADIATE", "e"},
                              {"RETAINEDNODALDOFS", "n"},
                              {"RIGIDBODY", ""},
                              {"SECTIONPRINT", ""},
                              {"SUBMODEL", "(n)", InpRule::kField},
                              {"SURFACE", "e"},
                              {"TEMPERATURE", "n"},
                              {"TIE", "ss", InpRule::kCard},
                              {"TRANSFORM", ""},
                              {"TRANSFORMF", ""},
                              {"BEAMGENERALSECTION", ""},
                              {"BEAMSECTION", ""},
                              {"CHANGESOLIDSECTION", ""},
                              {"DASHPOT", ""},
                              {"GAP", ""},
                              {"MASS", ""},
                              {"MEMBRANESECTION", ""},
                              {"SHELLGENERALSECTION", ""},
                              {"SHELLSECTION", "", InpRule::kCard},
                              {"SOLIDSECTION", ""},
                              {"SPRING", ""},
                              {"MATERIAL", ""},
                              {"COMPRESSIONONLY", "", InpRule::kCard, "MATERIAL"},
                              {"CONDUCTIVITY", "", InpRule::kCard, "MATERIAL"},
                              {"CREEP", "", InpRule::kCard, "MATERIAL"},
                              {"CYCLICHARDENING", "", InpRule::kCard, "MATERIAL"},
                              {"DAMPING", "", InpRule::kCard, "MATERIAL"},
                              {"DEFORMATIONPLASTICITY", "", InpRule::kCard, "MATERIAL"},
                              {"DENSITY", "", InpRule::kCard, "MATERIAL"},
                              {"DEPVAR", "", InpRule::kCard, "MATERIAL"},
                              {"ELASTIC", "", InpRule::kCard, "MATERIAL"},
                              {"ELECTRICALCONDUCTIVITY", "", InpRule::kCard, "MATERIAL"},
                              {"EXPANSION", "", InpRule::kCard, "MATERIAL"},
                              {"FLUIDCONSTANTS", "", InpRule::kCard, "MATERIAL"},
                              {"HYPERELASTIC", "", InpRule::kCard, "MATERIAL"},
                              {"HYPERFOAM", "", InpRule::kCard, "MATERIAL"},
                              {"MAGNETICPERMEABILITY", "", InpRule::kCard, "MATERIAL"},
                              {"PLASTIC", "", InpRule::kCard, "MATERIAL"},
                              {"SPECIFICGASCONSTANT", "", InpRule::kCard, "MATERIAL"},
                              {"SPECIFICHEAT", "", InpRule::kCard, "MATERIAL"},
                              {"USERMATERIAL", "", InpRule::kCard, "MATERIAL"},
                              {"SURFACEINTERACTION", ""},
                              {"CONTACTDAMPING", "", InpRule::kCard, "SURFACEINTERACTION"},
                              {"FRICTION", "", InpRule::kCard, "SURFACEINTERACTION"},
                              {"GAPCONDUCTANCE", "", InpRule::kCard, "SURFACEINTERACTION"},
                              {"SURFACEBEHAVIOR", "", InpRule::kCard, "SURFACEINTERACTION"},
                              // Numbers of these are values, of steps, times and the like.
                              {"AMPLITUDE", ""},
                              {"BASEMOTION", ""},
                              {"BUCKLE", ""},
                              {"CFD", ""},
                              {"CHANGEFRICTION", ""},
                              {"CHANGEMATERIAL", ""},
                              {"CHANGEPLASTIC", ""},
                              {"CHANGESURFACEBEHAVIOR", ""},
                              {"CLEARANCE", ""},
                              {"COMPLEXFREQUENCY", ""},
                              {"CONTROLS", ""},
                              {"COUPLEDTEMPERATURE-DISPLACEMENT", ""},
                              {"CYCLICSYMMETRYMODEL", ""},
                              {"DYNAMIC", ""},
                              {"ELECTROMAGNETICS", ""},
                              {"ENDSTEP", ""},
                              {"FREQUENCY", ""},
                              {"GREEN", ""},
                              {"HEADING", ""},
                              {"HEATTRANSFER", ""},
                              {"MODALDAMPING", ""},
                              {"MODALDYNAMIC", ""},
                              {"NOANALYSIS", ""},
                              {"ORIENTATION", ""},
                              {"OUTPUT", ""},
                              {"PHYSICALCONSTANTS", ""},
                              {"PREPRINT", ""},
                              {"RESTART", ""},
                              {"SELECTCYCLICSYMMETRYMODES", ""},
                              {"SENSITIVITY", ""},
                              {"STATIC", ""},
                              {"STEADYSTATEDYNAMICS", ""},
                              {"STEP", ""},
                              {"SUBSTRUCTUREGENERATE", ""},
                              {"SUBSTRUCTUREMATRIXOUTPUT", ""},
                              {"TIMEPOINTS", ""},
                              {"UNCOUPLEDTEMPERATURE-DISPLACEMENT", ""},
                              {"USERELEMENT", ""},
                              {"VALUESATINFINITY", ""},
                              {"VIEWFACTOR", ""},
                              {"VISCO", ""}};

/// What the values of parameters name, whatever the keyword.
struct ParameterRule {
  std::string_view name;
  char what;
};
constexpr ParameterRule kParameters[] = {
    {"ELSET", 'E'}, {"NSET", 'N'},    {"SURFACE", 's'},     {"MATERIAL", 'm'}, {"MASTER", 's'},
    {"SLAVE", 's'}, {"TIE", 't'},     {"INTERACTION", 'i'}, {"REFNODE", 'n'},  {"ROTNODE", 'n'},
    {"NODE", 'n'},  {"ELEMENT", 'e'}, {"ORIENTATION", 'o'}, {"OIL", 'm'},      {"GLOBALELSET", 'E'}};
/// What NAME= names, by the keyword.
constexpr ParameterRule kNamed[] = {{"SURFACE", 's'},       {"MATERIAL", 'm'}, {"ORIENTATION", 'o'},
                                    {"AMPLITUDE", 'a'},     {"TIE", 't'},      {"SURFACEINTERACTION", 'i'},
                                    {"CHANGEMATERIAL", 'm'}};

}  // namespace

InpName InpNameOfLetter(char what) {
  switch (what) {
    case 'e':
    case 'E':
      return InpName::ElementSet;
    case 'n':
    case 'N':
      return InpName::NodeSet;
    case 's':
      return InpName::Surface;
    case 'm':
      return InpName::Material;
    case 'o':
      return InpName::Orientation;
    case 'a':
      return InpName::Amplitude;
    case 'i':
      return InpName::Interaction;
    case 't':
      return InpName::Tie;
    default:
      return InpName::Other;
  }
}

const char* InpWordFor(InpName kind) {
  constexpr const char* kWords[] = {"element set", "node set",    "surface", "material", "orientation",
                                    "amplitude",   "interaction", "tie",     "name"};
  return kWords[static_cast<std::size_t>(kind)];
}

char InpLetterOfParameter(std::string_view keyword, std::string_view parameter) {
  const auto among = [](std::span<const ParameterRule> rules, std::string_view name) {
    const auto found =
        std::find_if(rules.begin(), rules.end(), [&](const auto& rule) { return rule.name == name; });
    return found != rules.end() ? found->what : '.';
  };
  if (parameter == "NAME") return among(kNamed, keyword);
  if (parameter.ends_with("AMPLITUDE")) return 'a';
  return among(kParameters, parameter);
}

const InpRule* FindInpRule(std::string_view keyword) {
  static const std::map<std::string_view, const InpRule*> kByKeyword = [] {
    std::map<std::string_view, const InpRule*> rules;
    for (const InpRule& rule : kRules) rules[rule.keyword] = &rule;
    return rules;
  }();
  const auto found = kByKeyword.find(keyword);
  return found != kByKeyword.end() ? found->second : nullptr;
}

bool IsInpGenerator(std::string_view keyword) {
  constexpr std::string_view kGenerators[] = {"NGEN", "NFILL", "NCOPY", "NMAP", "ELGEN", "ELCOPY"};
  return std::find(std::begin(kGenerators), std::end(kGenerators), keyword) != std::end(kGenerators);
}

bool IsInpSection(std::string_view keyword) {
  constexpr std::string_view kSections[] = {"SOLIDSECTION",        "MEMBRANESECTION", "SHELLSECTION",
                                            "SHELLGENERALSECTION", "BEAMSECTION",     "BEAMGENERALSECTION"};
  return std::find(std::begin(kSections), std::end(kSections), keyword) != std::end(kSections);
}

}  // namespace qd::workbench
