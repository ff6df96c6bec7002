#include "common/gl/gti/export/translation_configuration.hpp"

#include "common/gl/gti/export/block_data.hpp"
#include "common/gl/gti/export/component_embedding.hpp"
#include "platform/foundation/exception.hpp"

#include <boost/lexical_cast.hpp>
#include <boost/make_shared.hpp>

#include <array>
#include <string>

namespace gl::gti {

namespace {

constexpr const char* messageGroup = "kinemo:common:gl:gti:translation_configuration";

struct SmallerConnector {
  bool operator()(const kmf::VnIdPath1&, const gl::core::ConnectorSpec& a, const kmf::VnIdPath1&,
                  const gl::core::ConnectorSpec& b) const {
    return a < b;
  }
};

struct Constant {
  bool value;
  bool operator()() const { return value; }
};

}  // namespace

struct TranslationConfigurationData {
  std::array<BlockFactory, BlockType::NUM> factories;
  std::set<kmf::VnId> reserved;
  std::set<kmf::VnId> blockParameters;
  ModelParameterMap modelParameters;
  NonVirtualBoundaryFcn nonVirtualBoundaryFcn;
  ConnectorPrecedenceFcn connectorPrecedenceFcn = SmallerConnector();
  PropagateRuntimeParametersFcn propagateRuntimeParametersFcn = Constant{false};
};

TranslationConfiguration::TranslationConfiguration() : data_(boost::make_shared<TranslationConfigurationData>()) {}

TranslationConfiguration::TranslationConfiguration(const TranslationConfiguration&) = default;

TranslationConfiguration& TranslationConfiguration::operator=(TranslationConfiguration other) {
  swap(*this, other);
  return *this;
}

TranslationConfiguration::~TranslationConfiguration() = default;

void swap(TranslationConfiguration& a, TranslationConfiguration& b) {
  a.data_.swap(b.data_);
}

void TranslationConfiguration::factory(BlockType::Value type, const BlockFactory& factory) {
  data().factories.at(type) = factory;
}

const BlockFactory& TranslationConfiguration::factory(BlockType::Value type) const {
  const BlockFactory& factory = data().factories.at(type);
  if (factory.empty()) kmf::throw_message(messageGroup, "UnsetFactory", boost::lexical_cast<std::string>(type));
  return factory;
}

bool TranslationConfiguration::hasFactory(BlockType::Value type) const {
  return !data().factories.at(type).empty();
}

void TranslationConfiguration::addReserved(const kmf::VnId& id) {
  data().reserved.insert(id);
}

const std::set<kmf::VnId>& TranslationConfiguration::reserved() const {
  return data().reserved;
}

void TranslationConfiguration::addBlockParameter(const kmf::VnId& id) {
  data().blockParameters.insert(id);
}

const std::set<kmf::VnId>& TranslationConfiguration::blockParameters() const {
  return data().blockParameters;
}

void TranslationConfiguration::addModelParameter(const kmf::VnId& id, const ParameterVariant& defaultValue,
                                                 const ModelParameterConversion& conversion) {
  data().modelParameters.insert_or_assign(id, std::make_pair(defaultValue, conversion));
}

const ModelParameterMap& TranslationConfiguration::modelParameters() const {
  return data().modelParameters;
}

void TranslationConfiguration::connectorPrecedenceFcn(const ConnectorPrecedenceFcn& function) {
  data().connectorPrecedenceFcn = function;
}

const ConnectorPrecedenceFcn& TranslationConfiguration::connectorPrecedenceFcn() const {
  return data().connectorPrecedenceFcn;
}

void TranslationConfiguration::nonVirtualBoundaryFcn(const NonVirtualBoundaryFcn& function) {
  data().nonVirtualBoundaryFcn = function;
}

const NonVirtualBoundaryFcn& TranslationConfiguration::nonVirtualBoundaryFcn() const {
  if (!hasNonVirtualBoundaryFcn()) kmf::throw_message(messageGroup, "UnsetNonVirtualBoundaryFcn");
  return data().nonVirtualBoundaryFcn;
}

bool TranslationConfiguration::hasNonVirtualBoundaryFcn() const {
  return !data().nonVirtualBoundaryFcn.empty();
}

void TranslationConfiguration::propagateRuntimeParametersFcn(const PropagateRuntimeParametersFcn& function) {
  data().propagateRuntimeParametersFcn = function;
}

const PropagateRuntimeParametersFcn& TranslationConfiguration::propagateRuntimeParametersFcn() const {
  return data().propagateRuntimeParametersFcn;
}

TranslationConfigurationData& TranslationConfiguration::data() {
  if (data_.use_count() != 1) data_ = boost::make_shared<TranslationConfigurationData>(*data_);
  return *data_;
}

}  // namespace gl::gti
