#include "embedded/scripting_runtime/functions.hpp"

#include "embedded/scripting_runtime/display.hpp"
#include "runtime_fixture.hpp"

namespace embedded::scripting_runtime {
namespace {

class Functions : public RuntimeTest {
 protected:
  static void check(const std::vector<ValueCase>& cases) {
    for (const ValueCase& one : cases) EXPECT_EQ(value_of(one.text), one.expected) << one.text;
  }
};

TEST_F(Functions, MakeAndShapeArrays) {
  check({{"ones(2,3)", "[1 1 1;1 1 1]"},
         {"zeros(2)", "[0 0;0 0]"},
         {"zeros([1 3])", "[0 0 0]"},
         {"ones(1,2,'int8')", "int8([1 1])"},
         {"eye(2,3)", "[1 0 0;0 1 0]"},
         {"zeros(-1,2)", "[0x2]"},
         {"size(ones(2,3,4))", "[2 3 4]"},
         {"size(ones(2,3),2)", "3"},
         {"[numel(ones(2,3)) length(ones(2,5)) ndims(ones(2,3,4))]", "[6 5 3]"},
         {"isempty([])", "logical(1)"},
         {"linspace(0,1,5)", "[0 0.25 0.5 0.75 1]"},
         {"repmat([1 2;3 4],1,2)", "[1 2 1 2;3 4 3 4]"},
         {"repmat('ab',1,3)", "'ababab'"},
         {"reshape(1:6,2,[])", "[1 3 5;2 4 6]"},
         {"reshape(1:6,[3 2])", "[1 4;2 5;3 6]"},
         {"true(1,2)", "logical([1 1])"},
         {"isnan([1 nan])", "logical([0 1])"},
         {"eps", "2.220446049250313e-16"}});
  const auto sizes = evaluate_outputs("size(ones(2,3,4))", Scope(), 2);
  EXPECT_EQ(describe(sizes.at(0).get()) + " " + describe(sizes.at(1).get()), "2 12");
}

TEST_F(Functions, ComputeWithNumbers) {
  check({{"[floor(-1.5) ceil(-1.5) round(-1.5) fix(-1.5)]", "[-2 -1 -2 -1]"},
         {"[mod(-1,3) mod(1,-3) mod(5,0) rem(-1,3)]", "[2 -2 5 -1]"},
         {"sign([-2 0 3])", "[-1 0 1]"},
         {"hypot(3,4)", "5"},
         {"atan2(1,1)*4 == pi", "logical(1)"},
         {"[log2(8) log10(1000) exp(0)]", "[3 3 1]"},
         {"power([1 2 3],2)", "[1 4 9]"},
         {"sum([1 2;3 4])", "[4 6]"},
         {"sum([1 2;3 4],2)", "[3;7]"},
         {"sum([])", "0"},
         {"prod([])", "1"},
         {"prod([1 2 3 4])", "24"},
         {"cumsum([1 2;3 4])", "[1 2;4 6]"},
         {"mean([1 2 3 6])", "3"},
         {"sum([1+i 2-i])", "3"},
         {"any([0 0;0 1])", "logical([0 1])"},
         {"all([1 1;0 1])", "logical([0 1])"},
         {"max([3 nan 9 4])", "9"},
         {"min([3 8;1 9])", "[1 8]"},
         {"max([3 8;1 9],[],2)", "[8;9]"},
         {"max(3,[1 5])", "[3 5]"},
         {"max([])", "[0x0]"},
         {"sort([3 nan 1 2])", "[1 2 3 nan]"},
         {"sort([3 1;2 4],'descend')", "[3 4;2 1]"},
         {"sort([-5 2 3i])", "[2+0i 0+3i -5+0i]"},
         {"max([-5 2 3i])", "-5+0i"},
         {"min([3i -5 2])", "2+0i"},
         {"sort({'b','a'})", "{'a','b'}"},
         {"unique([3 1 3 2])", "[1 2 3]"},
         {"unique({'b';'a';'b'})", "{'a';'b'}"},
         {"find([0 3 0 4])", "[2 4]"},
         {"find([0 1;1 0])'", "[2 3]"},
         {"class(sum(int8([100 100])))", "'int8'"},
         {"sum(int8([100 100]))", "int8(127)"}});
}

TEST_F(Functions, OfAnglesInDegreesAreExactAtTheAxes) {
  check({{"sind([0 30 90 150 180 270 -30 -450 390])", "[0 0.5 1 0.5 0 -1 -0.5 -1 0.5]"},
         {"cosd([0 60 90 120 180 270 -60 420])", "[1 0.5 0 -0.5 -1 0 0.5 0.5]"},
         {"tand([0 45 135 225 -45])", "[0 1 -1 1 -1]"},
         {"tand([90 -90]) == [inf -inf]", "logical([1 1])"},
         {"sind(1e9*360 + 30)", "0.5"},
         {"isnan(sind([inf nan]))", "logical([1 1])"},
         {"abs(sind(20) - 0.3420201433256687) < 1e-16", "logical(1)"},
         {"abs(cosd(20) - 0.9396926207859084) < 1.2e-16", "logical(1)"},
         {"abs(tand(20) - 0.36397023426620234) < 1e-16", "logical(1)"},
         {"abs(sind(1i) - 1i*sinh(pi/180)) < 1e-17", "logical(1)"},
         {"[deg2rad(180) == pi, rad2deg(pi) == 180]", "logical([1 1])"}});
}

TEST_F(Functions, NearZeroAndFactorials) {
  check({{"abs(expm1(1e-10) - 1.00000000005e-10) < 3e-26", "logical(1)"},
         {"abs(log1p(1e-10) - 9.9999999995e-11) < 3e-26", "logical(1)"},
         {"log1p([-1 0]) == [-inf 0]", "logical([1 1])"},
         {"abs(log1p(-2) - pi*1i) < 1e-15", "logical(1)"},
         {"abs(expm1(1i*pi) + 2) < 1e-15", "logical(1)"},
         {"factorial([0 1 5 20])", "[1 1 120 2432902008176640000]"},
         {"factorial(170)", "7.257415615307999e306"},
         {"isinf(factorial([171 inf]))", "logical([1 1])"}});
  EXPECT_EQ(error_of("factorial(-1)"), "NotACount(factorial, -1)");
  EXPECT_EQ(error_of("factorial(2.5)"), "NotACount(factorial, 2.5)");
  EXPECT_EQ(error_of("factorial(nan)"), "NotACount(factorial, NaN)");
  EXPECT_EQ(error_of("factorial(1i)"), "NotACount(factorial, a complex number)");
}

TEST_F(Functions, OfMatrices) {
  check({{"cross([1 0 0],[0 1 0])", "[0 0 1]"},
         {"cross([1;2;3],[4 5 6])", "[-3;6;-3]"},
         {"cross([1i 0 0],[0 1 0])", "[0+0i 0+0i 0+1i]"},
         {"det([1 2;3 4]) + 2 < 1e-15", "logical(1)"},
         {"det([2 0 0;0 3 0;0 0 4])", "24"},
         {"det([])", "1"},
         {"det([1i 0;0 1])", "0+1i"},
         {"det([1 2;2 4]) == 0", "logical(1)"},
         {"inv([2 0;0 4])", "[0.5 0;0 0.25]"},
         {"inv(4)", "0.25"},
         {"inv([1 2;3 4])*[1 2;3 4] - eye(2) < 1e-15", "logical([1 1;1 1])"}});
  EXPECT_EQ(error_of("cross([1 2],[3 4])"), "SizeMismatch(cross, 1x2, 1x2)");
  EXPECT_EQ(error_of("det([1 2])"), "NotSquare(1x2)");
  EXPECT_EQ(error_of("inv([1 2])"), "NotSquare(1x2)");
}

TEST_F(Functions, LookUpInTables) {
  check({{"interp1([1 2 4],[10 20 0],[1 1.5 2 3 4])", "[10 15 20 10 0]"},
         {"interp1([4 1 2],[0 10 20],[1.5;3])", "[15;10]"},
         {"interp1([1 2],[10 20],[0 3 nan])", "[nan nan nan]"},
         {"interp1([1 2],[10 20],[0 3],'linear','extrap')", "[0 30]"},
         {"interp1([1 2],[10 20],[0 1.5],'linear',7)", "[7 15]"},
         {"interp1([1 2 3],[10 20 30],[1.4 1.5 2.6],'nearest')", "[10 20 30]"},
         {"interp1([1 2 3],[10 20 30],[1 1.9 2 3],'previous')", "[10 10 20 30]"},
         {"interp1([1 2 3],[10 20 30],[1 1.1 2 3],'next')", "[10 20 20 30]"},
         {"interp1([0 1],[1e308 -1e308],1)", "-1e308"}});
  EXPECT_EQ(error_of("interp1([1 1],[2 3],1)"), "TooFewPoints(interp1)");
  EXPECT_EQ(error_of("interp1([1 nan],[2 3],1)"), "TooFewPoints(interp1)");
  EXPECT_EQ(error_of("interp1(1,2,1)"), "TooFewPoints(interp1)");
  EXPECT_EQ(error_of("interp1([1 2],[2 3 4],1)"), "SizeMismatch(interp1, 1x2, 1x3)");
  EXPECT_EQ(error_of("interp1([1 2;3 4],[2 3 4 5],1)"), "NotRealVector(interp1, 1)");
  EXPECT_EQ(error_of("interp1([1 2],[2 3],1,'cubic')"),
            "UnknownMethod(cubic, 'linear', 'nearest', 'previous', 'next')");
  EXPECT_EQ(error_of("interp1([1 2],[2 3],1,'linear','keep')"), "UnknownMethod(keep, 'extrap', a number)");
}

TEST_F(Functions, WorkWithTexts) {
  check({{"num2str(pi)", "'3.1416'"},
         {"num2str(pi,8)", "'3.1415927'"},
         {"num2str(12345678)", "'12345678'"},
         {"num2str(4700.1234)", "'4700.1234'"},
         {"num2str(123456.7)", "'123456.7'"},
         {"num2str(99999.5)", "'99999.5'"},
         {"num2str(1e-9/3)", "'3.3333e-10'"},
         {"num2str(123456789.123456789)", "'123456789.1235'"},
         {"num2str(1e16+2)", "'10000000000000002'"},
         {"num2str(uint64(1e19))", "'10000000000000000000'"},
         {"num2str(1e300)", "'1.0000000000000001e+300'"},
         {"num2str(123456, 3)", "'1.23e+05'"},
         {"num2str([1.5 2.25 1000.125])", "'1.5  2.25  1000.125'"},
         {"num2str([1+2i 3.5])", "'1+2i  3.5+0i'"},
         {"num2str(pi, '%8.3f')", "'   3.142'"},
         {"num2str([nan -inf true])", "'NaN  -Inf  1'"},
         {"mat2str([1 2; 3 4.5])", "'[1 2;3 4.5]'"},
         {"mat2str(pi)", "'3.14159265358979'"},
         {"mat2str([pi 1], 3)", "'[3.14 1]'"},
         {"mat2str([true false])", "'[true false]'"},
         {"mat2str(1.5 - 2i)", "'1.5-2i'"},
         {"mat2str(['it''s'; 'four'])", "'['it''s';'four']'"},
         {"mat2str(zeros(2,0))", "'zeros(2,0)'"},
         {"mat2str('')", "''''"},
         {"mat2str(int8([1 2]), 'class')", "'int8([1 2])'"},
         {"isequal(str2num(mat2str([0.1 -inf; 1e-300 nan](1,:))), [0.1 -inf])", "logical(1)"},
         {"xor([1 0 2 0], [0 0 3 5])", "logical([1 0 0 1])"},
         {"num2str([1 20;3 4])", "char[49 32 32 50 48;51 32 32 32 52]"},
         {"num2str(1-2i)", "'1-2i'"},
         {"str2num('2*3')", "6"},
         {"str2num('2*')", "[0x0]"},
         {"sprintf('%d is %5.2f%%\\n', 3, pi)", "'3 is  3.14%\n'"},
         {"sprintf('%s=%d;', 'a', 1, 'b', 2)", "'a=1;b=2;'"},
         {"sprintf('%*d|%*d', -3, 7, 3, 8)", "'7  |  8'"},
         {"sprintf('%d', 1.5)", "'1.500000e+00'"},
         {"str2num(sprintf('%.99s', 1.5e-300)) == 1.5e-300", "logical(1)"},
         {"sprintf('%-5s|%05d|%*d', 'ab', 42, 4, 7)", "'ab   |00042|   7'"},
         {"sprintf('%d', 2^53)", "'9007199254740992'"},
         {"sprintf('%i %u', int64(-2^53), 2^63)", "'-9007199254740992 9223372036854775808'"},
         {"sprintf('%5d|%-5u|%x', -3, -3, 255)", "'   -3|-3   |ff'"},
         {"sprintf('%s', 4700.1234)", "'4700.1234'"},
         {"sprintf('%d,', [1 2;3 4])", "'1,3,2,4,'"},
         {"sprintf('%g %g', inf, -inf)", "'Inf -Inf'"},
         {"sprintf('none')", "'none'"},
         {"strcat('a','b','c')", "'abc'"},
         {"strcat({'a','b'},'x')", "{'ax','bx'}"},
         {"strcmp('a',{'a','b'})", "logical([1 0])"},
         {"strcmpi('ABC','abc')", "logical(1)"},
         {"strcmp('a',1)", "logical(0)"},
         {"[upper('aé') lower('B')]", "'Aéb'"},
         {"strrep('banana','an','AN')", "'bANANa'"},
         {"strrep('aaa','a','aa')", "'aaaaaa'"},
         {"strtrim({' a ','b'})", "{'a','b'}"},
         {"strtrim('   ')", "''"},
         {"strsplit('a,b,,c',',')", "{'a','b','','c'}"},
         {"strjoin({'a','b'},', ')", "'a, b'"},
         {"numel('ü😀')", "3"},
         {"char(252)", "'ü'"},
         {"double('A')", "65"}});
}

TEST_F(Functions, AskAndConvertClasses) {
  check({{"class({})", "'cell'"},
         {"class(@sin)", "'function_handle'"},
         {"isa(1,'numeric')", "logical(1)"},
         {"isa(int8(1),'float')", "logical(0)"},
         {"[isreal(1) isreal(i) iscell({}) ischar('') isnumeric(true) islogical(true) isstruct(struct())]",
          "logical([1 0 1 1 0 1 1])"},
         {"uint8([-1 2.5 300])", "uint8([0 3 255])"},
         {"logical([2 0])", "logical([1 0])"},
         {"isequal([1 2],[1 2],int8([1 2]))", "logical(1)"},
         {"isequal(struct('a',{{1}}),struct('a',{{1}}))", "logical(1)"},
         {"isequal(1,1,2)", "logical(0)"},
         {"isequal('a',{'a'})", "logical(0)"},
         {"fieldnames(struct('b',1,'a',2))", "{'b';'a'}"},
         {"isfield(struct('a',1),{'a','b'})", "logical([1 0])"},
         {"struct('a',{{1,2}}).a", "{1,2}"},
         {"cell(1,2)", "{[0x0],[0x0]}"}});
}

TEST_F(Functions, CallFunctions) {
  base_workspace().set("k", 10);
  check({{"feval(@plus, 1, 2)", "3"},
         {"feval('max', [1 7 3])", "7"},
         {"feval(@(a,b) a*b+k, 2, 3)", "16"},
         {"arrayfun(@(x) x^2, [1 2;3 4])", "[1 4;9 16]"},
         {"arrayfun(@(x) x > 1, 1:3)", "logical([0 1 1])"},
         {"arrayfun(@(x,y) x+y, 1:2, 3:4)", "[4 6]"},
         {"arrayfun(@(x) 1:x, 1:2, 'UniformOutput', false)", "{1,[1 2]}"},
         {"cellfun(@numel, {'a','bcd',{}})", "[1 3 0]"},
         {"cellfun('isempty', {[],1})", "logical([1 0])"},
         {"func2str(@sin)", "'sin'"},
         {"func2str(@(x)x+1)", "'@(x) x + 1'"},
         {"feval(str2func('cos'),0)", "1"},
         {"feval(str2func('@(x)x*k'),2)", "20"},
         {"evalin('base','k*2')", "20"},
         {"cellfun(@(f) f(4), {@sqrt, @(x) x})", "[2 4]"}});
}

TEST_F(Functions, DisplayGoesToTheSink) {
  static std::string shown;
  set_display_sink([](const std::string& text) { shown += text; });
  evaluate_outputs("disp([1 2.5;-3 4])", Scope(), 0);
  evaluate_outputs("disp({1,'a',[1 2]})", Scope(), 0);
  EXPECT_EQ(shown, "    1.0    2.5\n   -3.0    4.0\n{1, 'a', [1 2]}\n");
}

TEST_F(Functions, CallsByNameGiveAllOutputsOrNone) {
  kmf::register_corvane_function("test.half", [](int, cvArray_tag** outputs, int, cvArray_tag**) {
    outputs[0] = cvCreateDoubleScalar(1);
    kmf::throw_message("test", "Failure");
  });
  cvArray_tag* outputs[2] = {reinterpret_cast<cvArray_tag*>(1), reinterpret_cast<cvArray_tag*>(1)};
  EXPECT_THROW(kmf::call_internal_corvane(2, outputs, 0, nullptr, "test.half"), kmf::MessageException);
  EXPECT_EQ(outputs[0], nullptr);
  EXPECT_EQ(outputs[1], nullptr);

  kmf::register_corvane_function("test.half", [](int, cvArray_tag** results, int, cvArray_tag**) {
    kmf::unregister_corvane_function("test.half");  // a function may go while it runs
    results[0] = cvCreateDoubleScalar(1);
  });
  EXPECT_THROW(kmf::call_internal_corvane(2, outputs, 0, nullptr, "test.half"), kmf::MessageException);
  EXPECT_EQ(outputs[0], nullptr);
  try {
    kmf::call_internal_corvane(0, nullptr, 0, nullptr, "test.half");
    FAIL();
  } catch (const kmf::MessageException& error) {
    EXPECT_EQ(error.data().id, "UndefinedFunction");
    EXPECT_EQ(error.data().arguments, std::vector<std::string>{"test.half"});
  }
}

TEST_F(Functions, LaterRegistrationReplacesAnEarlierOne) {
  const auto give = [](double value) {
    return [value](int, cvArray_tag** outputs, int, cvArray_tag**) { outputs[0] = cvCreateDoubleScalar(value); };
  };
  kmf::register_corvane_function("gl.test.f", give(1));
  EXPECT_EQ(value_of("gl.test.f(0)"), "1");
  kmf::register_corvane_function("gl.test.f", give(2));
  EXPECT_EQ(value_of("gl.test.f + feval('gl.test.f') + feval(@gl.test.f)"), "6");
  base_workspace().set("gl", evaluate("struct('test', struct('f', 5))", Scope()));
  EXPECT_EQ(value_of("gl.test.f"), "5") << "variables come before functions";
  kmf::unregister_corvane_function("gl.test.f");
}

TEST_F(Functions, HelpersMoveTextsAndFields) {
  kmf::CvCleaner cleaner;
  EXPECT_EQ(kmf::cvarray_to_string(cleaner.createString("grün 😀")), "grün 😀");
  EXPECT_THROW(kmf::cvarray_to_string(cleaner.createScalarDouble(1)), kmf::MessageException);
  const cvArray_tag* cells = cleaner.addCvArray(kmf::string_vector_to_cvarray({u"a", u"ü", u""}, 1));
  EXPECT_EQ(cvGetDimensions(cells), (std::vector<std::size_t>{3, 1}));
  EXPECT_EQ(kmf::cvarray_to_string_vector(cells), (std::vector<std::string>{"a", "ü", ""}));
  EXPECT_EQ(kmf::cvarray_to_ustring_vector(cleaner.createString("one")), std::vector<ustring>{u"one"});
  EXPECT_EQ(kmf::compute_matrix_dimension(4, 1), (std::pair<std::size_t, std::size_t>(4, 1)));
  EXPECT_EQ(kmf::compute_matrix_dimension(4, 2), (std::pair<std::size_t, std::size_t>(1, 4)));
  cvArray_tag* structure = cleaner.addCvArray(cvCreateStructMatrix(1, 1, {"a"}));
  EXPECT_NO_THROW(kmf::cvarray_get_field(structure, 0, "a"));
  EXPECT_THROW(kmf::cvarray_get_field(structure, 0, "b"), kmf::MessageException);
}

}  // namespace
}  // namespace embedded::scripting_runtime
