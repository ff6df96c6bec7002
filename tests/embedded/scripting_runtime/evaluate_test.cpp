#include "embedded/scripting_runtime/evaluate.hpp"

#include "embedded/expression/parse.hpp"
#include "embedded/foundation/warnings.hpp"
#include "runtime_fixture.hpp"

namespace embedded::scripting_runtime {
namespace {

class Evaluate : public RuntimeTest {
 protected:
  static void check(const std::vector<ValueCase>& cases) {
    for (const ValueCase& one : cases) EXPECT_EQ(value_of(one.text), one.expected) << one.text;
  }
};

TEST_F(Evaluate, ArithmeticFollowsPrecedenceAndShapes) {
  check({{"-2^2", "-4"},
         {"2^-1^2", "0.25"},
         {"2^3^2", "64"},
         {"10-4-3", "3"},
         {"7/2*4", "14"},
         {"2\\6", "3"},
         {"[1 2 3]+1", "[2 3 4]"},
         {"[1 2 3]+[10;20]", "[11 12 13;21 22 23]"},
         {"[1 2;3 4]*[5;6]", "[17;39]"},
         {"[1 2;3 4].*[5 6;7 8]", "[5 12;21 32]"},
         {"[2 0;0 4]\\[2;8]", "[1;2]"},
         {"[2 8]/[2 0;0 4]", "[1 2]"},
         {"[1 1;1 0]^10", "[89 55;55 34]"},
         {"[2 0;0 4]^-1", "[0.5 0;0 0.25]"},
         {"2.^[1 2;3 4]", "[2 4;8 16]"},
         {"[1 2 3]'", "[1;2;3]"},
         {"[1+2i 3]'", "[1-2i;3-0i]"},
         {"[1+2i 3].'", "[1+2i;3+0i]"},
         {"round([1 0;0 1;1 1]\\[1;2;3]*1e9)/1e9", "[1;2]"},
         {"1:4", "[1 2 3 4]"},
         {"5:-2:0", "[5 3 1]"},
         {"numel(0:0.1:0.3)", "4"},
         {"1:0", "[1x0]"},
         {"'a'+1", "98"},
         {"true+true", "2"},
         {"1/0", "1e999"},
         {"[]+1", "[0x0]"},
         {"2^[]", "[0x0]"},
         {"[]^0.5", "[0x0]"},
         {"2^-''", "[0x0]"},
         {"[nan 1;1 2]^0.5", "[nan nan;nan nan]"},
         {"round([4 0;0 9]^0.5)", "[2 0;0 3]"},
         {"zeros(0,3)*zeros(3,2)", "[0x2]"},
         {"zeros(2,0)*zeros(0,2)", "[0 0;0 0]"}});
}

TEST_F(Evaluate, ComplexResultsComeWhereRealOnesEnd) {
  check({{"sqrt(-4)", "0+2i"},
         {"(-8)^2", "64"},
         {"i^2", "-1"},
         {"3i*2i", "-6"},
         {"abs(3+4i)", "5"},
         {"real((-1)^0.5) < 1e-15", "logical(1)"},
         {"[1 -4].^0.5", "[1+0i 0+2i]"},
         {"1+2i == 1+2i", "logical(1)"},
         {"conj(1+2i)*(1+2i)", "5"},
         {"log(-1)/pi", "0+1i"},
         {"acos(2)*0", "0"}});
}

TEST_F(Evaluate, ClassesFollowTheirRules) {
  check({{"int8(100)+100", "int8(127)"},
         {"uint8(3)-5", "uint8(0)"},
         {"int32(7)/2", "int32(4)"},
         {"single(1)+1", "single(2)"},
         {"1<2", "logical(1)"},
         {"[1 2 3]>=2", "logical([0 1 1])"},
         {"'abc'=='abd'", "logical([1 1 0])"},
         {"~[0 1 2]", "logical([1 0 0])"},
         {"[1 0]&[1 1]|[0 1]", "logical([1 1])"},
         {"-true", "-1"},
         {"[int8(3) 4.6]", "int8([3 5])"},
         {"[true false]", "logical([1 0])"},
         {"['a' 98 'c']", "'abc'"},
         {"[single(1) 2]", "single([1 2])"},
         {"1:int8(3)", "int8([1 2 3])"}});
}

TEST_F(Evaluate, LogicStopsAsSoonAsItIsDecided) {
  check({{"false && undefined_name", "logical(0)"},
         {"true || undefined_name", "logical(1)"},
         {"1 && [] || 2", "logical(1)"},
         {"1 && [1 1 0]", "logical(0)"}});
}

TEST_F(Evaluate, IndexingReadsPartsOfAnyClass) {
  base_workspace().set("m", evaluate("[1 2 3;4 5 6]", Scope()));
  base_workspace().set("c", evaluate("{1,'two';[3 4],{5}}", Scope()));
  base_workspace().set("s", evaluate("struct('a', {1, 2, 3}, 'b', 'x')", Scope()));
  check({{"m(2,3)", "6"},
         {"m(2)", "4"},
         {"m(end)", "6"},
         {"m(end,1)", "4"},
         {"m(:,2)", "[2;5]"},
         {"m(:)'", "[1 4 2 5 3 6]"},
         {"m(1,:)", "[1 2 3]"},
         {"m([1 1],[3 1])", "[3 1;3 1]"},
         {"m(m>2)'", "[4 5 3 6]"},
         {"m(:,end+1-1)", "[3;6]"},
         {"m([])", "[0x0]"},
         {"m(1,[])", "[1x0]"},
         {"m(:,:,1)", "[1 2 3;4 5 6]"},
         {"m(max(m(1,:)),end)", "error: The index 3 is beyond the last of 2 elements."},
         {"'hello'(end:-1:1)", "'olleh'"},
         {"c{2}", "[3 4]"},
         {"c{2}(2)", "4"},
         {"c(1,:)", "{1,'two'}"},
         {"numel({c{}})", "4"},
         {"numel({{}{}})", "0"},
         {"[c{1,1} c{2,1}]", "[1 3 4]"},
         {"numel({c{:}})", "4"},
         {"s(2).a", "2"},
         {"[s.a]", "[1 2 3]"},
         {"s(3).b", "'x'"},
         {"numel(s([1 3]))", "2"},
         {"struct('p', struct('q', 7)).p.q", "7"},
         {"struct('p', 3).('p')", "3"},
         {"{}", "{0x0}"},
         {"{1;2}", "{1;2}"},
         {"[{1},{2,3}]", "{1,2,3}"},
         {"[{1},'x']", "{1,'x'}"},
         {"[[] 1 []]", "1"},
         {"['' 'ab']", "'ab'"}});
}

TEST_F(Evaluate, ErrorsNameWhatIsWrong) {
  base_workspace().set("resistance", 1);
  const std::vector<ValueCase> cases = {
      {"1 + resistence", "UndefinedName(resistence, 1, 5, 1 + resistence\n    ^) NearestName(resistance)"},
      {"1 +\\\n2", "expression:UnexpectedToken(\\, 1, 4, 1 +\\\n   ^)"},
      {"nosuchfunction_at_all(1)", "UndefinedName(nosuchfunction_at_all, 1, 1, nosuchfunction_at_all(1)\n^)"},
      {"gl.nothing.here(1)", "UndefinedName(gl, 1, 1, gl.nothing.here(1)\n^)"},
      {"[1 2]+[1 2 3]", "SizeMismatch(+, 1x2, 1x3)"},
      {"[1 2]*[1 2]", "SizeMismatch(*, 1x2, 1x2)"},
      {"[1 2;3 4]^[1 2;3 4]", "SizeMismatch(^, 2x2, 2x2)"},
      {"[1 2]^2", "NotSquare(1x2)"},
      {"[1 2;3]", "ConcatenationMismatch(1x2, 1x1)"},
      {"[1 2](0)", "InvalidIndex(0)"},
      {"[1 2](1.5)", "InvalidIndex(1.5)"},
      {"[1 2](3)", "IndexOutOfRange(3, 2)"},
      {"[1 2](1,1,2)", "IndexOutOfRange(2, 1)"},
      {"{1}+1", "NotNumeric(cell)"},
      {"struct('a',1).b", "NoSuchField(b)"},
      {"resistance.b", "NoFields(b, double)"},
      {"resistance{1}", "NotCell(double)"},
      {"[struct('a',1), 2]", "CannotConcatenate(struct, double)"},
      {"[struct('a',1), struct('b',1)]", "DifferentFields()"},
      {"int8(1)+int16(1)", "MixedIntegers(int8, int16)"},
      {"zeros(1,2)(end,sin(end))", "InvalidIndex(0.9092974268256817)"},
      {"sin(end)", "EndOfNothing()"},
      {"sin()", "TooFewInputs(0, 1)"},
      {"sin(1,2)", "TooManyInputs(2, 1)"},
      {"error('it is %d', 3)", "UserError(it is 3, )"},
      {"error('a:b', 'text')", "UserError(text, a:b)"},
      {"reshape(1:6, 4, 2)", "CannotReshape(1x6, 4x2)"},
      {"logical(nan)", "NanAsLogical()"},
      {"zeros(1.5)", "InvalidSize(1.5)"},
      {"zeros(nan)", "InvalidSize(NaN)"},
      {"[1 2](-inf)", "InvalidIndex(-Inf)"},
      {"[1 2](inf)", "IndexOutOfRange(Inf, 2)"},
      {"[1 2](1e6)", "IndexOutOfRange(1000000, 2)"},
      {"[1 2](1 + eps)", "InvalidIndex(1.0000000000000002)"},
      {"reshape(1:6, [], [])", "SeveralOpenSizes(reshape)"},
      {"zeros(1, 'string')", "UnknownClass(string)"},
      {"linspace([1 2], 3)", "NotScalar(linspace, 1)"},
      {"feval(1)", "NotCallable(double)"},
      {"feval(['s'; 'i'; 'n'], 1)", "NotOneRow(3x1)"},
      {"feval(['sin'; 'cos'], 1)", "NotOneRow(2x3)"},
      {"feval('nothing_there')", "UndefinedFunction(nothing_there)"},
      {"evalin('nowhere', '1')", "UnknownScope(nowhere)"},
      {"arrayfun(@(x) [x x], 1:2)", "NotUniform(arrayfun, 1)"},
      {"sprintf('%d', 3+4i)", "ComplexInTemplate()"},
      {"num2str(ones(2,2,2))", "NotMatrix(2x2x2)"},
      {"sprintf('%q', 1)", "InvalidFormat(%q)"},
      {"struct('a')", "NameWithoutValue(a)"},
      {"[zeros(2,2,2) 1]'", "ConcatenationMismatch(2x2x2, 1x1)"},
      {"zeros(2,2,2)'", "NotMatrix(2x2x2)"},
      {"[c(1) 1](2", "expression:UnclosedBracket((, 1, 9, [c(1) 1](2\n        ^)"},
  };
  for (const ValueCase& one : cases) EXPECT_EQ(error_of(one.text), one.expected) << one.text;
}

TEST_F(Evaluate, ErrorsOfOperationsShowThePlace) {
  try {
    evaluate("[1, 2] +...\n sum(ones(2, 3) * ones(2, 3))", Scope());
    FAIL();
  } catch (const kmf::MessageException& error) {
    ASSERT_EQ(error.numCauses(), 1U);
    const kmf::ErrorData place = error.cause(0).data();
    EXPECT_EQ(place.id, "Where");
    EXPECT_EQ(place.arguments,
              (std::vector<std::string>{"2", "17", " sum(ones(2, 3) * ones(2, 3))\n                ^"}));
  }
}

TEST_F(Evaluate, PlacesInAFunctionThatIsAllOfATextAreThoseInItsBody) {
  const auto place = [](const kmf::ErrorData& error) {
    return error.arguments.at(error.arguments.size() - 2) + ": " + error.arguments.back();
  };
  const auto error_of_call = [](const char* text) {
    try {
      evaluate(text, Scope());
    } catch (const kmf::Exception& error) {
      return error.data();
    }
    return kmf::ErrorData();
  };
  EXPECT_EQ(place(error_of_call("feval(evalin('base', '@(a,b)2*nix'), 1, 2)")), "3: 2*nix\n  ^");
  EXPECT_EQ(place(error_of_call("feval(evalin('base', '@(a,b) [1 2]*{b}'), 1, 2)").causes.at(0)),
            "7:  [1 2]*{b}\n      ^");
  EXPECT_EQ(place(error_of_call("evalin('base', '@(a)2*(')")), "4: 2*(\n   ^");
  EXPECT_EQ(place(error_of_call("feval(@(a)2*nix, 1)")), "13: feval(@(a)2*nix, 1)\n            ^") << "not all of it";
}

TEST_F(Evaluate, SingularMatricesGiveAWarning) {
  kmf::embedded::WarningCapture warnings;
  EXPECT_EQ(value_of("size([1 2;2 4]\\[1;2])"), "[2 1]");
  ASSERT_EQ(warnings.warnings().size(), 1U);
  EXPECT_EQ(warnings.warnings()[0].identifier().id, "SingularMatrix");
}

TEST_F(Evaluate, HugeRequestsEndInErrors) {
  limits().array_bytes = 1 << 20;
  for (const char* text :
       {"ones(1e9,1e9)", "zeros(1e300)", "1:1e12", "repmat(1:1000, 1000, 1)", "linspace(0, 1, 1e10)", "eye(1e5)",
        "(1:1000)'+(1:1000)", "ones(1000,1)*ones(1,1000)", "cell(1e9)", "char(1:1e7)", "ones(400)(:,[1:400 1:400])",
        "[ones(300) ones(300)]", "nan(1e9,1e9,1e9)", "reshape(1,1e9,1e9)", "repmat(ones(10), 1e15, 1e15)",
        "sprintf('%4000d', ones(1, 1e3))", "strrep(repmat('a',1,1e4),'a',repmat('b',1,1e4))",
        "strjoin(repmat({repmat('a',1,1e5)},1,1e6))"}) {
    EXPECT_EQ(error_of(text).substr(0, 14), "ArrayTooLarge(") << text << " gives " << error_of(text);
  }
  EXPECT_EQ(value_of("sum(sum(ones(300)))"), "90000");
}

TEST_F(Evaluate, EndlessRecursionAndLongRunsEnd) {
  base_workspace().set("f", evaluate("@(f, x) f(f, x + 1)", Scope()));
  EXPECT_EQ(error_of("f(f, 1)"), "TooDeeplyNested(1500)");
  EXPECT_EQ(error_of("feval(f, f, 1)"), "TooDeeplyNested(1500)");
  limits().steps = 1000;
  EXPECT_EQ(error_of("arrayfun(@(x) sum(arrayfun(@(y) x*y, 1:1000)), 1:1000)"), "TooManySteps(1000)");
  EXPECT_EQ(value_of("1+1"), "2") << "each evaluation has its own steps";
}

TEST_F(Evaluate, LongAndDeepTextsAreEvaluated) {
  std::string sum = "1";
  for (int i = 0; i < 100000; ++i) sum += "+1";
  EXPECT_EQ(value_of(sum), "100001");
  std::string nested;
  for (int i = 0; i < 950; ++i) nested += "-(";
  nested += "1";
  for (int i = 0; i < 950; ++i) nested += ")";
  EXPECT_EQ(value_of(nested), "1");
  std::string calls = "0";
  for (int i = 0; i < 200; ++i) calls = "sin(" + calls + ")";
  EXPECT_EQ(value_of(calls), "0");
}

TEST_F(Evaluate, InterruptEndsACommandOfTheUserOnly) {
  cvArray_tag* output = nullptr;
  kmf::CvCleaner cleaner;
  cvArray_tag* inputs[] = {cleaner.createString("base"), cleaner.createString("sum(arrayfun(@(x) x, 1:1000))")};
  request_interrupt();
  EXPECT_TRUE(kmf::interrupt_requested());
  EXPECT_THROW(kmf::call_corvane(1, &output, 2, inputs, "evalin", true), kmf::MessageException);
  EXPECT_EQ(output, nullptr);
  kmf::call_corvane(1, &output, 2, inputs, "evalin", false);
  EXPECT_EQ(describe(cvUniquePtr(output).get()), "500500");
}

TEST_F(Evaluate, ParameterObjectsCountAsTheirValue) {
  cvUniquePtr parameter(cvCreateObject("Gantrel.Parameter"));
  cvSetProperty(parameter.get(), 0, "Value", cvCreateDoubleMatrix(1, 2, std::vector<double>{3, 4}.data()));
  cvUniquePtr quantity(cvCreateObject("kinemo.Value"));
  cvSetProperty(quantity.get(), 0, "value", cvCreateDoubleScalar(5));
  base_workspace().set("p", std::move(parameter));
  base_workspace().set("q", std::move(quantity));
  base_workspace().set("other", cvUniquePtr(cvCreateObject("some.Class")));
  check({{"p", "object Gantrel.Parameter"},
         {"2*p", "[6 8]"},
         {"p.Value", "[3 4]"},
         {"q^2", "25"},
         {"[p q]", "[3 4 5]"},
         {"sum(p)+q", "12"},
         {"p'", "[3;4]"},
         {"q:7", "[5 6 7]"},
         {"-q", "-5"},
         {"max(q, p)", "[5 5]"}});
  EXPECT_EQ(error_of("other+1"), "NotNumeric(some.Class)");
}

TEST_F(Evaluate, TreesAreEvaluatedWithoutTheirText) {
  Workspace workspace;
  workspace.set("a", 4);
  const expression::Tree tree = expression::parse_or_throw("a*2");
  EXPECT_EQ(describe(evaluate(tree, Scope(workspace)).get()), "8");
  EXPECT_THROW(evaluate(tree, Scope()), kmf::MessageException);
}

TEST_F(Evaluate, CallsThatGiveNothingAreAllowedAsCommands) {
  kmf::register_corvane_function("test.nothing", [](int, cvArray_tag**, int, cvArray_tag**) {});
  EXPECT_TRUE(evaluate_outputs("test.nothing()", Scope(), 0).empty());
  EXPECT_EQ(error_of("test.nothing()"), "TooManyOutputs(test.nothing, 1)");
  EXPECT_EQ(evaluate_outputs("max([3 9 4])", Scope(), 0).size(), 1U);
  const auto two = evaluate_outputs("max([3 9 4])", Scope(), 2);
  EXPECT_EQ(describe(two.at(1).get()), "2");
  kmf::unregister_corvane_function("test.nothing");
}

}  // namespace
}  // namespace embedded::scripting_runtime
