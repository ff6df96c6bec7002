#pragma once

// What a prompt offers inside of quotes.

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace embedded::scripting_runtime {

/// A text that is being typed.
struct TypedText {
  std::size_t begin = std::string_view::npos;  ///< in the line, behind the quote; npos outside of quotes
  char quote = 0;
  std::string function;      ///< whose input it is; empty for none
  std::size_t argument = 0;  ///< which input, from 0
  std::string text;          ///< what is typed up to now, doubled quotes as one
};

/// The text that the end of a line is in. A quote behind an operand transposes.
TypedText typed_text(std::string_view line);

/// Gives texts that can stand there and begin with what is typed; none where only files are meant.
using TextCandidates = std::function<std::vector<std::string>(const TypedText&)>;
/// For who knows what texts mean to functions; an empty one takes it back.
void set_text_candidates(TextCandidates candidates);
/// What these are, as they are written between the quotes, or else names of files; sorted.
std::vector<std::string> text_candidates(const TypedText& typed);

}  // namespace embedded::scripting_runtime
