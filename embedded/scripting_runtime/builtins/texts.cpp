// Functions of texts. All work on UTF-16, as arrays hold it.

#include "embedded/scripting_runtime/builtin.hpp"
#include "embedded/scripting_runtime/display.hpp"
#include "embedded/scripting_runtime/evaluate.hpp"
#include "embedded/scripting_runtime/indexing.hpp"
#include "embedded/scripting_runtime/numbers.hpp"
#include "embedded/scripting_runtime/script.hpp"
#include "platform/foundation/strings.hpp"

#include <algorithm>

namespace embedded::scripting_runtime {

namespace {

cvUniquePtr text_array(const ustring& text) {
  return cvUniquePtr(cvCreateUString(text));
}

char16_t folded(char16_t c) {
  return c >= u'A' && c <= u'Z' ? static_cast<char16_t>(c - u'A' + u'a') : c;
}
char16_t raised(char16_t c) {
  return c >= u'a' && c <= u'z' ? static_cast<char16_t>(c - u'a' + u'A') : c;
}
bool is_blank(char16_t c) {
  return c == u' ' || (c >= u'\t' && c <= u'\r') || c == 0;
}

/// Calls `map` on the text, or on each text of a cell array.
template <class Map>
void map_texts(Call& call, Map map) {
  if (!cvIsCell(call[0])) return call.give(text_array(map(kmf::cvarray_to_ustring(call[0]))));
  cvUniquePtr result(cvCreateSharedCopy(call[0]));
  for (std::size_t i = 0; i < cvGetNumberOfElements(call[0]); ++i) {
    cvSetCell(result.get(), i, cvCreateUString(map(kmf::cvarray_to_ustring(cvGetCell(call[0], i)))));
  }
  call.give(std::move(result));
}

template <char16_t (*Map)(char16_t)>
void map_characters(Call& call) {
  map_texts(call, [](ustring text) {
    std::transform(text.begin(), text.end(), text.begin(), Map);
    return text;
  });
}

void trim(Call& call) {
  map_texts(call, [](const ustring& text) {
    const auto first = std::find_if_not(text.begin(), text.end(), is_blank);
    const auto last = std::find_if_not(text.rbegin(), ustring::const_reverse_iterator(first), is_blank).base();
    return ustring(first, last);
  });
}

ustring replaced(const ustring& text, const ustring& from, const ustring& to) {
  if (from.empty()) return text;
  ustring result;
  std::size_t at = 0;
  for (std::size_t found = text.find(from); found != ustring::npos; found = text.find(from, at)) {
    result.append(text, at, found - at);
    result += to;
    checked_count({1, result.size()});
    at = found + from.size();
  }
  return result.append(text, at);
}

void replace(Call& call) {
  const ustring from = kmf::cvarray_to_ustring(call[1]);
  const ustring to = kmf::cvarray_to_ustring(call[2]);
  map_texts(call, [&](const ustring& text) { return replaced(text, from, to); });
}

void split(Call& call) {
  const ustring text = kmf::cvarray_to_ustring(call[0]);
  const ustring separator = call.size() > 1 ? kmf::cvarray_to_ustring(call[1]) : u" ";
  std::vector<ustring> parts;
  std::size_t at = 0;
  for (std::size_t found = text.find(separator); found != ustring::npos && !separator.empty();
       found = text.find(separator, at)) {
    parts.push_back(text.substr(at, found - at));
    at = found + separator.size();
  }
  parts.push_back(text.substr(at));
  call.give(cvUniquePtr(kmf::string_vector_to_cvarray(parts, 2)));
}

/// Looks at the sizes alone: cells may share a large text that would be copied for each of them.
void check_joined(const cvArray_tag* texts, const ustring& separator) {
  if (!cvIsCell(texts)) return;
  std::size_t size = 0;
  for (std::size_t i = 0; i < cvGetNumberOfElements(texts); ++i) {
    const cvArray_tag* text = cvGetCell(texts, i);
    size += (i > 0 ? separator.size() : 0) + (text != nullptr ? cvGetNumberOfElements(text) : 0);
    checked_count({1, size});
  }
}

void join(Call& call) {
  const ustring separator = call.size() > 1 ? kmf::cvarray_to_ustring(call[1]) : u" ";
  check_joined(call[0], separator);
  ustring result;
  bool first = true;
  for (const ustring& text : kmf::cvarray_to_ustring_vector(call[0])) {
    if (!first) result += separator;
    result += text;
    first = false;
  }
  call.give(text_array(result));
}

/// Texts joined; with cell arrays among them, element by element.
void concatenate(Call& call) {
  const cvArray_tag* cells = nullptr;
  for (std::size_t i = 0; i < call.size(); ++i) {
    if (cvIsCell(call[i]) && (cells == nullptr || cvGetNumberOfElements(cells) == 1)) cells = call[i];
  }
  const std::size_t count = cells != nullptr ? cvGetNumberOfElements(cells) : 1;
  std::vector<ustring> results(count);
  for (std::size_t i = 0; i < call.size(); ++i) {
    const std::vector<ustring> texts = kmf::cvarray_to_ustring_vector(call[i]);
    if (texts.size() != 1 && texts.size() != count) {
      throw_runtime_error("SizeMismatch", "strcat", std::to_string(count), std::to_string(texts.size()));
    }
    for (std::size_t k = 0; k < count; ++k) {
      results[k] += texts[texts.size() == 1 ? 0 : k];
      checked_count({1, results[k].size()});
    }
  }
  if (cells == nullptr) return call.give(text_array(results.front()));
  cvUniquePtr result(cvCreateSharedCopy(cells));
  for (std::size_t k = 0; k < count; ++k) cvSetCell(result.get(), k, cvCreateUString(results[k]));
  call.give(std::move(result));
}

bool equal_texts(const cvArray_tag* a, const cvArray_tag* b, bool fold) {
  if (!cvIsChar(a) || !cvIsChar(b)) return false;
  if (cvGetNumberOfElements(a) == 0 && cvGetNumberOfElements(b) == 0) return true;
  const ustring& x = cvGetCharacters(a);
  const ustring& y = cvGetCharacters(b);
  if (cvGetDimensions(a) != cvGetDimensions(b)) return false;
  return std::equal(x.begin(), x.end(), y.begin(), y.end(),
                    [&](char16_t c, char16_t d) { return fold ? folded(c) == folded(d) : c == d; });
}

template <bool Fold>
void compare(Call& call) {
  const bool first = cvIsCell(call[0]);
  if (!first && !cvIsCell(call[1])) return call.give(equal_texts(call[0], call[1], Fold));
  const bool both = first && cvIsCell(call[1]);
  const cvArray_tag* cells = call[first ? 0 : 1];
  const cvArray_tag* other = call[first ? 1 : 0];
  if (both && cvGetDimensions(cells) != cvGetDimensions(other)) {
    throw_runtime_error("SizeMismatch", std::string(call.name), shape_text(cvGetDimensions(cells)),
                        shape_text(cvGetDimensions(other)));
  }
  Numbers result = Numbers::zeros(cvGetDimensions(cells), cvLOGICAL_CLASS);
  for (std::size_t i = 0; i < result.size(); ++i) {
    result.re[i] = equal_texts(cvGetCell(cells, i), both ? cvGetCell(other, i) : other, Fold) ? 1 : 0;
  }
  call.give(array_of(std::move(result)));
}

/// The value of a text, or [] and false when it has none.
void text_to_number(Call& call) {
  try {
    call.give(evaluate("[" + call.text(0) + "]", Scope(base_workspace())));
    call.give(true);
  } catch (const ExitRequest&) {
    throw;
  } catch (const kmf::Exception&) {  // by contract, a text without a value is no error here
    check_interrupt();
    call.outputs.clear();
    call.give(cvUniquePtr(cvCreateDoubleMatrix(0, 0)));
    call.give(false);
  }
}

void format(Call& call) {
  std::vector<const cvArray_tag*> arguments;
  for (std::size_t i = 1; i < call.size(); ++i) arguments.push_back(call[i]);
  call.give(format_text(call.text(0), arguments));
}

void show(Call& call) {
  display(display_text(call[0]));
}

}  // namespace

std::vector<Builtin> text_builtins() {
  return {{"str2num", 1, 1, text_to_number},
          {"sprintf", 1, any_number, format},
          {"disp", 1, 1, show},
          {"strcat", 1, any_number, concatenate},
          {"strcmp", 2, 2, compare<false>},
          {"strcmpi", 2, 2, compare<true>},
          {"upper", 1, 1, map_characters<raised>},
          {"lower", 1, 1, map_characters<folded>},
          {"strrep", 3, 3, replace},
          {"strtrim", 1, 1, trim},
          {"strsplit", 1, 2, split},
          {"strjoin", 1, 2, join}};
}

}  // namespace embedded::scripting_runtime
