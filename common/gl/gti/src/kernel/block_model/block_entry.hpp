#pragma once

// The snapshot of one block during a translation: what the host says about it, and the means to turn that into a
// component. A model's manager owns the entries of its leaf blocks; a compile adds one for each subsystem it has
// folded. Entries are held by `boost::shared_ptr`, copied on write, and can outlive the compile.

#include "common/gl/gti/export/block_data.hpp"
#include "common/gl/gti/export/block_type.hpp"
#include "common/gl/gti/export/component_embedding.hpp"
#include "common/gl/gti/export/parameter_rewrites.hpp"
#include "common/gl/gti/src/kernel/block_model/port_record.hpp"
#include "platform/foundation/ustring.hpp"

#include <boost/shared_ptr.hpp>

#include <functional>
#include <iosfwd>
#include <map>
#include <set>
#include <string>

namespace gl::gti {

class KmIoPortCache;
class ModelConnectivity;
class TranslationConfiguration;

class BlockEntryData {
 public:
  virtual ~BlockEntryData();
  /// Adds to a table of port handles and what stands in for them; no entry of ours has anything to add.
  virtual void collectSubstitutions(std::map<double, double>& substitutions) = 0;
  /// Makes the block's component. Errors of factories pass through.
  virtual ComponentEmbedding embedding(const TranslationConfiguration& config) const = 0;
  /// Offers expressions for the block's parameters; the block calls `setter` for those it takes. Ignored here.
  virtual void applyRuntimeParameters(ParameterSetter setter, const ParameterRewrites& rewrites);
  /// A member-wise copy.
  virtual boost::shared_ptr<BlockEntryData> clone() const = 0;

  /// Full path of the block, the model's name in front.
  const ustring& path() const { return path_; }
  /// Host handle of the block.
  double handle() const { return handle_; }
  /// By port handle.
  const std::map<double, PortRecord>& ports() const { return ports_; }
  /// Block handles that this entry covers; a leaf covers its own.
  const std::set<double>& handles() const { return handles_; }
  /// The parameters read from the block.
  const BlockData& data() const { return data_; }

  void applySubstitutions(const std::map<double, double>& table);
  void print(std::ostream& out, const std::string& indent) const;

 protected:
  BlockEntryData() = default;
  BlockEntryData(const BlockEntryData&) = default;
  BlockEntryData& operator=(const BlockEntryData&) = delete;

  ustring path_;
  double handle_ = -1.0;
  std::map<double, PortRecord> ports_;
  std::set<double> handles_;
  BlockData data_;
};

/// Shorter paths first, those of one length by their last difference. Paths of one model have long beginnings in
/// common: in a deep model, comparing them from the front would be most of the work of a look-up.
struct PathOrder {
  bool operator()(const ustring& a, const ustring& b) const noexcept {
    if (a.size() != b.size()) return a.size() < b.size();
    for (std::size_t i = a.size(); i-- > 0;)
      if (a[i] != b[i]) return a[i] < b[i];
    return false;
  }
};

/// The entries of a compile by full path, those of leaves and of subsystems.
using BlockEntryMap = std::map<ustring, boost::shared_ptr<BlockEntryData>, PathOrder>;

/// The entry of a leaf block, whose component a factory makes.
class FactoryBlockEntryData : public BlockEntryData {
 public:
  void collectSubstitutions(std::map<double, double>&) override {}
  /// Hands `makeEmbedding` the block's data with the names of its ports and the configuration's block parameters added.
  ComponentEmbedding embedding(const TranslationConfiguration& config) const override;

  virtual BlockType::Value blockType() const = 0;
  /// Calls the configuration's factory of this block type.
  virtual ComponentEmbedding makeEmbedding(const TranslationConfiguration& config, const BlockData& data) const;

 protected:
  /// Gives the name of one of the block's ports by its handle.
  using PortName = std::function<ustring(double portHandle)>;

  FactoryBlockEntryData() = default;
  FactoryBlockEntryData(const FactoryBlockEntryData&) = default;

  /// First step of making a leaf: path, handle, mask parameters, and the handle that it covers.
  void readBlock(double handle, const ModelConnectivity& connectivity);
  /// Last step of making a leaf: one row for each connected port. `portName` is asked once for each row.
  void readPorts(ModelConnectivity& connectivity, const PortName& portName);
};

/// The entry of a leaf: a core entry for a block of our own block class, an opaque one for any other block.
boost::shared_ptr<BlockEntryData> makeBlockEntry(KmIoPortCache& ioPorts, double handle,
                                                 ModelConnectivity& connectivity);

/// Copies the entry first unless `entry` is its only owner; then replaces handles in all of its ports.
void applySubstitutions(boost::shared_ptr<BlockEntryData>& entry, const std::map<double, double>& substitutions);

/// Whether the block is an opaque subsystem: a "SubSystem" whose "Opaque" is "on".
bool isOpaqueSubsystem(double handle);

/// For people: the path, then each port with what it is joined to.
std::ostream& operator<<(std::ostream& out, const BlockEntryData& entry);

}  // namespace gl::gti
