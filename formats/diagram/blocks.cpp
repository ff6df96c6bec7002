#include "formats/diagram/reading.hpp"

#include "formats/names.hpp"
#include "platform/block_diagram/library.hpp"
#include "platform/foundation/exception.hpp"
#include "platform/foundation/strings.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <iterator>

namespace kinemo::formats::diagram {

namespace {

bool has_contents(const YamlNode& node) {
  const YamlNode* type = node.find("type");
  if (type != nullptr && type->is_scalar()) return type->text == "subsystem" || names_a_file(type->text);
  return type == nullptr && (node.find("variant") != nullptr || node.find("blocks") != nullptr);
}

/// The text of `type` where it names a block of the library.
std::optional<std::string> library_type(Reading& reading, const Scope& scope, const YamlNode& node) {
  const YamlNode* type = node.find("type");
  if (type == nullptr) {
    scope.error(node, "diagram:missing-key", "the block has no 'type'",
                "'subsystem', the path of a file, or a block of the library such as 'physical/resistor'");
    return std::nullopt;
  }
  const auto name = expect_text(scope, *type, "a block's type");
  if (!name || gt_find_prototype(*name) != nullptr) return name;
  const std::vector<std::string>& known = reading.prototypes();
  scope.error(*type, "diagram:unknown-type",
              "the library has no block '" + *name + "'" + scope.report.suggest(*name, known),
              known.empty() ? "no domain is loaded" : list_names(known));
  return std::nullopt;
}

void tell_unknown_parameter(const Scope& scope, const YamlNode& key, const GTBlock& block) {
  const std::vector<std::string> known = host::parameterNames(block);
  scope.error(
      key, "diagram:unknown-parameter",
      "'" + host::libraryName(block) + "' has no parameter '" + key.text + "'" + scope.report.suggest(key.text, known),
      list_names(known, 40));
}

bool set_parameter(const Scope& scope, GTBlock& block, const YamlNode& key, const YamlNode& value) {
  const auto text = expect_text(scope, value, "the parameter '" + key.text + "'");
  if (!text) return false;
  try {
    host::setParameter(block, key.text, kmf::utf8_string_to_ustring(*text));
    return true;
  } catch (const kmf::Exception& raised) {
    if (raised.data().id != "UnknownParameter") return scope.guarded(value, [&] { raised.raise(); });
    tell_unknown_parameter(scope, key, block);
    return false;
  }
}

bool read_parameters(const Scope& scope, GTBlock& block, const YamlNode& node) {
  const YamlNode* parameters = node.find("parameters");
  if (parameters == nullptr) return true;
  if (!expect_mapping(scope, *parameters, "'parameters'")) return false;
  bool good = true;
  for (std::size_t i = 0; i < parameters->entry_count(); ++i) {
    good = set_parameter(scope, block, parameters->key(i), parameters->value(i)) && good;
  }
  // Ports may follow from parameters, and lines look for ports.
  return good && (parameters->entry_count() == 0 || scope.guarded(*parameters, [&] { host::refresh(block); }));
}

bool read_library_block(Reading& reading, const Scope& scope, const YamlNode& key, const YamlNode& node) {
  const std::size_t errors = scope.report.list().error_count();
  expect_object(scope, node, ObjectKind::block);
  const auto type = library_type(reading, scope, node);
  if (!type) return false;
  GTBlock* block = nullptr;
  if (!scope.guarded(node, [&] {
        block = &scope.system->addBlock(kmf::utf8_string_to_ustring(key.text), *type, scope.host_place(key));
      })) {
    return false;
  }
  read_parameters(scope, *block, node);
  read_place(scope, *block, node);
  return scope.report.list().error_count() == errors;
}

/// A place that no picture has room for is as good as none. Without a size the block is drawn in that of its kind.
bool is_drawable(const Scope& scope, const YamlNode& at, const double (&numbers)[4]) {
  constexpr double far = 1e6;
  const bool near = std::all_of(std::begin(numbers), std::end(numbers), [](double n) { return std::abs(n) <= far; });
  if (!near) {
    scope.warning(at, "diagram:far-away", "no picture has room for 'at', so the block counts as one without a place",
                  "numbers from -1000000 to 1000000");
  } else if (numbers[2] < 1 || numbers[3] < 1) {
    scope.warning(at, "diagram:no-size",
                  "width or height of 'at' is less than 1, so pictures show the block in the size of its kind",
                  "[x, y, width, height]");
  }
  return near;
}

bool read_position(const Scope& scope, GTBlock& block, const YamlNode& at) {
  if (!expect_list(scope, at, "'at'")) return false;
  if (at.children.size() != 4) {
    scope.error(at, "diagram:bad-value", "'at' has " + std::to_string(at.children.size()) + " numbers",
                "[x, y, width, height]");
    return false;
  }
  double numbers[4] = {};
  for (std::size_t i = 0; i < 4; ++i) {
    const auto number = expect_number(scope, *at.children[i], "a coordinate");
    if (!number) return false;
    numbers[i] = *number;
  }
  if (numbers[2] < 0 || numbers[3] < 0) {
    scope.error(at, "diagram:bad-value", "width and height of 'at' can't be negative", "[x, y, width, height]");
    return false;
  }
  if (!is_drawable(scope, at, numbers)) return true;
  const std::string text =
      fmt::format("[{} {} {} {}]", numbers[0], numbers[1], numbers[0] + numbers[2], numbers[1] + numbers[3]);
  host::setProperty(block, "Position", kmf::utf8_string_to_ustring(text));
  return true;
}

bool read_rotation(const Scope& scope, GTBlock& block, const YamlNode& rotate) {
  const std::string& text = rotate.text;
  if (!rotate.is_scalar() || (text != "0" && text != "90" && text != "180" && text != "270")) {
    scope.error(rotate, "diagram:bad-value", "'rotate' can't be '" + text + "'", "0, 90, 180, 270");
    return false;
  }
  host::setProperty(block, "Rotation", kmf::utf8_string_to_ustring(text));
  return true;
}

bool read_mirror(const Scope& scope, GTBlock& block, const YamlNode& mirror) {
  const auto on = expect_switch(scope, mirror, "'mirror'");
  if (!on) return false;
  host::setProperty(block, "Mirror", *on ? u"on" : u"off");
  return true;
}

/// A name that the system doesn't have yet.
bool is_free(const Scope& scope, const YamlNode& key) {
  const GTBlock* other = scope.system->find(kmf::utf8_string_to_ustring(key.text));
  if (other == nullptr) return true;
  scope.error(key, "diagram:duplicate-name",
              host::isIoPort(*other) ? "'" + key.text + "' is the name of a port of this subsystem already"
                                     : "there is a block '" + key.text + "' already");
  return false;
}

/// For a block of an unknown kind, a part that can't be read, and the like.
void add_stand_in(Reading& reading, const Scope& scope, const YamlNode& key, const YamlNode& node) {
  scope.guarded(node, [&] {
    GTBlock& block = scope.system->addSubsystem(kmf::utf8_string_to_ustring(key.text), scope.host_place(key));
    host::setParameter(block, "Opaque", u"on");
    reading.stand_ins.insert(&block);
    if (node.is_mapping()) read_place(scope, block, node);
  });
}

/// False when the block has faults; it is there all the same, unless its name is no name.
bool read_block_or_stand_in(Reading& reading, const Scope& scope, const YamlNode& key, const YamlNode& node) {
  if (!is_free(scope, key)) return false;
  if (read_block(reading, scope, key, node)) return true;
  const bool made = key.text.empty() || scope.system->find(kmf::utf8_string_to_ustring(key.text)) != nullptr;
  if (!made) add_stand_in(reading, scope, key, node);
  return false;
}

std::set<std::string> read_blocks(Reading& reading, const Scope& scope, const YamlNode& blocks) {
  std::set<std::string> broken;
  if (!expect_mapping(scope, blocks, "'blocks'")) return broken;
  for (std::size_t i = 0; i < blocks.entry_count(); ++i) {
    const YamlNode& key = blocks.key(i);
    const Scope inner = scope.at_block(key.text);
    if (key.text.empty()) scope.error(key, "diagram:bad-value", "a block's name is empty");
    if (!read_block_or_stand_in(reading, inner, key, blocks.value(i))) broken.insert(key.text);
    if (reading.diagram->blockCount() > block_limit) break;
  }
  return broken;
}

}  // namespace

bool read_place(const Scope& scope, GTBlock& block, const YamlNode& node) {
  const YamlNode* at = node.find("at");
  const YamlNode* rotate = node.find("rotate");
  const YamlNode* mirror = node.find("mirror");
  const bool placed = at == nullptr || read_position(scope, block, *at);
  const bool turned = rotate == nullptr || read_rotation(scope, block, *rotate);
  return (mirror == nullptr || read_mirror(scope, block, *mirror)) && placed && turned;
}

bool read_block(Reading& reading, const Scope& scope, const YamlNode& key, const YamlNode& node) {
  if (!node.is_mapping()) {
    scope.error(node, "diagram:wrong-kind", "a block is a mapping, and this is " + std::string(kind_name(node.kind)),
                "{type: physical/resistor, parameters: {R: 1e3}}");
    return false;
  }
  return has_contents(node) ? read_subsystem(reading, scope, key, node) : read_library_block(reading, scope, key, node);
}

void read_system(Reading& reading, const PendingSystem& at) {
  const Scope scope = reading.scope(at);
  const YamlNode* variant = at.contents->find("variant");
  if (variant != nullptr && at.system->owner() != nullptr) return read_variant(reading, at, *variant);
  std::set<std::string> broken;
  if (const YamlNode* blocks = at.contents->find("blocks")) broken = read_blocks(reading, scope, *blocks);
  if (const YamlNode* lines = at.contents->find("lines")) read_lines(reading, scope, *lines, broken);
}

const std::vector<std::string>& Reading::prototypes() {
  if (prototypes_.empty()) prototypes_ = gt_prototype_names();
  return prototypes_;
}

}  // namespace kinemo::formats::diagram
