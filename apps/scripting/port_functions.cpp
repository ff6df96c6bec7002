// Ports of subsystems, a list at once.

#include "apps/scripting/diagram_inputs.hpp"
#include "apps/scripting/diagram_table.hpp"
#include "apps/scripting/port_order.hpp"
#include "platform/scripting_runtime/scripting_runtime.hpp"

namespace kinemo::scripting {

namespace {

/// Ports that are placed one after another, and taken away again unless all of them are.
class NewPorts {
 public:
  explicit NewPorts(host::System& inside) : inside_(inside), order_(next_port_order(inside)) {}
  NewPorts(const NewPorts&) = delete;
  NewPorts& operator=(const NewPorts&) = delete;
  ~NewPorts() {
    for (auto port = placed_.rbegin(); port != placed_.rend(); ++port) host::removeBlock(**port);
  }

  void place(const std::vector<ustring>& names, host::Side side) {
    placed_.reserve(placed_.size() + names.size());
    for (const ustring& name : names) placed_.push_back(&inside_.addPort(name, side, order_++));
  }
  void keep() { placed_.clear(); }

 private:
  host::System& inside_;
  int order_;
  std::vector<GTBlock*> placed_;
};

std::vector<ustring> names_from(const Call& call, std::size_t input) {
  if (cvIsChar(call[input])) return {ustring_from(call, input)};
  return texts_of(call[input], {call.name, input + 1});
}

void add_ports(Call& call) {
  NewPorts ports(system_from(call, 0));
  ports.place(names_from(call, 1), host::Side::Left);
  if (call.size() > 2) ports.place(names_from(call, 2), host::Side::Right);
  ports.keep();
}

}  // namespace

std::vector<DiagramFunction> port_functions() {
  return {{"add_ports",
           2,
           3,
           add_ports,
           {"add_ports(subsystem, left)\nadd_ports(subsystem, left, right)",
            "Gives a subsystem ports, behind those that it has.",
            "The names of a side, from top to bottom, are a text or a cell array of texts; {} is none. Lines inside of "
            "the subsystem call a port by its name alone."}}};
}

}  // namespace kinemo::scripting
