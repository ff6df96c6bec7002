#include "formats/diagram/json_text.hpp"

#include "formats/diagram/yaml_text.hpp"

#include <algorithm>

namespace kinemo::formats::diagram {

namespace {

/// Readers look 1024 characters ahead.
constexpr std::size_t longest_key = 1000;
/// Collections of as few nodes stand on one line.
constexpr std::uint64_t largest_line = 16;

bool is_digit(char c) {
  return c >= '0' && c <= '9';
}

/// Whether the text is a number of JSON.
bool is_number(const std::string& text) {
  std::size_t at = 0;
  const auto skip = [&](char c) { return at < text.size() && text[at] == c && ++at != 0; };
  const auto digits = [&] {
    const std::size_t first = at;
    while (at < text.size() && is_digit(text[at])) ++at;
    return at != first;
  };
  skip('-');
  if (!skip('0') && !digits()) return false;
  if (skip('.') && !digits()) return false;
  if (skip('e') || skip('E')) {
    if (!skip('-')) skip('+');
    if (!digits()) return false;
  }
  return at == text.size();
}

/// Keys below which other programs look for numbers.
bool asks_for_numbers(const std::string& key) {
  return key == "kinemo" || key == "at" || key == "rotate";
}

/// A stack in place of recursion: diagrams are nested as deep as they like.
class JsonWriter {
 public:
  JsonWriter(std::size_t limit, const std::string*& too_long) : limit_(limit), too_long_(too_long) {}

  std::string write(const YamlNode& root) {
    begin(root, false);
    while (!open_.empty() && text_.size() <= limit_) step();
    text_ += '\n';
    return std::move(text_);
  }

 private:
  struct Open {
    const YamlNode* node;
    std::size_t next;
    bool flat;     ///< on one line
    bool numbers;  ///< whether its items may be numbers
  };

  void begin(const YamlNode& node, bool numbers) {
    if (node.is_null()) {
      text_ += "null";
    } else if (node.is_scalar()) {
      text_ += numbers && is_number(node.text) ? node.text : yaml_quoted(node.text);
    } else {
      text_ += node.is_mapping() ? '{' : '[';
      const bool flat = (!open_.empty() && open_.back().flat) || node.size <= largest_line;
      open_.push_back({&node, 0, flat, numbers});
    }
  }

  void step() {
    Open& at = open_.back();
    if (at.next == at.node->children.size()) return end();
    if (at.next != 0) text_ += ',';
    if (at.next != 0 && at.flat) text_ += ' ';
    break_line(at, open_.size());
    bool numbers = at.numbers;
    if (at.node->is_mapping()) numbers = key(at.node->children[at.next++]->text);
    begin(*at.node->children[at.next++], numbers);
  }

  /// Whether the value may be a number.
  bool key(const std::string& name) {
    const std::string quoted = yaml_quoted(name);
    if (quoted.size() > longest_key) too_long_ = &name;
    text_ += quoted + ": ";
    return asks_for_numbers(name);
  }

  void end() {
    const Open closed = open_.back();
    open_.pop_back();
    if (!closed.node->children.empty()) break_line(closed, open_.size());
    text_ += closed.node->is_mapping() ? '}' : ']';
  }

  void break_line(const Open& at, std::size_t depth) {
    if (!at.flat) text_.append(1, '\n').append(2 * depth, ' ');
  }

  std::size_t limit_;
  const std::string*& too_long_;
  std::string text_;
  std::vector<Open> open_;
};

}  // namespace

std::string json_text(const YamlNode& root, std::size_t limit, const std::string*& too_long) {
  return JsonWriter(limit, too_long).write(root);
}

}  // namespace kinemo::formats::diagram
