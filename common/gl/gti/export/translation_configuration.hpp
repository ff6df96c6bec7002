#pragma once

#include "common/gl/gti/export/api.hpp"
#include "common/gl/gti/export/block_type.hpp"
#include "platform/foundation/vn_id.hpp"
#include "platform/graph_core/graph.hpp"
#include "platform/scripting_array/scripting_array.hpp"

#include <boost/function.hpp>
#include <boost/shared_ptr.hpp>
#include <boost/variant.hpp>

#include <functional>
#include <map>
#include <set>
#include <utility>
#include <vector>

namespace gl::gti {

class BlockData;
class ComponentEmbedding;
class GtParameterEvaluator;
struct TranslationConfigurationData;

/// Makes a component from what was read off a block, and says which connector of it stands for which port.
using BlockFactory = boost::function1<ComponentEmbedding, const BlockData&>;

/// True when connector `a` wins over connector `b`: the winner of a net names its node. It must be a strict ordering of
/// distinct connectors, so ties have to be broken.
using ConnectorPrecedenceFcn = boost::function<bool(const kmf::VnIdPath1& typeA, const gl::core::ConnectorSpec& a,
                                                    const kmf::VnIdPath1& typeB, const gl::core::ConnectorSpec& b)>;

/// Is told the components of networks that reach across an atomic subsystem, once for each compile that has any.
using NonVirtualBoundaryFcn = boost::function<void(const std::vector<gl::core::Component>&)>;

/// Whether a model's run-time parameters are propagated through its graph; asked in each compile.
using PropagateRuntimeParametersFcn = boost::function<bool()>;

/// How to turn what the host holds for a model parameter into its value:
/// `false`: the host's text as it stands; `true`: the text is an expression, and "auto" stands for the default;
/// a function: whatever it returns.
using ModelParameterConversion =
    boost::variant<bool, std::function<ParameterVariant(const cvUniquePtr&, GtParameterEvaluator)>>;

/// By parameter: the value where the model has no such parameter or leaves it to us, and the conversion.
using ModelParameterMap = std::map<kmf::VnId, std::pair<ParameterVariant, ModelParameterConversion>>;

/// How a domain wants its blocks translated. The domain fills one and hands it to `TranslationManager::registerModel`.
/// A value type: copies share their contents until one of them is changed. Nothing is validated when it is set.
class KINEMO_GTI_API TranslationConfiguration {
 public:
  /// No factories, no identifiers, no boundary function; the smaller connector wins; no propagation.
  TranslationConfiguration();
  TranslationConfiguration(const TranslationConfiguration&);
  TranslationConfiguration& operator=(TranslationConfiguration other);
  ~TranslationConfiguration();
  friend KINEMO_GTI_API void swap(TranslationConfiguration& a, TranslationConfiguration& b);

  void factory(BlockType::Value type, const BlockFactory& factory);
  /// @throws kmf::MessageException "kinemo:common:gl:gti:translation_configuration" "UnsetFactory" (type)
  const BlockFactory& factory(BlockType::Value type) const;
  bool hasFactory(BlockType::Value type) const;

  /// An identifier that no generated identifier may take.
  void addReserved(const kmf::VnId& id);
  const std::set<kmf::VnId>& reserved() const;

  /// A property that is read from each block that goes to a factory.
  void addBlockParameter(const kmf::VnId& id);
  const std::set<kmf::VnId>& blockParameters() const;

  /// A setting that is read from the model, in place of an earlier one of that identifier.
  void addModelParameter(const kmf::VnId& id, const ParameterVariant& defaultValue,
                         const ModelParameterConversion& conversion);
  const ModelParameterMap& modelParameters() const;

  void connectorPrecedenceFcn(const ConnectorPrecedenceFcn& function);
  const ConnectorPrecedenceFcn& connectorPrecedenceFcn() const;

  void nonVirtualBoundaryFcn(const NonVirtualBoundaryFcn& function);
  /// @throws as `factory`, "UnsetNonVirtualBoundaryFcn"
  const NonVirtualBoundaryFcn& nonVirtualBoundaryFcn() const;
  bool hasNonVirtualBoundaryFcn() const;

  void propagateRuntimeParametersFcn(const PropagateRuntimeParametersFcn& function);
  const PropagateRuntimeParametersFcn& propagateRuntimeParametersFcn() const;

 private:
  TranslationConfigurationData& data();
  const TranslationConfigurationData& data() const { return *data_; }

  boost::shared_ptr<TranslationConfigurationData> data_;
};

KINEMO_GTI_API void swap(TranslationConfiguration& a, TranslationConfiguration& b);

}  // namespace gl::gti
