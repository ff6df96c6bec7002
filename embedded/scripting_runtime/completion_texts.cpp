#include "embedded/scripting_runtime/completion_texts.hpp"

#include <cctype>
#include <filesystem>
#include <set>
#include <utility>

namespace embedded::scripting_runtime {

namespace {

namespace fs = std::filesystem;

bool is_path_character(char c) {
  return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_' || c == '.';
}

bool ends_operand(char c) {
  return is_path_character(c) || c == ')' || c == ']' || c == '}' || c == '\'';
}

/// Goes through a line, with the brackets that are open and the text that is.
class Reader {
 public:
  explicit Reader(std::string_view line) : line_(line) {}

  TypedText read() {
    for (at_ = 0; at_ < line_.size() && !in_comment_; ++at_) {
      typed_.quote != 0 ? inside() : outside();
    }
    if (typed_.quote == 0) return {};
    if (!open_.empty()) {
      typed_.function = open_.back().function;
      typed_.argument = open_.back().argument;
    }
    return std::move(typed_);
  }

 private:
  struct Bracket {
    std::string function;
    std::size_t argument = 0;
  };

  void inside() {
    const char c = line_[at_];
    const bool doubled = c == typed_.quote && at_ + 1 < line_.size() && line_[at_ + 1] == c;
    if (c == typed_.quote && !doubled) {
      typed_ = {};
      return;
    }
    if (doubled) ++at_;
    typed_.text += c;
  }

  void outside() {
    const char c = line_[at_];
    if (c == '%' || c == '#') {
      in_comment_ = true;
    } else if (c == '"' || (c == '\'' && (at_ == 0 || !ends_operand(line_[at_ - 1])))) {
      typed_.quote = c;
      typed_.begin = at_ + 1;
    } else if (c == '(' || c == '[' || c == '{') {
      open_.push_back({c == '(' ? name_before() : std::string(), 0});
    } else if ((c == ')' || c == ']' || c == '}') && !open_.empty()) {
      open_.pop_back();
    } else if (c == ',' && !open_.empty()) {
      ++open_.back().argument;
    }
  }

  std::string name_before() const {
    std::size_t begin = at_;
    while (begin > 0 && is_path_character(line_[begin - 1])) --begin;
    return std::string(line_.substr(begin, at_ - begin));
  }

  std::string_view line_;
  std::size_t at_ = 0;
  bool in_comment_ = false;
  std::vector<Bracket> open_;
  TypedText typed_;
};

std::vector<std::string> files(const std::string& typed) {
  const std::size_t slash = typed.rfind('/');
  const std::string folder = slash == std::string::npos ? "" : typed.substr(0, slash + 1);
  const std::string name = typed.substr(folder.size());
  std::set<std::string> found;
  std::error_code error;
  fs::directory_iterator entries(folder.empty() ? "." : folder, error);
  for (; !error && entries != fs::directory_iterator(); entries.increment(error)) {
    const std::string each = entries->path().filename().string();
    const bool hidden = name.empty() && each.front() == '.';
    std::error_code ignored;
    const bool matches = !hidden && each.compare(0, name.size(), name) == 0;
    if (matches) found.insert(folder + each + (entries->is_directory(ignored) ? "/" : ""));
  }
  return {found.begin(), found.end()};
}

TextCandidates& known_candidates() {
  static TextCandidates candidates;
  return candidates;
}

std::string with_doubled(const std::string& text, char quote) {
  std::string result;
  for (const char c : text) result += c == quote ? std::string(2, c) : std::string(1, c);
  return result;
}

}  // namespace

TypedText typed_text(std::string_view line) {
  return Reader(line).read();
}

void set_text_candidates(TextCandidates candidates) {
  known_candidates() = std::move(candidates);
}

std::vector<std::string> text_candidates(const TypedText& typed) {
  std::vector<std::string> found;
  if (known_candidates()) found = known_candidates()(typed);
  if (found.empty()) found = files(typed.text);
  std::set<std::string> written;
  for (const std::string& text : found) written.insert(with_doubled(text, typed.quote));
  return {written.begin(), written.end()};
}

}  // namespace embedded::scripting_runtime
