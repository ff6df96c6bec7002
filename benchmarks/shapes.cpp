#include "benchmarks/shapes.hpp"

#include "embedded/block_diagram/diagram.hpp"
#include "platform/block_diagram/mask.hpp"
#include "platform/foundation/strings.hpp"

#include <boost/make_shared.hpp>

#include <algorithm>

namespace benchmarks {

namespace {

using embedded::block_diagram::contents;
using embedded::block_diagram::Side;
using embedded::block_diagram::subsystemPort;
using embedded::block_diagram::System;

ustring numbered(const char16_t* stem, std::size_t number) {
  return stem + kmf::utf8_string_to_ustring(std::to_string(number));
}

struct Resistor {
  gtPort* p;
  gtPort* n;
};

Resistor resistor(System& system, std::size_t number) {
  GTBlock& block = system.addBlock(numbered(u"R", number), "physical/resistor");
  return {block.getGrLeftConnectionPort(0), block.getGrRightConnectionPort(0)};
}

gtPort* ground(System& top) {
  GTBlock& block = top.addBlock(u"Ground", "physical/electrical_reference");
  return embedded::block_diagram::ports(block).front();
}

/// `count` resistors in a row from `from`; returns the open end.
gtPort* row(System& system, gtPort* from, std::size_t count, std::size_t firstNumber = 1) {
  for (std::size_t i = 0; i < count; ++i) {
    const Resistor next = resistor(system, firstNumber + i);
    system.addLine({from, next.p});
    from = next.n;
  }
  return from;
}

/// A subsystem with the ports "a" (left) and "b" (right).
struct TwoPort {
  System* inside;
  gtPort* innerA;
  gtPort* innerB;
  gtPort* outerA;
  gtPort* outerB;
};

TwoPort two_port(System& system, const ustring& name) {
  GTBlock& block = system.addSubsystem(name);
  System* inside = contents(block);
  GTBlock& a = inside->addPort(u"a", Side::Left, 1);
  GTBlock& b = inside->addPort(u"b", Side::Right, 1);
  return {inside, a.getGrRightConnectionPort(0), b.getGrRightConnectionPort(0), subsystemPort(block, u"a"),
          subsystemPort(block, u"b")};
}

void fill_tree(System& system, gtPort* a, gtPort* b, std::size_t blocks) {
  if (blocks <= 2) {
    const Resistor first = resistor(system, 1);
    const Resistor second = resistor(system, 2);
    system.addLine({a, first.p});
    system.addLine({first.n, second.p});
    system.addLine({second.n, b});
    return;
  }
  const TwoPort left = two_port(system, u"L");
  const TwoPort right = two_port(system, u"R");
  system.addLine({a, left.outerA});
  system.addLine({left.outerB, right.outerA});
  system.addLine({right.outerB, b});
  fill_tree(*left.inside, left.innerA, left.innerB, blocks / 2);
  fill_tree(*right.inside, right.innerA, right.innerB, blocks - blocks / 2);
}

void make_tunable(GTBlock& resistor, const ustring& text) {
  embedded::block_diagram::setParameter(resistor, "R", text);
  embedded::block_diagram::setParameter(resistor, "R_conf", u"runtime");
}

/// The mask parameter k, which depends on the name that `text` tells from outside.
void add_mask(GTBlock& subsystem, const ustring& text) {
  static const auto definition = [] {
    auto mask = boost::make_shared<GTMaskDefinition>();
    mask->parameters.push_back({"k", "", u"1", GTPrmDesc::EDIT, "", {}});
    return mask;
  }();
  MaskInterface::setMask(&subsystem, definition);
  embedded::block_diagram::setParameter(subsystem, "k", text);
}

/// Resistors in a row, each with a text of its own over the name.
gtPort* tunable_row(System& system, gtPort* from, std::size_t count, const ustring& name) {
  gtPort* end = row(system, from, count);
  for (std::size_t i = 1; i <= count; ++i)
    make_tunable(*system.find(numbered(u"R", i)), numbered((name + u"+").c_str(), i));
  return end;
}

/// `blocks` resistors in a tree of masked subsystems, `fan` in each, the innermost with some ten resistors or more.
gtPort* tunable_tree(System& system, gtPort* from, std::size_t blocks, std::size_t fan, std::size_t depth,
                     const ustring& name) {
  if (depth == 0 || blocks <= 10) return tunable_row(system, from, blocks, name);
  for (std::size_t i = 0; i < fan; ++i) {
    const TwoPort part = two_port(system, numbered(u"S", i + 1));
    add_mask(*part.inside->owner(), name + u"*2");
    system.addLine({from, part.outerA});
    const std::size_t share = blocks * (i + 1) / fan - blocks * i / fan;
    part.inside->addLine({tunable_tree(*part.inside, part.innerA, share, fan, depth - 1, u"k"), part.innerB});
    from = part.outerB;
  }
  return from;
}

void tunable_chain(System* system, gtPort* at, std::size_t perLevel, std::size_t depth) {
  for (std::size_t level = 0; level < depth; ++level) {
    gtPort* end = tunable_row(*system, at, perLevel, level == 0 ? u"x" : u"k");
    if (level + 1 == depth) return;
    GTBlock& block = system->addSubsystem(u"S");
    add_mask(block, level == 0 ? u"x" : u"k+1");
    System* inside = contents(block);
    GTBlock& a = inside->addPort(u"a", Side::Left, 1);
    system->addLine({end, subsystemPort(block, u"a")});
    at = a.getGrRightConnectionPort(0);
    system = inside;
  }
}

}  // namespace

Diagram& flat(const std::string& name, std::size_t blocks) {
  Diagram& diagram = Diagram::create(name);
  row(diagram.root(), ground(diagram.root()), blocks);
  return diagram;
}

Diagram& ladder(const std::string& name, std::size_t blocks) {
  Diagram& diagram = Diagram::create(name);
  System& top = diagram.root();
  std::vector<gtPort*> rail{ground(top)};
  gtPort* at = rail.front();
  for (std::size_t i = 0; i + 1 < blocks; i += 2) {
    const Resistor along = resistor(top, i + 1);
    const Resistor across = resistor(top, i + 2);
    if (i > 0) top.addLine({at, along.p});
    top.addLine({along.n, across.p});
    rail.push_back(across.n);
    at = along.n;
  }
  top.addLine(rail);
  return diagram;
}

Diagram& chain(const std::string& name, std::size_t blocks, std::size_t depth) {
  Diagram& diagram = Diagram::create(name);
  System* system = &diagram.root();
  gtPort* at = ground(*system);
  const std::size_t perLevel = std::max<std::size_t>(1, blocks / depth);
  for (std::size_t level = 0; level < depth; ++level) {
    gtPort* end = row(*system, at, perLevel);
    if (level + 1 == depth) break;
    GTBlock& block = system->addSubsystem(u"S");
    System* inside = contents(block);
    GTBlock& a = inside->addPort(u"a", Side::Left, 1);
    system->addLine({end, subsystemPort(block, u"a")});
    at = a.getGrRightConnectionPort(0);
    system = inside;
  }
  return diagram;
}

Diagram& tree(const std::string& name, std::size_t blocks) {
  Diagram& diagram = Diagram::create(name);
  System& top = diagram.root();
  gtPort* reference = ground(top);
  const Resistor load = resistor(top, 1);
  top.addLine({reference, load.p});
  const TwoPort root = two_port(top, u"T");
  top.addLine({load.n, root.outerA});
  fill_tree(*root.inside, root.innerA, root.innerB, blocks);
  return diagram;
}

Diagram& wires(const std::string& name, std::size_t blocks) {
  Diagram& diagram = Diagram::create(name);
  System& top = diagram.root();
  gtPort* at = ground(top);
  for (std::size_t i = 1; i <= blocks; ++i) {
    const TwoPort wire = two_port(top, numbered(u"W", i));
    wire.inside->addLine({wire.innerA, wire.innerB});
    top.addLine({at, wire.outerA});
    const Resistor next = resistor(top, i);
    top.addLine({wire.outerB, next.p});
    at = wire.outerB;
  }
  return diagram;
}

Diagram& star(const std::string& name, std::size_t blocks) {
  Diagram& diagram = Diagram::create(name);
  System& top = diagram.root();
  std::vector<gtPort*> all{ground(top)};
  for (std::size_t i = 1; i <= blocks; ++i) all.push_back(resistor(top, i).p);
  top.addLine(all);
  return diagram;
}

Diagram& tunable(const std::string& name, std::size_t blocks, std::size_t depth) {
  Diagram& diagram = Diagram::create(name);
  diagram.setVariable("x", u"3", "", true);
  System& top = diagram.root();
  if (depth > 10) {
    tunable_chain(&top, ground(top), std::max<std::size_t>(1, blocks / depth), depth);
    return diagram;
  }
  tunable_tree(top, ground(top), blocks, depth <= 3 ? 10 : 2, depth, u"x");
  return diagram;
}

std::string tree_netlist(std::size_t blocks) {
  std::string text = "tree with shared definitions\n.subckt t0 a b\nr1 a m 1\nr2 m b 1\n.ends\n";
  std::size_t level = 0;
  for (std::size_t size = 4; size <= blocks; size *= 2) {
    const std::string inner = "t" + std::to_string(level++);
    text += ".subckt t" + std::to_string(level) + " a b\nx1 a m " + inner + "\nx2 m b " + inner + "\n.ends\n";
  }
  return text + "xtop in 0 t" + std::to_string(level) + "\nv1 in 0 1\n.end\n";
}

}  // namespace benchmarks
