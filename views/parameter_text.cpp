#include "views/parameter_text.hpp"

#include "platform/foundation/strings.hpp"
#include "views/json_writer.hpp"

namespace kinemo::views {

namespace {

struct Shape {
  std::size_t rows;
  std::size_t columns;  ///< all dimensions but the first, rolled out
};

Shape shape_of(const data2::core::ValueData& value) {
  const std::size_t count = value.elements().size();
  const std::size_t rows = value.dimensions().empty() ? count : value.dimensions().front();
  return {rows, rows != 0 ? count / rows : 0};
}

/// Elements stand by columns.
double element(const data2::core::ValueData& value, const Shape& shape, std::size_t row, std::size_t column) {
  return value.elements()[column * shape.rows + row];
}

std::string array_text(const data2::core::ValueData& value) {
  const Shape shape = shape_of(value);
  std::string text = "[";
  for (std::size_t row = 0; row < shape.rows; ++row) {
    if (row != 0) text += "; ";
    for (std::size_t column = 0; column < shape.columns; ++column) {
      text += (column != 0 ? " " : "") + number_text(element(value, shape, row, column));
    }
  }
  return text + "]";
}

void write_row(JsonWriter& json, const data2::core::ValueData& value, const Shape& shape, std::size_t row) {
  json.begin_array(true);
  for (std::size_t column = 0; column < shape.columns; ++column) json.value(element(value, shape, row, column));
  json.end_array();
}

void write_numbers(JsonWriter& json, const data2::core::ValueData& value) {
  if (value.isScalar()) {
    json.value(value.elements().front());
    return;
  }
  const Shape shape = shape_of(value);
  if (shape.rows == 1) return write_row(json, value, shape, 0);
  json.begin_array(true);
  for (std::size_t row = 0; row < shape.rows; ++row) write_row(json, value, shape, row);
  json.end_array();
}

struct TextOf : boost::static_visitor<std::string> {
  std::string operator()(const ustring& text) const { return "'" + kmf::ustring_to_utf8_string(text) + "'"; }
  std::string operator()(const data2::core::Value& value) const { return value_text(value.data()); }
  std::string operator()(const data2::core::Expr& expression) const { return expression_text(expression); }
};

struct Write : boost::static_visitor<void> {
  explicit Write(JsonWriter& writer) : json(writer) {}
  void operator()(const ustring& text) const {
    json.begin_object(true).member("text", kmf::ustring_to_utf8_string(text)).end_object();
  }
  void operator()(const data2::core::Value& value) const { write_value(json, value.data()); }
  void operator()(const data2::core::Expr& expression) const {
    json.begin_object(true).member("expression", data2::core::plain_text(expression));
    json.member("unit", data2::core::bound_unit(expression).text()).end_object();
  }
  JsonWriter& json;
};

}  // namespace

std::string value_text(const data2::core::ValueData& value) {
  const std::string numbers = value.isScalar() ? number_text(value.elements().front()) : array_text(value);
  const std::string& unit = value.unit().text();
  return unit.empty() || unit == "1" ? numbers : numbers + " " + unit;
}

std::string parameter_text(const ParameterVariant& value) {
  return boost::apply_visitor(TextOf(), value);
}

void write_value(JsonWriter& json, const data2::core::ValueData& value) {
  json.begin_object(true).key("value");
  write_numbers(json, value);
  json.member("unit", value.unit().text()).end_object();
}

void write_parameter(JsonWriter& json, const ParameterVariant& value) {
  boost::apply_visitor(Write(json), value);
}

}  // namespace kinemo::views
