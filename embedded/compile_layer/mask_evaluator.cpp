#include "embedded/compile_layer/mask_evaluator.hpp"

#include "embedded/block_diagram/block_data.hpp"
#include "embedded/block_diagram/parameter_object.hpp"
#include "embedded/expression/parse.hpp"
#include "embedded/expression/walk.hpp"
#include "embedded/scripting_runtime/evaluate.hpp"
#include "platform/foundation/strings.hpp"

#include <algorithm>
#include <utility>

namespace embedded::compile_layer {

using block_diagram::SharedText;

namespace {

/// An array that outlives the call that made it.
cvUniquePtr kept(cvUniquePtr array) {
  cvSetArrayScope(array.get(), 0);
  return array;
}

bool hasNames(const expression::Tree& tree) {
  bool found = false;
  expression::visit_free_names(*tree, [&](const expression::Node&, expression::NameUse) { found = true; });
  return found;
}

std::string listed(const std::vector<std::string>& choices) {
  std::string text;
  for (const std::string& choice : choices) text += (text.empty() ? "" : ", ") + choice;
  return text;
}

cvUniquePtr booleanValue(const GTMaskParameter& parameter, const ustring& text) {
  const std::string word = kmf::lower(kmf::ustring_to_utf8_string(text));
  if (word != "on" && word != "off")
    kmf::throw_message("kinemo:host:compile", "InvalidChoice", parameter.name, text, "on, off");
  return cvUniquePtr(cvCreateLogicalScalar(word == "on"));
}

cvUniquePtr popupValue(const GTMaskParameter& parameter, const ustring& text) {
  const std::vector<std::string>& choices = parameter.choices;
  const bool known = std::find(choices.begin(), choices.end(), kmf::ustring_to_utf8_string(text)) != choices.end();
  if (!known && !choices.empty())
    kmf::throw_message("kinemo:host:compile", "InvalidChoice", parameter.name, text, listed(choices));
  return cvUniquePtr(cvCreateUString(text));
}

/// The error of a parameter: which one, its text, and why.
kmf::MessageException parameterError(const GTMask& mask, std::size_t i, const kmf::Exception& cause) {
  kmf::MessageException error(kmf::Message(
      kmf::MessageId("kinemo:host:compile", "ParameterError", mask.kind->parameters()[i].name, mask.text(i).text())));
  error.addCause(cause);
  return error;
}

/// Whether the text uses a variable whose own error has been told already.
bool usesFailed(const ustring& text, const Surroundings& around) {
  const expression::ParseResult parsed = expression::parse_cached(kmf::ustring_to_utf8_string(text));
  if (!parsed) return false;
  bool found = false;
  expression::visit_free_names(*parsed.tree, [&](const expression::Node& name, expression::NameUse) {
    found = found || around.isFailed(name.text());
  });
  return found;
}

}  // namespace

Surroundings::Surroundings(std::vector<const scripting_runtime::Workspace*> workspaces)
    : scope_(std::move(workspaces)) {}

Surroundings::Surroundings(const GTMask& mask, const std::vector<std::string>& failed,
                           std::shared_ptr<const Surroundings> outer)
    : failed_(failed.begin(), failed.end()), outer_(std::move(outer)), scope_(own_, outer_->scope()) {
  for (std::size_t i = 0; i < mask.values.size(); ++i) {
    if (const cvArray_tag* value = mask.values[i].get())
      own_.set(mask.kind->parameters()[i].name, cvUniquePtr(cvCreateSharedCopy(value)));
  }
}

Surroundings::~Surroundings() {
  // A chain of thousands of levels ends one by one.
  std::shared_ptr<const Surroundings> next = std::move(outer_);
  while (next && next.use_count() == 1) next = std::move(const_cast<Surroundings&>(*next).outer_);
}

bool Surroundings::isFailed(const std::string& name) const {
  for (const Surroundings* at = this; at; at = at->outer_.get()) {
    if (at->failed_.count(name)) return true;
    if (at->own_.has(name)) return false;
  }
  return false;
}

std::vector<std::string> MaskEvaluator::evaluate(GTMask& mask, const Surroundings& around, BlockErrors& errors) {
  std::vector<std::string> failed;
  mask.values.clear();
  mask.values.resize(mask.size());
  for (std::size_t i = 0; i < mask.size(); ++i) {
    try {
      mask.values[i] = kept(value(mask, i, around));
    } catch (const kmf::Exception& error) {
      failed.push_back(mask.kind->parameters()[i].name);
      if (!usesFailed(mask.text(i).text(), around)) errors.add(*mask.owner, parameterError(mask, i, error));
    }
  }
  return failed;
}

cvUniquePtr MaskEvaluator::value(const GTMask& mask, std::size_t i, const Surroundings& around) {
  const GTMaskParameter& parameter = mask.kind->parameters()[i];
  const SharedText& text = mask.text(i);
  switch (parameter.type) {
    case GTPrmDesc::BOOLEAN:
      return booleanValue(parameter, text.text());
    case GTPrmDesc::STRING:
      return cvUniquePtr(cvCreateUString(text.text()));
    case GTPrmDesc::POPUP:
      return popupValue(parameter, text.text());
    case GTPrmDesc::EDIT:
      break;
  }
  return expressionValue(text, around);
}

cvUniquePtr MaskEvaluator::expressionValue(const SharedText& text, const Surroundings& around) {
  const auto known = constants_.find(text.entry());
  if (known != constants_.end()) return cvUniquePtr(cvCreateSharedCopy(known->second.value.get()));
  const std::string source = kmf::ustring_to_utf8_string(text.text());
  const expression::ParseResult parsed = expression::parse_cached(source);
  if (!parsed) expression::throw_parse_error(parsed.error);
  if (hasNames(parsed.tree))
    return block_diagram::plainValue(scripting_runtime::evaluate(parsed.tree, around.scope(), source).get());
  Constant& constant = constants_[text.entry()];
  constant.text = text;
  constant.value = kept(scripting_runtime::evaluate(parsed.tree, {}, source));
  return cvUniquePtr(cvCreateSharedCopy(constant.value.get()));
}

}  // namespace embedded::compile_layer
