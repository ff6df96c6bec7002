#include "views/picture/scene.hpp"

#include "embedded/drawing/icon_look.hpp"
#include "embedded/drawing/short_text.hpp"
#include "platform/foundation/strings.hpp"
#include "views/block_ports.hpp"
#include "views/layout/geometry.hpp"
#include "views/picture/caption_places.hpp"
#include "views/picture/io_places.hpp"
#include "views/picture/stub_labels.hpp"

#include <algorithm>
#include <unordered_map>
#include <unordered_set>

namespace kinemo::views::picture {

namespace {

constexpr std::size_t longest_label = 16;

using PinOfPort = std::unordered_map<const gtPort*, layout::PinRef>;
using NetNames = std::unordered_map<const std::vector<gtPort*>*, ustring>;

PinOfPort pins_of(const std::vector<BlockShape>& shapes) {
  PinOfPort pins;
  for (std::size_t i = 0; i < shapes.size(); ++i) {
    for (std::size_t k = 0; k < shapes[i].ports.size(); ++k) pins[shapes[i].ports[k]] = {i, k};
  }
  return pins;
}

/// By the first named line of each.
NetNames named_nets(const host::System& system) {
  NetNames names;
  for (const auto& line : system.lines()) {
    if (!line->name.empty() && !line->ports.empty()) names.emplace(&host::netOf(*line->ports.front()), line->name);
  }
  return names;
}

/// What an unnamed net is called: after an I/O port, after a block of one port alone, such as a reference, or after its
/// first pin in the order of the blocks.
ustring invented_name(const std::vector<gtPort*>& net, const gtPort& first) {
  for (const gtPort* port : net) {
    const GTBlock& block = *port->getGrOwnerBlock();
    if (host::isIoPort(block) || host::ports(block).size() == 1) return block.getGrName();
  }
  return first.getGrOwnerBlock()->getGrName() + u"." + kmf::utf8_string_to_ustring(port_name(first));
}

class SceneMaker {
 public:
  SceneMaker(host::System& system, ShapeMaker& maker, const NetTypes& types) : maker_(maker), types_(types) {
    scene_.system = &system;
  }

  Scene make() {
    for (const GTBlock* block : scene_.system->blocks()) scene_.shapes.push_back(maker_.make(*block));
    add_nets();
    place_io_ports(scene_.shapes, problem_.nets);
    place_captions(scene_.shapes, maker_);
    for (const BlockShape& shape : scene_.shapes) problem_.boxes.push_back(shape.box);
    scene_.drawing = layout::lay_out(problem_);
    add_labels();
    return std::move(scene_);
  }

 private:
  void add_nets() {
    const NetNames names = named_nets(*scene_.system);
    const PinOfPort pins = pins_of(scene_.shapes);
    std::unordered_set<const std::vector<gtPort*>*> seen;
    for (const BlockShape& shape : scene_.shapes) {
      for (const gtPort* port : shape.ports) {
        const std::vector<gtPort*>& net = host::netOf(*port);
        const bool shown = net.size() > 1 || names.count(&net) != 0;
        if (shown && seen.insert(&net).second) add_net(*port, names, pins);
      }
    }
  }

  void add_net(const gtPort& first, const NetNames& names, const PinOfPort& pins) {
    const std::vector<gtPort*>& net = host::netOf(first);
    const auto named = names.find(&net);
    const ustring name =
        embedded::drawing::shortened(named != names.end() ? named->second : invented_name(net, first), longest_label);
    layout::Net drawn;
    for (const gtPort* port : net) drawn.pins.push_back(pins.at(port));
    drawn.label = maker_.label_size(name);
    if (named != names.end()) drawn.name = maker_.net_name_size(name);
    problem_.nets.push_back(std::move(drawn));
    scene_.nets.push_back({&net, name, embedded::drawing::port_color(types_.of(net)), named != names.end()});
  }

  void add_labels() {
    LabelRoom room(problem_.boxes, scene_.drawing);
    place_stub_labels(room, scene_.drawing);
    std::vector<ustring> names;
    for (const SceneNet& net : scene_.nets) names.push_back(net.named ? net.name : ustring());
    const auto measure = [this](const ustring& text) { return maker_.net_name_size(text); };
    const auto labels = place_net_labels(room, scene_.drawing, names, measure);
    layout::Rectangle& bounds = scene_.drawing.bounds;
    for (std::size_t i = 0; i < labels.size(); ++i) {
      scene_.nets[i].label = labels[i];
      if (labels[i]) bounds = layout::united(bounds, labels[i]->place);
    }
  }

  ShapeMaker& maker_;
  const NetTypes& types_;
  Scene scene_{};
  layout::Problem problem_;
};

}  // namespace

Scene make_scene(host::System& system, ShapeMaker& shapes, const NetTypes& types) {
  return SceneMaker(system, shapes, types).make();
}

}  // namespace kinemo::views::picture
