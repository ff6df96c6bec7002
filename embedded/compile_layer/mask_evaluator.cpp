#include "embedded/compile_layer/mask_evaluator.hpp"

#include "embedded/block_diagram/parameter_object.hpp"
#include "embedded/expression/parse.hpp"
#include "embedded/expression/walk.hpp"
#include "embedded/scripting_runtime/evaluate.hpp"
#include "embedded/scripting_runtime/numbers.hpp"
#include "platform/foundation/strings.hpp"
#include "platform/scripting_runtime/scripting_runtime.hpp"

#include <algorithm>

namespace embedded::compile_layer {

using block_diagram::SharedText;

namespace {

/// Values of masks outlive every call, also one that the runtime itself began.
cvUniquePtr lasting(cvUniquePtr value) {
  cvSetArrayScope(value.get(), 0);
  return value;
}

cvUniquePtr share(const cvUniquePtr& value) {
  return lasting(cvUniquePtr(cvCreateSharedCopy(value.get())));
}

/// A mask's value as blocks inside compute with it: as doubles, which is what the compiled graph has of it.
cvUniquePtr asSeenInside(const cvUniquePtr& value) {
  const bool isNarrow = cvIsNumeric(value.get()) && cvGetClassID(value.get()) != cvDOUBLE_CLASS;
  if (!isNarrow || cvIsComplex(value.get())) return share(value);
  scripting_runtime::Numbers numbers = scripting_runtime::numbers_of(value.get());
  numbers.class_id = cvDOUBLE_CLASS;
  return lasting(scripting_runtime::array_of(std::move(numbers)));
}

/// @throws "kinemo:host:compile" "InvalidChoice" (text, what is valid)
void checkChoice(const ustring& text, const std::vector<std::string>& choices) {
  if (choices.empty() || std::count(choices.begin(), choices.end(), kmf::ustring_to_utf8_string(text)) != 0) return;
  std::string valid;
  for (const std::string& choice : choices) valid += (valid.empty() ? "" : ", ") + choice;
  kmf::throw_message("kinemo:host:compile", "InvalidChoice", text, valid);
}

}  // namespace

MaskFrame::MaskFrame(block_diagram::Diagram& diagram)
    : variables_(std::make_unique<block_diagram::VariableScope>(diagram)), scope_(variables_->scope()) {}

MaskFrame::MaskFrame(const MaskFrame& outer, const GTMask& mask) : outer_(&outer), scope_(workspace_, outer.scope_) {
  for (std::size_t i = 0; i < mask.size(); ++i) {
    const std::string& name = mask.kind->parameters()[i].name;
    if (mask.values[i]) {
      workspace_.set(name, asSeenInside(mask.values[i]));
    } else {
      failed_.insert(name);
    }
  }
}

bool MaskFrame::lacks(const std::string& name) const {
  for (const MaskFrame* frame = this; frame; frame = frame->outer_) {
    if (frame->failed_.count(name) != 0) return true;
    if (frame->workspace_.has(name)) return false;
  }
  return false;
}

bool MaskEvaluator::evaluate(const GTBlock& block, GTMask& mask, const MaskFrame& frame) {
  bool complete = true;
  mask.values.clear();
  mask.values.resize(mask.size());
  for (std::size_t i = 0; i < mask.size(); ++i) {
    try {
      mask.values[i] = valueOf(mask, i, frame);
    } catch (const kmf::Exception& error) {
      if (kmf::interrupt_requested()) throw;  // no fault of the block
      report(block, mask, i, frame, error);
      complete = false;
    }
  }
  return complete;
}

cvUniquePtr MaskEvaluator::valueOf(const GTMask& mask, std::size_t parameter, const MaskFrame& frame) {
  const GTMaskParameter& description = mask.kind->parameters()[parameter];
  const SharedText& text = mask.text(parameter);
  switch (description.type) {
    case GTPrmDesc::EDIT:
      return expression(text, frame);
    case GTPrmDesc::BOOLEAN:
      checkChoice(text.text(), {"on", "off"});
      return lasting(cvUniquePtr(cvCreateLogicalScalar(text.text() == u"on")));
    case GTPrmDesc::POPUP:
      checkChoice(text.text(), description.choices);
      break;
    case GTPrmDesc::STRING:
      break;
  }
  return literal(text);
}

cvUniquePtr MaskEvaluator::literal(const SharedText& text) {
  Known& known = literals_[text.entry()];
  if (!known.value) known = {text, lasting(cvUniquePtr(cvCreateUString(text.text())))};
  return share(known.value);
}

cvUniquePtr MaskEvaluator::expression(const SharedText& text, const MaskFrame& frame) {
  const auto known = constants_.find(text.entry());
  if (known != constants_.end()) return share(known->second.value);
  const std::string source = kmf::ustring_to_utf8_string(text.text());
  const expression::ParseResult parsed = expression::parse_cached(source);
  if (!parsed) expression::throw_parse_error(parsed.error);
  // A parameter object is worth its value; the unit goes along through all masks to whoever reads it.
  const cvUniquePtr result = scripting_runtime::evaluate(parsed.tree, frame.scope(), source);
  cvUniquePtr value = lasting(block_diagram::parameterValue(result.get()));
  if (expression::used_names(*parsed.tree, true).empty()) constants_[text.entry()] = {text, share(value)};
  return value;
}

void MaskEvaluator::report(const GTBlock& block, const GTMask& mask, std::size_t parameter, const MaskFrame& frame,
                           const kmf::Exception& cause) {
  const ustring& text = mask.text(parameter).text();
  const expression::ParseResult parsed = expression::parse_cached(kmf::ustring_to_utf8_string(text));
  if (parsed) {
    const std::set<std::string> names = expression::used_names(*parsed.tree, true);
    if (std::any_of(names.begin(), names.end(), [&](const std::string& name) { return frame.lacks(name); })) return;
  }
  const ustring path = block.getFullPath(false);
  kmf::MessageException error(kmf::Message(
      kmf::MessageId("kinemo:host:compile", "ParameterError", path, mask.kind->parameters()[parameter].name, text)));
  error.addObject(path);
  error.addCause(cause);
  errors_->addCause(error);
}

}  // namespace embedded::compile_layer
