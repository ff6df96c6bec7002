#pragma once

// What a block kind of the physical domain is, as data. The tables of kinds (`electrical_kinds.cpp` and its neighbours)
// are made of these; nothing here knows the host.

#include <cstddef>
#include <string>
#include <vector>

namespace kinemo::physical {

enum class Side { left, right };

/// One port of a kind.
struct Port {
  std::string id;     ///< also the connector's identifier in the component
  Side side;          ///< where the block shows it
  std::string type;   ///< "electrical", "rotational", "translational" or "thermal"
  std::string label;  ///< drawn beside the port
  int rank = 0;       ///< ports of a side stand in the order of their ranks, those of a rank in that of the kind
};

enum class ParameterForm {
  expression,  ///< evaluated to a number; has the partners NAME_unit and NAME_conf
  row,         ///< evaluated to any count of numbers, as `expression`; without numbers, the component has none of it
  text,        ///< taken as it stands
  choice,      ///< one text of a list
};

/// Whether parameters of the form are numbers.
constexpr bool is_numeric(ParameterForm form) {
  return form == ParameterForm::expression || form == ParameterForm::row;
}

/// One parameter of a kind.
struct Parameter {
  std::string name;    ///< also the parameter's identifier in the component; differs from every port's
  std::string prompt;  ///< what the dialog shows
  std::string value;   ///< the default, as a user would type it
  /// Of an expression: the unit of the default, "1" for a pure number. Values are told in it or in one that converts.
  std::string unit;
  ParameterForm form = ParameterForm::expression;
  std::vector<std::string> choices = {};
  bool unlimited = false;  ///< of an expression: infinite values mean something
  /// Of an expression: the model's setting that gives the value unless the partner NAME_from says "own".
  std::string setting = {};
};

/// Lets the value of a text parameter count the ports, where a kind has no fixed ones.
struct PortRule {
  std::string parameter;
  std::size_t minimum = 0;
  std::size_t maximum = 0;
  std::size_t step = 1;  ///< counts are `minimum`, `minimum + step`, ...
  Port (*port)(std::size_t position) = nullptr;
};

/// A vector image of the folder `icons`, and the blocks that show it.
struct Icon {
  std::string file;         ///< such as "diode.svg"
  bool labels = true;       ///< whether the ports' labels are drawn; off where the image tells the ports apart
  std::size_t ports = 0;    ///< only with so many ports; 0 for any count
  std::string device = {};  ///< only where the text parameter "model_card" begins with this word; empty for any text
};

/// One kind of block. The order of the ports is that of the component's connectors.
struct BlockKind {
  std::string name;   ///< "resistor" becomes the prototype "physical/resistor" and the component type physical.resistor
  std::string title;  ///< name of a new block
  std::string text;   ///< one line for the dialog
  std::vector<Port> ports = {};
  std::vector<Parameter> parameters = {};
  bool reference = false;  ///< fixes the potential of its network; tags the component with "Reference"
  /// The first that fits is shown. Without one, a block is a frame around its text.
  std::vector<Icon> icons = {};
  PortRule rule = {};  ///< ports by a parameter, instead of `ports`
};

inline Port left(const char* id, const char* type, const char* label = "") {
  return {id, Side::left, type, label};
}

inline Port right(const char* id, const char* type, const char* label = "") {
  return {id, Side::right, type, label};
}

/// An image that shows by itself which port is which.
inline std::vector<Icon> drawn_as(const char* file) {
  return {{file, false}};
}

/// Kinds without an icon get the file of their name.
inline std::vector<BlockKind> with_icons(std::vector<BlockKind> kinds) {
  for (BlockKind& kind : kinds)
    if (kind.icons.empty()) kind.icons.push_back({kind.name + ".svg"});
  return kinds;
}

/// An expression with its unit.
inline Parameter number(const char* name, const char* prompt, const char* value, const char* unit) {
  return {name, prompt, value, unit};
}

/// A number that tells where something ends, and may be infinite for "nowhere".
inline Parameter limit(const char* name, const char* prompt, const char* value, const char* unit) {
  Parameter parameter = number(name, prompt, value, unit);
  parameter.unlimited = true;
  return parameter;
}

/// Numbers without a unit; none by default.
inline Parameter row(const char* name, const char* prompt) {
  return {name, prompt, "[]", "1", ParameterForm::row};
}

/// A number that is the model's setting until a block says that it has its own.
inline Parameter from_setting(const char* setting, const char* name, const char* prompt, const char* value,
                              const char* unit) {
  Parameter parameter = number(name, prompt, value, unit);
  parameter.setting = setting;
  return parameter;
}

inline Parameter text(const char* name, const char* prompt, const char* value = "") {
  return {name, prompt, value, "", ParameterForm::text};
}

/// The first choice is the default.
inline Parameter choice(const char* name, const char* prompt, std::vector<std::string> choices) {
  const std::string first = choices.front();
  return {name, prompt, first, "", ParameterForm::choice, std::move(choices)};
}

}  // namespace kinemo::physical
