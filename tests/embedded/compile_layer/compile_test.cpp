#include "embedded/compile_layer/compile.hpp"

#include "embedded/scripting_runtime/display.hpp"
#include "embedded/scripting_runtime/evaluate.hpp"
#include "embedded/scripting_runtime/workspace.hpp"
#include "host_fixture.hpp"
#include "platform/block_diagram/library.hpp"
#include "platform/network_data/network_data.hpp"

#include <boost/make_shared.hpp>

#include <map>
#include <memory>

namespace host_tests {

namespace {

using embedded::compile_layer::compile;
using embedded::compile_layer::evaluateParameters;

boost::shared_ptr<GTMaskDefinition> maskWith(const std::vector<std::pair<std::string, ustring>>& parameters) {
  auto mask = boost::make_shared<GTMaskDefinition>();
  mask->type = "Part";
  for (const auto& [name, value] : parameters) mask->parameters.push_back({name, "", value, GTPrmDesc::EDIT, "", {}});
  return mask;
}

/// A manager that writes down what it is told, and fails where a test wants it to.
class Recorder : public DADomainMgr {
 public:
  explicit Recorder(std::string name) : name_(std::move(name)) {}
  DADomainMgr* clone() const override { return new Recorder(*this); }
  const std::string& domainName() const override { return name_; }
  void notifyPreEvalParamsStage(const std::string&) override { note("pre"); }
  void startCompile(const std::string&) override { note("start"); }
  void addMachine(const KMMachineData_tag* machine) override {
    int items = 0;
    for (const ListItem_tag* i = kmGetMachineDataList(machine); i; i = kmGetListItemNextItem(i)) ++items;
    note("machine" + std::to_string(items));
  }
  void compile(const std::string& model, DACompileResult& result) override {
    note("compile");
    result.set(name_, std::string(name_ + " of " + model));
  }
  void endCompile(const std::string&) override { note("end"); }

  static std::vector<std::string> log;
  static std::string failing;  ///< the note at which an error is raised

 private:
  void note(const std::string& what) const {
    log.push_back(name_ + ":" + what);
    if (log.back() == failing) kmf::throw_message("test", "Failed", log.back());
  }

  std::string name_;
};

std::vector<std::string> Recorder::log;
std::string Recorder::failing;

}  // namespace

class CompileTest : public HostTest {
 protected:
  void SetUp() override {
    HostTest::SetUp();
    Recorder::log.clear();
    Recorder::failing.clear();
    for (const char* name : {"test", "other", "unused"}) registry().setDefaultMgr(new Recorder(name), name);
    diagram = &newDiagram();
  }
  void TearDown() override {
    embedded::scripting_runtime::base_workspace().clear();
    for (const std::string& name : registry().names()) registry().removeDefaultMgr(name);
    HostTest::TearDown();
  }

  static DomainMgrPrototypeRegistry& registry() { return DomainMgrPrototypeRegistry::get(); }

  static GTBlock& masked(System& system, const ustring& name,
                         const std::vector<std::pair<std::string, ustring>>& mask) {
    GTBlock& block = system.addSubsystem(name);
    MaskInterface::setMask(&block, maskWith(mask));
    return block;
  }

  /// Values of a mask by name, as the runtime tells them.
  static std::map<std::string, double> values(const GTBlock& block) {
    const cvUniquePtr variables = getParam(block, "MaskWSVariables");
    std::map<std::string, double> result;
    for (std::size_t i = 0; i < cvGetNumberOfElements(variables.get()); ++i) {
      const cvArray_tag* value = cvGetField(variables.get(), i, "Value");
      result[text(cvUniquePtr(cvCreateSharedCopy(cvGetField(variables.get(), i, "Name"))))] =
          cvIsChar(value) ? -1.0 : cvGetScalar(value);
    }
    return result;
  }

  /// Values of a mask by name with their units: "5 kOhm".
  static std::map<std::string, std::string> quantities(const GTBlock& block) {
    const cvUniquePtr variables = getParam(block, "MaskWSVariables");
    std::map<std::string, std::string> result;
    for (std::size_t i = 0; i < cvGetNumberOfElements(variables.get()); ++i) {
      result[text(cvUniquePtr(cvCreateSharedCopy(cvGetField(variables.get(), i, "Name"))))] =
          embedded::scripting_runtime::display_text(cvGetField(variables.get(), i, "Value"));
    }
    return result;
  }

  /// The errors below "ParameterErrors", each as "object: id(arguments)".
  template <class Action>
  static std::vector<std::string> causesOf(Action action) {
    std::vector<std::string> causes;
    try {
      action();
    } catch (const kmf::Exception& error) {
      EXPECT_EQ(error.data().id, "ParameterErrors");
      for (const kmf::ErrorData& cause : error.data().causes) {
        std::string line = cause.objects.empty() ? "" : cause.objects.front();
        line += ": " + cause.id + "(";
        for (std::size_t i = 0; i < cause.arguments.size(); ++i) line += (i ? ", " : "") + cause.arguments[i];
        causes.push_back(line + ")");
      }
    }
    return causes;
  }

  Diagram* diagram;
};

using Values = std::map<std::string, double>;

/// Names are looked up outward from what encloses the block, then in the model's and the base workspace; an inner mask
/// hides an outer one, and a mask's own parameters don't see each other.
TEST_F(CompileTest, MaskParametersAreEvaluatedInWhatEnclosesThem) {
  embedded::scripting_runtime::base_workspace().set("base", 1000.0);
  embedded::scripting_runtime::base_workspace().set("both", 1.0);
  diagram->setVariable("both", u"2", "", false);
  GTBlock& outer = masked(diagram->root(), u"outer", {{"R", u"10*both"}, {"L", u"base + both"}});
  GTBlock& plain = contents(outer)->addSubsystem(u"plain");
  GTBlock& inner = masked(*contents(plain), u"inner", {{"R", u"R + 1"}, {"K", u"R + L"}});
  GTBlock& leaf = contents(inner)->addBlock(u"leaf", "test/masked");
  setParameter(leaf, "R", u"R*both + base");
  setParameter(leaf, "flag", u"on");
  EXPECT_TRUE(values(leaf).empty()) << "nothing is evaluated yet";
  evaluateParameters(*diagram);
  EXPECT_EQ(values(outer), (Values{{"R", 20}, {"L", 1002}}));
  EXPECT_EQ(values(inner), (Values{{"R", 21}, {"K", 1022}}));
  EXPECT_EQ(values(leaf), (Values{{"R", 1042}, {"mode", -1}, {"label", -1}, {"flag", 1}}));
  diagram->setVariable("both", u"3", "", false);
  evaluateParameters(*diagram);
  EXPECT_EQ(values(outer).at("R"), 30) << "a new compile sees new values";
}

/// The unit of a variable goes through any number of masks; each computes in the unit that its names bring.
TEST_F(CompileTest, UnitsGoThroughMasks) {
  diagram->setVariable("R0", u"1", "kOhm", true);
  diagram->setVariable("C0", u"[1 2]", "uF", false);
  GTBlock& outer = masked(diagram->root(), u"outer", {{"R", u"R0"}, {"tau", u"R0*C0(2)"}, {"n", u"3"}});
  GTBlock& middle = masked(*contents(outer), u"middle", {{"R", u"n*R + kinemo.Value(500, 'Ohm')"}, {"f", u"1/tau"}});
  GTBlock& inner = masked(*contents(middle), u"inner", {{"R", u"kinemo.Value(R, 'Ohm')"}, {"ratio", u"R/R"}});
  GTBlock& leaf = contents(inner)->addBlock(u"leaf", "test/masked");
  setParameter(leaf, "R", u"R - ratio*kinemo.Value(1, 'kOhm')");
  evaluateParameters(*diagram);
  EXPECT_EQ(quantities(outer), (std::map<std::string, std::string>{{"R", "1 kOhm"}, {"tau", "2 kOhm*uF"}, {"n", "3"}}));
  EXPECT_EQ(quantities(middle), (std::map<std::string, std::string>{{"R", "3.5 kOhm"}, {"f", "0.5 1/(kOhm*uF)"}}));
  EXPECT_EQ(quantities(inner), (std::map<std::string, std::string>{{"R", "3500 Ohm"}, {"ratio", "1 1"}}));
  EXPECT_EQ(quantities(leaf).at("R"), "2500 Ohm");
  const cvUniquePtr variables = getParam(leaf, "MaskWSVariables");
  EXPECT_TRUE(cvIsA(cvGetField(variables.get(), 0, "Value"), "kinemo.Value"));
}

TEST_F(CompileTest, UnitsThatDontFitAreAnErrorOfTheParameter) {
  diagram->setVariable("R0", u"1", "kOhm", true);
  diagram->setVariable("C0", u"1", "uF", false);
  GTBlock& outer = masked(diagram->root(), u"outer", {{"R", u"R0 + C0"}, {"e", u"exp(R0)"}, {"fine", u"R0 > 5"}});
  EXPECT_EQ(causesOf([&] { evaluateParameters(*diagram); }),
            (std::vector<std::string>{"model/outer: ParameterError(model/outer, R, R0 + C0)",
                                      "model/outer: ParameterError(model/outer, e, exp(R0))"}));
  EXPECT_EQ(quantities(outer), (std::map<std::string, std::string>{{"fine", "0"}}));
}

TEST_F(CompileTest, EqualConstantsShareOneValue) {
  GTBlock& a = diagram->root().addBlock(u"A", "test/masked");
  GTBlock& b = diagram->root().addBlock(u"B", "test/masked");
  for (GTBlock* block : {&a, &b}) setParameter(*block, "R", u"[1 2 3]");
  evaluateParameters(*diagram);
  const cvUniquePtr ofA = getParam(a, "MaskWSVariables");
  const cvUniquePtr ofB = getParam(b, "MaskWSVariables");
  EXPECT_EQ(cvGetDoubles(cvGetField(ofA.get(), 0, "Value")), cvGetDoubles(cvGetField(ofB.get(), 0, "Value")));
}

TEST_F(CompileTest, ErrorsOfAllBlocksAreToldAtOnceAndOnlyAtTheirRoot) {
  System& root = diagram->root();
  GTBlock& outer = masked(root, u"outer", {{"R", u"missing + 1"}, {"L", u"1"}});
  setParameter(contents(outer)->addBlock(u"follows", "test/masked"), "R", u"2*R");  // fails for outer's R alone
  setParameter(contents(outer)->addBlock(u"fine", "test/masked"), "R", u"L");
  setParameter(root.addBlock(u"syntax", "test/masked"), "R", u"1 +");
  GTBlock& refused = root.addBlock(u"refused", "test/masked");
  setParameter(refused, "label", u"fails");
  GTBlock& wrong = root.addBlock(u"wrong", "test/masked");
  setParameter(wrong, "mode", u"medium");
  setParameter(wrong, "flag", u"perhaps");
  EXPECT_EQ(causesOf([&] { compile(*diagram); }),
            (std::vector<std::string>{"model/outer: ParameterError(model/outer, R, missing + 1)",
                                      "model/syntax: ParameterError(model/syntax, R, 1 +)",
                                      "model/refused: CheckFailed(model/refused)",
                                      "model/wrong: ParameterError(model/wrong, mode, medium)",
                                      "model/wrong: ParameterError(model/wrong, flag, perhaps)"}));
}

TEST_F(CompileTest, AVariantWithoutItsChoiceIsAnErrorOfTheBlock) {
  GTBlock& variant = diagram->root().addSubsystem(u"V");
  contents(variant)->addSubsystem(u"light");
  setParameter(variant, "Variant", u"on");
  setParameter(variant, "ActiveVariant", u"lihgt");
  EXPECT_EQ(causesOf([&] { evaluateParameters(*diagram); }),
            (std::vector<std::string>{"model/V: NoActiveChoice(model/V, lihgt, light)"}));
}

TEST_F(CompileTest, WhatIsNotPartOfTheModelIsNotEvaluated) {
  GTBlock& variant = diagram->root().addSubsystem(u"V");
  for (const char16_t* choice : {u"a", u"b"}) {
    GTBlock& block = contents(contents(variant)->addSubsystem(choice))->addBlock(u"R", "test/masked");
    setParameter(block, "R", choice == ustring(u"a") ? u"1" : u"missing");
  }
  setParameter(variant, "Variant", u"on");
  setParameter(variant, "ActiveVariant", u"a");
  GTBlock& opaque = diagram->root().addSubsystem(u"O");
  setParameter(contents(opaque)->addBlock(u"R", "test/masked"), "R", u"missing");
  setParameter(opaque, "Opaque", u"on");
  EXPECT_NO_THROW(compile(*diagram));
}

TEST_F(CompileTest, ThousandsOfLevelsPassTheirValuesDown) {
  System* system = &diagram->root();
  diagram->setVariable("R", u"1", "", false);
  const auto mask = maskWith({{"R", u"R + 1"}});
  for (int i = 0; i < 3000; ++i) {
    GTBlock& subsystem = system->addSubsystem(u"s");
    MaskInterface::setMask(&subsystem, mask);
    system = contents(subsystem);
  }
  GTBlock& leaf = system->addBlock(u"leaf", "test/masked");
  setParameter(leaf, "R", u"R");
  evaluateParameters(*diagram);
  EXPECT_EQ(values(leaf).at("R"), 3001);
}

// --- domains

using Log = std::vector<std::string>;

TEST_F(CompileTest, DomainsWithBlocksCompileInTheOrderOfTheirNames) {
  gt_register_prototype("test/other", new TestBlock("other", 1, 1));
  for (const char16_t* name : {u"A", u"B"}) diagram->root().addBlock(name, "test/two");
  diagram->root().addBlock(u"C", "test/other");
  const DACompileResult result = compile(*diagram);
  EXPECT_EQ(Recorder::log, (Log{"other:pre", "test:pre", "other:start", "other:machine1", "other:compile", "other:end",
                                "test:start", "test:machine2", "test:compile", "test:end"}));
  ASSERT_EQ(result.values().size(), 2u);
  EXPECT_EQ(boost::any_cast<std::string>(result.values().at("test")), "test of model");
}

TEST_F(CompileTest, ACompileThatFailsIsEnded) {
  diagram->root().addBlock(u"A", "test/two");
  for (const char* failing : {"test:start", "test:machine1", "test:compile", "test:end"}) {
    Recorder::log.clear();
    Recorder::failing = failing;
    EXPECT_EQ(errorOf([&] { compile(*diagram); }), std::string("test:Failed(") + failing + ")");
    EXPECT_EQ(std::count(Recorder::log.begin(), Recorder::log.end(), "test:end"), 1) << failing;
  }
}

TEST_F(CompileTest, TheUserCanEndAnEvaluation) {
  for (int i = 0; i < 5000; ++i) {
    ustring name = u"B";
    for (const char digit : std::to_string(i)) name += static_cast<char16_t>(digit);
    diagram->root().addBlock(name, "test/masked");
  }
  std::size_t last = 0;
  const auto progress = [&](const char*, std::size_t done, std::size_t total) {
    EXPECT_LE(done, total);
    last = std::max(last, done);
  };
  evaluateParameters(*diagram, progress);
  EXPECT_EQ(last, 5000u);
  embedded::scripting_runtime::request_interrupt();
  EXPECT_EQ(errorOf([&] { evaluateParameters(*diagram); }), "kinemo:host:compile:Interrupted(model)");
  embedded::scripting_runtime::request_interrupt(false);
}

TEST_F(CompileTest, TheUserCanEndACompileInEachStage) {
  for (const std::string stage : {"parameters", "network"}) {
    const auto stop = [&](const char* begun, std::size_t, std::size_t) {
      if (begun == stage) embedded::scripting_runtime::request_interrupt();
    };
    EXPECT_EQ(errorOf([&] { compile(*diagram, stop); }), "kinemo:host:compile:Interrupted(model)") << stage;
    embedded::scripting_runtime::request_interrupt(false);
    EXPECT_NO_THROW(compile(*diagram)) << stage;
  }
}

TEST_F(CompileTest, TheRegistryOwnsWhatItTakes) {
  EXPECT_EQ(registry().getDefaultMgr("nobody"), nullptr);
  auto* second = new Recorder("test");
  registry().setDefaultMgr(second, "test");
  EXPECT_EQ(registry().getDefaultMgr("test"), second);
  registry().removeDefaultMgr("test");
  EXPECT_EQ(registry().names(), (std::vector<std::string>{"other", "unused"}));
}

}  // namespace host_tests
