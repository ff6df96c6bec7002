#include "formats/diagram/yaml_tree.hpp"

#include "formats/diagram/text_check.hpp"

#include <yaml-cpp/depthguard.h>
#include <yaml-cpp/eventhandler.h>
#include <yaml-cpp/exceptions.h>
#include <yaml-cpp/parser.h>

#include <algorithm>
#include <sstream>
#include <unordered_map>

namespace kinemo::formats::diagram {

namespace {

/// Ends the reading of a document at a fault that leaves nothing sensible to go on with.
struct Fault {
  std::string rule;
  SourcePlace place;
  std::string text;
};

/// Makes nodes of the parser's events, with a stack of the nodes that are still open.
class TreeBuilder final : public YAML::EventHandler {
 public:
  TreeBuilder(const std::string& file, std::deque<YamlNode>& nodes, DiagnosticList& problems)
      : file_(file), nodes_(nodes), problems_(problems) {}

  const YamlNode* root() const { return root_; }

  void OnDocumentStart(const YAML::Mark&) override {}
  void OnDocumentEnd() override {}
  void OnNull(const YAML::Mark& mark, YAML::anchor_t anchor) override { leaf(mark, anchor, YamlNode::Kind::null); }
  void OnScalar(const YAML::Mark& mark, const std::string& tag, YAML::anchor_t anchor,
                const std::string& value) override {
    refuse_tag(mark, tag);
    leaf(mark, anchor, YamlNode::Kind::scalar).text = value;
  }
  void OnAlias(const YAML::Mark& mark, YAML::anchor_t anchor) override;
  void OnSequenceStart(const YAML::Mark& mark, const std::string& tag, YAML::anchor_t anchor,
                       YAML::EmitterStyle::value) override {
    refuse_tag(mark, tag);
    begin(mark, anchor, YamlNode::Kind::sequence);
  }
  void OnSequenceEnd() override { end(); }
  void OnMapStart(const YAML::Mark& mark, const std::string& tag, YAML::anchor_t anchor,
                  YAML::EmitterStyle::value) override {
    refuse_tag(mark, tag);
    begin(mark, anchor, YamlNode::Kind::mapping);
  }
  void OnMapEnd() override { end(); }

 private:
  SourcePlace place(const YAML::Mark& mark) const {
    return {file_, static_cast<std::size_t>(mark.line + 1), static_cast<std::size_t>(mark.column + 1)};
  }
  SourcePlace place(const YamlNode& node) const { return {file_, node.line, node.column}; }
  void refuse_tag(const YAML::Mark& mark, const std::string& tag);
  YamlNode& make(const YAML::Mark& mark, YAML::anchor_t anchor, YamlNode::Kind kind);
  YamlNode& leaf(const YAML::Mark& mark, YAML::anchor_t anchor, YamlNode::Kind kind);
  void begin(const YAML::Mark& mark, YAML::anchor_t anchor, YamlNode::Kind kind);
  void end();
  void attach(const YamlNode& node);
  void check_keys(const YamlNode& mapping);

  const std::string& file_;
  std::deque<YamlNode>& nodes_;
  DiagnosticList& problems_;
  std::vector<YamlNode*> open_;
  std::unordered_map<YAML::anchor_t, const YamlNode*> anchors_;
  const YamlNode* root_ = nullptr;
};

void TreeBuilder::refuse_tag(const YAML::Mark& mark, const std::string& tag) {
  // "?" and "!" are what the parser gives plain and quoted nodes that have no tag.
  if (tag.empty() || tag == "?" || tag == "!") return;
  problems_.error("diagram:syntax", place(mark), "the tag '" + tag + "' means nothing in a diagram");
}

YamlNode& TreeBuilder::make(const YAML::Mark& mark, YAML::anchor_t anchor, YamlNode::Kind kind) {
  YamlNode& node = nodes_.emplace_back();
  node.kind = kind;
  node.line = static_cast<std::uint32_t>(mark.line + 1);
  node.column = static_cast<std::uint32_t>(mark.column + 1);
  if (anchor != YAML::NullAnchor) anchors_[anchor] = &node;
  return node;
}

YamlNode& TreeBuilder::leaf(const YAML::Mark& mark, YAML::anchor_t anchor, YamlNode::Kind kind) {
  YamlNode& node = make(mark, anchor, kind);
  attach(node);
  return node;
}

void TreeBuilder::begin(const YAML::Mark& mark, YAML::anchor_t anchor, YamlNode::Kind kind) {
  YamlNode& node = make(mark, anchor, kind);
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

void TreeBuilder::OnAlias(const YAML::Mark& mark, YAML::anchor_t anchor) {
  const auto found = anchors_.find(anchor);
  if (found == anchors_.end()) throw Fault{"diagram:syntax", place(mark), "the alias names no anchor"};
  if (found->second->open) {
    throw Fault{"diagram:recursion", place(mark),
                "the alias stands inside of what it names (line " + std::to_string(found->second->line) + ")"};
  }
  attach(*found->second);
}

void TreeBuilder::check_keys(const YamlNode& mapping) {
  std::unordered_map<std::string_view, const YamlNode*> seen;
  seen.reserve(mapping.entry_count());
  for (std::size_t i = 0; i < mapping.entry_count(); ++i) {
    const YamlNode& key = mapping.key(i);
    if (!key.is_scalar()) {
      problems_.error("diagram:syntax", place(key), "a key is a text, and this is " + std::string(kind_name(key.kind)));
      continue;
    }
    const auto [first, fresh] = seen.emplace(key.text, &key);
    if (fresh) continue;
    problems_.error("diagram:duplicate-key", place(key), "'" + key.text + "' is here twice")
        .notes.push_back({"first written here", place(*first->second)});
  }
}

std::string_view without_mark_of_order(std::string_view text) {
  return text.substr(0, 3) == "\xEF\xBB\xBF" ? text.substr(3) : text;
}

/// The one document of the text; null and a problem where there isn't just one.
const YamlNode* read_document(std::string_view text, const std::string& file, std::deque<YamlNode>& nodes,
                              DiagnosticList& problems) {
  std::istringstream stream{std::string(text)};
  YAML::Parser parser(stream);
  TreeBuilder builder(file, nodes, problems);
  if (!parser.HandleNextDocument(builder) || builder.root() == nullptr) {
    throw Fault{"diagram:syntax", {file, 1, 1}, "the file is empty"};
  }
  const YamlNode* root = builder.root();
  std::deque<YamlNode> rest;
  TreeBuilder second(file, rest, problems);
  if (parser.HandleNextDocument(second) && second.root() != nullptr) {
    throw Fault{"diagram:syntax",
                {file, second.root()->line, second.root()->column},
                "a file holds one document, and here begins a second one"};
  }
  return root;
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
    const YamlNode* root = read_document(without_mark_of_order(text), file, nodes_, problems);
    if (problems.error_count() == errors_before) root_ = root;
  } catch (const Fault& fault) {
    problems.error(fault.rule, fault.place, fault.text);
  } catch (const YAML::DeepRecursion& error) {
    problems
        .error("diagram:too-deep",
               {file, static_cast<std::size_t>(error.mark.line + 1), static_cast<std::size_t>(error.mark.column + 1)},
               "the file is nested more than " + std::to_string(depth_limit) + " levels deep")
        .notes.push_back({"inner subsystems can stand in files of their own, or behind an anchor and its alias", {}});
  } catch (const YAML::Exception& error) {
    problems.error("diagram:syntax",
                   {file, static_cast<std::size_t>(std::max(error.mark.line, 0) + 1),
                    static_cast<std::size_t>(std::max(error.mark.column, 0) + 1)},
                   error.msg);
  }
}

}  // namespace kinemo::formats::diagram
