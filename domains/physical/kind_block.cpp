#include "domains/physical/kind_block.hpp"

#include "common/gl/gti/export/common_block_params.hpp"
#include "common/gl/gti/export/core_block_facade.hpp"
#include "domains/physical/model_settings.hpp"
#include "domains/physical/parameter_reader.hpp"
#include "platform/foundation/strings.hpp"
#include "platform/foundation/warning.hpp"

#include <algorithm>

namespace kinemo::physical {

namespace {

ustring path_of(double handle) {
  const GTBlock* block = GTBlock::Handle2Block(handle);
  return block ? block->getFullPath(false) : ustring();
}

gl::core::Parameter text_parameter(const ustring& text) {
  return gl::core::Parameter(text, gl::core::ParameterType::text());
}

/// Whether a parameter may stay an expression. Refuses words beside the two that are known: a misspelt one would
/// silently fix the parameter.
bool is_tunable(const ParameterReader& reader, const kmf::VnId& conf) {
  return !reader.has(conf) || reader.choice(conf, {"compiletime", "runtime"}) == u"runtime";
}

bool follows_setting(const ParameterReader& reader, const PreparedParameter& parameter) {
  return !parameter.setting.empty() && reader.has(parameter.from) &&
         reader.choice(parameter.from, {from_model, from_block}) == kmf::utf8_string_to_ustring(from_model);
}

gl::core::Parameter read_setting(const ParameterReader& reader, const PreparedParameter& parameter, double block) {
  const ustring path = path_of(block);
  const ustring typed = reader.typed(parameter.id);
  if (!typed.empty() && typed != parameter.value) {
    kmf::Warning::get().issueWarning(
        kmf::Message(kmf::MessageId("kinemo:physical:parameters", "ValueWithoutEffect", path, std::string(parameter.id),
                                    typed, parameter.setting, std::string(parameter.from))));
  }
  const std::string model = kmf::ustring_to_local_encoded_string(path.substr(0, path.find(u'/')));
  return parameter_of_setting(block, model, parameter.setting, is_tunable(reader, parameter.conf));
}

/// Where no unit is told, the translation binds none, and the number was read in the unit that the kind declares.
data2::core::Expr with_declared_unit(const data2::core::Expr& expression, const units2::core::ExprString& declared) {
  if (data2::core::bound_unit(expression).unit().id() != 0) return expression;
  return data2::core::UnitBindExpr(expression, declared);
}

/// Nothing for a row without numbers.
boost::optional<gl::core::Parameter> read(const ParameterReader& reader, const PreparedParameter& parameter) {
  switch (parameter.form) {
    case ParameterForm::expression:
      is_tunable(reader, parameter.conf);
      return reader.number(parameter.id, parameter.unit, parameter.rule);
    case ParameterForm::row:
      is_tunable(reader, parameter.conf);
      if (reader.isEmpty(parameter.id)) return boost::none;
      return reader.numbers(parameter.id, parameter.unit);
    case ParameterForm::choice:
      return text_parameter(reader.choice(parameter.id, parameter.choices));
    case ParameterForm::text:
      break;
  }
  return text_parameter(reader.text(parameter.id));
}

}  // namespace

KindBlock::KindBlock(std::shared_ptr<const PreparedKind> kind) : kind_(std::move(kind)), look_(kind_->standardLook()) {}

gl::gti::CoreBlockInfo* KindBlock::clone() const {
  return new KindBlock(*this);
}

void KindBlock::registerParameters(gl::gti::CoreBlockFacade& block) {
  gl::gti::CommonBlockParams* parameters = gl::gti::CommonBlockParams::get();
  block.registerParameters(parameters);
  parameters->setDefaultParameterValues(block);
}

const gl::gti::BlockDescriptor& KindBlock::descriptor() const {
  return look_->descriptor;
}

void KindBlock::checkParameters(gl::gti::CoreBlockFacade& block) {
  if (!kind_->hasManyLooks()) return;
  // Before its mask is generated a block has no parameters, and the nearest mask is that of a subsystem around it.
  const GTBlock* host = GTBlock::Handle2Block(block.handle());
  if (!host || MaskInterface::mask(host) != kind_->mask()) return;
  look_ = kind_->look(block.maskParams());
}

gl::core::Component KindBlock::component(gl::gti::CoreBlockFacade& block, const gl::gti::BlockData& data) {
  gl::core::Component component = look_->component;
  const ParameterReader reader(data, [handle = block.handle()] { return path_of(handle); });
  following_.clear();
  for (const PreparedParameter& parameter : kind_->parameters()) {
    if (follows_setting(reader, parameter)) {
      following_.push_back(parameter.id);
      component.addParameter(parameter.id, read_setting(reader, parameter, block.handle()));
    } else if (const auto own = read(reader, parameter)) {
      component.addParameter(parameter.id, *own);
    }
  }
  return component;
}

void KindBlock::applyRuntimeParameters(gl::gti::ParameterSetter setter, const gl::gti::ParameterRewrites& rewrites) {
  for (const PreparedParameter& parameter : kind_->parameters()) {
    const auto rewrite = follows(parameter.id) ? rewrites.end() : rewrites.find(parameter.id);
    if (rewrite != rewrites.end()) setter(parameter.id, with_declared_unit(rewrite->second, parameter.rule.unit));
  }
}

bool KindBlock::follows(const kmf::VnId& parameter) const {
  return std::find(following_.begin(), following_.end(), parameter) != following_.end();
}

}  // namespace kinemo::physical
