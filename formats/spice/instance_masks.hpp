// The masks of calls: one mask definition for each definition of the netlist, and the texts that a call gives for its
// parameters. A default that needs other parameters of the same call is told in the caller's terms, since a mask's
// values are evaluated in the workspace around it.
#pragma once

#include <boost/shared_ptr.hpp>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "formats/spice/netlist.hpp"
#include "formats/spice/parameter_scopes.hpp"

struct GTMaskDefinition;

namespace kinemo::formats::spice {

class InstanceMasks {
 public:
  /// Null for a definition without parameters.
  boost::shared_ptr<const GTMaskDefinition> mask(const Definition& definition);

  /// Names and texts of the parameters in which the call differs from the mask's defaults. `inside` has the values that
  /// the parameters have in the instance, for expressions that get too long in the caller's terms.
  std::vector<std::pair<std::string, std::string>> values(const Definition& definition, const Call& call,
                                                          const ParameterScopes& inside);

 private:
  std::unordered_map<const Definition*, boost::shared_ptr<const GTMaskDefinition>> m_masks;
};

}  // namespace kinemo::formats::spice
