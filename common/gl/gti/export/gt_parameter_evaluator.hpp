#pragma once

#include "common/gl/gti/export/api.hpp"
#include "platform/foundation/ustring.hpp"
#include "platform/graph_core/graph.hpp"

#include <boost/shared_ptr.hpp>

namespace gl::gti {

/// Evaluates texts of model settings in the scope in which the host would evaluate them for one model. It takes a
/// snapshot of the model workspace when it is made: names are looked up there first, then in the base workspace at each
/// call. A model that is linked to a data dictionary is evaluated in the dictionary's scope alone. Never changes once
/// made; copies share the snapshot. Script errors pass through every operation.
class KINEMO_GTI_API GtParameterEvaluator {
 public:
  explicit GtParameterEvaluator(const ustring& modelName);
  GtParameterEvaluator(const GtParameterEvaluator&);
  GtParameterEvaluator(GtParameterEvaluator&&) noexcept;
  GtParameterEvaluator& operator=(const GtParameterEvaluator&) = delete;
  ~GtParameterEvaluator();

  /// A text, or a value with its unit; a "Gantrel.Parameter" object gives the value inside.
  /// @throws kmf::MessageException "kinemo:data:cvi" "CannotConvert" (class name) for any other result
  ParameterVariant operator()(const ustring& expression) const;
  /// The host's handle of the model.
  double modelHandle() const;

 private:
  struct Snapshot;
  boost::shared_ptr<const Snapshot> snapshot_;
};

}  // namespace gl::gti
