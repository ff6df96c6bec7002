#include "host_fixture.hpp"

#include "embedded/block_diagram/block_data.hpp"
#include "embedded/block_diagram/edit.hpp"
#include "embedded/block_diagram/host_functions.hpp"
#include "platform/block_diagram/reflection.hpp"
#include "platform/scripting_runtime/scripting_runtime.hpp"

#include <algorithm>

namespace host_tests {

/// The fixture diagram: R in the atomic subsystem S with the port "p", and A beside it.
class ParametersTest : public HostTest {
 protected:
  void SetUp() override {
    HostTest::SetUp();
    diagram = &newDiagram();
    subsystem = &diagram->root().addSubsystem(u"S");
    a = &diagram->root().addBlock(u"A/B", "test/left3");
    System& inside = *contents(*subsystem);
    port = &inside.addPort(u"p", Side::Right, 4);
    resistor = &inside.addBlock(u"R", "test/masked");
    setParameter(*subsystem, "TreatAsAtomicUnit", u"ON");
  }

  std::string answer(const GTBlock& block, const std::string& name) { return text(getParam(block, name)); }
  static cvUniquePtr ask(cvUniquePtr what, const std::string& name) {
    std::vector<cvUniquePtr> inputs;
    inputs.push_back(std::move(what));
    inputs.push_back(host_tests::text(name));
    return call("get_param", std::move(inputs));
  }

  Diagram* diagram;
  GTBlock *subsystem, *a, *port, *resistor;
};

TEST_F(ParametersTest, TextsOfBlocksAreToldByName) {
  const struct {
    const GTBlock* block;
    const char* name;
    const char* expected;
  } cases[] = {
      {resistor, "Name", "R"},
      {resistor, "Parent", "model/S"},
      {a, "Name", "A/B"},
      {a, "Parent", "model"},
      {a, "BlockType", "Test Block"},
      {subsystem, "BlockType", "SubSystem"},
      {port, "BlockType", "KMIOPort"},
      {port, "Side", "Right"},
      {port, "Port", "4"},
      {subsystem, "Variant", "off"},
      {subsystem, "TreatAsAtomicUnit", "on"},
      {subsystem, "Opaque", "off"},
      {resistor, "R", "100"},
      {resistor, "mode", "fast"},
      {resistor, "label", ""},
      {subsystem, "ReferenceFile", ""},
  };
  for (const auto& row : cases) EXPECT_EQ(answer(*row.block, row.name), row.expected) << row.name;
}

TEST_F(ParametersTest, PortHandlesComeBySide) {
  const cvUniquePtr handles = getParam(*a, "PortHandles");
  const cvArray_tag* lefts = cvGetField(handles.get(), 0, "LConn");
  ASSERT_EQ(cvGetNumberOfElements(lefts), 3u);
  for (int i = 0; i < 3; ++i) EXPECT_EQ(cvGetElement(lefts, static_cast<std::size_t>(i)), left(*a, i)->getHandle());
  EXPECT_TRUE(cvIsEmpty(cvGetField(handles.get(), 0, "RConn")));
}

TEST_F(ParametersTest, OneObjectGivesOneArrayAndSeveralGiveACell) {
  const double both[] = {a->getHandle(), subsystem->getHandle()};
  const cvUniquePtr byHandles = ask(cvUniquePtr(cvCreateDoubleMatrix(2, 1, both)), "Name");
  ASSERT_TRUE(cvIsCell(byHandles.get()));
  EXPECT_EQ(kmf::cvarray_to_string_vector(byHandles.get()), (std::vector<std::string>{"A/B", "S"}));
  const cvUniquePtr byPaths = ask(cvUniquePtr(kmf::string_vector_to_cvarray({u"model/S/R", u"model/A//B"}, 1)), "Name");
  EXPECT_EQ(kmf::cvarray_to_string_vector(byPaths.get()), (std::vector<std::string>{"R", "A/B"}));
  EXPECT_EQ(text(ask(host_tests::text("model/S/R"), "Name")), "R");
  EXPECT_EQ(cvGetScalar(ask(host_tests::text("model"), "Handle").get()), diagram->handle());
  const cvUniquePtr none = ask(cvUniquePtr(cvCreateCellMatrix(0, 0)), "Name");
  EXPECT_TRUE(cvIsCell(none.get()) && cvIsEmpty(none.get()));
}

TEST_F(ParametersTest, QuestionsWithoutAnAnswerNameObjectAndParameter) {
  const std::string group = "kinemo:host:parameters:";
  EXPECT_EQ(errorOf([&] { getParam(*port, "Sides"); }), group + "UnknownParameter(model/S/p, Sides, Side)");
  EXPECT_EQ(errorOf([&] { getParam(*a, "Opaque"); }), group + "UnknownParameter(model/A//B, Opaque, )");
  EXPECT_EQ(errorOf([&] { ask(host_tests::text("model"), "DataDictionray"); }),
            group + "UnknownParameter(model, DataDictionray, DataDictionary)");
  EXPECT_EQ(errorOf([&] { ask(host_tests::text("model/S/X"), "Name"); }), group + "UnknownObject(model/S/X)");
  EXPECT_EQ(errorOf([&] { ask(number(-1.0), "Name"); }), group + "UnknownObject(-1)");
  EXPECT_EQ(errorOf([&] { ask(number(1e9), "Name"); }), group + "UnknownObject(1000000000)");
  const double gone = diagram->root().addBlock(u"gone", "test/left3").getHandle();
  removeBlock(*diagram->root().find(u"gone"));
  EXPECT_EQ(errorOf([&] { ask(number(gone), "Name"); }).substr(0, group.size() + 11), group + "ObjectGone(");
  EXPECT_EQ(errorOf([&] { ask(number(left(*a)->getHandle()), "Name"); }).substr(0, group.size() + 13),
            group + "UnknownObject");
  EXPECT_EQ(errorOf([&] { ask(cvUniquePtr(cvCreateLogicalScalar(true)), "Name"); }), group + "NotAnObject(logical)");
}

TEST_F(ParametersTest, ModelSettingsAreListedAndTold) {
  diagram->setParameter("StopTime", u"10");
  const cvUniquePtr known = ask(number(diagram->handle()), "ObjectParameters");
  EXPECT_EQ(cvGetFieldNames(known.get()),
            (std::vector<std::string>{"DataDictionary", "InitializeInteractiveRuns", "StopTime"}));
  EXPECT_EQ(text(ask(host_tests::text("model"), "InitializeInteractiveRuns")), "off");
  EXPECT_EQ(text(ask(host_tests::text("model"), "StopTime")), "10");
  EXPECT_EQ(errorOf([&] { diagram->setParameter("not a name", u""); }),
            "kinemo:host:diagram:InvalidSetting(not a name, model)");
}

TEST_F(ParametersTest, ParametersAreSetThroughTheRuntime) {
  std::vector<cvUniquePtr> inputs;
  for (const char* input : {"model/S/R", "R", "2*R0", "label", "x"}) inputs.push_back(host_tests::text(input));
  cvArray_tag* lent[5];
  std::transform(inputs.begin(), inputs.end(), lent, [](const cvUniquePtr& input) { return input.get(); });
  kmf::call_internal_corvane(0, nullptr, 5, lent, "set_param");
  EXPECT_EQ(parameter(*resistor, "R"), u"2*R0");
  EXPECT_EQ(parameter(*resistor, "label"), u"x");
  EXPECT_EQ(errorOf([&] { kmf::call_internal_corvane(0, nullptr, 4, lent, "set_param"); }),
            "kinemo:host:parameters:NameWithoutValue()");
}

TEST_F(ParametersTest, WrongTextsAreRefusedAndChangeNothing) {
  EXPECT_EQ(errorOf([&] { setParameter(*subsystem, "Opaque", u"maybe"); }),
            "kinemo:host:diagram:InvalidValue(Opaque, model/S, maybe, on, off)");
  EXPECT_EQ(errorOf([&] { setParameter(*port, "Side", u"top"); }),
            "kinemo:host:diagram:InvalidValue(Side, model/S/p, top, Left, Right)");
  EXPECT_EQ(errorOf([&] { setParameter(*port, "Port", u"1x"); }),
            "kinemo:host:diagram:InvalidValue(Port, model/S/p, 1x, a decimal integer)");
  EXPECT_EQ(errorOf([&] { setParameter(*resistor, "lable", u""); }),
            "kinemo:host:diagram:UnknownParameter(lable, model/S/R, label)");
  EXPECT_EQ(parameter(*port, "Side"), u"Right");
  EXPECT_EQ(parameter(*port, "Port"), u"4");
}

// --- find_system

class FindSystemTest : public ParametersTest {
 protected:
  static std::vector<cvUniquePtr> arguments(double root, const std::string& type) {
    std::vector<cvUniquePtr> inputs;
    inputs.push_back(number(root));
    inputs.push_back(host_tests::text("SearchDepth"));
    inputs.push_back(number(1.0));
    for (const char* option : {"Variants", "ActiveVariants", "LookUnderMasks", "All", "FollowLinks", "on",
                               "LookUnderReadProtectedSubsystems", "on", "BlockType"})
      inputs.push_back(host_tests::text(option));
    inputs.push_back(host_tests::text(type));
    return inputs;
  }

  /// Without the root itself, as callers read it.
  static std::vector<double> found(double root, const std::string& type) {
    const cvUniquePtr result = call("find_system", arguments(root, type));
    std::vector<double> handles;
    for (std::size_t i = 0; i < cvGetNumberOfElements(result.get()); ++i) {
      if (cvGetElement(result.get(), i) != root) handles.push_back(cvGetElement(result.get(), i));
    }
    return handles;
  }
};

TEST_F(FindSystemTest, FindsDirectChildrenOfAType) {
  System& inside = *contents(*subsystem);
  GTBlock& nested = inside.addSubsystem(u"nested");
  contents(nested)->addSubsystem(u"deeper");
  EXPECT_EQ(found(diagram->handle(), "SubSystem"), (std::vector<double>{subsystem->getHandle()}));
  EXPECT_EQ(found(subsystem->getHandle(), "SubSystem"), (std::vector<double>{nested.getHandle()}));
  EXPECT_EQ(found(subsystem->getHandle(), "KMIOPort"), (std::vector<double>{port->getHandle()}));
  EXPECT_TRUE(found(subsystem->getHandle(), "Nothing").empty());
  setParameter(*subsystem, "Opaque", u"on");
  EXPECT_EQ(found(subsystem->getHandle(), "KMIOPort").size(), 1u) << "ports of an opaque subsystem have names";
}

TEST_F(FindSystemTest, OfAVariantOnlyTheActiveChoiceIsFound) {
  GTBlock& variant = diagram->root().addSubsystem(u"V");
  contents(variant)->addSubsystem(u"light");
  GTBlock& heavy = contents(variant)->addSubsystem(u"heavy");
  GTBlock& outside = contents(variant)->addPort(u"p", Side::Left, 1);
  setParameter(variant, "Variant", u"on");
  setParameter(variant, "ActiveVariant", u"heavy");
  EXPECT_EQ(found(variant.getHandle(), "SubSystem"), (std::vector<double>{heavy.getHandle()}));
  EXPECT_EQ(found(variant.getHandle(), "KMIOPort"), (std::vector<double>{outside.getHandle()}));
  setParameter(variant, "ActiveVariant", u"haevy");
  EXPECT_EQ(errorOf([&] { found(variant.getHandle(), "SubSystem"); }),
            "kinemo:host:diagram:NoActiveChoice(model/V, haevy, heavy)");
}

TEST_F(FindSystemTest, OtherArgumentsAreRefused) {
  const auto errorWith = [&](std::size_t place, cvUniquePtr argument) {
    std::vector<cvUniquePtr> inputs = arguments(subsystem->getHandle(), "SubSystem");
    inputs[place] = std::move(argument);
    return errorOf([&] { call("find_system", std::move(inputs)); });
  };
  const std::string group = "kinemo:host:find_system:";
  EXPECT_EQ(errorWith(2, number(2.0)), group + "UnsupportedValue(SearchDepth, (double), 1)");
  EXPECT_EQ(errorWith(4, host_tests::text("AllVariants")),
            group + "UnsupportedValue(Variants, AllVariants, ActiveVariants)");
  EXPECT_EQ(errorWith(7, host_tests::text("Regexp")), group + "UnexpectedOption(Regexp, FollowLinks)");
  EXPECT_EQ(errorWith(0, number(resistor->getHandle())), group + "NotASystem(model/S/R, Test Block)");
  std::vector<cvUniquePtr> few = arguments(subsystem->getHandle(), "SubSystem");
  few.pop_back();
  EXPECT_EQ(errorOf([&] { call("find_system", std::move(few)); }), group + "WrongArguments(12, 13)");
}

// --- reflection

std::string reflected(const cvUniquePtr& array, const std::string& name) {
  const auto object = kmf::cvarray_to_object(array.get(), cvGetClassName(array.get()));
  const auto property = object->getProperty(name);
  if (!property) return "(none)";
  const void* value = property->value();
  std::string result = property->type()->name + ":";
  if (property->type() == reflection::getType("ustring", 1)) {
    for (const char16_t unit : *static_cast<const ustring*>(value)) result += static_cast<char>(unit);
  } else if (property->type() == reflection::getType("string", 1)) {
    result += *static_cast<const std::string*>(value);
  } else {
    result += *static_cast<const unsigned char*>(value) ? "1" : "0";
  }
  property->release(value);
  return result;
}

TEST_F(ParametersTest, ReflectionTellsTypedPropertiesAsTheUserWroteThem) {
  setParameter(*resistor, "R", u"2*R0");
  setParameter(*resistor, "flag", u"on");
  setProperty(*resistor, "ComponentType", u"my.part");
  const cvUniquePtr object = getParam(*resistor, "Object");
  EXPECT_EQ(reflected(object, "R"), "ustring:2*R0");
  EXPECT_EQ(reflected(object, "flag"), "gtbool:1");
  EXPECT_EQ(reflected(object, "ComponentType"), "ustring:my.part");
  EXPECT_EQ(reflected(object, "Name"), "ustring:R");
  EXPECT_EQ(reflected(object, "BlockType"), "string:Test Block");
  EXPECT_EQ(reflected(object, "Nothing"), "(none)");
}

TEST_F(ParametersTest, AReflectedObjectOutlivesItsBlock) {
  const cvUniquePtr object = getParam(*resistor, "Object");
  Diagram::close(*diagram);
  EXPECT_EQ(reflected(object, "R"), "(none)");
  EXPECT_EQ(errorOf([] { kmf::cvarray_to_object(number(1.0).get(), "double"); }),
            "kinemo:host:reflection:NotAnObject(double)");
  const cvUniquePtr empty(cvCreateObject("Gantrel.Block"));
  EXPECT_EQ(errorOf([&] { kmf::cvarray_to_object(empty.get(), "Gantrel.Block"); }),
            "kinemo:host:reflection:NotAnObject(Gantrel.Block)");
}

}  // namespace host_tests
