#include "views/picture/marks.hpp"

#include "embedded/block_diagram/diagram.hpp"
#include "views/host_nets.hpp"

namespace kinemo::views::picture {

namespace host = embedded::block_diagram;

void Marks::add_net(gtPort& start) {
  HostNets walk;
  walk.follow(start, [this](const gtPort& port) {
    nets.insert(&host::netOf(port));
    ports.insert(&port);
  });
}

void Marks::add_block(const GTBlock& block) {
  for (const GTBlock* at = &block; at != nullptr && blocks.insert(at).second;) at = host::parentSystem(*at).owner();
}

}  // namespace kinemo::views::picture
