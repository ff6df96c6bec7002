#include "views/block_library.hpp"

#include "embedded/block_diagram/diagram.hpp"
#include "platform/block_diagram/dialog.hpp"
#include "platform/foundation/strings.hpp"
#include "platform/foundation/vn_id.hpp"
#include "views/block_ports.hpp"
#include "views/json_writer.hpp"

#include <algorithm>
#include <ostream>

namespace kinemo::views {

namespace host = embedded::block_diagram;

namespace {

/// A diagram of a name that no open one has, closed at the end.
class ScratchDiagram {
 public:
  ScratchDiagram() : diagram_(host::Diagram::create(free_name())) {}
  ~ScratchDiagram() { host::Diagram::close(diagram_); }
  ScratchDiagram(const ScratchDiagram&) = delete;
  ScratchDiagram& operator=(const ScratchDiagram&) = delete;

  host::System& root() { return diagram_.root(); }

 private:
  static std::string free_name() {
    std::string name = "library";
    while (host::Diagram::find(name) != nullptr) name += "_";
    return name;
  }

  host::Diagram& diagram_;
};

std::string kind_of(GTPrmDesc::Type type) {
  switch (type) {
    case GTPrmDesc::BOOLEAN:
      return "switch";
    case GTPrmDesc::STRING:
      return "text";
    case GTPrmDesc::POPUP:
      return "choice";
    case GTPrmDesc::EDIT:
      break;
  }
  return "expression";
}

LibraryParameter describe_parameter(const GTMaskParameter& parameter) {
  return {parameter.name, parameter.prompt,        kmf::ustring_to_utf8_string(parameter.value),
          parameter.unit, kind_of(parameter.type), parameter.choices};
}

LibraryBlock describe_block(const GTBlock& block, const std::string& name) {
  LibraryBlock result;
  result.name = name;
  if (const auto mask = MaskInterface::mask(&block)) {
    result.title = mask->type;
    result.text = mask->description;
    for (const GTMaskParameter& parameter : mask->parameters)
      result.parameters.push_back(describe_parameter(parameter));
  }
  if (result.text.empty() && block.getDialogInfo() != nullptr) {
    result.text = kmf::ustring_to_utf8_string(gdi_block_desc(block.getDialogInfo()));
  }
  for (const gtPort* port : ports_in_kind_order(block)) {
    result.ports.push_back({port_name(*port), port->isLeft() ? "left" : "right", gtGetPortDomainPortType(port)});
  }
  return result;
}

void write_names(JsonWriter& json, const LibraryBlock& block) {
  json.member("title", block.title).member("text", block.text).key("ports").begin_array();
  for (const LibraryPort& port : block.ports) {
    json.begin_object(true).member("name", port.name).member("side", port.side).member("type", port.type).end_object();
  }
  json.end_array();
}

void write_parameters(JsonWriter& json, const LibraryBlock& block) {
  json.key("parameters").begin_array();
  for (const LibraryParameter& parameter : block.parameters) {
    json.begin_object(true).member("name", parameter.name).member("prompt", parameter.prompt);
    json.member("default", parameter.value).member("unit", parameter.unit).member("kind", parameter.kind);
    if (!parameter.choices.empty()) {
      json.key("choices").begin_array(true);
      for (const std::string& choice : parameter.choices) json.value(choice);
      json.end_array();
    }
    json.end_object();
  }
  json.end_array();
}

std::string padded(std::string text, std::size_t width) {
  text.resize(std::max(text.size(), width), ' ');
  return text;
}

std::string default_text(const LibraryParameter& parameter) {
  std::string text = parameter.value.empty() ? "''" : parameter.value;
  if (!parameter.unit.empty() && parameter.unit != "1") text += " " + parameter.unit;
  return text;
}

}  // namespace

std::vector<LibraryBlock> describe_blocks(const std::vector<std::string>& names) {
  ScratchDiagram scratch;
  std::vector<LibraryBlock> blocks;
  for (const std::string& name : names) {
    const ustring block_name = kmf::utf8_string_to_ustring("block" + std::to_string(blocks.size()));
    blocks.push_back(describe_block(scratch.root().addBlock(block_name, name), name));
  }
  return blocks;
}

void write_library_text(std::ostream& out, const std::vector<LibraryBlock>& blocks) {
  std::size_t width = 0;
  for (const LibraryBlock& block : blocks) width = std::max(width, block.name.size());
  for (const LibraryBlock& block : blocks) out << padded(block.name, width + 2) << block.text << '\n';
}

void write_block_text(std::ostream& out, const LibraryBlock& block) {
  out << block.name << (block.title.empty() ? "" : "  (" + block.title + ")") << '\n';
  if (!block.text.empty()) out << block.text << '\n';
  out << "\nports\n";
  for (const LibraryPort& port : block.ports) {
    out << "  " << padded(port.name, 12) << padded(port.side, 8) << port.type << '\n';
  }
  out << "\nparameters\n";
  std::size_t width = 12;
  for (const LibraryParameter& parameter : block.parameters) width = std::max(width, parameter.name.size() + 2);
  for (const LibraryParameter& parameter : block.parameters) {
    out << "  " << padded(parameter.name, width) << padded(default_text(parameter), 16) << "  " << parameter.prompt;
    for (std::size_t i = 0; i < parameter.choices.size(); ++i) {
      out << (i == 0 ? " (one of " : ", ") << parameter.choices[i] << (i + 1 == parameter.choices.size() ? ")" : "");
    }
    out << '\n';
  }
}

void write_library_json(std::ostream& out, const std::vector<LibraryBlock>& blocks) {
  JsonWriter json(out);
  json.begin_object().member("schema", std::size_t{1}).key("blocks").begin_object();
  for (const LibraryBlock& block : blocks) {
    json.key(block.name).begin_object();
    write_names(json, block);
    write_parameters(json, block);
    json.end_object();
  }
  json.end_object().end_object().finish();
}

}  // namespace kinemo::views
