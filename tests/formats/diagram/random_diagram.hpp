// Random diagrams whose names and texts are as odd as can be.
#pragma once

#include "embedded/block_diagram/diagram.hpp"
#include "platform/foundation/strings.hpp"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

namespace kinemo::test {

namespace host = embedded::block_diagram;

/// Names and texts that mean something to YAML, to lines or to paths.
inline const std::vector<std::string>& odd_texts() {
  static const std::vector<std::string> texts{"a",
                                              "1.5",
                                              "on",
                                              "~",
                                              "null",
                                              "- x",
                                              "a: b",
                                              "#1",
                                              " a ",
                                              "a.b",
                                              "[x]",
                                              "{y",
                                              "*z",
                                              "&w",
                                              "!t",
                                              "'q'",
                                              "\"d\"",
                                              "a\\b",
                                              "a/b",
                                              "/",
                                              "x\ny",
                                              "x\ty",
                                              "-",
                                              "--- x",
                                              "...",
                                              "..",
                                              "=",
                                              "<<",
                                              "?",
                                              ": ",
                                              "\xC3\xA4\xC3\xB6",
                                              "\xE2\x80\xA8",
                                              "\xEF\xBB\xBF",
                                              "\xF0\x9F\x98\x80",
                                              "\x01\x7F",
                                              "\xC2\x85",
                                              "%YAML",
                                              "a, b",
                                              "-5",
                                              "1e3",
                                              ".5",
                                              "./x.yaml",
                                              "subsystem",
                                              "(1)",
                                              std::string(3000, 'k')};
  return texts;
}

/// Random systems of blocks, masks, variants and lines with names as odd as can be.
class RandomDiagram {
 public:
  explicit RandomDiagram(unsigned seed) : random_(seed), diagram_(host::Diagram::create("random")) {
    for (std::size_t i = one_of(4); i > 0; --i) {
      diagram_.setVariable("v" + std::to_string(i),
                           u"[1 -2.5e-7 1e999]*" + kmf::utf8_string_to_ustring(std::to_string(i)),
                           one_of(2) == 0 ? "Ohm" : "", one_of(2) == 0);
    }
    fill(diagram_.root(), 0);
  }
  host::Diagram& diagram() { return diagram_; }

 private:
  std::size_t one_of(std::size_t count) { return random_() % count; }
  ustring text() { return kmf::utf8_string_to_ustring(odd_texts()[one_of(odd_texts().size())]); }

  ustring new_name(const host::System& system, bool subsystem = false) {
    for (ustring name = text();; name += text()) {
      if (system.find(name) == nullptr && !(subsystem && name.back() == u'/')) return name;
    }
  }

  void place(GTBlock& block) {
    if (one_of(3) == 0) host::setProperty(block, "Position", u"[0.1 -20 10000 33.3]");
    if (one_of(3) == 0) host::setProperty(block, "Rotation", u"270");
    if (one_of(3) == 0) host::setProperty(block, "Mirror", one_of(2) == 0 ? u"on" : u"off");
  }

  void fill(host::System& system, int level) {
    for (std::size_t i = 1 + one_of(4); i > 0; --i) {
      const char* const types[] = {"physical/resistor", "physical/inertia", "physical/electrical_reference"};
      GTBlock& block = system.addBlock(new_name(system), types[one_of(3)]);
      if (host::libraryName(block) == types[0]) host::setParameter(block, "R", text());
      place(block);
    }
    for (std::size_t i = level < 3 ? one_of(3) : 0; i > 0; --i) subsystem(system, level);
    lines(system);
  }

  void subsystem(host::System& system, int level) {
    GTBlock& block = system.addSubsystem(new_name(system, true));
    host::System& inside = *host::contents(block);
    for (std::size_t i = one_of(4); i > 0; --i) {
      place(inside.addPort(new_name(inside), one_of(2) == 0 ? host::Side::Left : host::Side::Right,
                           static_cast<int>(one_of(9))));
    }
    if (one_of(2) == 0) mask(block);
    if (one_of(4) == 0) host::setParameter(block, "TreatAsAtomicUnit", u"on");
    place(block);
    if (one_of(4) != 0) return fill(inside, level + 1);
    for (std::size_t i = 1 + one_of(3); i > 0; --i) subsystem(inside, level + 1);
    host::setParameter(block, "Variant", u"on");
    host::setParameter(block, "ActiveVariant", inside.subsystems().back()->getGrName());
  }

  void mask(GTBlock& block) {
    const auto definition = boost::make_shared<GTMaskDefinition>();
    definition->type = kmf::ustring_to_utf8_string(text());
    definition->description = kmf::ustring_to_utf8_string(text());
    for (const char* name : {"p", "q"}) {
      definition->parameters.push_back({name,
                                        kmf::ustring_to_utf8_string(text()),
                                        text(),
                                        GTPrmDesc::STRING,
                                        kmf::ustring_to_utf8_string(text()),
                                        {}});
    }
    MaskInterface::setMask(&block, definition);
    host::setParameter(block, "q", text());
  }

  void lines(host::System& system) {
    std::vector<gtPort*> ports;
    for (const GTBlock* block : system.blocks()) {
      const std::vector<gtPort*> own = host::ports(*block);
      ports.insert(ports.end(), own.begin(), own.end());
    }
    for (std::size_t i = one_of(4); i > 0 && ports.size() > 1; --i) {
      std::shuffle(ports.begin(), ports.end(), random_);
      system.addLine({ports.begin(), ports.begin() + 2 + static_cast<std::ptrdiff_t>(one_of(ports.size() - 1))},
                     one_of(2) == 0 ? text() : ustring());
    }
  }

  std::mt19937 random_;
  host::Diagram& diagram_;
};

}  // namespace kinemo::test
