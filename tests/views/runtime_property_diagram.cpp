#include "runtime_property_diagram.hpp"

#include "platform/block_diagram/mask.hpp"
#include "platform/foundation/strings.hpp"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <cstdio>
#include <set>

namespace kinemo::views::test {

namespace {

namespace host = embedded::block_diagram;

ustring wide(const std::string& text) {
  return kmf::utf8_string_to_ustring(text);
}

/// Names of blocks, ports, parameters and variables are drawn from lists that overlap, so that they clash; a few are
/// those of constants and functions, which parameters hide.
const std::vector<std::string> block_names{"x", "eps", "max", "y", "k", "R", "v", "a", "S1", "B1", "n"};
const std::vector<std::string> mask_names{"k", "eps", "max", "j", "R",  "x",  "y", "v",
                                          "t", "z",   "c",   "a", "S1", "B1", "n", "p"};
const std::vector<std::string> port_names{"a", "k", "p", "x", "R"};

/// Units that convert to each other, the declared one of a kind's parameter first.
const std::map<std::string, std::vector<std::string>> units{
    {"Ohm", {"kOhm", "mOhm"}}, {"V", {"mV", "kV"}}, {"m", {"cm", "km"}}, {"kg", {"g"}}, {"s", {"ms", "h"}},
    {"K", {"degC", "mK"}},     {"rad", {"deg"}},    {"N", {"kN"}},       {"W", {"kW"}}, {"N*m", {"kN*m"}}};

bool has(const LibraryBlock& kind, const std::string& parameter) {
  return std::any_of(kind.parameters.begin(), kind.parameters.end(),
                     [&](const LibraryParameter& each) { return each.name == parameter; });
}

}  // namespace

const std::vector<RuntimeVariable>& RuntimePropertyDiagram::variables() {
  static const std::vector<RuntimeVariable> all{
      {"x", "", "", 1, false, ""},  {"y", "mm", "m", 1000, false, "m"}, {"R", "kOhm", "Ohm", 1e-3, false, "Ohm"},
      {"k", "", "", 1, false, ""},  {"v", "", "", 1, true, ""},         {"a", "K", "mK", 1e-3, false, "K"},
      {"c", "", "1", 1, false, ""},
  };
  return all;
}

std::string RuntimePropertyDiagram::text(const RuntimeVariable& variable, double value) {
  char number[64];
  std::snprintf(number, sizeof number, variable.vector ? "[%.17g 2 3]" : "%.17g", value);
  return number;
}

void RuntimePropertyDiagram::setVariables(host::Diagram& diagram, const std::map<std::string, double>& values) {
  for (const RuntimeVariable& variable : variables())
    diagram.setVariable(variable.name, wide(text(variable, values.at(variable.name))), variable.unit, true);
  diagram.setVariable("t", u"'text'", "", true);
  diagram.setVariable("z", u"3+4i", "", true);
  diagram.setVariable("fixed", u"1.5", "", false);
}

void RuntimePropertyDiagram::fill(host::Diagram& diagram) {
  Names names{{"t", {Shape::nothing, ""}}, {"z", {Shape::nothing, ""}}, {"fixed", {Shape::fixed, ""}}};
  for (const RuntimeVariable& variable : variables())
    names[variable.name] = {variable.vector ? Shape::vector : Shape::scalar, variable.measures};
  join(diagram.root(), fillSystem(diagram.root(), names, upTo(5)));
}

/// A visible name of the meaning; empty when all are hidden.
std::string RuntimePropertyDiagram::name(const Names& names, const Meaning& meaning) {
  std::vector<std::string> fitting;
  for (const auto& [name, means] : names) {
    if (means == meaning) fitting.push_back(name);
  }
  return fitting.empty() ? std::string() : oneOf(fitting);
}

std::string RuntimePropertyDiagram::term(const Names& names) {
  const std::string vector = name(names, {Shape::vector, ""});
  if (chance(20) && !vector.empty())
    return oneOf(std::vector<std::string>{"sum(" + vector + ")", "mean(" + vector + ")", vector + "(1)",
                                          "norm(" + vector + ")", "(" + vector + "*" + vector + "')",
                                          "sum(" + vector + ".^2)"});
  const std::string scalar = name(names, {Shape::scalar, ""});
  return chance(15) || scalar.empty() ? std::to_string(1 + upTo(8)) : scalar;
}

std::string RuntimePropertyDiagram::scalar(const Names& names) {
  const std::string a = term(names);
  const std::string b = term(names);
  switch (upTo(8)) {
    case 0:
      return a + "+" + b;
    case 1:
      return "(" + a + " + 1)*" + b;
    case 2:
      return "sqrt(" + a + ")/4 + " + b;
    case 3:
      return "[" + a + " " + b + "]*[1; 0.5]";
    case 4:
      return a + "^2 - (-" + b + ")";
    case 5:
      return "hypot(" + a + ", " + b + ")";
    default:
      return a;  // most texts pass a name through
  }
}

/// Of names that measure the same, so that it has a meaning with and without arithmetic of units.
std::string RuntimePropertyDiagram::quantity(const Names& names, const std::string& unit) {
  const std::string a = name(names, {Shape::scalar, unit});
  const std::string b = name(names, {Shape::scalar, unit});
  if (a.empty()) return std::to_string(1 + upTo(8));
  switch (upTo(6)) {
    case 0:
      return a + "+" + b;
    case 1:
      return "(1 + " + term(names) + ")*" + a;
    case 2:
      return a + "*2 - (-" + b + ")/4";
    default:
      return a;
  }
}

RuntimePropertyDiagram::Text RuntimePropertyDiagram::text(const Names& names, const Meaning& meaning) {
  if (!meaning.unit.empty()) {
    const std::string text = quantity(names, meaning.unit);
    return chance(8) ? Text{"feval(@(q) 2*q, " + text + ")", true} : Text{text, false};
  }
  std::string text = scalar(names);
  bool frozen = false;
  const std::string nothing = name(names, {Shape::nothing, ""});
  const std::string fixed = name(names, {Shape::fixed, ""});
  if (chance(8)) {
    text = oneOf(std::vector<std::string>{"sum(1:3)", "numel('abc')", "feval(@(q) q+1, 2)"}) + " + " + text;
    frozen = true;
  } else if (chance(8) && !nothing.empty()) {
    text = "sum(abs(" + nothing + ")) + " + text;
    frozen = true;
  } else if (chance(5) && !fixed.empty()) {
    text = fixed + "*2";  // a variable that isn't tunable, alone
  }
  if (meaning.shape == Shape::vector) text = "[1 " + text + " 2]";
  return {text, frozen};
}

ustring RuntimePropertyDiagram::blockName(System& system) {
  for (int tries = 0; tries < 3; ++tries) {
    const ustring name = wide(oneOf(block_names));
    if (system.find(name) == nullptr) return name;
  }
  return wide("block " + std::to_string(system.blocks().size()));
}

RuntimePropertyDiagram::Ends RuntimePropertyDiagram::fillSystem(System& system, const Names& names, int levels) {
  Ends ends;
  for (int i = 1 + upTo(2); i > 0; --i) addLeaf(system, names, ends);
  for (int i = levels > 0 ? (chance(30) ? 2 : 1) : 0; i > 0; --i) addSubsystem(system, names, levels - 1, ends);
  return ends;
}

void RuntimePropertyDiagram::addLeaf(System& system, const Names& names, Ends& ends) {
  const LibraryBlock& kind = oneOf(kinds_);
  GTBlock& block = system.addBlock(blockName(system), kind.name);
  setParameters(block, kind, names);
  const std::vector<gtPort*> ports = host::ports(block);
  for (std::size_t i = 0; i < ports.size(); ++i) ends.emplace(kind.ports.at(i).type, ports[i]);
}

void RuntimePropertyDiagram::setParameters(GTBlock& block, const LibraryBlock& kind, const Names& names) {
  for (const LibraryParameter& parameter : kind.parameters) {
    if (parameter.kind != "expression" || chance(30)) continue;
    const bool measured = name(names, {Shape::scalar, parameter.unit}) != "" && chance(60);
    const Text made = text(names, {Shape::scalar, measured ? parameter.unit : ""});
    host::setParameter(block, parameter.name, wide(made.text));
    const std::vector<std::string> confs{"", "compiletime", "runtime", "runtime", "runtime", "RunTime"};
    const std::string& conf = oneOf(confs);
    if (!conf.empty()) host::setParameter(block, parameter.name + "_conf", wide(conf));
    if (made.frozen || conf.empty() || conf == "compiletime") frozen_.push_back({&block, parameter.name});
    const auto others = units.find(parameter.unit);
    if (chance(30) && others != units.end())
      host::setParameter(block, parameter.name + "_unit", wide(oneOf(others->second)));
    if (chance(10)) host::setParameter(block, parameter.name + "_unit", u"");
    // A temperature may follow a setting of the model instead; the text then has no effect, and the block warns.
    if (has(kind, parameter.name + "_from") && chance(80)) host::setParameter(block, parameter.name + "_from", u"own");
  }
}

void RuntimePropertyDiagram::addSubsystem(System& system, const Names& names, int levels, Ends& ends) {
  GTBlock& block = system.addSubsystem(blockName(system));
  const Names inner = chance(80) ? addMask(block, names) : names;
  System& inside = *host::contents(block);
  std::vector<std::pair<ustring, std::string>> ports;
  for (int i = upTo(2); i > 0; --i) {
    const ustring port = wide(oneOf(port_names));
    if (inside.find(port) != nullptr) continue;
    inside.addPort(port, chance(50) ? host::Side::Left : host::Side::Right, i);
    ports.emplace_back(
        port, "physical." + oneOf(std::vector<std::string>{"electrical", "rotational", "translational", "thermal"}));
  }
  Ends within = fillSystem(inside, inner, levels);
  for (const auto& [port, type] : ports) {
    within.emplace(type, host::ports(*inside.find(port)).front());
    ends.emplace(type, host::subsystemPort(block, port));
  }
  join(inside, within);
}

RuntimePropertyDiagram::Names RuntimePropertyDiagram::addMask(GTBlock& subsystem, const Names& names) {
  auto mask = boost::make_shared<GTMaskDefinition>();
  Names inner = names;
  std::set<std::string> own;
  for (int i = upTo(4); i > 0; --i) {
    const std::string name = oneOf(mask_names);
    if (!own.insert(name).second) continue;
    const Meaning meaning = chance(10)   ? Meaning{Shape::vector, ""}
                            : chance(40) ? Meaning{Shape::scalar, oneOf(std::vector<std::string>{"m", "Ohm", "K"})}
                                         : Meaning{Shape::scalar, ""};
    const Text made = text(names, meaning);
    mask->parameters.push_back({name, "", wide(made.text), GTPrmDesc::EDIT, "", {}});
    if (made.frozen) frozen_.push_back({&subsystem, name});
    inner[name] = meaning;
  }
  MaskInterface::setMask(&subsystem, mask);
  return inner;
}

/// Lines of two to four ports of one type.
void RuntimePropertyDiagram::join(System& system, const Ends& ends) {
  std::map<std::string, std::vector<gtPort*>> byType;
  for (const auto& [type, port] : ends) byType[type].push_back(port);
  for (auto& entry : byType) {
    std::vector<gtPort*>& ports = entry.second;
    for (std::size_t i = ports.size(); i > 1; --i) std::swap(ports[i - 1], ports[random_() % i]);
    for (std::size_t begin = 0; begin + 1 < ports.size();) {
      const std::size_t end = std::min(ports.size(), begin + 2 + static_cast<std::size_t>(upTo(2)));
      system.addLine(
          {ports.begin() + static_cast<std::ptrdiff_t>(begin), ports.begin() + static_cast<std::ptrdiff_t>(end)});
      begin = end;
    }
  }
}

}  // namespace kinemo::views::test
