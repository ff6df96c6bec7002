#include "formats/diagram/keys.hpp"
#include "formats/diagram/yaml_tree.hpp"
#include "formats/read_text.hpp"

#include <gtest/gtest.h>

#include <algorithm>

namespace kinemo::formats::diagram {
namespace {

struct KindInSchema {
  ObjectKind kind;
  const char* definition;
};

constexpr KindInSchema kinds[] = {
    {ObjectKind::model, "model"},           {ObjectKind::part, "part"},
    {ObjectKind::variable, "variable"},     {ObjectKind::block, "block"},
    {ObjectKind::subsystem, "subsystem"},   {ObjectKind::linked, "linked"},
    {ObjectKind::variant, "variant"},       {ObjectKind::mask_parameter, "mask_parameter"},
    {ObjectKind::ports, "ports"},           {ObjectKind::line, "line"},
    {ObjectKind::dictionary, "dictionary"}, {ObjectKind::port, "placed_port"},
};

TEST(DiagramSchema, HasJustTheKeysThatTheReaderTakes) {
  std::string reason;
  const auto text = read_text(KINEMO_SOURCE_DIR "/docs/diagram.schema.json", reason);
  ASSERT_TRUE(text) << reason;
  DiagnosticList problems;
  const YamlTree schema(*text, "diagram.schema.json", problems);
  ASSERT_NE(nullptr, schema.root());
  for (const KindInSchema& row : kinds) {
    const YamlNode* definition = schema.root()->find("$defs")->find(row.definition);
    ASSERT_NE(nullptr, definition) << row.definition;
    EXPECT_EQ("false", definition->find("additionalProperties")->text) << row.definition;
    const YamlNode& properties = *definition->find("properties");
    std::vector<std::string> in_schema;
    for (std::size_t i = 0; i < properties.entry_count(); ++i) in_schema.push_back(properties.key(i).text);
    std::vector<std::string> in_reader = keys_of(row.kind);
    std::sort(in_schema.begin(), in_schema.end());
    std::sort(in_reader.begin(), in_reader.end());
    EXPECT_EQ(in_reader, in_schema) << row.definition;
  }
}

}  // namespace
}  // namespace kinemo::formats::diagram
