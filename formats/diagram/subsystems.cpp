#include "formats/diagram/reading.hpp"

#include "formats/names.hpp"
#include "platform/foundation/strings.hpp"

#include <algorithm>

namespace kinemo::formats::diagram {

namespace {

// --- definitions in other files

bool is_being_read(const ModelFile& file, const LinkStep* links) {
  for (; links != nullptr; links = links->outer) {
    if (links->file == &file) return true;
  }
  return false;
}

std::string chain_text(const ModelFile& file, const LinkStep* links) {
  std::string text = *file.name;
  for (std::size_t shown = 0; links != nullptr && shown < 10; links = links->outer, ++shown) {
    text = *links->file->name + " > " + text;
    if (links->file == &file) break;
  }
  return text;
}

Definition open_link(Reading& reading, const Scope& scope, const YamlNode& type) {
  std::string reason;
  const ModelFile* file = reading.files.open(scope.file, type.text, reason);
  if (file == nullptr) {
    scope.error(type, "diagram:unreadable", "the file '" + type.text + "' can't be read: " + reason);
    return {nullptr, nullptr, nullptr};
  }
  if (is_being_read(*file, scope.links)) {
    scope.error(type, "diagram:recursion", "the file '" + type.text + "' would hold itself",
                "files that don't lead back to themselves; here: " + chain_text(*file, scope.links));
    return {nullptr, nullptr, nullptr};
  }
  const YamlNode* root = file->tree.root();
  if (root == nullptr) return {nullptr, nullptr, nullptr};
  const LinkStep* links = reading.link(*file, scope.links);
  const Scope inner{scope.report, *file, links, nullptr};
  return expect_object(inner, *root, ObjectKind::part) ? Definition{file, links, root}
                                                       : Definition{nullptr, nullptr, nullptr};
}

// --- ports

/// A port's name by itself, or the name and the place of its block.
struct PortNode {
  const YamlNode* name;   ///< null where there is none
  const YamlNode* place;  ///< null where the block has none
};

PortNode port_node(const YamlNode& node) {
  return node.is_mapping() ? PortNode{node.find("name"), &node} : PortNode{&node, nullptr};
}

void add_port(const Scope& scope, host::System& inside, const PortNode& port, host::Side side, int order) {
  const Scope at_port{scope.report, scope.file, scope.links, &inside, port.name->text};
  at_port.guarded(*port.name, [&] {
    const ustring name = kmf::utf8_string_to_ustring(port.name->text);
    GTBlock& block = inside.addPort(name, side, order, at_port.host_place(*port.name));
    if (port.place != nullptr) read_place(at_port, block, *port.place);
  });
}

void add_ports(const Scope& scope, host::System& inside, const YamlNode* nodes, host::Side side) {
  if (nodes == nullptr || !expect_list(scope, *nodes, "the ports of a side")) return;
  int order = 0;
  for (const YamlNode* node : nodes->children) {
    if (node->is_mapping()) expect_object(scope, *node, ObjectKind::port);
    const PortNode port = port_node(*node);
    if (port.name == nullptr) {
      scope.error(*node, "diagram:missing-key", "the port has no 'name'");
      continue;
    }
    const auto text = expect_text(scope, *port.name, "a port's name");
    if (!text) continue;
    if (text->empty() || inside.find(kmf::utf8_string_to_ustring(*text)) != nullptr) {
      scope.error(*port.name, "diagram:duplicate-name",
                  text->empty() ? "a port's name is empty" : "there is a port '" + *text + "' already");
      continue;
    }
    add_port(scope, inside, port, side, ++order);
  }
}

void add_declared_ports(const Scope& scope, host::System& inside, const YamlNode& ports) {
  if (!expect_object(scope, ports, ObjectKind::ports)) return;
  add_ports(scope, inside, ports.find("left"), host::Side::Left);
  add_ports(scope, inside, ports.find("right"), host::Side::Right);
}

/// A variant block that doesn't list its ports has those of its choices, each name once.
void add_ports_of_side(const Scope& scope, host::System& inside, const YamlNode& ports, const char* side_key,
                       host::Side side, int& order) {
  const YamlNode* names = ports.find(side_key);
  if (names == nullptr || !names->is_sequence()) return;
  for (const YamlNode* node : names->children) {
    const YamlNode* name = port_node(*node).name;
    if (name == nullptr || !name->is_scalar() || name->text.empty()) continue;
    if (inside.find(kmf::utf8_string_to_ustring(name->text)) != nullptr) continue;
    add_port(scope, inside, {name, nullptr}, side, ++order);
  }
}

void add_ports_of_choices(Reading& reading, const Scope& scope, host::System& inside, const YamlNode& variant) {
  const YamlNode* choices = variant.find("choices");
  if (choices == nullptr || !choices->is_mapping()) return;
  int left = 0;
  int right = 0;
  for (std::size_t i = 0; i < choices->entry_count(); ++i) {
    const Definition definition = find_definition(reading, scope, choices->value(i));
    const YamlNode* ports = definition.node != nullptr ? definition.node->find("ports") : nullptr;
    if (ports == nullptr) continue;
    const Scope at{scope.report, *definition.file, definition.links, scope.system, scope.block};
    add_ports_of_side(at, inside, *ports, "left", host::Side::Left, left);
    add_ports_of_side(at, inside, *ports, "right", host::Side::Right, right);
  }
}

// --- mask and parameters

void set_values(const Scope& scope, GTBlock& block, const YamlNode* values, const char* key, bool opaque) {
  if (values == nullptr || !expect_mapping(scope, *values, "'" + std::string(key) + "'")) return;
  const auto mask = MaskInterface::mask(&block);
  std::vector<std::string> known;
  if (mask != nullptr) {
    for (const GTMaskParameter& parameter : mask->parameters) known.push_back(parameter.name);
  }
  for (std::size_t i = 0; i < values->entry_count(); ++i) {
    const YamlNode& name = values->key(i);
    const auto text = expect_text(scope, values->value(i), "the parameter '" + name.text + "'");
    if (!text) continue;
    const ustring wide = kmf::utf8_string_to_ustring(*text);
    if (std::find(known.begin(), known.end(), name.text) != known.end()) {
      scope.guarded(name, [&] { host::setParameter(block, name.text, wide); });
    } else if (opaque) {
      host::setProperty(block, name.text, wide);
    } else {
      scope.error(name, "diagram:unknown-parameter",
                  "the subsystem's mask has no parameter '" + name.text + "'" + scope.report.suggest(name.text, known),
                  list_names(known));
    }
  }
}

bool read_switch(const Scope& scope, GTBlock& block, const YamlNode& node, const char* key, const char* parameter) {
  const YamlNode* value = node.find(key);
  if (value == nullptr) return false;
  const auto on = expect_switch(scope, *value, "'" + std::string(key) + "'");
  if (!on) return false;
  scope.guarded(*value, [&] { host::setParameter(block, parameter, *on ? u"on" : u"off"); });
  return *on;
}

void refuse_mixed_contents(const Scope& scope, const YamlNode& definition) {
  if (definition.find("variant") == nullptr) return;
  for (const char* key : {"blocks", "lines"}) {
    if (const YamlNode* node = definition.find(key)) {
      scope.error(*node, "diagram:variant", "a block with 'variant' has no '" + std::string(key) + "' of its own",
                  "'" + std::string(key) + "' inside of each choice");
    }
  }
}

/// What the definition says of the subsystem, seen from where the definition is written.
void apply_definition(Reading& reading, const Scope& scope, GTBlock& block, const YamlNode& definition) {
  host::System& inside = *host::contents(block);
  refuse_mixed_contents(scope, definition);
  if (const YamlNode* ports = definition.find("ports")) {
    add_declared_ports(scope, inside, *ports);
  } else if (const YamlNode* variant = definition.find("variant")) {
    add_ports_of_choices(reading, scope, inside, *variant);
  }
  if (const auto mask = reading.mask(scope, definition)) MaskInterface::setMask(&block, mask);
  read_switch(scope, block, definition, "atomic", "TreatAsAtomicUnit");
  const bool opaque = read_switch(scope, block, definition, "opaque", "Opaque");
  set_values(scope, block, definition.find("parameters"), "parameters", opaque);
}

/// What the place of use says of a linked subsystem.
void apply_use(const Scope& scope, GTBlock& block, const YamlNode& node, const ModelFile& file) {
  scope.guarded(node, [&] { host::setParameter(block, "ReferenceFile", kmf::utf8_string_to_ustring(*file.name)); });
  read_switch(scope, block, node, "atomic", "TreatAsAtomicUnit");
  const bool opaque = host::isOpaque(block);
  set_values(scope, block, node.find("mask"), "mask", opaque);
  set_values(scope, block, node.find("parameters"), "parameters", opaque);
}

/// A choice meets the variant's ports by name, so it has to be a subsystem.
bool is_subsystem(const Scope& scope, const YamlNode& choice) {
  const YamlNode* type = choice.find("type");
  if (type == nullptr || type->text == "subsystem" || names_a_file(type->text)) return true;
  scope.error(*type, "diagram:variant", "a choice can't be of the type '" + type->text + "'",
              "a subsystem, or the path of a file; it may hold a block of that type");
  return false;
}

bool is_link(const YamlNode& node) {
  const YamlNode* type = node.find("type");
  return type != nullptr && type->is_scalar() && names_a_file(type->text);
}

}  // namespace

Definition find_definition(Reading& reading, const Scope& scope, const YamlNode& node) {
  return is_link(node) ? open_link(reading, scope, *node.find("type")) : Definition{&scope.file, scope.links, &node};
}

bool read_subsystem(Reading& reading, const Scope& scope, const YamlNode& key, const YamlNode& node) {
  const std::size_t errors = scope.report.list().error_count();
  const bool linked = is_link(node);
  if (!expect_object(scope, node, linked ? ObjectKind::linked : ObjectKind::subsystem)) return false;
  if (!key.text.empty() &&
      key.text.back() == '/') {  // the path of a block inside reads as that of a block whose name begins with a slash
    scope.error(key, "diagram:bad-value", "the name of a subsystem can't end with '/'", "a name that ends otherwise");
    return false;
  }
  const Definition definition = find_definition(reading, scope, node);
  if (definition.node == nullptr) return false;
  GTBlock* block = nullptr;
  if (!scope.guarded(node, [&] {
        block = &scope.system->addSubsystem(kmf::utf8_string_to_ustring(key.text), scope.host_place(key));
      })) {
    return false;
  }
  const Scope at_definition{scope.report, *definition.file, definition.links, scope.system, key.text};
  apply_definition(reading, at_definition, *block, *definition.node);
  if (linked) apply_use(scope, *block, node, *definition.file);
  read_place(scope, *block, node);
  reading.pending.push_back({host::contents(*block), definition.file, definition.links, definition.node});
  return scope.report.list().error_count() == errors;
}

void read_variant(Reading& reading, const PendingSystem& at, const YamlNode& variant) {
  const Scope scope = reading.scope(at);
  if (!expect_object(scope, variant, ObjectKind::variant)) return;
  GTBlock& block = *at.system->owner();
  scope.guarded(variant, [&] { host::setParameter(block, "Variant", u"on"); });
  std::vector<std::string> names;
  const YamlNode* choices = variant.find("choices");
  if (choices != nullptr && expect_mapping(scope, *choices, "'choices'")) {
    for (std::size_t i = 0; i < choices->entry_count(); ++i) {
      const std::string& name = choices->key(i).text;
      names.push_back(name);
      if (is_subsystem(scope.at_block(name), choices->value(i))) {
        read_subsystem(reading, scope.at_block(name), choices->key(i), choices->value(i));
      }
    }
  }
  const YamlNode* active = variant.find("active");
  if (active == nullptr) {
    return scope.error(variant, "diagram:missing-key", "the variant has no 'active'", list_names(names));
  }
  const auto name = expect_text(scope, *active, "'active'");
  if (!name) return;
  if (std::find(names.begin(), names.end(), *name) == names.end()) {
    return scope.error(*active, "diagram:unknown-choice",
                       "the variant has no choice '" + *name + "'" + scope.report.suggest(*name, names),
                       list_names(names));
  }
  scope.guarded(*active, [&] { host::setParameter(block, "ActiveVariant", kmf::utf8_string_to_ustring(*name)); });
}

}  // namespace kinemo::formats::diagram
