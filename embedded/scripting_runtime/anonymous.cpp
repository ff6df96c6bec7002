// Anonymous functions as the native data of function handles.

#include "embedded/expression/print.hpp"
#include "embedded/scripting_runtime/errors.hpp"
#include "embedded/scripting_runtime/evaluator.hpp"
#include "embedded/scripting_runtime/functions.hpp"

namespace embedded::scripting_runtime {

namespace {

class AnonymousFunction : public Callable {
 public:
  AnonymousFunction(const expression::Tree& tree, Workspace captured, std::string source, Origin origin)
      : body_(tree->children().back()),
        captured_(std::move(captured)),
        source_(std::move(source)),
        origin_(std::move(origin)) {
    const std::size_t end = source_.find(')');
    if (tree->offset() == 0 && is_alone(origin_) && end != std::string::npos) head_ = end + 1;
    count_ = tree->children().size() - 1;
    for (std::size_t i = 0; i < count_; ++i) {
      if (tree->child(i).text() != "~") positions_[tree->child(i).text()] = i;
    }
  }

  Outputs call(int nOut, int nIn, cvArray_tag** inputs) const override {
    constexpr std::size_t levels = 4;
    const DepthGuard depth(levels);
    kmf::check_num_inputs(0, static_cast<int>(count_), nIn);
    const Scope scope({&captured_, &base_workspace()});
    const Parameters parameters{&positions_, inputs, static_cast<std::size_t>(nIn)};
    Outputs outputs;
    for (Value& value : Evaluator(scope, source_, &parameters, head_, origin_).run(*body_, nOut)) {
      outputs.push_back(std::move(value).release());
    }
    if (outputs.size() < static_cast<std::size_t>(nOut)) {
      throw_runtime_error("TooManyOutputs", expression::print(body_), std::to_string(nOut));
    }
    outputs.resize(std::min(outputs.size(), static_cast<std::size_t>(std::max(nOut, 1))));
    return outputs;
  }

 private:
  /// Not a part of a script, in which users look for the place themselves.
  static bool is_alone(const Origin& origin) { return origin.lines == 0 && origin.columns == 0; }

  expression::Tree body_;
  std::unordered_map<std::string, std::size_t> positions_;
  std::size_t count_ = 0;
  Workspace captured_;
  std::string source_;
  Origin origin_;
  std::size_t head_ = 0;  ///< up to the end of the names, where the function is all of the text
};

}  // namespace

cvUniquePtr make_anonymous(const expression::Tree& tree, Workspace captured, std::string source, Origin origin) {
  const std::shared_ptr<Callable> callable =
      std::make_shared<AnonymousFunction>(tree, std::move(captured), std::move(source), std::move(origin));
  return cvUniquePtr(cvCreateFunctionHandle(expression::print(tree), callable));
}

}  // namespace embedded::scripting_runtime
