#include "embedded/scripting_runtime/script.hpp"

#include "embedded/expression/parse.hpp"
#include "embedded/foundation/read_file.hpp"
#include "embedded/scripting_runtime/assign.hpp"
#include "embedded/scripting_runtime/display.hpp"
#include "embedded/scripting_runtime/errors.hpp"
#include "embedded/scripting_runtime/evaluator.hpp"
#include "embedded/scripting_runtime/functions.hpp"
#include "platform/scripting_runtime/scripting_runtime.hpp"

#include <algorithm>

namespace embedded::scripting_runtime {

namespace {

using expression::Kind;
using expression::Node;

// --- one statement

class StatementRun {
 public:
  StatementRun(const Statement& statement, Workspace& workspace, const std::shared_ptr<const std::string>& file)
      : statement_(statement),
        workspace_(workspace),
        scope_(workspace),
        evaluator_(scope_, statement.text, nullptr, 0, {statement.line - 1, statement.column - 1, file}) {}

  void run() {
    switch (statement_.kind) {
      case Statement::Kind::expression:
        return expression();
      case Statement::Kind::assignment:
        return assignment();
      case Statement::Kind::deletion:
        return change(*statement_.targets[0], remove_elements);
      case Statement::Kind::command:
        return command();
    }
  }

 private:
  void expression() {
    const Node& tree = *statement_.value;
    const bool variable = tree.kind() == Kind::name && workspace_.has(tree.text());
    for (Value& value : evaluator_.run(tree, 0)) {
      const std::string name = variable ? tree.text() : "ans";
      if (!variable) workspace_.set(name, std::move(value).release());
      show(name);
    }
  }

  void assignment() {
    const std::size_t wanted = statement_.targets.size();
    std::vector<Value> values = evaluator_.run(*statement_.value, static_cast<int>(wanted));
    if (values.empty()) throw_runtime_error("NoValue");
    if (values.size() < wanted) {
      throw_runtime_error("TooFewValues", std::to_string(values.size()), std::to_string(wanted));
    }
    for (std::size_t i = 0; i < wanted; ++i) {
      if (!statement_.targets[i]) continue;
      change(*statement_.targets[i],
             [&](cvUniquePtr& target, const std::vector<Step>& steps) { assign(target, steps, std::move(values[i])); });
    }
  }

  void command() {
    std::vector<cvUniquePtr> texts;
    std::vector<cvArray_tag*> inputs;
    for (std::size_t i = 1; i < statement_.words.size(); ++i) {
      texts.emplace_back(cvCreateString(statement_.words[i]));
      inputs.push_back(texts.back().get());
    }
    for (cvUniquePtr& output : call_named(statement_.words[0], 0, static_cast<int>(inputs.size()), inputs.data())) {
      workspace_.set("ans", std::move(output));
      show("ans");
    }
  }

  /// Changes the variable that a target begins with; it is as before when that fails.
  template <class Change>
  void change(const Node& target, Change apply) {
    const Node* root = &target;
    while (root->kind() != Kind::name) root = &root->child(0);
    const std::string& name = root->text();
    const std::vector<Step> steps = steps_of(target, workspace_.get(name));
    cvUniquePtr value = workspace_.take(name);
    const bool known = value != nullptr;
    try {
      apply(value, steps);
    } catch (...) {
      if (known) workspace_.set(name, std::move(value));
      throw;
    }
    workspace_.set(name, std::move(value));
    show(name);
  }

  /// The links from the variable to the place; `end` means that of what is there before the assignment.
  std::vector<Step> steps_of(const Node& target, const cvArray_tag* variable) {
    std::vector<const Node*> nodes;
    for (const Node* node = &target; node->kind() != Kind::name; node = &node->child(0)) nodes.push_back(node);
    std::reverse(nodes.begin(), nodes.end());
    std::vector<Step> steps;
    cvUniquePtr at(variable != nullptr ? cvCreateSharedCopy(variable) : nullptr);
    for (const Node* node : nodes) {
      steps.push_back(step_of(*node, at.get()));
      if (node != nodes.back()) at = part_at(at.get(), steps.back());
    }
    return steps;
  }

  Step step_of(const Node& node, const cvArray_tag* at) {
    if (node.kind() == Kind::field) return {Step::Kind::field, {}, node.text()};
    if (node.kind() == Kind::dynamic_field) {
      std::vector<Value> name = evaluator_.run(node.child(1), 1);
      if (name.empty()) throw_runtime_error("NoValue");
      return {Step::Kind::field, {}, kmf::cvarray_to_string(name.front().array())};
    }
    const cvUniquePtr nothing(cvCreateDoubleMatrix(0, 0));
    const cvUniquePtr contents = at != nullptr ? parameter_contents(at) : nullptr;
    const auto kind = node.kind() == Kind::index ? Step::Kind::index : Step::Kind::cell;
    return {kind, evaluator_.run_subscripts(node, contents ? contents.get() : nothing.get()), {}};
  }

  void show(const std::string& name) const {
    if (!statement_.silent) display(named_text(name, workspace_.get(name)));
  }

  const Statement& statement_;
  Workspace& workspace_;
  Scope scope_;
  Evaluator evaluator_;
};

// --- places of errors

kmf::MessageException runtime_cause(const char* id, const std::string& first, const std::string& second,
                                    const std::string& third, const std::string& fourth) {
  return kmf::MessageException(
      kmf::Message(kmf::MessageId("kinemo:scripting:runtime", id, first, second, third, fourth)));
}

struct TextPlace {
  std::string line;
  std::string column;
  std::string excerpt;
};

bool tells_own_place(const kmf::ErrorData& error) {
  constexpr std::size_t arguments = 4;
  return error.arguments.size() == arguments &&
         (error.id == "UndefinedName" || error.group == "kinemo:scripting:expression");
}

/// Where the statement's own evaluation says that it failed; else the statement's beginning.
TextPlace place_in(const kmf::ErrorData& error, const Statement& statement) {
  if (!error.causes.empty() && error.causes.back().id == "Where") {
    const std::vector<std::string>& where = error.causes.back().arguments;
    return {where[0], where[1], where[2]};
  }
  const bool scripts = std::any_of(error.causes.begin(), error.causes.end(),
                                   [](const kmf::ErrorData& cause) { return cause.id == "InScript"; });
  if (tells_own_place(error) && error.id == "UndefinedName" && !scripts) {
    return {error.arguments[1], error.arguments[2], error.arguments[3]};
  }
  return {std::to_string(statement.line), std::to_string(statement.column),
          expression::place_of(statement.text, 0).excerpt};
}

/// A script that runs, innermost last.
class RunningScript {
 public:
  explicit RunningScript(Workspace& workspace) : depth_(levels) { running().push_back(&workspace); }
  RunningScript(const RunningScript&) = delete;
  RunningScript& operator=(const RunningScript&) = delete;
  ~RunningScript() { running().pop_back(); }

  static std::vector<Workspace*>& running() {
    static std::vector<Workspace*> all;
    return all;
  }

 private:
  static constexpr std::size_t levels = 12;  // of stack, compared with the walk over one node

  DepthGuard depth_;
  RunningEvaluation evaluation_;  // so that steps are counted through all statements
};

std::vector<Statement> parse_named(std::string_view text, const std::string& name) {
  try {
    return parse_script(text);
  } catch (kmf::AttributedException& error) {
    const kmf::ErrorData data = error.data();
    if (tells_own_place(data)) {
      error.addCause(runtime_cause("InScript", name, data.arguments[1], data.arguments[2], data.arguments[3]));
    }
    throw;
  }
}

/// The text without the mark of UTF-8 that some editors put in front. @throws "WrongEncoding" (encoding) for others
std::string_view without_encoding_mark(std::string_view text, const std::string& name) {
  constexpr std::string_view utf8 = "\xEF\xBB\xBF";
  const std::string_view mark = text.substr(0, 2);
  if (mark == "\xFF\xFE" || mark == "\xFE\xFF") {
    kmf::MessageException error(
        kmf::Message(kmf::MessageId("kinemo:scripting:runtime", "WrongEncoding", std::string("UTF-16"))));
    error.addCause(runtime_cause("InScript", name, "1", "1", ""));
    throw error;
  }
  return text.substr(0, utf8.size()) == utf8 ? text.substr(utf8.size()) : text;
}

// --- what people read

/// The message without the place that it tells itself.
std::string text_without_place(const kmf::ErrorData& error) {
  std::string text = error.text;
  if (!tells_own_place(error)) return text;
  const std::string head = "Line " + error.arguments[1] + ", column " + error.arguments[2] + ": ";
  const std::string tail = "\n" + error.arguments[3];
  if (text.compare(0, head.size(), head) == 0) text.erase(0, head.size());
  if (text.size() >= tail.size() && text.compare(text.size() - tail.size(), tail.size(), tail) == 0) {
    text.resize(text.size() - tail.size());
  }
  return text;
}

void add_notes(const kmf::ErrorData& error, Problem& problem) {
  constexpr std::size_t most_notes = 20;
  const auto add = [&](const std::string& note) {
    const bool repeated = !problem.notes.empty() && problem.notes.back() == note;  // as where a function calls itself
    if (!repeated && problem.notes.size() < most_notes) problem.notes.push_back(note);
  };
  const auto is_place = [&](std::size_t i) { return i < error.causes.size() && error.causes[i].id == "InScript"; };
  bool placed = false;
  for (std::size_t i = 0; i < error.causes.size(); ++i) {
    const kmf::ErrorData& cause = error.causes[i];
    if (cause.id == "Where" && is_place(i + 1)) continue;
    const bool first = is_place(i) && !placed;
    placed = placed || first;
    const bool prompt = cause.id == "InScript" && cause.arguments[0].empty();
    if (first || prompt) continue;
    add(cause.text);
    for (const kmf::ErrorData& inner : cause.causes) add(inner.text);
  }
  for (const std::string& object : error.objects) problem.notes.push_back("block: " + object);
}

std::string indented(const std::string& text, const std::string& indent) {
  std::string result;
  for (const char c : text) {
    result += c;
    if (c == '\n') result += indent;
  }
  return result;
}

}  // namespace

ExitRequest::ExitRequest(int code)
    : MessageException(kmf::Message(kmf::MessageId("kinemo:scripting:runtime", "ExitRequest", std::to_string(code)))),
      code_(code) {}

void run_statement(const Statement& statement, Workspace& workspace, const std::shared_ptr<const std::string>& file) {
  within_memory([&] { StatementRun(statement, workspace, file).run(); });
}

void run_script(std::string_view text, const std::string& name, Workspace& workspace) {
  const RunningScript running(workspace);
  const std::vector<Statement> statements = parse_named(without_encoding_mark(text, name), name);
  const auto file = name.empty() ? nullptr : std::make_shared<const std::string>(name);
  for (const Statement& statement : statements) {
    try {
      count_step();
      run_statement(statement, workspace, file);
    } catch (kmf::AttributedException& error) {
      const TextPlace place = place_in(error.data(), statement);
      error.addCause(runtime_cause("InScript", name, place.line, place.column, place.excerpt));
      throw;
    }
  }
}

void run_script_file(const std::string& file, Workspace& workspace) {
  const auto text = kmf::embedded::read_regular_file(file, expression::text_limit);
  if (!text) throw_runtime_error("CannotReadScript", file);
  run_script(*text, file, workspace);
}

Workspace& running_workspace() {
  const std::vector<Workspace*>& running = RunningScript::running();
  return running.empty() ? base_workspace() : *running.back();
}

Problem problem_of(const kmf::Exception& error) {
  const kmf::ErrorData data = error.data();
  Problem result;
  result.rule = data.id.empty() ? "error" : data.group + ":" + data.id;
  if (data.id == "UserError" && data.arguments.size() > 1 && !data.arguments[1].empty()) {
    result.rule = data.arguments[1];
  }
  for (const kmf::ErrorData& cause : data.causes) {
    if (cause.id != "InScript") continue;
    result.file = cause.arguments[0];
    result.line = std::stoul(cause.arguments[1]);
    result.column = std::stoul(cause.arguments[2]);
    result.excerpt = cause.arguments[3];
    break;
  }
  result.text = text_without_place(data);
  const bool in_function = !data.causes.empty() && data.causes.front().id == "InFunction";
  if (tells_own_place(data) && data.arguments[3] != result.excerpt && !in_function) {
    result.notes.push_back(
        runtime_cause("Where", data.arguments[1], data.arguments[2], data.arguments[3], "").data().text);
  }
  add_notes(data, result);
  return result;
}

std::string to_text(const Problem& problem) {
  std::string text;
  if (!problem.file.empty()) {
    text = problem.file + ":";
    if (problem.line > 0) text += std::to_string(problem.line) + ":" + std::to_string(problem.column) + ":";
    text += " ";
  }
  text += "error: " + indented(problem.text, "  ") + " [" + problem.rule + "]\n";
  if (!problem.excerpt.empty()) text += "    " + indented(problem.excerpt, "    ") + "\n";
  for (const std::string& note : problem.notes) text += "  note: " + indented(note, "    ") + "\n";
  return text;
}

}  // namespace embedded::scripting_runtime
