#pragma once

// The walk over one tree that gives its value. It lives for one evaluation and refers to scope, parameters and source.

#include "embedded/expression/parse.hpp"
#include "embedded/expression/tree.hpp"
#include "embedded/scripting_runtime/indexing.hpp"
#include "embedded/scripting_runtime/value.hpp"
#include "embedded/scripting_runtime/workspace.hpp"
#include "platform/foundation/exception.hpp"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace embedded::scripting_runtime {

/// Parameters of a running anonymous function: found by name before any workspace is asked.
struct Parameters {
  const std::unordered_map<std::string, std::size_t>* positions;
  cvArray_tag** values;
  std::size_t count;
};

/// Where a text begins in a longer one: lines before it, characters before it in its first line, and the script's file.
struct Origin {
  std::size_t lines = 0;
  std::size_t columns = 0;
  std::shared_ptr<const std::string> file = nullptr;  ///< null where there is none
};

class Evaluator {
 public:
  /// `source` is the text of the tree, or empty. Errors leave out its first `head` bytes, and tell places as they are
  /// in the longer text that has `source` at `origin`.
  Evaluator(const Scope& scope, std::string_view source, const Parameters* parameters = nullptr, std::size_t head = 0,
            Origin origin = {})
      : scope_(scope), source_(source), head_(head), origin_(std::move(origin)), parameters_(parameters) {}

  /// The values that a tree gives when `wanted` are asked for; with 0 a call may give none.
  std::vector<Value> run(const expression::Node& tree, int wanted);
  /// The subscripts of an index node; `end` in them means that of `indexed`.
  std::vector<Subscript> run_subscripts(const expression::Node& tree, const cvArray_tag* indexed);

 private:
  using Node = expression::Node;
  struct EndPlace {
    const cvArray_tag* array;
    std::size_t position;
    std::size_t count;
  };

  template <class Compute>
  auto placed(Compute compute);
  std::vector<Value> outputs(const Node& node, int wanted);
  Value value(const Node& node);
  void append_values(const Node& node, std::vector<Value>& to);

  Value leaf(const Node& node);
  Value name(const Node& node);
  Value chain(const Node& node);
  Value short_circuit(const Node& node);
  Value range(const Node& node);
  Value matrix(const Node& node);
  Value cell(const Node& node);
  Value end();
  Value anonymous(const Node& node);

  std::vector<Value> index(const Node& node, int wanted);
  std::vector<Value> cell_index(const Node& node);
  std::vector<Value> fields(const Node& node);
  std::vector<Value> fields_of(const Value& base, const std::string& field);
  /// What stands in front of ".name" in `node`, where that isn't the name of a function.
  Value owner(const Node& node);
  /// owner.name(inputs), where the owner's class has such a method that takes inputs; none otherwise.
  std::optional<std::vector<Value>> method(const Node& node, const Value& owner, int wanted);
  std::vector<Value> indexed_value(const Node& node, const Value& base, int wanted);
  std::vector<Subscript> subscripts(const Node& node, const cvArray_tag* indexed);
  std::vector<Value> arguments(const Node& node);
  std::vector<Value> call(const Node& node, const std::string& function, const std::vector<Value>& inputs, int wanted);
  std::vector<Value> call_value(const Value& function, const std::vector<Value>& inputs, int wanted);

  /// @throws "InputNotGiven" (name, inputs given) for a parameter that the caller left out
  const cvArray_tag* find(const std::string& name) const;
  /// The function that a name or a chain of fields such as gl.gti.f names; empty when a variable begins it.
  std::string function_name(const Node& node) const;
  [[noreturn]] void fail_undefined(const Node& node, const std::string& name, const std::vector<Value>& inputs) const;
  void add_place(kmf::AttributedException& error) const;
  /// The cause that tells a place: in a function it names the file that the function stands in.
  kmf::MessageException place_cause(const expression::Place& place) const;
  /// In the source, which isn't empty.
  expression::Place place_of(const Node& node) const;

  const Scope& scope_;
  std::string_view source_;
  std::size_t head_;
  Origin origin_;
  const Parameters* parameters_;
  std::vector<EndPlace> ends_;
  const Node* at_ = nullptr;  ///< what is computed just now, for the places of errors
  mutable bool placed_ = false;
};

/// An anonymous function: it keeps the tree, the variables that its body names at this moment, and for errors the text.
/// Where the text is nothing but the function, errors tell places in its body: programs put heads before what users
/// type.
cvUniquePtr make_anonymous(const expression::Tree& tree, Workspace captured, std::string source, Origin origin = {});

/// The nearest of the known names; empty when none is near.
std::string nearest_name(const std::string& wanted, const std::vector<std::string>& known);

}  // namespace embedded::scripting_runtime
