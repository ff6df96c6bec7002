#include "formats/diagram/yaml_tree.hpp"

#include "formats/diagram/text_check.hpp"
#include "formats/diagram/text_cursor.hpp"

#include <yaml.h>

#include <algorithm>
#include <array>
#include <new>
#include <unordered_map>

namespace kinemo::formats::diagram {

namespace {

/// Ends the reading of a document at a fault that leaves nothing sensible to go on with.
struct Fault {
  std::string rule;
  SourcePlace place;
  std::string text;
  std::vector<DiagnosticNote> notes = {};
};

/// One event of the parser, which frees what it holds.
class Event {
 public:
  Event() = default;
  Event(const Event&) = delete;
  Event& operator=(const Event&) = delete;
  ~Event() { yaml_event_delete(&event_); }

  yaml_event_t* get() { return &event_; }
  yaml_event_type_t type() const { return event_.type; }
  std::size_t start() const { return event_.start_mark.index; }

  std::string_view anchor() const;
  std::string_view tag() const;
  /// The text of a scalar, which may hold a character of value zero.
  std::string_view text() const { return {view(event_.data.scalar.value).data(), event_.data.scalar.length}; }
  /// Whether a scalar means that nothing is there: plain, without a tag, and empty or a word for it.
  bool is_null() const;

 private:
  static std::string_view view(const yaml_char_t* text) {
    return text != nullptr ? std::string_view(reinterpret_cast<const char*>(text)) : std::string_view();
  }

  yaml_event_t event_{};
};

std::string_view Event::anchor() const {
  switch (event_.type) {
    case YAML_ALIAS_EVENT:
      return view(event_.data.alias.anchor);
    case YAML_SCALAR_EVENT:
      return view(event_.data.scalar.anchor);
    case YAML_SEQUENCE_START_EVENT:
      return view(event_.data.sequence_start.anchor);
    case YAML_MAPPING_START_EVENT:
      return view(event_.data.mapping_start.anchor);
    default:
      return {};
  }
}

std::string_view Event::tag() const {
  switch (event_.type) {
    case YAML_SCALAR_EVENT:
      return view(event_.data.scalar.tag);
    case YAML_SEQUENCE_START_EVENT:
      return view(event_.data.sequence_start.tag);
    case YAML_MAPPING_START_EVENT:
      return view(event_.data.mapping_start.tag);
    default:
      return {};
  }
}

bool Event::is_null() const {
  if (event_.data.scalar.style != YAML_PLAIN_SCALAR_STYLE || event_.data.scalar.tag != nullptr) return false;
  static constexpr std::array<std::string_view, 5> words{"", "~", "null", "Null", "NULL"};
  return std::find(words.begin(), words.end(), text()) != words.end();
}

/// The parser of one text, which outlives it.
class EventParser {
 public:
  EventParser(std::string_view text, const std::string& file) : file_(file), cursor_(text) {
    if (yaml_parser_initialize(&parser_) == 0) throw std::bad_alloc();
    yaml_parser_set_encoding(&parser_, YAML_UTF8_ENCODING);
    yaml_parser_set_input_string(&parser_, reinterpret_cast<const unsigned char*>(text.data()), text.size());
  }
  EventParser(const EventParser&) = delete;
  EventParser& operator=(const EventParser&) = delete;
  ~EventParser() { yaml_parser_delete(&parser_); }

  /// Fills an event that was not used before.
  void next(Event& event) {
    if (yaml_parser_parse(&parser_, event.get()) == 0) throw_fault();
  }
  TextCursor::Position position(std::size_t character) { return cursor_.at_character(character); }
  SourcePlace place(std::size_t character) { return place(cursor_.at_character(character)); }

 private:
  SourcePlace place(const TextCursor::Position& position) const { return {file_, position.line, position.column}; }

  [[noreturn]] void throw_fault() {
    if (parser_.error == YAML_MEMORY_ERROR) throw std::bad_alloc();
    if (parser_.error == YAML_READER_ERROR) {
      throw Fault{"diagram:encoding", place(cursor_.at_byte(parser_.problem_offset)),
                  "the file holds a character that YAML doesn't allow"};
    }
    throw_syntax_fault(parser_.problem != nullptr ? parser_.problem : "this isn't YAML");
  }

  /// The parser also says in the middle of what it was, and where that begins.
  [[noreturn]] void throw_syntax_fault(const std::string& problem) {
    const SourcePlace at = place(parser_.problem_mark.index);
    if (parser_.context == nullptr) throw Fault{"diagram:syntax", at, problem};
    if (parser_.context_mark.index == parser_.problem_mark.index) {
      throw Fault{"diagram:syntax", at, parser_.context + (": " + problem)};
    }
    throw Fault{"diagram:syntax", at, problem, {{parser_.context, place(parser_.context_mark.index)}}};
  }

  const std::string& file_;
  TextCursor cursor_;
  yaml_parser_t parser_;
};

/// Makes nodes of the parser's events, with a stack of the nodes that are still open.
class TreeBuilder {
 public:
  TreeBuilder(std::string_view text, const std::string& file, std::deque<YamlNode>& nodes, DiagnosticList& problems)
      : file_(file), parser_(text, file), nodes_(nodes), problems_(problems) {}

  /// The root of the only document.
  const YamlNode* read();

 private:
  void read_node(const Event& event);
  void refuse_second_document();

  SourcePlace place(const YamlNode& node) const { return {file_, node.line, node.column}; }
  void refuse_tag(const Event& event);
  YamlNode& make(const Event& event, YamlNode::Kind kind);
  void leaf(const Event& event);
  void alias(const Event& event);
  void begin(const Event& event, YamlNode::Kind kind);
  void end();
  void attach(const YamlNode& node);
  void check_keys(const YamlNode& mapping);
  void check_few_keys(const YamlNode& mapping);
  void tell_twice(const YamlNode& first, const YamlNode& second);

  const std::string& file_;
  EventParser parser_;
  std::deque<YamlNode>& nodes_;
  DiagnosticList& problems_;
  std::vector<YamlNode*> open_;
  std::unordered_map<std::string, const YamlNode*> anchors_;
  const YamlNode* root_ = nullptr;
};

const YamlNode* TreeBuilder::read() {
  for (;;) {
    Event event;
    parser_.next(event);
    if (event.type() == YAML_STREAM_END_EVENT) break;
    if (event.type() == YAML_DOCUMENT_START_EVENT && root_ != nullptr) refuse_second_document();
    read_node(event);
  }
  if (root_ == nullptr) throw Fault{"diagram:syntax", {file_, 1, 1}, "the file is empty"};
  return root_;
}

void TreeBuilder::refuse_second_document() {
  Event first;
  parser_.next(first);
  throw Fault{"diagram:syntax", parser_.place(first.start()),
              "a file holds one document, and here begins a second one"};
}

void TreeBuilder::read_node(const Event& event) {
  switch (event.type()) {
    case YAML_ALIAS_EVENT:
      return alias(event);
    case YAML_SCALAR_EVENT:
      return leaf(event);
    case YAML_SEQUENCE_START_EVENT:
      return begin(event, YamlNode::Kind::sequence);
    case YAML_MAPPING_START_EVENT:
      return begin(event, YamlNode::Kind::mapping);
    case YAML_SEQUENCE_END_EVENT:
    case YAML_MAPPING_END_EVENT:
      return end();
    default:
      return;
  }
}

void TreeBuilder::refuse_tag(const Event& event) {
  // "!" only says that a text isn't to be taken for anything else.
  const std::string_view tag = event.tag();
  if (tag.empty() || tag == "!") return;
  problems_.error("diagram:syntax", parser_.place(event.start()),
                  "the tag '" + std::string(tag) + "' means nothing in a diagram");
}

YamlNode& TreeBuilder::make(const Event& event, YamlNode::Kind kind) {
  refuse_tag(event);
  YamlNode& node = nodes_.emplace_back();
  const TextCursor::Position position = parser_.position(event.start());
  node.kind = kind;
  node.line = position.line;
  node.column = position.column;
  if (const std::string_view anchor = event.anchor(); !anchor.empty()) anchors_[std::string(anchor)] = &node;
  return node;
}

void TreeBuilder::leaf(const Event& event) {
  const bool null = event.is_null();
  YamlNode& node = make(event, null ? YamlNode::Kind::null : YamlNode::Kind::scalar);
  if (!null) node.text = event.text();
  attach(node);
}

void TreeBuilder::begin(const Event& event, YamlNode::Kind kind) {
  if (open_.size() == YamlTree::depth_limit) {
    throw Fault{"diagram:too-deep",
                parser_.place(event.start()),
                "the file is nested more than " + std::to_string(YamlTree::depth_limit) + " levels deep",
                {{"inner subsystems can stand in files of their own, or behind an anchor and its alias", {}}}};
  }
  YamlNode& node = make(event, kind);
  node.open = true;
  open_.push_back(&node);
}

void TreeBuilder::end() {
  YamlNode& node = *open_.back();
  open_.pop_back();
  node.open = false;
  for (const YamlNode* child : node.children) node.size += child->size;
  if (node.size > YamlTree::size_limit) {
    throw Fault{"diagram:too-big", place(node),
                "with its aliases written out this has more than " + std::to_string(YamlTree::size_limit) + " entries"};
  }
  if (node.is_mapping()) check_keys(node);
  attach(node);
}

void TreeBuilder::attach(const YamlNode& node) {
  if (open_.empty()) {
    root_ = &node;
    return;
  }
  open_.back()->children.push_back(&node);
}

void TreeBuilder::alias(const Event& event) {
  const auto found = anchors_.find(std::string(event.anchor()));
  if (found == anchors_.end()) {
    throw Fault{"diagram:syntax", parser_.place(event.start()),
                "the alias '" + std::string(event.anchor()) + "' names no anchor before it"};
  }
  if (found->second->open) {
    throw Fault{"diagram:recursion", parser_.place(event.start()),
                "the alias stands inside of what it names (line " + std::to_string(found->second->line) + ")"};
  }
  attach(*found->second);
}

void TreeBuilder::tell_twice(const YamlNode& first, const YamlNode& second) {
  problems_.error("diagram:duplicate-key", place(second), "'" + second.text + "' is here twice")
      .notes.push_back({"first written here", place(first)});
}

/// Most mappings have so few keys that a table of them would cost more than it saves.
void TreeBuilder::check_few_keys(const YamlNode& mapping) {
  for (std::size_t i = 1; i < mapping.entry_count(); ++i) {
    for (std::size_t before = 0; before < i; ++before) {
      if (!mapping.key(i).is_scalar() || mapping.key(i).text != mapping.key(before).text) continue;
      if (mapping.key(before).is_scalar()) {
        tell_twice(mapping.key(before), mapping.key(i));
        break;
      }
    }
  }
}

void TreeBuilder::check_keys(const YamlNode& mapping) {
  constexpr std::size_t few = 8;
  for (std::size_t i = 0; i < mapping.entry_count(); ++i) {
    const YamlNode& key = mapping.key(i);
    if (key.is_scalar()) continue;
    problems_.error("diagram:syntax", place(key), "a key is a text, and this is " + std::string(kind_name(key.kind)));
  }
  if (mapping.entry_count() <= few) return check_few_keys(mapping);
  std::unordered_map<std::string_view, const YamlNode*> seen;
  seen.reserve(mapping.entry_count());
  for (std::size_t i = 0; i < mapping.entry_count(); ++i) {
    const YamlNode& key = mapping.key(i);
    if (!key.is_scalar()) continue;
    const auto [first, fresh] = seen.emplace(key.text, &key);
    if (!fresh) tell_twice(*first->second, key);
  }
}

std::string_view without_mark_of_order(std::string_view text) {
  return text.substr(0, 3) == "\xEF\xBB\xBF" ? text.substr(3) : text;
}

}  // namespace

const YamlNode* YamlNode::find(std::string_view name) const {
  if (!is_mapping()) return nullptr;
  for (std::size_t i = 0; i < entry_count(); ++i) {
    if (key(i).text == name) return &value(i);
  }
  return nullptr;
}

std::string_view kind_name(YamlNode::Kind kind) {
  switch (kind) {
    case YamlNode::Kind::scalar:
      return "a text";
    case YamlNode::Kind::sequence:
      return "a list";
    case YamlNode::Kind::mapping:
      return "a mapping";
    case YamlNode::Kind::null:
      break;
  }
  return "nothing";
}

YamlTree::YamlTree(const std::string& text, const std::string& file, DiagnosticList& problems) {
  if (const auto bad = find_bad_byte(text)) {
    problems.error("diagram:encoding", {file, bad->line, bad->column}, bad->text);
    return;
  }
  const std::size_t errors_before = problems.error_count();
  try {
    const YamlNode* root = TreeBuilder(without_mark_of_order(text), file, nodes_, problems).read();
    if (problems.error_count() == errors_before) root_ = root;
  } catch (const Fault& fault) {
    problems.error(fault.rule, fault.place, fault.text).notes = fault.notes;
  }
}

}  // namespace kinemo::formats::diagram
