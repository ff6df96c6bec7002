// Values with units in expressions. Each table is checked in a workspace of values of all kinds.

#include "runtime_fixture.hpp"

#include "embedded/scripting_runtime/display.hpp"
#include "embedded/scripting_runtime/functions.hpp"
#include "embedded/scripting_runtime/quantity.hpp"

#include <regex>

namespace embedded::scripting_runtime {
namespace {

class Units : public RuntimeTest {
 protected:
  Units() {
    define("R", "kinemo.Value(2, 'kOhm')");
    define("r", "kinemo.Value(500, 'Ohm')");
    define("C", "kinemo.Value(3, 'uF')");
    define("v", "kinemo.Value([3 1 2], 'V')");
    define("T", "kinemo.Value(25, 'degC')");
    define("K", "kinemo.Value(300, 'K')");
    define("a", "kinemo.Value(90, 'deg')");
    define("p", "kinemo.Value(50, '%')");
    define("n", "kinemo.Value(4, '1')");
    parameter("P", "kinemo.Value(2, 'kOhm')");
    parameter("plain", "[3 4]");
  }

  static void define(const char* name, const char* text) {
    base_workspace().set(name, evaluate(text, Scope(base_workspace())));
  }
  static void parameter(const char* name, const char* text) {
    cvUniquePtr object(cvCreateObject("Gantrel.Parameter"));
    cvSetProperty(object.get(), 0, "Value", evaluate(text, Scope(base_workspace())).release());
    base_workspace().set(name, std::move(object));
  }
  static void check(const std::vector<ValueCase>& cases) {
    for (const ValueCase& one : cases) EXPECT_EQ(value_of(one.text), one.expected) << one.text;
  }
  static void check_errors(const std::vector<ValueCase>& cases) {
    for (const ValueCase& one : cases) EXPECT_EQ(error_of(one.text), one.expected) << one.text;
  }
};

TEST_F(Units, TheClassMakesConvertsAndTellsItsParts) {
  check({{"R", "2 kOhm"},
         {"kinemo.Value(R, 'Ohm')", "2000 Ohm"},
         {"kinemo.Value(kinemo.Value(1, 'kOhm'), 'Ohm')", "1000 Ohm"},
         {"kinemo.Value([1 2; 3 4], 'm')", "[1 2;3 4] m"},
         {"kinemo.Value(T, 'K')", "298.15 K"},
         {"kinemo.Value(P, 'Ohm')", "2000 Ohm"},
         {"kinemo.Value(R, '')", "2 kOhm"},
         {"kinemo.Value(5, '')", "5"},
         {"kinemo.Value(1+2i, 'kOhm')*1", "1+2i kOhm"},
         {"kinemo.Value(kinemo.Value(1+2i, 'kOhm'), 'Ohm')", "1000+2000i Ohm"},
         {"R.value", "2"},
         {"R.unit", "'kOhm'"},
         {"kinemo.Value(R, 'Ohm').value", "2000"},
         {"P.Value", "2 kOhm"},
         {"P.value", "2"},
         {"P.unit", "'kOhm'"},
         {"class(R)", "'kinemo.Value'"},
         {"isa(R, 'kinemo.Value')", "logical(1)"},
         {"kinemo.Value(int8(3), 'kOhm')", "int8(3) kOhm"},
         {"kinemo.Value(kinemo.Value(int8(3), 'kOhm'), 'Ohm')", "3000 Ohm"}});
  check_errors({{"kinemo.Value(R, 'F')", "UnitsDiffer(kinemo.Value, F, kOhm)"},
                {"kinemo.Value('text', 'm')", "NotNumeric(char)"},
                {"kinemo.Value({1}, 'm')", "NotNumeric(cell)"},
                {"kinemo.Value(1, 'quark')", "core:InvalidUnit(quark)"},
                {"kinemo.Value(1)", "TooFewInputs(1, 2)"},
                {"R.Value", "NoSuchProperty(Value, kinemo.Value)"}});
}

TEST_F(Units, AParameterObjectIsWorthWhatItHolds) {
  parameter("fields", "struct('a', 3, 'b', {{4, 5}})");
  parameter("cells", "{1, 'two'}");
  parameter("doubled", "@(x) 2*x");
  check({{"fields.a", "3"},
         {"fields.b{2}", "5"},
         {"cells{2}", "'two'"},
         {"cells{end}", "'two'"},
         {"doubled(R)", "4 kOhm"},
         {"plain(2)", "4"}});
  check_errors({{"fields.c", "NoSuchField(c)"},
                {"plain{1}", "NotCell(double)"},
                {"R.nix", "NoSuchProperty(nix, kinemo.Value)"}});
}

TEST_F(Units, SumsAndComparisonsAreInTheUnitOfTheFirst) {
  check({{"R+r", "2.5 kOhm"},
         {"r+R", "2500 Ohm"},
         {"R-r", "1.5 kOhm"},
         {"R+1", "3 kOhm"},
         {"1-R", "-1 kOhm"},
         {"P+r", "2.5 kOhm"},
         {"1+plain", "[4 5]"},
         {"R+[1 2]", "[3 4] kOhm"},
         {"p+p", "100 %"},
         {"n+p", "4.5 1"},
         {"R > r", "logical(1)"},
         {"r < 400", "logical(0)"},
         {"R == 4*r", "logical(1)"},
         {"R ~= kinemo.Value(2000, 'Ohm')", "logical(0)"},
         {"[R; r] >= 600", "logical([0;0])"},
         {"-R", "-2 kOhm"},
         {"+R", "2 kOhm"},
         {"~R", "logical(0)"},
         {"R & 0", "logical(0)"},
         {"R || false", "logical(1)"},
         {"R:r:kinemo.Value(3.2, 'kOhm')", "[2 2.5 3] kOhm"},
         {"R:4", "[2 3 4] kOhm"},
         {"[R r 3]", "[2 0.5 3] kOhm"},
         {"[1; r]", "[1;500] Ohm"},
         {"[R, []]", "2 kOhm"},
         {"[R]", "2 kOhm"},
         {"[P plain]", "[2 3 4] kOhm"},
         {"{R, 1}", "{2 kOhm,1}"}});
  check_errors({{"R+C", "UnitsDiffer(+, kOhm, uF)"},
                {"R < C", "UnitsDiffer(<, kOhm, uF)"},
                {"[R C]", "UnitsDiffer([ ], kOhm, uF)"},
                {"R:C:3", "UnitsDiffer(:, kOhm, uF)"},
                {"kinemo.Value(1,'s') + kinemo.Value(1,'Hz')", "UnitsDiffer(+, s, Hz)"},
                {"[R 'a']", "CannotConcatenate(kinemo.Value, char)"},
                {"R + {1}", "NotNumeric(cell)"}});
}

TEST_F(Units, ProductsAndPowersMakeUnits) {
  check({{"R*C", "6 kOhm*uF"},
         {"kinemo.Value(R*C, 'ms')", "6 ms"},
         {"v/R", "[1.5 0.5 1] V/kOhm"},
         {"kinemo.Value(v/R, 'mA')", "[1.5 0.5 1] mA"},
         {"R\\v", "[1.5 0.5 1] V/kOhm"},
         {"R.\\v", "[1.5 0.5 1] V/kOhm"},
         {"1/R", "0.5 1/kOhm"},
         {"2*R", "4 kOhm"},
         {"R/4", "0.5 kOhm"},
         {"4*a", "360 deg"},
         {"p*R", "100 %*kOhm"},
         {"n*R", "8 kOhm"},
         {"R/r", "4 1"},
         {"R/R", "1 1"},
         {"p*p", "0.25 1"},
         {"v*v'", "14 V^2"},
         {"v.*v", "[9 1 4] V^2"},
         {"v'*[1 2 3]", "[3 6 9;1 2 3;2 4 6] V"},
         {"R^2", "4 kOhm^2"},
         {"(R*C)^2", "36 (kOhm*uF)^2"},
         {"R^-1", "0.5 1/kOhm"},
         {"R^0", "1 1"},
         {"(R^2)^0.5", "2 kOhm"},
         {"(R^3)^(1/3)", "2 kOhm"},
         {"v.^n", "[81 1 16] V^4"},
         {"p^0.5 < 0.8", "logical(1)"},
         {"n^0.3 == 4^0.3", "logical(1)"},
         {"2^n", "16"},
         {"sqrt(R*R)", "2 kOhm"},
         {"sqrt(-v.*v)", "[0+3i 0+1i 0+2i] V"},
         {"kinemo.Value([2 0;0 4],'m')^2", "[4 0;0 16] m^2"},
         {"kinemo.Value([2 0;0 4],'m')\\[2;8]", "[1;2] 1/m"}});
  // The root of kOhm*Ohm is one of the base unit.
  EXPECT_EQ(value_of("abs(kinemo.Value(sqrt(kinemo.Value(4,'kOhm*Ohm')), 'Ohm') - 63.2455532033676) < 1e-9"),
            "logical(1)");
  check_errors({{"R^0.5", "UnitPower(kOhm, 0.5)"},
                {"sqrt(R)", "UnitPower(kOhm, 0.5)"},
                {"R^pi", "UnitPower(kOhm, 3.14159)"},
                {"R.^[1 2]", "UnitPower(kOhm, [1x2])"},
                {"2^R", "UnitNotTaken(^, kOhm)"},
                {"R^i", "UnitPower(kOhm, [1x1])"},
                {"R^300", "UnitPower(kOhm, 300)"},
                {"v*v", "SizeMismatch(*, 1x3, 1x3)"}});
}

// 25 degC is a point on a scale: differences of points are in K, and a value in K moves a point.
TEST_F(Units, TemperaturesWithOffsetArePointsOnAScale) {
  check({{"T - kinemo.Value(15, 'degC')", "10 K"},
         {"kinemo.Value(77, 'degF') - kinemo.Value(59, 'degF')", "18 degR"},
         {"round(T - kinemo.Value(59, 'degF'))", "10 K"},
         {"T + kinemo.Value(10, 'K')", "35 degC"},
         {"T - kinemo.Value(10, 'K')", "15 degC"},
         {"kinemo.Value(10, 'K') + T", "308.15 K"},
         {"round(100*(K - T))", "185 K"},
         {"T + 5", "30 degC"},
         {"5 + T", "30 degC"},
         {"T - 5", "20 degC"},
         {"30 - T", "5 K"},
         {"T < K", "logical(1)"},
         {"round(max(T, K))", "27 degC"},
         {"T:kinemo.Value(5,'K'):36", "[25 30 35] degC"},
         {"diff([T 30 32])", "[5 2] K"},
         {"mean([T 35])", "30 degC"},
         {"(T - kinemo.Value(15, 'degC'))/kinemo.Value(5, 'W')", "2 K/W"}});
  check_errors({{"T+T", "OffsetUnit(+, degC)"},
                {"2*T", "OffsetUnit(*, degC)"},
                {"T/K", "OffsetUnit(/, degC)"},
                {"T^2", "OffsetUnit(^, degC)"},
                {"-T", "OffsetUnit(-, degC)"},
                {"~T", "OffsetUnit(~, degC)"},
                {"T && true", "OffsetUnit(&& ||, degC)"},
                {"1:T:3", "OffsetUnit(:, degC)"},
                {"sum([T T])", "OffsetUnit(sum, degC)"},
                {"abs(T)", "OffsetUnit(abs, degC)"},
                {"prod(T)", "OffsetUnit(prod, degC)"},
                {"exp(T)", "UnitNotTaken(exp, degC)"}});
}

TEST_F(Units, FunctionsDoWhatTheyMean) {
  check({{"abs(-R)", "2 kOhm"},
         {"sum(v)", "6 V"},
         {"sum([1 2])", "3"},
         {"cumsum(v)", "[3 4 6] V"},
         {"mean(v)", "2 V"},
         {"prod(v)", "6 V^3"},
         {"prod(kinemo.Value([1 2;3 4], 'm'))", "[3 8] m^2"},
         {"prod(kinemo.Value([50 50], '%'))", "0.25 1"},
         {"sort(v, 'descend')", "[3 2 1] V"},
         {"unique([v v])", "[1 2 3] V"},
         {"diff(v)", "[-2 1] V"},
         {"max(v)", "3 V"},
         {"max(R, r)", "2 kOhm"},
         {"min(R, 1)", "1 kOhm"},
         {"max(v, [], 2)", "3 V"},
         {"reshape(v, 3, 1)", "[3;1;2] V"},
         {"repmat(R, 1, 2)", "[2 2] kOhm"},
         {"diag(v(1:2))", "[3 0;0 1] V"},
         {"linspace(R, r, 4)", "[2 1.5 1 0.5] kOhm"},
         {"v'", "[3;1;2] V"},
         {"v(2)", "1 V"},
         {"v(end)", "2 V"},
         {"v([true false true])", "[3 2] V"},
         {"v(n-3)", "3 V"},
         {"plain(2)", "4"},
         {"plain(end)", "4"},
         {"size(v)", "[1 3]"},
         {"numel(v)", "3"},
         {"length(plain)", "2"},
         {"isempty(v)", "logical(0)"},
         {"isnan(v)", "logical([0 0 0])"},
         {"any(v)", "logical(1)"},
         {"find(v > 1)", "[1 3]"},
         {"sign(-R)", "-1"},
         {"round(v/R)", "[2 1 1] V/kOhm"},
         {"floor(kinemo.Value(2.7, 'm'))", "2 m"},
         {"real(kinemo.Value(1+2i, 'V'))", "1 V"},
         {"hypot(kinemo.Value(3, 'm'), kinemo.Value(400, 'cm'))", "5 m"},
         {"norm(kinemo.Value([3 4], 'm'))", "5 m"},
         {"dot(v, v)", "14 V^2"},
         {"dot(v, [1 1 1])", "6 V"},
         {"mod(R, kinemo.Value(1500, 'Ohm'))", "0.5 kOhm"},
         {"rem(R, 1.5)", "0.5 kOhm"},
         {"times(R, C)", "6 kOhm*uF"},
         {"plus(R, r)", "2.5 kOhm"},
         {"isequal(R, 4*r)", "logical(1)"},
         {"isequal(R, C)", "logical(0)"},
         {"isequal(R, 2)", "logical(1)"},
         {"sin(a)", "1"},
         {"sind(a)", "1"},
         {"cosd(kinemo.Value(pi/3, 'rad')) - 0.5 < 1e-15", "logical(1)"},
         {"sind(90)", "1"},
         {"expm1(R/R) == expm1(1)", "logical(1)"},
         {"cross(v, [1 0 0])", "[0 2 -1] V"},
         {"det(R*[1 0;0 5])", "20 kOhm^2"},
         {"inv(R)", "0.5 1/kOhm"},
         {"interp1([1 2]*R, [10 20], kinemo.Value(3000, 'Ohm'))", "15"},
         {"interp1([20 30]*kinemo.Value(1, 's'), v(1:2), 25)", "2 V"},
         {"interp1([1 2], v(1:2), 0, 'linear', kinemo.Value(5000, 'mV'))", "5 V"},
         {"sin(kinemo.Value(30, 'deg')) - 0.5 < 1e-12", "logical(1)"},
         {"exp(R/R) == exp(1)", "logical(1)"},
         {"log10(R/kinemo.Value(20,'Ohm'))", "2"},
         {"atan2(R, 4*r) == pi/4", "logical(1)"},
         {"zeros(1, n)", "[0 0 0 0]"},
         {"ternary_fcn(R > r, R, C)", "2 kOhm"},
         {"arrayfun(@(x) 2*x, v)", "[6 2 4] V"},
         {"arrayfun(@(k) k*R, [1 2])", "[2 4] kOhm"},
         {"cellfun(@(x) x+r, {R, r})", "[2.5 1] kOhm"},
         {"feval(@(x) x*C, R)", "6 kOhm*uF"},
         {"getfield(struct('R', R), 'R')", "2 kOhm"},
         {"num2str(R/r)", "'4'"}});
  check_errors({{"exp(R)", "UnitNotTaken(exp, kOhm)"},
                {"sin(v)", "UnitNotTaken(sin, V)"},
                {"num2str(R)", "UnitNotTaken(num2str, kOhm)"},
                {"sind(v)", "UnitNotTaken(sind, V)"},
                {"deg2rad(a)", "UnitNotTaken(deg2rad, deg)"},
                {"factorial(v)", "UnitNotTaken(factorial, V)"},
                {"interp1(R*[1 2], v(1:2), C)", "UnitsDiffer(interp1, kOhm, uF)"},
                {"inv(T)", "OffsetUnit(^, degC)"},
                {"det(T)", "OffsetUnit(det, degC)"},
                {"sprintf('%g', R)", "UnitNotTaken(sprintf, kOhm)"},
                {"cumprod(v)", "UnitNotTaken(cumprod, V)"},
                {"zeros(1, R)", "UnitNotTaken(zeros, kOhm)"},
                {"reshape(v, R, 1)", "UnitNotTaken(reshape, kOhm)"},
                {"hypot(R, C)", "UnitsDiffer(hypot, kOhm, uF)"},
                {"atan2(R, C)", "UnitsDiffer(atan2, kOhm, uF)"},
                {"max(R, C)", "UnitsDiffer(max, kOhm, uF)"},
                {"arrayfun(@(x) x, R*[1 2]) + C", "UnitsDiffer(+, kOhm, uF)"},
                {"v(R)", "UnitNotExpected(kOhm)"},
                {"char(R)", "UnitNotTaken(char, kOhm)"}});
}

/// No function gives the bare number of a value in V: the refusal is a rule, and the exceptions are listed.
TEST_F(Units, NoFunctionDropsAUnitInSilence) {
  const std::regex without_unit(
      "numel|length|ndims|size|is.*|any|all|find|logical|sign|angle|and|or|xor|not|class|fieldnames|atan2|strcmpi?");
  kmf::CvCleaner cleaner;
  const cvUniquePtr value = evaluate("kinemo.Value(7, 'V')", Scope(base_workspace()));
  for (const std::string& name : function_names()) {
    for (int count = 1; count <= 2; ++count) {
      cvArray_tag* inputs[] = {value.get(), value.get()};
      try {
        for (const cvUniquePtr& output : call_named(name, 1, count, inputs)) {
          const bool number = cvIsNumeric(output.get()) || cvIsLogical(output.get());
          EXPECT_FALSE(number && !std::regex_match(name, without_unit)) << name << " gives " << describe(output.get());
        }
      } catch (const kmf::Exception&) {  // a refusal is as good
      }
    }
  }
}

TEST_F(Units, ErrorsTellThePlaceInTheText) {
  try {
    evaluate("1 + 2*(R +\nC)", Scope(base_workspace()));
    FAIL();
  } catch (const kmf::Exception& error) {
    const kmf::ErrorData data = error.data();
    EXPECT_EQ(data.text, "'+' needs values of one kind, but 'kOhm' and 'uF' measure different things.");
    ASSERT_EQ(data.causes.size(), 1U);
    EXPECT_EQ(data.causes[0].id, "Where");
    EXPECT_EQ(data.causes[0].arguments[0], "1");
  }
  try {
    evaluate("3 + exp(R)", Scope(base_workspace()));
    FAIL();
  } catch (const kmf::Exception& error) {
    EXPECT_EQ(error.data().causes.at(0).arguments.at(1), "5");
  }
}

TEST_F(Units, ValuesAreShownWithTheirUnits) {
  const ValueCase cases[] = {{"R", "2 kOhm"},
                             {"v", "   3   1   2 V"},
                             {"v'", "   3\n   1\n   2\n   V"},
                             {"{R, v}", "{2 kOhm, [3 1 2] V}"},
                             {"struct('R', R)", "    R: 2 kOhm"},
                             {"P", "2 kOhm"}};
  for (const ValueCase& one : cases) {
    EXPECT_EQ(display_text(evaluate(one.text, Scope(base_workspace())).get()), one.expected) << one.text;
  }
}

TEST_F(Units, AnObjectInAnObjectIsConverted) {
  cvUniquePtr outer(cvCreateObject("kinemo.Value"));
  cvSetProperty(outer.get(), 0, "value", evaluate("R", Scope(base_workspace())).release());
  cvSetProperty(outer.get(), 0, "unit", cvCreateString("Ohm"));
  base_workspace().set("outer", std::move(outer));
  cvUniquePtr bare(cvCreateObject("kinemo.Value"));
  cvSetProperty(bare.get(), 0, "value", cvCreateDoubleScalar(5));
  base_workspace().set("bare", std::move(bare));
  base_workspace().set("hollow", cvUniquePtr(cvCreateObject("kinemo.Value")));
  check({{"outer*1", "2000 Ohm"}, {"bare+1", "6"}, {"bare*R", "10 kOhm"}});
  check_errors({{"hollow+1", "NoValueInObject(kinemo.Value)"}, {"outer+C", "UnitsDiffer(+, Ohm, uF)"}});
}

}  // namespace
}  // namespace embedded::scripting_runtime
