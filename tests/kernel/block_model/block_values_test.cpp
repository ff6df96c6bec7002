// The small values of a block: its type, its parameters, its embedding.

#include "common/gl/gti/export/block_data.hpp"
#include "common/gl/gti/export/block_type.hpp"
#include "common/gl/gti/export/component_embedding.hpp"
#include "common/gl/gti/export/parameter_value.hpp"
#include "tests/support/no_leaks.hpp"

#include <gtest/gtest.h>
#include <boost/lexical_cast.hpp>

#include <sstream>
#include <string>

namespace gl::gti {
namespace {

TEST(BlockType, HasTextFormsInSmallLetters) {
  EXPECT_EQ(boost::lexical_cast<std::string>(BlockType::OPAQUE), "opaque");
  EXPECT_EQ(boost::lexical_cast<std::string>(BlockType::CORE), "core");
  for (const char* text : {"CORE", "Core", "core"}) EXPECT_EQ(boost::lexical_cast<BlockType::Value>(text), 1);
  std::istringstream in("unknown opaque");
  BlockType type;
  in >> type;
  EXPECT_EQ(static_cast<int>(type), -1);
  in >> type;
  EXPECT_TRUE(in && type == BlockType::OPAQUE);
  in >> type;
  EXPECT_FALSE(in);
  EXPECT_EQ(static_cast<int>(type), -1) << "no word is no type";
}

class ParameterValues : public kinemo::test::NoLeaks {
 protected:
  static ParameterValue of(double value, const ustring& text) {
    const cvUniquePtr array(cvCreateDoubleScalar(value));
    return ParameterValue(array.get(), text);
  }
};

TEST_F(ParameterValues, AreEqualInArrayAndText) {
  EXPECT_EQ(ParameterValue(), ParameterValue());
  EXPECT_EQ(of(3, u"x"), of(3, u"x"));
  EXPECT_NE(of(3, u"x"), of(3, u"y"));
  EXPECT_NE(of(3, u"x"), of(4, u"x"));
}

TEST_F(ParameterValues, UnwrapParameterObjects) {
  const cvUniquePtr object(cvCreateObject("Gantrel.Parameter"));
  cvSetProperty(object.get(), 0, "Value", cvCreateDoubleScalar(3));
  EXPECT_EQ(ParameterValue(object.get(), u"x"), of(3, u"x"));
  const cvUniquePtr without(cvCreateObject("Gantrel.Parameter"));
  EXPECT_EQ(ParameterValue(without.get(), u""), ParameterValue()) << "one without a value reads as empty numbers";
}

TEST_F(ParameterValues, OutliveScopeAndSourceOfTheirArray) {
  ParameterValue kept;
  const int scope = cvOpenScope();
  {
    const cvUniquePtr array(cvCreateDoubleScalar(7));
    kept = ParameterValue(array.get(), u"seven");
  }
  cvCloseScope(scope);
  const ParameterValue copy = kept;
  EXPECT_EQ(copy.value(), kept.value()) << "copies share the array";
  EXPECT_EQ(cvGetScalar(kept.value()), 7);
  EXPECT_EQ(cvGetArrayScope(kept.value()), 0);
}

TEST_F(ParameterValues, AreReplacedAndRemovedInBlockData) {
  BlockData data;
  data.addParameter("a", of(1, u"1"));
  data.addParameter("a", of(2, u"2"));
  data.addPort(u"p");
  data.addPort(u"p");
  EXPECT_EQ(data.parameters().size(), 1u);
  EXPECT_EQ(data.parameters().at("a"), of(2, u"2"));
  EXPECT_EQ(data.ports().size(), 1u);
  const BlockData copy = data;
  data.removeParameter("absent");
  data.removePort(u"absent");
  EXPECT_EQ(data, copy);
  data.removePort(u"p");
  EXPECT_NE(data, copy);
  data.addPort(u"p");
  data.removeParameter("a");
  EXPECT_NE(data, copy);
}

TEST(ComponentEmbedding, KeepsOneConnectorForEachPort) {
  const gl::core::Component part(kmf::VnIdPath1("test.part"));
  ComponentEmbedding a(part), b(part);
  a.addPortEmbedding(u"x", "p");
  a.addPortEmbedding(u"y", "q");
  b.addPortEmbedding(u"y", "other");
  b.addPortEmbedding(u"y", "q");
  EXPECT_NE(a, b);
  b.addPortEmbedding(u"x", "p");
  EXPECT_EQ(a, b) << "whatever the order of addition";
  b.removePortEmbedding(u"absent");
  EXPECT_EQ(a, b);
  EXPECT_NE(a, ComponentEmbedding(gl::core::Component(kmf::VnIdPath1("test.other"))));
}

TEST(ComponentEmbedding, CopiesShareUntilOneChanges) {
  ComponentEmbedding a{gl::core::Component()};
  a.addPortEmbedding(u"x", "p");
  ComponentEmbedding b = a;
  EXPECT_EQ(&a.portEmbedding(), &b.portEmbedding());
  b.addPortEmbedding(u"y", "q");
  EXPECT_EQ(a.portEmbedding().size(), 1u);
  swap(a, b);
  EXPECT_EQ(a.portEmbedding().size(), 2u);
  b = a;
  EXPECT_EQ(&a.portEmbedding(), &b.portEmbedding());
}

}  // namespace
}  // namespace gl::gti
