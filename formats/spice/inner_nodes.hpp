// Nodes of an instance that are named from outside: in a netlist, `x1.n` is the inner node `n` of the call `x1`, and
// the call has to let it out.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "formats/spice/netlist.hpp"

namespace kinemo::formats::spice {

/// `call.rest`: which call of a definition is meant, and the name inside of what it calls.
struct InnerNode {
  std::size_t call;  ///< index among the definition's calls
  std::string rest;
};

class InnerNodes {
 public:
  explicit InnerNodes(const Netlist& netlist);

  /// The node that `name`, seen from the definition, means inside of one of its calls; nothing for an ordinary node.
  std::optional<InnerNode> find(const Definition& definition, const std::string& name) const;
  /// Names in the definition's own cards that mean inner nodes.
  const std::vector<std::string>& named_in(const Definition& definition) const;

 private:
  struct Contents {
    std::unordered_set<NameId> local_nodes;  ///< neither formal nor global
    std::unordered_map<std::string_view, std::size_t> calls;
    std::vector<std::string> inner_names;
  };

  bool exists(const Definition& definition, const std::string& name, int& tries) const;
  std::optional<InnerNode> find(const Definition& definition, const std::string& name, int& tries) const;
  void add_nodes(Contents& contents, const Definition& definition, const std::vector<NameId>& nodes) const;
  const Contents& contents(const Definition& definition) const;

  const Netlist& m_netlist;
  std::unordered_map<const Definition*, Contents> m_contents;
  std::unordered_map<std::string_view, NameId> m_ids;
};

}  // namespace kinemo::formats::spice
