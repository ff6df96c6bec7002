#include "tests/formats/spice/flatten.hpp"

#include "formats/spice/expansion.hpp"
#include "formats/spice/live_text.hpp"

namespace kinemo::formats::spice {

namespace {

/// The text with the values in place of their marks.
std::string text_of(const TextPieces& pieces, const ParameterScopes& scopes) {
  const std::size_t here = scopes.depth() - 1;
  const LiveText live = live_text(pieces, scopes, here, here);
  std::string text = live.text;
  for (std::size_t i = 0; i < live.values.size(); ++i) {
    ExpressionError error;
    const auto value = evaluate(
        live.values[i], [&](const std::string& name) { return scopes.value(name); }, error);
    const std::string mark = "{" + std::to_string(i + 1) + "}";
    for (std::size_t at = text.find(mark); at != std::string::npos; at = text.find(mark)) {
      text.replace(at, mark.size(), value ? number_text(*value) : error.text);
    }
  }
  return text;
}

class Flattener : public ExpansionVisitor {
 public:
  explicit Flattener(const Netlist& netlist) : m_netlist(netlist) {}

  bool begin(const Instance& instance, const ParameterScopes&) override {
    Level level;
    if (instance.call != nullptr) {
      level.prefix = m_levels.back().prefix + m_netlist.names.text(instance.call->name) + ".";
      for (std::size_t i = 0; i < instance.definition->formals.size(); ++i) {
        level.actual.emplace(instance.definition->formals[i], flat_name(instance.call->nodes[i]));
      }
    }
    m_levels.push_back(std::move(level));
    return true;
  }

  void element(const Element& element, const ParameterScopes& scopes) override {
    FlatElement flat;
    for (const NameId node : element.nodes) {
      flat.nodes.push_back(flat_name(node));
    }
    ExpressionError error;
    if (element.value != nullptr) {
      const auto value = evaluate(
          *element.value, [&](const std::string& name) { return scopes.value(name); }, error);
      flat.value = value ? number_text(*value) : error.text;
    }
    flat.text = text_of(element.text, scopes);
    elements[m_levels.back().prefix + m_netlist.names.text(element.name)] = std::move(flat);
  }

  void end(const Instance&) override { m_levels.pop_back(); }

  std::map<std::string, FlatElement> elements;

 private:
  struct Level {
    std::string prefix;
    std::map<NameId, std::string> actual;
  };

  std::string flat_name(NameId node) const {
    if (m_netlist.is_global(node)) {
      return m_netlist.names.text(node);
    }
    const auto actual = m_levels.back().actual.find(node);
    return actual == m_levels.back().actual.end() ? m_levels.back().prefix + m_netlist.names.text(node)
                                                  : actual->second;
  }

  const Netlist& m_netlist;
  std::vector<Level> m_levels;
};

}  // namespace

std::map<std::string, FlatElement> flatten(const Netlist& netlist, DiagnosticList& diagnostics) {
  Flattener flattener(netlist);
  Reporter reporter(diagnostics);
  expand(netlist, flattener, reporter);
  return flattener.elements;
}

}  // namespace kinemo::formats::spice
