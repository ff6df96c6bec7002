// The masks of calls: one mask definition for each definition of the netlist, and the texts that a call gives for its
// parameters. A default that needs other parameters of the same call is told in the caller's terms, since a mask's
// values are evaluated in the workspace around it.
#pragma once

#include <boost/shared_ptr.hpp>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "formats/spice/host_names.hpp"
#include "formats/spice/netlist.hpp"
#include "formats/spice/parameter_scopes.hpp"

struct GTMaskDefinition;

namespace kinemo::formats::spice {

class InstanceMasks {
 public:
  explicit InstanceMasks(const HostNames& names) : m_names(names) {}

  /// Its type is the definition's name; it has no parameters where the definition has none.
  boost::shared_ptr<const GTMaskDefinition> mask(const Definition& definition);

  struct Value {
    std::string parameter;   ///< the host's name
    std::string expression;  ///< in the host's language, for the workspace around the call
  };
  struct Values {
    std::vector<Value> changed;  ///< in which the instance differs from the mask's defaults
    bool has_fixed = false;      ///< something in them is fixed to the number that it has now
  };
  /// Of the instance whose scope is the innermost one.
  Values values(const Definition& definition, const ParameterScopes& scopes);

 private:
  const HostNames& m_names;
  std::unordered_map<const Definition*, boost::shared_ptr<const GTMaskDefinition>> m_masks;
};

}  // namespace kinemo::formats::spice
