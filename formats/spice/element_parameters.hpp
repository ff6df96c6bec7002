// Gives the blocks of elements their parameters while the circuit is expanded: values as expressions of the host, texts
// and model cards with a row of expressions beside each.
#pragma once

#include <set>
#include <string>
#include <tuple>
#include <unordered_map>
#include <vector>

#include "formats/spice/host_names.hpp"
#include "formats/spice/live_text.hpp"
#include "formats/spice/reporter.hpp"
#include "platform/foundation/strings.hpp"

class GTBlock;

namespace kinemo::formats::spice {

class ElementParameters {
 public:
  ElementParameters(const NameTable& node_names, const HostNames& names, Reporter& reporter);

  /// An instance of the definition begins or ends; those that are open lie in each other.
  void begin(const Definition& definition);
  void end();

  /// The block stands for an element of the innermost instance, whose scope is the innermost one.
  void set(GTBlock& block, const Element& element, const ParameterScopes& scopes);

  /// Notes that something at the place is fixed to the number that it has now; each place once.
  void note_fixed(const Place& place, const std::string& what);

 private:
  /// A live text as a block takes it.
  struct HostText {
    LiveText live;
    ustring text;
    ustring row;  ///< empty where the text has no values
  };
  struct Instance {
    const Definition* definition;
    std::unordered_map<const Model*, HostText> cards;  ///< as they are told inside of this instance
  };

  void set_value(GTBlock& block, const Element& element, const ParameterScopes& scopes);
  void set_text(GTBlock& block, const char* parameter, const char* row, const Element& element, const HostText& text);
  HostText host_text(LiveText live) const;
  const HostText& card(const Model& model, const ParameterScopes& scopes);
  std::string element_name(const Element& element) const;

  const NameTable& m_node_names;
  const HostNames& m_names;
  Reporter& m_reporter;
  std::vector<Instance> m_instances;
  std::unordered_map<const Definition*, std::vector<std::size_t>> m_open;  ///< indices of instances
  std::set<std::tuple<const TextFile*, std::uint32_t, std::uint32_t>> m_noted;
};

}  // namespace kinemo::formats::spice
