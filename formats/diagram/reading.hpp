// One reading of a diagram file: what its steps share. Made for one call and thrown away afterwards; the host owns the
// diagram.
#pragma once

#include "formats/diagram/scope.hpp"
#include "platform/block_diagram/mask.hpp"

#include <boost/shared_ptr.hpp>

#include <deque>
#include <map>
#include <set>
#include <string>
#include <tuple>
#include <unordered_set>
#include <vector>

namespace kinemo::formats::diagram {

/// Contents that wait to be read. A queue of them in place of recursion lets systems nest as deep as they like.
struct PendingSystem {
  host::System* system;
  const ModelFile* file;
  const LinkStep* links;
  const YamlNode* contents;  ///< the mapping with `blocks` and `lines`, or with `variant`
};

class Reading {
 public:
  explicit Reading(DiagnosticList& list) : report(list), files(list) {}

  Report report;
  LinkedFiles files;
  host::Diagram* diagram = nullptr;
  std::vector<PendingSystem> pending;
  /// Opaque subsystems in the place of blocks that can't be made. Only who keeps a diagram with faults sees them.
  std::unordered_set<const GTBlock*> stand_ins;

  Scope scope(const PendingSystem& at) { return {report, *at.file, at.links, at.system}; }
  const LinkStep* link(const ModelFile& file, const LinkStep* outer) {
    return &links_.emplace_back(LinkStep{&file, outer});
  }
  /// The mask that a subsystem's definition declares; null for none. Blocks that share the node of its
  /// parameters, and say the same of it, share the mask.
  boost::shared_ptr<const GTMaskDefinition> mask(const Scope& scope, const YamlNode& definition);
  const std::vector<std::string>& prototypes();

 private:
  std::deque<LinkStep> links_;
  /// By the node of the parameters, type and description.
  std::map<std::tuple<const YamlNode*, std::string, std::string>, boost::shared_ptr<const GTMaskDefinition>> masks_;
  std::vector<std::string> prototypes_;
};

/// The diagram has no more blocks than this, however its files link to each other.
constexpr std::size_t block_limit = 20'000'000;

// --- the steps, each in a file of its own

/// Keys that stand at the head of the model's file: settings, workspace, dictionary.
void read_settings(Reading& reading, const Scope& scope, const YamlNode& model);
/// All pending systems, and those that become so. Too many blocks are an error at the node.
void read_pending(Reading& reading, const Scope& scope, const YamlNode& node);
/// Blocks, then lines, of one system; systems inside it become pending.
void read_system(Reading& reading, const PendingSystem& at);
/// One block with all that belongs to it; false when it has faults. `key` holds its name, and is the block's place.
bool read_block(Reading& reading, const Scope& scope, const YamlNode& key, const YamlNode& node);
/// A block with contents of its own, in a file of its own, or in variants.
bool read_subsystem(Reading& reading, const Scope& scope, const YamlNode& key, const YamlNode& node);
/// The choices of a variant block, in place of blocks and lines.
void read_variant(Reading& reading, const PendingSystem& at, const YamlNode& variant);
/// Position, rotation and mirroring, kept as properties "Position", "Rotation" and "Mirror".
bool read_place(const Scope& scope, GTBlock& block, const YamlNode& node);
/// `broken` names blocks that already have faults: lines to them say nothing more.
void read_lines(const Reading& reading, const Scope& scope, const YamlNode& lines, const std::set<std::string>& broken);

// --- what is known of a subsystem before it is made

/// Where a subsystem's contents are written: in its own node, or at the root of another file.
struct Definition {
  const ModelFile* file;
  const LinkStep* links;
  const YamlNode* node;
};

/// Null node, and an error, where the file can't be had or is the one that is being read.
Definition find_definition(Reading& reading, const Scope& scope, const YamlNode& node);

}  // namespace kinemo::formats::diagram
