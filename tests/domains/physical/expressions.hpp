#pragma once

// Masks with expressions, and what expressions of a compiled graph are worth.

#include "embedded/block_diagram/diagram.hpp"
#include "platform/block_diagram/mask.hpp"
#include "platform/data/data.hpp"
#include "platform/graph_core/graph.hpp"
#include "platform/scripting_runtime/scripting_runtime.hpp"

#include <boost/make_shared.hpp>

#include <map>
#include <sstream>
#include <string>
#include <vector>

namespace kinemo::physical::test {

inline GTMaskParameter maskParameter(const char* name, const ustring& text) {
  GTMaskParameter parameter;
  parameter.name = name;
  parameter.value = text;
  parameter.type = GTPrmDesc::EDIT;
  return parameter;
}

inline GTBlock& masked(embedded::block_diagram::System& system, const ustring& name,
                       const std::vector<GTMaskParameter>& parameters) {
  GTBlock& block = system.addSubsystem(name);
  auto mask = boost::make_shared<GTMaskDefinition>();
  mask->parameters = parameters;
  MaskInterface::setMask(&block, mask);
  return block;
}

inline std::string plain(const data2::core::Expr& expression) {
  std::ostringstream text;
  data2::core::out(text, 0, 0, data2::core::without_unit(expression));
  return text.str();
}

/// Names visible at a level of the graph, with their numbers.
using Names = std::map<std::string, double>;

inline double evaluated(const data2::core::Expr& expression, const Names& names) {
  kmf::CvCleaner cleaner;
  std::string formal;
  for (const auto& name : names) formal += (formal.empty() ? "" : ",") + name.first;
  cvArray_tag* text[] = {cleaner.createString(std::string("base")),
                         cleaner.createString("@(" + formal + ")" + plain(expression))};
  cvArray_tag* function = nullptr;
  kmf::call_internal_corvane(1, &function, 2, text, "evalin");
  std::vector<cvArray_tag*> inputs{cleaner.addCvArray(function)};
  for (const auto& name : names) inputs.push_back(cleaner.createScalarDouble(name.second));
  cvArray_tag* result = nullptr;
  kmf::call_internal_corvane(1, &result, static_cast<int>(inputs.size()), inputs.data(), "feval");
  return cvGetScalar(cleaner.addCvArray(result));
}

inline double valueOf(const ParameterVariant& value, const Names& names) {
  if (const auto* expression = boost::get<data2::core::Expr>(&value)) return evaluated(*expression, names);
  return boost::get<data2::core::Value>(value).data().elements().at(0);
}

}  // namespace kinemo::physical::test
