#include "tests/formats/diagram/diagram_account.hpp"

#include "embedded/block_diagram/edit.hpp"
#include "embedded/block_diagram/parameter_object.hpp"
#include "embedded/block_diagram/placement.hpp"
#include "embedded/scripting_runtime/display.hpp"
#include "embedded/scripting_runtime/workspace.hpp"
#include "platform/foundation/strings.hpp"
#include "views/block_ports.hpp"

#include <algorithm>
#include <set>
#include <sstream>

namespace kinemo::test {

namespace {

namespace host = embedded::block_diagram;

class Account {
 public:
  explicit Account(const host::Diagram& diagram) {
    for (const auto& [name, text] : diagram.parameters()) out_ << "setting " << name << '=' << wide(text) << '\n';
    auto& workspace = const_cast<host::Diagram&>(diagram).workspace();
    for (const std::string& name : workspace.names()) tell_variable(name, workspace.get(name));
    std::vector<const host::System*> systems{&diagram.root()};
    for (std::size_t i = 0; i < systems.size(); ++i) {
      tell_system(*systems[i]);
      for (const GTBlock* block : systems[i]->subsystems()) systems.push_back(host::contents(*block));
    }
  }

  std::string text() const { return out_.str(); }

 private:
  static std::string wide(const ustring& text) { return kmf::ustring_to_utf8_string(text); }

  void tell_variable(const std::string& name, const cvArray_tag* array) {
    const cvUniquePtr value = host::parameterValue(array);
    out_ << "variable " << name << ' ' << cvGetClassName(value.get()) << ' '
         << embedded::scripting_runtime::display_text(value.get()) << " unit " << host::unitOf(array) << " runtime "
         << host::isRuntime(array) << '\n';
  }

  void tell_system(const host::System& system) {
    for (const GTBlock* block : system.blocks()) {
      if (host::isIoPort(*block)) continue;
      out_ << "block " << wide(block->getFullPath(false)) << ' ' << host::libraryName(*block) << '\n';
      tell_parameters(*block);
      tell_place(*block);
      tell_mask(*block);
      for (const gtPort* port : host::ports(*block)) {
        out_ << "  port " << views::port_name(*port) << (port->isLeft() ? " left" : " right") << '\n';
        if (const GTBlock* inside = host::ioPortOf(*port)) tell_place(*inside);
      }
    }
    for (const auto& line : system.lines()) tell_line(*line);
  }

  void tell_parameters(const GTBlock& block) {
    static const std::set<std::string> left_out{"ReferenceFile"};
    for (const std::string& name : host::parameterNames(block)) {
      if (left_out.count(name) == 0) out_ << "  " << name << '=' << wide(host::parameter(block, name)) << '\n';
    }
  }

  void tell_place(const GTBlock& block) {
    for (const auto& [name, text] : host::properties(block)) {
      std::string plain = wide(text);
      plain.erase(std::remove(plain.begin(), plain.end(), ','), plain.end());
      out_ << "  property " << name << '=' << plain << '\n';
    }
  }

  void tell_mask(const GTBlock& block) {
    const auto mask = MaskInterface::mask(&block);
    if (mask == nullptr) return;
    out_ << "  mask " << mask->type << '|' << mask->description << '\n';
    for (const GTMaskParameter& parameter : mask->parameters) {
      out_ << "    " << parameter.name << '|' << parameter.prompt << '|' << wide(parameter.value) << '|'
           << parameter.type << '|' << parameter.unit;
      for (const std::string& choice : parameter.choices) out_ << '|' << choice;
      out_ << '\n';
    }
  }

  void tell_line(const host::Line& line) {
    out_ << "line " << wide(line.name) << ':';
    for (const gtPort* port : line.ports) {
      out_ << ' ' << wide(port->getGrOwnerBlock()->getGrName()) << '/' << views::port_name(*port);
    }
    out_ << '\n';
  }

  std::ostringstream out_;
};

}  // namespace

std::string account_of(const host::Diagram& diagram) {
  return Account(diagram).text();
}

}  // namespace kinemo::test
