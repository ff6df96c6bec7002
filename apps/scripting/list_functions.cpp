// What is in a diagram: blocks, lines, parameters, variables. Without an output they show a table.

#include "apps/scripting/block_parameters.hpp"
#include "apps/scripting/diagram_inputs.hpp"
#include "apps/scripting/diagram_table.hpp"
#include "apps/scripting/mask_structure.hpp"
#include "apps/scripting/text_table.hpp"
#include "embedded/block_diagram/block_data.hpp"
#include "embedded/block_diagram/parameter_object.hpp"
#include "embedded/block_diagram/system_data.hpp"
#include "embedded/expression/print.hpp"
#include "embedded/scripting_runtime/display.hpp"
#include "embedded/scripting_runtime/quantity.hpp"
#include "embedded/scripting_runtime/workspace.hpp"
#include "platform/foundation/exception.hpp"
#include "platform/foundation/strings.hpp"
#include "views/block_ports.hpp"

#include <fmt/format.h>

#include <unordered_map>

namespace kinemo::scripting {

namespace {

namespace sr = embedded::scripting_runtime;
using Rows = std::vector<std::vector<std::string>>;

std::string joined(const std::vector<std::string>& texts, const char* between) {
  return fmt::format("{}", fmt::join(texts, between));
}

cvUniquePtr structures(std::size_t count, const std::vector<std::string>& fields) {
  return cvUniquePtr(cvCreateStructMatrix(count, count != 0 ? 1 : 0, fields));
}

void set_text(const cvUniquePtr& told, std::size_t i, const char* field, const std::string& text) {
  cvSetField(told.get(), i, field, cvCreateString(text));
}

// --- blocks

/// With what lies in them, if asked; contents stand behind their subsystem.
std::vector<const GTBlock*> blocks_of(const host::System& system, bool all) {
  std::vector<const GTBlock*> found;
  std::vector<const GTBlock*> pending(system.blocks().rbegin(), system.blocks().rend());
  while (!pending.empty()) {
    const GTBlock* const block = pending.back();
    pending.pop_back();
    found.push_back(block);
    const host::System* const inside = host::contents(*block);
    if (all && inside != nullptr) {
      pending.insert(pending.end(), inside->blocks().rbegin(), inside->blocks().rend());
    }
  }
  return found;
}

/// As `add_block` takes it.
std::string type_of(const GTBlock& block) {
  if (host::isSubsystem(block)) return "subsystem";
  if (host::isIoPort(block)) return "port";
  const std::string& library = host::libraryName(block);
  return library.empty() ? host::blockType(block) : library;
}

std::string file_of(const GTBlock& block) {
  const host::SubsystemData* const data = block.host().subsystem();
  return data != nullptr ? kmf::ustring_to_utf8_string(data->referenceFile) : std::string();
}

std::string name_of(const GTBlock& block) {
  return kmf::ustring_to_utf8_string(block.getGrName());
}

std::string path_of(const GTBlock& block) {
  return kmf::ustring_to_utf8_string(block.getFullPath(false));
}

/// @throws "NotAll" (what was given)
bool all_from(const Call& call, std::size_t input) {
  if (call.size() <= input) return false;
  const std::string word = text_from(call, input);
  if (kmf::lower(word) != "all") kmf::throw_message(diagram_messages, "NotAll", word);
  return true;
}

void blocks(Call& call) {
  const host::System& system = system_from(call, 0);
  const bool all = all_from(call, 1);
  const std::vector<const GTBlock*> found = blocks_of(system, all);
  if (call.wanted == 0) {
    Rows rows;
    for (const GTBlock* block : found) {
      rows.push_back({all ? path_of(*block) : name_of(*block), type_of(*block), joined(views::port_names(*block), " "),
                      file_of(*block)});
    }
    return show_table({all ? "Path" : "Name", "Type", "Ports", "File"}, rows, "No blocks");
  }
  cvUniquePtr told = structures(found.size(), {"name", "path", "type", "ports", "file"});
  for (std::size_t i = 0; i < found.size(); ++i) {
    const GTBlock& block = *found[i];
    set_text(told, i, "name", name_of(block));
    set_text(told, i, "path", path_of(block));
    set_text(told, i, "type", type_of(block));
    cvSetField(told.get(), i, "ports", text_column(views::port_names(block)).release());
    set_text(told, i, "file", file_of(block));
  }
  call.give(std::move(told));
}

// --- lines

/// A port as `add_line` takes it: one text, or block and port where a name holds a full stop.
std::vector<std::string> reference_to(const gtPort& port) {
  const GTBlock& block = *port.getGrOwnerBlock();
  const std::string name = name_of(block);
  const bool alone = host::ports(block).size() == 1;
  const std::string port_name = alone ? std::string() : views::port_name(port);
  const bool dotted = (name + port_name).find('.') != std::string::npos;
  if (alone) return dotted ? std::vector<std::string>{name, views::port_name(port)} : std::vector<std::string>{name};
  if (dotted) return {name, port_name};
  return {name + "." + port_name};
}

cvUniquePtr references_to(const std::vector<gtPort*>& ports) {
  cvUniquePtr cells(cvCreateCellMatrix(ports.size(), 1));
  for (std::size_t i = 0; i < ports.size(); ++i) {
    const std::vector<std::string> parts = reference_to(*ports[i]);
    if (parts.size() == 1) {
      cvSetCell(cells.get(), i, cvCreateString(parts.front()));
      continue;
    }
    cvUniquePtr pair(cvCreateCellMatrix(1, parts.size()));
    for (std::size_t k = 0; k < parts.size(); ++k) cvSetCell(pair.get(), k, cvCreateString(parts[k]));
    cvSetCell(cells.get(), i, pair.release());
  }
  return cells;
}

std::string ports_text(const std::vector<gtPort*>& ports) {
  std::vector<std::string> texts;
  for (const gtPort* port : ports) {
    const std::vector<std::string> parts = reference_to(*port);
    using embedded::expression::print_text;
    texts.push_back(parts.size() == 1 ? parts.front() : "{" + print_text(parts[0]) + ", " + print_text(parts[1]) + "}");
  }
  return joined(texts, ", ");
}

struct NumberedLine {
  const host::Line* line;
  std::size_t net;  ///< from 1, in the order of the lines
};

std::vector<NumberedLine> lines_of(const host::System& system) {
  std::vector<NumberedLine> lines;
  std::unordered_map<std::uint32_t, std::size_t> numbers;
  for (const auto& line : system.lines()) {
    if (line->ports.empty() || (line->ports.size() == 1 && line->name.empty())) continue;
    const std::uint32_t net = host::netNumber(*line->ports.front());
    lines.push_back({line.get(), numbers.emplace(net, numbers.size() + 1).first->second});
  }
  return lines;
}

void lines(Call& call) {
  const std::vector<NumberedLine> found = lines_of(system_from(call, 0));
  if (call.wanted == 0) {
    Rows rows;
    for (const NumberedLine& row : found) {
      rows.push_back(
          {std::to_string(row.net), kmf::ustring_to_utf8_string(row.line->name), ports_text(row.line->ports)});
    }
    return show_table({"Net", "Name", "Ports"}, rows, "No lines");
  }
  cvUniquePtr told = structures(found.size(), {"name", "ports", "net"});
  for (std::size_t i = 0; i < found.size(); ++i) {
    cvSetField(told.get(), i, "name", cvCreateUString(found[i].line->name));
    cvSetField(told.get(), i, "ports", references_to(found[i].line->ports).release());
    cvSetField(told.get(), i, "net", cvCreateDoubleScalar(static_cast<double>(found[i].net)));
  }
  call.give(std::move(told));
}

// --- parameters

void parameters(Call& call) {
  const std::vector<GTMaskParameter> found = parameters_of(block_from(call, 0));
  if (call.wanted > 0) return call.give(structures_of(found));
  Rows rows;
  for (const GTMaskParameter& parameter : found) {
    std::string prompt = parameter.prompt != parameter.name ? parameter.prompt : std::string();
    if (!parameter.choices.empty()) prompt += " (" + joined(parameter.choices, ", ") + ")";
    rows.push_back({parameter.name, kmf::ustring_to_utf8_string(parameter.value), parameter.unit, prompt});
  }
  show_table({"Name", "Value", "Unit", "Prompt"}, rows, "No parameters");
}

// --- variables

struct Variable {
  std::string name;
  sr::Quantity quantity;
  bool runtime;
};

std::vector<Variable> variables_of(host::Diagram& diagram) {
  std::vector<Variable> variables;
  for (const std::string& name : diagram.workspace().names()) {
    const cvArray_tag* const array = diagram.workspace().get(name);
    variables.push_back({name, sr::quantity_of(array), host::isRuntime(array)});
  }
  return variables;
}

std::string unit_of(const Variable& variable) {
  return variable.quantity.has_unit() ? sr::unit_text(variable.quantity.unit) : std::string();
}

void variables(Call& call) {
  std::vector<Variable> found = variables_of(diagram_from(call, 0));
  if (call.wanted == 0) {
    Rows rows;
    for (const Variable& variable : found) {
      rows.push_back({variable.name, sr::inline_text(variable.quantity.numbers.array(), 60), unit_of(variable),
                      variable.runtime ? "runtime" : ""});
    }
    return show_table({"Name", "Value", "Unit", ""}, rows, "No variables");
  }
  cvUniquePtr told = structures(found.size(), {"name", "value", "unit", "runtime"});
  for (std::size_t i = 0; i < found.size(); ++i) {
    set_text(told, i, "name", found[i].name);
    set_text(told, i, "unit", unit_of(found[i]));
    cvSetField(told.get(), i, "runtime", cvCreateLogicalScalar(found[i].runtime));
    cvSetField(told.get(), i, "value", std::move(found[i].quantity.numbers).release().release());
  }
  call.give(std::move(told));
}

}  // namespace

std::vector<DiagramFunction> list_functions() {
  return {
      {"blocks",
       1,
       2,
       blocks,
       {"blocks(system)\nblocks(system, 'all')\nlist = blocks(...)",
        "Lists the blocks of a diagram or a subsystem, with 'all' those of all levels.",
        "Without an output as a table, else as a structure array with name, path, type (as add_block takes it), "
        "ports (a column of texts), and the file of a part that the block links to."}},
      {"lines",
       1,
       1,
       lines,
       {"lines(system)\nlist = lines(system)", "Lists the lines of a diagram or a subsystem.",
        "Without an output as a table, else as a structure array with name, ports and net: a name, the ports as "
        "add_line takes them, and a number that lines of one net share. add_line(system, list) draws such lines."}},
      {"parameters",
       1,
       1,
       parameters,
       {"parameters(path)\nlist = parameters(path)", "Lists the parameters of a block, as its dialog has them.",
        "Without an output as a table, else as a structure array with name, value, unit, prompt, kind and choices, "
        "as in a mask. set_param sets them. Settings of a diagram are told by settings(diagram)."}},
      {"variables",
       1,
       1,
       variables,
       {"variables(diagram)\nlist = variables(diagram)", "Lists the variables of a diagram's workspace.",
        "Without an output as a table, else as a structure array with name, value (in the unit), unit, and runtime, "
        "which is true of a run-time parameter. set_variable sets them."}}};
}

}  // namespace kinemo::scripting
