#pragma once

#include "common/gl/gti/export/translation_configuration.hpp"
#include "common/gl/gti/export/translation_manager.hpp"
#include "common/gl/gti/src/kernel/block_model/block_entry.hpp"
#include "common/gl/gti/src/kernel/translation/hierarchy_fold.hpp"
#include "platform/foundation/ustring.hpp"
#include "platform/graph_core/graph.hpp"

#include <boost/any.hpp>
#include <boost/shared_ptr.hpp>

#include <set>
#include <vector>

namespace gl::gti {

class ModelConnectivity;

/// What a translation makes: the model's graph, and every entry that took part. The entries are kept as a list and
/// become a map when it is asked for: full paths of deep models are long, and most compiles have no need of the map.
struct TranslationResult {
  gl::core::Graph graph;
  /// Leaves in the order in which the model got them, then subsystems in the order of their folding.
  std::vector<boost::shared_ptr<BlockEntryData>> entryList;

  /// The entries by full path. Of two with one path the one that comes first in the list: a leaf before a subsystem.
  BlockEntryMap entries() const;
};

/// One model of one domain: its configuration, the entries of its blocks, and what the domain keeps with it. Owned by
/// the domain's manager. A compile leaves nothing behind: each call is a whole run over the entries.
class ModelManager {
 public:
  ModelManager(const ustring& name, const TranslationConfiguration& configuration);
  /// A manager that can compile, but that would claim blocks again: handles, settings and the domain's value start
  /// empty.
  ModelManager(const ModelManager& other);
  ModelManager& operator=(const ModelManager&) = delete;

  const ustring& name() const { return name_; }
  const TranslationConfiguration& configuration() const { return *configuration_; }
  const std::vector<boost::shared_ptr<BlockEntryData>>& entries() const { return entries_; }
  const std::set<double>& handles() const { return handles_; }

  /// Makes an entry for each block that no entry covers yet. An error leaves the entries made before it.
  void addConnectivity(ModelConnectivity& connectivity);

  /// @throws kmf::MessageException "kinemo:common:gl:gti:compile" "MultipleCompilationErrors" (model), and whatever the
  /// fold, the boundary check and the configuration's functions raise
  gl::core::Model model() const;
  gl::core::Graph graph() const;
  /// `reservedIds` are taken in the model's own graph.
  TranslationResult translate(const std::vector<kmf::VnId>& reservedIds) const;

  /// Reads the configuration's model parameters from the host. @throws "ConfigSetEvalErr" (text, parameter, model)
  const ObjectParameterMap& objectParameters();
  boost::any& data() { return data_; }

 private:
  ustring name_;
  boost::shared_ptr<TranslationConfiguration> configuration_;
  std::set<double> handles_;
  std::vector<boost::shared_ptr<BlockEntryData>> entries_;
  ObjectParameterMap objectParameters_;
  boost::any data_;
};

}  // namespace gl::gti
