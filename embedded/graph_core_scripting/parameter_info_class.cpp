// The class kinemo.gl.RuntimeParameterInfo.

#include "embedded/class_system/objects.hpp"
#include "embedded/graph_core_scripting/arrays.hpp"
#include "embedded/graph_core_scripting/component_paths.hpp"
#include "embedded/graph_core_scripting/model_values.hpp"
#include "embedded/graph_core_scripting/script_classes.hpp"
#include "embedded/scripting_runtime/display.hpp"
#include "platform/foundation/exception.hpp"

#include <algorithm>
#include <cmath>

namespace embedded::graph_core_scripting {

namespace {

using gl::core::RuntimeParameterInfo;
using scripting_runtime::Call;

constexpr char group[] = "kinemo:graph:scripting";

const RuntimeParameterInfo& info_of(const Call& call) {
  return class_system::single<RuntimeParameterInfo>(call[0]);
}

std::vector<std::string> texts_of(const std::set<kmf::VnId>& ids) {
  return std::vector<std::string>(ids.begin(), ids.end());
}

void names(Call& call) {
  call.give(text_column(texts_of(info_of(call).runtimeParameters())));
}

void non_values(Call& call) {
  call.give(text_column(texts_of(info_of(call).nonValueParameters())));
}

template <class Array>
cvUniquePtr structure_of(const RuntimeParameterInfo& info, const Array& array) {
  FieldValues fields;
  for (const kmf::VnId& id : info.runtimeParameters()) fields.emplace_back(id, array(info.value(id)));
  return structure(std::move(fields));
}

void values(Call& call) {
  call.give(structure_of(info_of(call), numbers_of));
}

void units(Call& call) {
  call.give(structure_of(info_of(call), [](const data2::core::ValueData& value) {
    return cvUniquePtr(cvCreateString(value.unit().text()));
  }));
}

/// "1x3"
std::string shape_text(const data2::core::ValueData& value) {
  std::string text;
  for (const std::size_t size : value.dimensions()) text += (text.empty() ? "" : "x") + std::to_string(size);
  return text;
}

/// Values that a script gives in place of those of the compile. A compile takes no NaN, and only a compile changes
/// shapes. Names that aren't known are told later.
class Changes {
 public:
  explicit Changes(const RuntimeParameterInfo& info) : info_(info), known_(info.runtimeParameters()) {}

  void add(const std::string& name, const cvArray_tag* array) {
    const data2::cvi::CvArrayValueConverter convert(unit_manager::get_cv_context());
    data2::core::ValueData value = convert(array).data();
    const std::vector<double>& elements = value.elements();
    if (std::any_of(elements.begin(), elements.end(), [](double x) { return std::isnan(x); })) {
      kmf::throw_message(group, "ValueIsNaN", name);
    }
    if (kmf::VnId::isLegal(name) && known_.count(kmf::VnId(name)) != 0) check_shape(name, value);
    values_[name] = std::move(value);
  }

  const RuntimeValues& values() const { return values_; }

 private:
  void check_shape(const std::string& name, const data2::core::ValueData& value) const {
    const data2::core::ValueData& declared = info_.value(kmf::VnId(name));
    if (value.dimensions() == declared.dimensions()) return;
    kmf::throw_message(group, "OtherShape", name, shape_text(value), shape_text(declared));
  }

  const RuntimeParameterInfo& info_;
  std::set<kmf::VnId> known_;
  RuntimeValues values_;
};

/// The changed values: structures, or names each with a value behind it.
RuntimeValues changes_in(const Call& call, std::size_t first) {
  Changes changes(info_of(call));
  for (std::size_t i = first; i < call.size(); ++i) {
    if (cvIsStruct(call[i])) {
      if (cvGetNumberOfElements(call[i]) != 1) kmf::throw_message(group, "ChangesNotOneStructure");
      for (const std::string& name : cvGetFieldNames(call[i])) changes.add(name, cvGetField(call[i], 0, name.c_str()));
      continue;
    }
    const std::string name = call.text(i);
    if (++i == call.size()) kmf::throw_message(group, "NameWithoutValue", name);
    changes.add(name, call[i]);
  }
  return changes.values();
}

kmf::VnId parameter_named(const FoundComponent& found, const std::string& name) {
  std::vector<std::string> known;
  for (const auto& entry : found.component().parameters()) {
    if (entry.first.view() == name) return entry.first;
    known.emplace_back(entry.first);
  }
  throw_with_nearest(
      kmf::MessageException(kmf::Message(kmf::MessageId(group, "NoSuchParameter", name, address_text(found.address)))),
      name, known);
}

void evaluate(Call& call) {
  const auto& graph = class_system::single<gl::core::Graph>(call[1]);
  const FoundComponent found = find_component(graph, names_in(call[2]));
  const kmf::VnId parameter = parameter_named(found, call.text(3));
  ModelValues model(gl::core::Model(graph, info_of(call)), changes_in(call, 4));
  call.give(array_of(model.value(found.address, parameter).data()));
}

std::string summary(const RuntimeParameterInfo& info) {
  constexpr std::size_t most_shown = 20;
  const std::set<kmf::VnId> ids = info.runtimeParameters();
  if (ids.empty() && info.nonValueParameters().empty()) return "No run-time parameters";
  std::string text = "Run-time parameters:";
  std::size_t shown = 0;
  for (const kmf::VnId& id : ids) {
    if (++shown > most_shown) return text + "\n  and " + std::to_string(ids.size() - most_shown) + " more";
    text += "\n  " + std::string(id) + " = " + scripting_runtime::display_text(array_of(info.value(id)).get());
  }
  for (const kmf::VnId& id : info.nonValueParameters()) text += "\n  " + std::string(id) + " isn't numeric";
  return text;
}

}  // namespace

class_system::ClassDefinition parameter_info_class() {
  auto definition = class_system::class_around<RuntimeParameterInfo>(parameter_info_class_name);
  definition.help = {"r = kinemo.gl.gt.runtimeParameterInfo(domain, model)",
                     "The parameters of a compiled model that stay tunable at run time, with their values.",
                     "isequal(r, s) compares contents. kinemo.gl.RuntimeParameterInfo() has none."};
  definition.display = [](const void* info) { return summary(*static_cast<const RuntimeParameterInfo*>(info)); };
  definition.methods = {
      {"names",
       {},
       {},
       "",
       {"n = r.names", "Names of the run-time parameters that have numeric values, sorted.", "A column of texts."},
       names},
      {"nonValues",
       {},
       {},
       "",
       {"n = r.nonValues", "Names that are marked as run-time, but whose values aren't numeric.", "A column of texts."},
       non_values},
      {"values",
       {},
       {},
       "",
       {"s = r.values", "The values of the run-time parameters.",
        "A structure with the numbers of each parameter, told in the unit that r.units gives."},
       values},
      {"units",
       {},
       {},
       "",
       {"s = r.units", "The units of the run-time parameters.",
        "A structure with a text for each parameter; empty where it has no unit."},
       units},
      {"evaluate",
       {graph_class_name, "any", "char"},
       {},
       "any",
       {"v = r.evaluate(g, path, parameter)\nv = r.evaluate(g, path, parameter, 'R0', 2000)\n"
        "v = r.evaluate(g, path, parameter, struct('R0', 2000))",
        "What a parameter of a component of the graph g is worth, also for other values of the run-time parameters.",
        "A value with the parameter's unit. A changed value without a unit is told in the declared one, any other is "
        "converted to it: kinemo.Value(2, 'kOhm'). What isn't changed has the value of the compile. The shape stays "
        "that of the compile, and NaN is an error."},
       evaluate}};
  return definition;
}

}  // namespace embedded::graph_core_scripting
