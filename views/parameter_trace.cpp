#include "views/parameter_trace.hpp"

#include "embedded/block_diagram/block_data.hpp"
#include "embedded/block_diagram/data_dictionary.hpp"
#include "embedded/block_diagram/parameter_object.hpp"
#include "embedded/expression/parse.hpp"
#include "embedded/expression/walk.hpp"
#include "platform/data/data.hpp"
#include "platform/foundation/strings.hpp"
#include "platform/scripting_runtime/scripting_runtime.hpp"
#include "views/block_ports.hpp"
#include "views/error_diagnostics.hpp"

#include <map>
#include <utility>

namespace kinemo::views {

namespace {

namespace host = embedded::block_diagram;

std::string utf8(const ustring& text) {
  return kmf::ustring_to_utf8_string(text);
}

/// None for what is neither numbers nor text.
boost::optional<ParameterVariant> value_of(const cvArray_tag* array) {
  if (array == nullptr) return boost::none;
  if (cvIsChar(array)) return ParameterVariant(cvGetCharacters(array));
  const data2::cvi::CvArrayValueConverter convert(unit_manager::get_cv_context());
  if (!convert.canConvert(array)) return boost::none;
  return ParameterVariant(convert(array));
}

/// Follows names outward. What is still to be looked at waits in a list, so that the number of masks is no matter.
class Tracer {
 public:
  Tracer(host::Diagram& diagram, const std::string& file) : diagram_(diagram), file_(file), variables_(diagram) {}

  ParameterTrace run(const GTBlock& block, const std::string& parameter,
                     const boost::optional<ParameterVariant>& compiled) {
    of_mask(block, parameter, OriginKind::dialog);
    if (trace_.origins.front().follows_setting()) {
      follow_setting(compiled);
      return std::move(trace_);
    }
    for (std::size_t next = 0; next < trace_.origins.size(); ++next) follow(next);
    return std::move(trace_);
  }

 private:
  using Key = std::pair<const GTBlock*, std::string>;

  /// The subsystem, from the one around `block` outward, whose mask has the name; null when a variable has it.
  static const GTBlock* owner_of(const GTBlock& block, const std::string& name) {
    for (const GTBlock* owner = host::parentSystem(block).owner(); owner != nullptr;
         owner = host::parentSystem(*owner).owner()) {
      const GTMask* mask = owner->host().mask.get();
      if (mask != nullptr && mask->kind->find(name) >= 0) return owner;
    }
    return nullptr;
  }

  std::size_t added(const Key& key, Origin origin) {
    const std::size_t index = trace_.origins.size();
    trace_.origins.push_back(std::move(origin));
    blocks_.push_back(key.first);
    known_.emplace(key, index);
    return index;
  }

  std::size_t of_mask(const GTBlock& block, const std::string& name, OriginKind kind) {
    const Key key{&block, name};
    if (const auto known = known_.find(key); known != known_.end()) return known->second;
    const GTMask& mask = *block.host().mask;
    const int index = mask.kind->find(name);
    const std::string path = utf8(block.getFullPath(false));
    Origin origin;
    origin.kind = kind;
    origin.block = relative_path(block.getFullPath(false));
    origin.name = name;
    origin.text = utf8(mask.text(static_cast<std::size_t>(index)).text());
    origin.is_expression = mask.kind->parameters()[static_cast<std::size_t>(index)].type == GTPrmDesc::EDIT;
    origin.place = place_of(path, &diagram_, file_);
    if (kind == OriginKind::dialog) {
      origin.unit = text_of(mask, name + "_unit");
      origin.conf = text_of(mask, name + "_conf");
      origin.from = text_of(mask, name + "_from");
    }
    origin.evaluated = !mask.values.empty();
    if (origin.evaluated) origin.value = value_of(mask.values[static_cast<std::size_t>(index)].get());
    return added(key, std::move(origin));
  }

  static std::string text_of(const GTMask& mask, const std::string& name) {
    const int index = mask.kind->find(name);
    return index < 0 ? std::string() : utf8(mask.text(static_cast<std::size_t>(index)).text());
  }

  std::size_t of_variable(const std::string& name) {
    const Key key{nullptr, name};
    if (const auto known = known_.find(key); known != known_.end()) return known->second;
    Origin origin;
    origin.name = name;
    const cvArray_tag* value = variables_.scope().find(name);
    if (value != nullptr) {
      origin.kind = diagram_.workspace().has(name)     ? OriginKind::model_workspace
                    : variables_.find(name) != nullptr ? OriginKind::dictionary
                                                       : OriginKind::base_workspace;
      origin.runtime = host::isRuntime(value) && origin.kind != OriginKind::base_workspace;
      origin.value = value_of(with_unit(value).get());
    }
    return added(key, std::move(origin));
  }

  /// What the variable is worth.
  static cvUniquePtr with_unit(const cvArray_tag* variable) {
    if (!host::isParameterObject(variable)) return cvUniquePtr(cvCreateSharedCopy(variable));
    return cvUniquePtr(cvGetProperty(variable, 0, "Value"));
  }

  /// The block takes an expression of a setting over names that mean the same at the top of the model.
  void follow_setting(const boost::optional<ParameterVariant>& compiled) {
    const auto* expression = compiled ? boost::get<data2::core::Expr>(&*compiled) : nullptr;
    if (expression == nullptr) return;
    std::vector<std::size_t> names;
    for (const kmf::VnId& name : data2::core::UsedIds()(*expression)) names.push_back(of_variable(std::string(name)));
    trace_.origins.front().names = std::move(names);
  }

  void follow(std::size_t index) {
    const GTBlock* block = blocks_[index];
    if (block == nullptr || !trace_.origins[index].is_expression) return;
    const auto parsed = embedded::expression::parse_cached(trace_.origins[index].text);
    if (!parsed) return;
    std::vector<std::size_t> names;
    for (const std::string& name : embedded::expression::used_names(*parsed.tree, true)) {
      const GTBlock* owner = owner_of(*block, name);
      if (owner == nullptr && variables_.scope().find(name) == nullptr) continue;  // a function or a constant
      names.push_back(owner != nullptr ? of_mask(*owner, name, OriginKind::mask) : of_variable(name));
    }
    trace_.origins[index].names = std::move(names);
  }

  host::Diagram& diagram_;
  const std::string& file_;
  host::VariableScope variables_;
  ParameterTrace trace_;
  std::vector<const GTBlock*> blocks_;  ///< behind each origin; null for variables
  std::map<Key, std::size_t> known_;
};

}  // namespace

bool Origin::follows_setting() const {
  return kmf::lower(from) == "model";
}

ParameterTrace trace_parameter(host::Diagram& diagram, const GTBlock& block, const std::string& parameter,
                               const boost::optional<ParameterVariant>& compiled, const std::string& file) {
  return Tracer(diagram, file).run(block, parameter, compiled);
}

std::string place_text(const Origin& origin) {
  switch (origin.kind) {
    case OriginKind::dialog:
      return "the dialog of '" + origin.block + "'";
    case OriginKind::mask:
      return "the mask of '" + origin.block + "'";
    case OriginKind::model_workspace:
      return "the model workspace";
    case OriginKind::dictionary:
      return "the data dictionary";
    case OriginKind::base_workspace:
      return "the base workspace";
    case OriginKind::unknown:
      break;
  }
  return "no workspace";
}

}  // namespace kinemo::views
