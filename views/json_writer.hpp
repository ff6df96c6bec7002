// Writes JSON to a stream as it comes, with indentation; nothing is held but where it stands, so the size and depth of
// what is written don't matter. The caller owns the stream.
#pragma once

#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

namespace kinemo::views {

class JsonWriter {
 public:
  explicit JsonWriter(std::ostream& out) : out_(out) {}

  /// `inline_contents` writes what is inside on one line.
  JsonWriter& begin_object(bool inline_contents = false) { return begin('{', inline_contents); }
  JsonWriter& end_object() { return end('}'); }
  JsonWriter& begin_array(bool inline_contents = false) { return begin('[', inline_contents); }
  JsonWriter& end_array() { return end(']'); }
  JsonWriter& key(std::string_view name);

  JsonWriter& value(std::string_view text);
  JsonWriter& value(const std::string& text) { return value(std::string_view(text)); }
  JsonWriter& value(const char* text) { return value(std::string_view(text)); }
  /// The shortest text that reads back to the same number; the texts "Inf", "-Inf" and "NaN" for what JSON has no
  /// numbers for.
  JsonWriter& value(double number);
  JsonWriter& value(std::size_t number);
  JsonWriter& value(bool on);

  template <class T>
  JsonWriter& member(std::string_view name, const T& content) {
    return key(name).value(content);
  }
  /// Ends the document with a line break.
  void finish();

 private:
  struct Level {
    bool inline_contents;
    bool empty;
  };

  JsonWriter& begin(char bracket, bool inline_contents);
  JsonWriter& end(char bracket);
  void separate();
  void new_line();
  void write_text(std::string_view text);

  std::ostream& out_;
  std::vector<Level> levels_;
  bool after_key_ = false;
};

/// The shortest text of a number that reads back to the same.
std::string number_text(double number);

}  // namespace kinemo::views
