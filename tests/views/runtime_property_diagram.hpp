#pragma once

// Diagrams made by chance in which run-time variables reach blocks of all kinds through masks. Equal seeds give equal
// diagrams. Every expression of the generator grows strictly with each name in it as long as all values are positive,
// so that a change of a variable is seen wherever it reaches.
//
// What a compile must fix is marked when it is made: parameters with another configuration than "runtime", texts
// outside the expression subset, and references to run-time names without numbers.

#include "embedded/block_diagram/diagram.hpp"
#include "views/block_library.hpp"

#include <map>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace kinemo::views::test {

/// A variable of the model workspace that stays tunable.
struct RuntimeVariable {
  std::string name;
  std::string unit;
  std::string otherUnit;  ///< one that a change may be told in; empty for none
  double factor = 1.0;    ///< of a number in `otherUnit`, to tell it in `unit`
  bool vector = false;
  std::string measures;  ///< the unit of the parameters that it is for; empty for a plain number
};

/// A text whose value a compile fixes.
struct FrozenText {
  GTBlock* block;
  std::string parameter;
};

class RuntimePropertyDiagram {
 public:
  RuntimePropertyDiagram(unsigned seed, const std::vector<LibraryBlock>& kinds) : random_(seed), kinds_(kinds) {}

  /// Fills a new diagram; its variables are set by `setVariables`.
  void fill(embedded::block_diagram::Diagram& diagram);

  static const std::vector<RuntimeVariable>& variables();
  /// The text of a variable at a value: a number, or a row that begins with it.
  static std::string text(const RuntimeVariable& variable, double value);
  /// Gives all variables of the workspace values; those that are run-time numbers as told.
  static void setVariables(embedded::block_diagram::Diagram& diagram, const std::map<std::string, double>& values);

  const std::vector<FrozenText>& frozen() const { return frozen_; }
  double number() { return 0.25 * (1 + upTo(15)); }
  bool chance(int percent) { return upTo(99) < percent; }

 private:
  enum class Shape { scalar, vector, nothing, fixed };
  struct Meaning {
    Shape shape;
    std::string unit;  ///< what a scalar measures: the unit of a kind's parameter, or empty for a plain number
    bool operator==(const Meaning& other) const { return shape == other.shape && unit == other.unit; }
  };
  using Names = std::map<std::string, Meaning>;
  using System = embedded::block_diagram::System;
  /// Ports of a system that may be joined, by their type.
  using Ends = std::multimap<std::string, gtPort*>;
  struct Text {
    std::string text;
    bool frozen;
  };

  int upTo(int n) { return static_cast<int>(random_() % static_cast<unsigned>(n + 1)); }
  template <class T>
  const T& oneOf(const std::vector<T>& all) {
    return all[random_() % all.size()];
  }
  std::string name(const Names& names, const Meaning& meaning);
  std::string term(const Names& names);
  std::string scalar(const Names& names);
  std::string quantity(const Names& names, const std::string& unit);
  Text text(const Names& names, const Meaning& meaning);

  ustring blockName(System& system);
  Ends fillSystem(System& system, const Names& names, int levels);
  void addLeaf(System& system, const Names& names, Ends& ends);
  void setParameters(GTBlock& block, const LibraryBlock& kind, const Names& names);
  void addSubsystem(System& system, const Names& names, int levels, Ends& ends);
  Names addMask(GTBlock& subsystem, const Names& names);
  void join(System& system, const Ends& ends);

  std::minstd_rand random_;
  const std::vector<LibraryBlock>& kinds_;
  std::vector<FrozenText> frozen_;
};

}  // namespace kinemo::views::test
