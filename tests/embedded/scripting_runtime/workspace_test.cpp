#include "embedded/scripting_runtime/workspace.hpp"

#include "runtime_fixture.hpp"

namespace embedded::scripting_runtime {
namespace {

class WorkspaceTest : public RuntimeTest {};

TEST_F(WorkspaceTest, VariablesKeepTheOrderInWhichTheyCame) {
  Workspace workspace;
  for (const char* name : {"z", "a", "m"}) workspace.set(name, 1);
  workspace.set("z", 2);
  EXPECT_EQ(workspace.names(), (std::vector<std::string>{"z", "a", "m"}));
  EXPECT_EQ(cvGetScalar(workspace.get("z")), 2);
  EXPECT_TRUE(workspace.clear("a"));
  EXPECT_FALSE(workspace.clear("a"));
  workspace.set("a", 3);
  EXPECT_EQ(workspace.names(), (std::vector<std::string>{"z", "m", "a"}));
  Workspace copy(workspace);
  copy.set("z", 7);
  Workspace moved(std::move(copy));
  EXPECT_EQ(cvGetScalar(workspace.get("z")), 2);
  EXPECT_EQ(cvGetScalar(moved.get("z")), 7);
  EXPECT_EQ(moved.names(), workspace.names());
}

TEST_F(WorkspaceTest, ArraysOutliveTheScopeInWhichTheyWereMade) {
  Workspace workspace;
  const int scope = cvOpenScope();
  workspace.set("a", evaluate("[1 2 3]", Scope()));
  base_workspace().set("f", evaluate("@(x) x + a", Scope(workspace)));
  cvCloseScope(scope);
  EXPECT_EQ(describe(workspace.get("a")), "[1 2 3]");
  EXPECT_EQ(value_of("f(1)"), "[2 3 4]");
}

TEST_F(WorkspaceTest, ScopesAskInnerWorkspacesFirst) {
  Workspace mask, outer, model;
  base_workspace().set("a", 1);
  base_workspace().set("b", 1);
  model.set("b", 2);
  model.set("c", 2);
  outer.set("c", 3);
  mask.set("d", 4);
  const Scope around({&outer, &model, &base_workspace()});
  const Scope inner(mask, around);
  EXPECT_EQ(describe(evaluate("[a b c d]", inner).get()), "[1 2 3 4]");
  EXPECT_EQ(inner.names(), (std::vector<std::string>{"d", "c", "b", "a"}));
  EXPECT_THROW(evaluate("d", around), kmf::MessageException);
}

TEST_F(WorkspaceTest, AnonymousFunctionsKeepWhatTheyFoundAndAskTheBaseForTheRest) {
  base_workspace().set("k", 2);
  base_workspace().set("f", evaluate("@(x) k*x + later", Scope(base_workspace())));
  base_workspace().set("k", 100);
  EXPECT_EQ(error_of("f(1)").substr(0, 20), "UndefinedName(later,");
  base_workspace().set("later", 5);
  EXPECT_EQ(value_of("f(1)"), "7");
  base_workspace().set("later", 6);
  EXPECT_EQ(value_of("f(1)"), "8");
  EXPECT_EQ(value_of("feval(@(a) feval(@(b) a*b + k, 3), 2)"), "106");
  EXPECT_EQ(value_of("feval(@(k) k + 1, 1)"), "2") << "parameters hide variables";
  EXPECT_EQ(value_of("feval(@(~, b) b, 1, 2)"), "2");
}

TEST_F(WorkspaceTest, EvalinWithAModelsVariablesAsParameters) {
  // The way in which a host evaluates a parameter: names of the model as parameters, the rest in the base workspace.
  base_workspace().set("R", 1000);
  base_workspace().set("C", 3);
  kmf::CvCleaner cleaner;
  const auto run = [&](const char* text) {
    cvArray_tag* handle = nullptr;
    cvArray_tag* inputs[] = {cleaner.createString("base"), cleaner.createString(text)};
    kmf::call_internal_corvane(1, &handle, 2, inputs, "evalin");
    cleaner.addCvArray(handle);
    cvArray_tag* arguments[] = {handle, cleaner.createScalarDouble(7), cleaner.createScalarDouble(8)};
    cvArray_tag* result = nullptr;
    kmf::call_internal_corvane(1, &result, 3, arguments, "feval");
    return describe(cleaner.addCvArray(result));
  };
  EXPECT_EQ(run("@(R,L)R+L+C"), "18");
  EXPECT_EQ(run("@(R,L)'text'"), "'text'");
  EXPECT_EQ(run("@(R,L)-1"), "-1");
  EXPECT_EQ(run("@(R,L)[R -L]'"), "[7;-8]");
  EXPECT_THROW(run("@(R,L)"), kmf::MessageException);
  base_workspace().set("C", 4);
  EXPECT_EQ(run("@(R,L)C"), "4");
}

TEST_F(WorkspaceTest, EvalinOfARegisteredObjectSeesItsNamesAlone) {
  const auto dictionary = std::make_shared<Workspace>();
  dictionary->set("a", 5);
  base_workspace().set("b", 1);
  kmf::CvCleaner cleaner;
  cvArray_tag* object = cleaner.addCvArray(cvCreateNativeObject("test.Dictionary", dictionary));
  const auto run = [&](const char* text) {
    cvArray_tag* result = nullptr;
    cvArray_tag* inputs[] = {object, cleaner.createString(text)};
    kmf::call_internal_corvane(1, &result, 2, inputs, "evalin");
    return describe(cleaner.addCvArray(result));
  };
  EXPECT_THROW(run("a"), kmf::MessageException) << "the class isn't registered yet";
  register_scope_class("test.Dictionary");
  EXPECT_EQ(run("a*2"), "10");
  EXPECT_THROW(run("b"), kmf::MessageException);
}

}  // namespace
}  // namespace embedded::scripting_runtime
