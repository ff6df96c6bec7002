#include "views/nets.hpp"

#include "views/json_writer.hpp"
#include "views/net_names.hpp"

#include <algorithm>
#include <ostream>

namespace kinemo::views {

std::vector<Net> make_nets(const gl::core::Model& model, const embedded::block_diagram::Diagram& diagram) {
  const FlatNetwork network = flatten(model);
  const HostPorts ports = host_ports(network, diagram);
  std::vector<std::string> names = name_nets(network, ports);
  std::vector<Net> nets(network.nets.size());
  for (std::size_t n = 0; n < nets.size(); ++n) {
    nets[n].name = std::move(names[n]);
    nets[n].pins.reserve(network.nets[n].size());
    for (const FlatPin& pin : network.nets[n]) {
      nets[n].pins.push_back(
          {network.components[pin.component].block, pin_name(network, ports, pin), pin.connector + 1});
    }
  }
  std::sort(nets.begin(), nets.end(), [](const Net& a, const Net& b) { return a.name < b.name; });
  return nets;
}

void write_nets_text(std::ostream& out, const std::vector<Net>& nets) {
  for (const Net& net : nets) {
    out << net.name << '\n';
    for (const NetPin& pin : net.pins) out << "  " << pin.block << '.' << pin.port << '\n';
  }
}

void write_nets_json(std::ostream& out, const std::string& model, const std::vector<Net>& nets) {
  JsonWriter json(out);
  json.begin_object().member("model", model).key("nets").begin_array();
  for (const Net& net : nets) {
    json.begin_object().member("name", net.name).key("pins").begin_array();
    for (const NetPin& pin : net.pins) {
      json.begin_object(true).member("block", pin.block).member("port", pin.port).member("index", pin.index);
      json.end_object();
    }
    json.end_array().end_object();
  }
  json.end_array().end_object().finish();
}

}  // namespace kinemo::views
