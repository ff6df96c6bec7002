#pragma once

// Diagrams made by chance, for properties that hold for any: nested subsystems with ports on both sides, wires straight
// through, variants, opaque subsystems, lines of any length. Equal seeds give equal diagrams.

#include "host_fixture.hpp"

#include <random>

namespace host_tests {

class RandomDiagram {
 public:
  explicit RandomDiagram(unsigned seed) : random_(seed) {}

  void fill(Diagram& diagram) { fill(diagram.root(), 4); }

 private:
  int upTo(int n) { return static_cast<int>(random_() % static_cast<unsigned>(n + 1)); }
  bool chance(int percent) { return upTo(99) < percent; }
  ustring name(const char16_t* kind) { return kind + std::u16string(1, static_cast<char16_t>(0x4e00 + next_++)); }

  void fill(System& system, int levels) {
    for (int i = upTo(3); i >= 0; --i) system.addBlock(name(u"B"), chance(50) ? "test/two" : "test/left3");
    for (int i = levels > 0 ? upTo(3) : 0; i > 0; --i) addSubsystem(system, levels);
    if (system.owner()) {
      for (int i = upTo(4); i > 0; --i) system.addPort(name(u"p"), chance(50) ? Side::Left : Side::Right, upTo(5));
    }
    addLines(system);
  }

  void addSubsystem(System& system, int levels) {
    GTBlock& subsystem = system.addSubsystem(name(u"S"));
    if (chance(20)) {
      makeVariant(subsystem, levels);
    } else {
      fill(*contents(subsystem), levels - 1);
    }
    if (chance(10)) setParameter(subsystem, "Opaque", u"on");
  }

  void makeVariant(GTBlock& variant, int levels) {
    System& inside = *contents(variant);
    for (int choice = 0; choice < 2; ++choice) {
      System& system = *contents(inside.addSubsystem(choice ? u"a" : u"b"));
      for (const char16_t* port : {u"p", u"q", u"r"}) {
        if (chance(80)) system.addPort(port, Side::Left, upTo(3));
      }
      fill(system, levels - 1);
    }
    for (const char16_t* port : {u"p", u"q", u"r"}) inside.addPort(port, Side::Left, upTo(3));
    setParameter(variant, "Variant", u"on");
    setParameter(variant, "ActiveVariant", chance(50) ? u"a" : u"b");
  }

  void addLines(System& system) {
    std::vector<gtPort*> all;
    for (const GTBlock* block : system.blocks()) {
      for (gtPort* port : ports(*block)) all.push_back(port);
    }
    for (std::size_t i = all.size() / 2; i > 0; --i) {
      std::vector<gtPort*> line;
      for (int k = chance(20) ? 6 : 2; k > 0; --k) line.push_back(all[random_() % all.size()]);
      system.addLine(line);
    }
  }

  std::minstd_rand random_;
  int next_ = 0;
};

}  // namespace host_tests
