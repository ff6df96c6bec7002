#include "embedded/block_diagram/block_data.hpp"
#include "embedded/block_diagram/nearest.hpp"
#include "embedded/block_diagram/paths.hpp"
#include "embedded/block_diagram/system_data.hpp"
#include "platform/block_diagram/library.hpp"
#include "platform/foundation/exception.hpp"

#include <algorithm>

namespace embedded::block_diagram {

const char* const subsystem_type = "SubSystem";
const char* const io_port_type = "KMIOPort";

namespace {

/// Levels of subsystems. Nothing of the host recurses by level, but whoever reads a diagram may.
constexpr int deepest = 10000;

/// Subsystems and I/O port blocks come without a domain, and nobody generates masks for them.
std::unique_ptr<GTBlock> hostBlock(const char* type) {
  return std::make_unique<GTBlock>(type, nullptr);
}

/// Takes a line away from a port that it ends at; the line still names the port.
void leaveLine(SystemData& data, gtPort& port, const Line& line) {
  const auto more = data.moreLines.find(&port);
  if (more == data.moreLines.end()) {
    port.host().line = nullptr;
    return;
  }
  std::vector<Line*>& others = more->second;
  if (port.host().line == &line) {
    port.host().line = others.front();
    others.erase(others.begin());
  } else {
    others.erase(std::find(others.begin(), others.end(), &line));
  }
  if (others.empty()) data.moreLines.erase(more);
}

/// A line of one port means something only where its name is the net's.
bool joinsNothing(const Line& line) {
  return line.ports.empty() || (line.ports.size() == 1 && line.name.empty());
}

/// The system itself and all below it, outer ones first.
std::vector<std::unique_ptr<System>> systemsFrom(std::unique_ptr<System> top) {
  std::vector<std::unique_ptr<System>> systems;
  systems.push_back(std::move(top));
  for (std::size_t i = 0; i < systems.size(); ++i) {
    const std::vector<GTBlock*> children = systems[i]->subsystems();
    for (GTBlock* child : children) systems.push_back(std::move(child->host().subsystem()->contents));
  }
  return systems;
}

void forget(std::vector<GTBlock*>& blocks, const GTBlock* block) {
  const auto found = std::find(blocks.begin(), blocks.end(), block);
  if (found != blocks.end()) blocks.erase(found);
}

/// Whether the line is new at the port.
bool joinLine(SystemData& data, gtPort& port, Line& line) {
  Line*& first = port.host().line;
  if (first == &line) return false;
  if (!first) {
    first = &line;
    return true;
  }
  std::vector<Line*>& more = data.moreLines[&port];
  if (!more.empty() && more.back() == &line) return false;
  more.push_back(&line);
  return true;
}

}  // namespace

std::size_t BlockNameHash::operator()(const GTBlock* block) const noexcept {
  return NameHash()(block->getGrName());
}
std::size_t BlockNameHash::operator()(const ustring& name) const noexcept {
  return NameHash()(name);
}
bool BlockNameEqual::operator()(const GTBlock* a, const GTBlock* b) const noexcept {
  return sameName(a->getGrName(), b->getGrName());
}
bool BlockNameEqual::operator()(const ustring& name, const GTBlock* block) const noexcept {
  return sameName(name, block->getGrName());
}

System::System(Diagram& diagram, GTBlock* owner, int depth)
    : diagram_(&diagram), owner_(owner), depth_(depth), data_(std::make_unique<SystemData>()) {}

System::~System() {
  for (GTBlock* block : blocks_) delete block;
}

ustring System::path() const {
  return fullPath(this, nullptr);
}

GTBlock* System::find(const ustring& name) const {
  const auto found = byName_.find(name);
  return found == byName_.end() ? nullptr : *found;
}

GTBlock& System::addBlock(const ustring& name, const std::string& type, const SourcePlace& place) {
  const GTBlock* prototype = gt_find_prototype(type);
  if (!prototype)
    kmf::throw_message("kinemo:host:diagram", "UnknownBlockType", type, nearestName(type, gt_prototype_names()));
  return SystemAccess::adoptChecked(*this, std::unique_ptr<GTBlock>(prototype->clone()), name, place);
}

GTBlock& System::addSubsystem(const ustring& name, const SourcePlace& place) {
  if (depth_ + 1 >= deepest) kmf::throw_message("kinemo:host:diagram", "TooDeep", std::to_string(deepest));
  GTBlock& block = SystemAccess::adopt(*this, hostBlock(subsystem_type), name, place);
  auto data = std::make_unique<SubsystemData>();
  data->contents = SystemAccess::make(*diagram_, &block, depth_ + 1);
  block.host().makeExtras().subsystem = std::move(data);
  subsystems_.push_back(&block);
  return block;
}

GTBlock& System::addPort(const ustring& name, Side side, int order, const SourcePlace& place) {
  if (!owner_) kmf::throw_message("kinemo:host:diagram", "PortAtTop", name);
  GTBlock& block = SystemAccess::adopt(*this, hostBlock(io_port_type), name, place);
  block.host().makeExtras().ioPort = std::make_unique<IoPortData>(IoPortData{side, order, 0});
  insertPort(block, false, 0);
  ioPorts_.push_back(&block);
  placeIoPort(block);
  return block;
}

void System::addLine(const std::vector<gtPort*>& ports, const ustring& name, const SourcePlace& place) {
  for (const gtPort* port : ports) {
    if (port->getGrOwnerBlock()->host().system != this)
      kmf::throw_message("kinemo:host:diagram", "LineAcrossSystems", describe(*port), path());
  }
  lines_.push_back(std::make_unique<Line>(Line{{}, name, place}));
  Line& line = *lines_.back();
  line.ports.reserve(ports.size());
  for (gtPort* port : ports) {
    if (!joinLine(*data_, *port, line)) continue;
    line.ports.push_back(port);
  }
  netsChanged(*this);
}

GTBlock& SystemAccess::adopt(System& system, std::unique_ptr<GTBlock> block, const ustring& name,
                             const SourcePlace& place) {
  if (name.empty()) kmf::throw_message("kinemo:host:diagram", "EmptyBlockName", system.path());
  if (system.find(name)) kmf::throw_message("kinemo:host:diagram", "DuplicateBlock", name, system.path());
  GTBlock& result = *block;
  result.setGrName(name);
  result.host().system = &system;
  result.host().place = place;
  system.blocks_.push_back(&result);
  block.release();
  system.byName_.insert(&result);
  ++system.diagram_->blockCount_;
  if (!result.host().ports.empty()) netsChanged(system);
  return result;
}

GTBlock& SystemAccess::adoptChecked(System& system, std::unique_ptr<GTBlock> block, const ustring& name,
                                    const SourcePlace& place) {
  GTBlock& result = adopt(system, std::move(block), name, place);
  try {
    result.checkDialogParameters(0);
  } catch (...) {
    dropLast(system);
    throw;
  }
  return result;
}

void SystemAccess::dropLast(System& system) {
  const std::unique_ptr<GTBlock> block(system.blocks_.back());
  system.blocks_.pop_back();
  system.byName_.erase(block.get());
  --system.diagram_->blockCount_;
  netsChanged(system);
}

void SystemAccess::rename(GTBlock& block, const ustring& name) {
  System& system = *block.host().system;
  if (name.empty()) kmf::throw_message("kinemo:host:diagram", "EmptyBlockName", system.path());
  const GTBlock* other = system.find(name);
  if (other && other != &block) kmf::throw_message("kinemo:host:diagram", "DuplicateBlock", name, system.path());
  system.byName_.erase(&block);
  block.host().name = name;
  system.byName_.insert(&block);
}

std::unique_ptr<System> SystemAccess::make(Diagram& diagram, GTBlock* owner, int depth) {
  return std::unique_ptr<System>(new System(diagram, owner, depth));
}

void SystemAccess::destroy(std::unique_ptr<System> system) {
  std::vector<std::unique_ptr<System>> systems = systemsFrom(std::move(system));
  while (!systems.empty()) systems.pop_back();
}

void SystemAccess::drop(GTBlock& block) {
  System& system = *block.host().system;
  for (gtPort* port : block.host().ports) detachLines(*port);
  const std::unique_ptr<GTBlock> owned(&block);
  system.byName_.erase(&block);
  forget(system.blocks_, &block);
  --system.diagram_->blockCount_;
  if (SubsystemData* inside = block.host().subsystem()) {
    forget(system.subsystems_, &block);
    std::vector<std::unique_ptr<System>> systems = systemsFrom(std::move(inside->contents));
    for (const auto& below : systems) system.diagram_->blockCount_ -= below->blocks_.size();
    while (!systems.empty()) systems.pop_back();
  }
  if (block.host().ioPort()) forget(system.ioPorts_, &block);
  netsChanged(system);
}

void SystemAccess::dropLine(System& system, const Line& line) {
  for (gtPort* port : line.ports) leaveLine(*system.data_, *port, line);
  const auto same = [&](const std::unique_ptr<Line>& other) { return other.get() == &line; };
  system.lines_.erase(std::find_if(system.lines_.begin(), system.lines_.end(), same));
  netsChanged(system);
}

void SystemAccess::detachLines(gtPort& port) {
  System* system = port.getGrOwnerBlock()->host().system;
  if (!system || !port.host().line) return;
  std::vector<Line*> lines{port.host().line};
  const auto more = system->data_->moreLines.find(&port);
  if (more != system->data_->moreLines.end()) {
    lines.insert(lines.end(), more->second.begin(), more->second.end());
    system->data_->moreLines.erase(more);
  }
  port.host().line = nullptr;
  bool anyEnded = false;
  for (Line* line : lines) {
    line->ports.erase(std::find(line->ports.begin(), line->ports.end(), &port));
    if (!joinsNothing(*line)) continue;
    for (gtPort* other : line->ports) leaveLine(*system->data_, *other, *line);
    line->ports.clear();
    anyEnded = true;
  }
  netsChanged(*system);
  if (!anyEnded) return;
  const auto ended = [](const std::unique_ptr<Line>& line) { return line->ports.empty(); };
  system->lines_.erase(std::remove_if(system->lines_.begin(), system->lines_.end(), ended), system->lines_.end());
}

}  // namespace embedded::block_diagram
