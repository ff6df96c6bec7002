#pragma once

// Which parameters of one component become expressions over run-time names, and what the component then depends on.

#include "common/gl/gti/export/parameter_rewrites.hpp"
#include "common/gl/gti/export/parameter_value.hpp"
#include "common/gl/gti/src/kernel/block_model/block_entry.hpp"
#include "common/gl/gti/src/kernel/parameters/id_set.hpp"
#include "platform/graph_core/graph.hpp"

#include <boost/optional.hpp>

#include <functional>
#include <map>
#include <string>

namespace gl::gti {

/// The text of a parameter's unit, where one is written.
using UnitLookup =
    std::function<boost::optional<std::string>(const kmf::VnId&, const std::map<kmf::VnId, ParameterValue>&)>;

struct ComponentRewrite {
  gl::core::Component component;
  IdSet used;  ///< the run-time names that it depends on from outside
};

/// The entry of the block behind a component. @throws std::out_of_range "invalid map<K, T> key"
BlockEntryData& find_block_entry(const gl::core::Component& component, const BlockEntryMap& entries);

/// By parameter of the block behind the component: its text as an expression, where that refers to a run-time or a
/// non-value name; bound to its unit. A text that the parser doesn't take stays a number.
/// @throws as `find_block_entry`, "kinemo:units:core" "InvalidUnit", std::bad_function_call for an empty look-up
ParameterRewrites parameter_rewrites(const gl::core::Component& component, const BlockEntryMap& entries,
                                     const IdSet& runtimeIds, const IdSet& nonValueIds, const UnitLookup& unitLookup);

/// Where a leaf's parameter has its unit: NAME_unit; for NAME_nominal_value, NAME_nominal_unit.
boost::optional<std::string> unit_of_parameter(const kmf::VnId& id,
                                               const std::map<kmf::VnId, ParameterValue>& parameters);

/// The last non-value name that an expression refers to, in the order of the set of its names.
boost::optional<kmf::VnId> non_value_reference(const data2::core::Expr& expression, const IdSet& nonValueIds);

/// The run-time names that the component's own parameters refer to.
IdSet used_runtime_ids(const gl::core::Component& component, const IdSet& runtimeIds);

/// A leaf with its parameters as expressions, where its block takes them. An expression over a non-value name is
/// refused, with the warning "kinemo:common:gl:gti:rtp" "InvalidNonValueReference" (block, parameter, name) if `warn`.
ComponentRewrite propagate_component(gl::core::Component component, const BlockEntryMap& entries,
                                     const IdSet& runtimeIds, const IdSet& nonValueIds, bool warn);

/// The warning about a refused expression of a component's parameter.
void warn_of_non_value_reference(const char* messageId, const gl::core::Component& component,
                                 const std::string& parameter, const kmf::VnId& offender);

}  // namespace gl::gti
