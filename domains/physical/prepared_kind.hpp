#pragma once

// A block kind made ready for use: what all its blocks share, built once from the tables. The library owns the prepared
// kinds, and blocks hold them by shared pointer, so that a million blocks have one mask and one descriptor.

#include "common/gl/gti/export/block_descriptor.hpp"
#include "domains/physical/block_kind.hpp"
#include "domains/physical/parameter_reader.hpp"
#include "platform/block_diagram/mask.hpp"
#include "platform/foundation/vn_id.hpp"
#include "platform/graph_core/graph.hpp"

#include <boost/shared_ptr.hpp>

#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace kinemo::physical {

extern const char domain_name[];
/// The scripting function that generates the masks of all kinds.
extern const char mask_function[];

/// Where the value of a number that can follow a setting comes from, as its partner says.
extern const char from_model[];
extern const char from_block[];

/// What a block shows and what its component begins as: a leaf with all connectors and no parameters.
struct Look {
  gl::gti::BlockDescriptor descriptor;
  gl::core::Component component;
};

/// A parameter with the identifiers of its partners.
struct PreparedParameter {
  kmf::VnId id;
  ParameterForm form = ParameterForm::expression;
  kmf::VnId unit;  ///< partner of an expression
  kmf::VnId conf;  ///< partner of an expression
  kmf::VnId from;  ///< partner of a number that can follow a setting; empty for others
  std::vector<std::string> choices;
  NumberRule rule;      ///< of an expression
  std::string setting;  ///< that an expression can follow
  ustring value;        ///< the default text
};

class PreparedKind {
 public:
  explicit PreparedKind(BlockKind kind);
  PreparedKind(const PreparedKind&) = delete;
  PreparedKind& operator=(const PreparedKind&) = delete;

  const BlockKind& kind() const { return kind_; }
  /// Name of the prototype in the host's library; the blocks tell it as their generated mask's text.
  const std::string& libraryName() const { return libraryName_; }
  const std::vector<PreparedParameter>& parameters() const { return parameters_; }
  const boost::shared_ptr<const GTMaskDefinition>& mask() const { return mask_; }

  /// Whether parameters of a block change its look.
  bool hasManyLooks() const { return manyLooks_; }
  /// The look of a block without parameters of its own.
  const std::shared_ptr<const Look>& standardLook() const { return standard_; }
  /// The look for the parameters of a block.
  /// @throws "kinemo:physical:blocks" "InvalidTerminalCount" (parameter, text, minimum, maximum, step)
  std::shared_ptr<const Look> look(const std::map<std::string, ustring>& parameters) const;

 private:
  std::size_t countOfPorts(const std::map<std::string, ustring>& parameters) const;
  std::vector<Port> ports(std::size_t count) const;
  const Icon* icon(std::size_t count, const std::string& device) const;
  std::shared_ptr<const Look> keptLook(std::size_t count, const Icon* icon) const;
  std::shared_ptr<const Look> makeLook(const std::vector<Port>& ports, const Icon* icon) const;

  BlockKind kind_;
  std::string libraryName_;
  kmf::VnIdPath1 type_;
  std::vector<PreparedParameter> parameters_;
  boost::shared_ptr<const GTMaskDefinition> mask_;
  bool manyLooks_;
  std::shared_ptr<const Look> standard_;
  mutable std::map<std::pair<std::size_t, const Icon*>, std::weak_ptr<const Look>> looks_;  ///< while a block has it
};

/// Type path of a port type, "physical.electrical" for "electrical".
kmf::VnIdPath1 connector_type(const std::string& portType);

}  // namespace kinemo::physical
