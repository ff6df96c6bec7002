// Subsystems: their inside, their ports, their variants.

#include "embedded/block_diagram/block_data.hpp"
#include "embedded/block_diagram/system_data.hpp"

#include <algorithm>

namespace embedded::block_diagram {

namespace {

int orderOf(const GTBlock* ioPort) {
  return ioPort->host().ioPort()->order;
}

void renumber(std::vector<GTBlock*>& side, std::size_t from) {
  for (std::size_t i = from; i < side.size(); ++i) side[i]->host().ioPort()->position = i;
}

/// Puts the block into the list of its side and tells where.
std::size_t enlist(std::vector<GTBlock*>& side, GTBlock& ioPort) {
  const int order = orderOf(&ioPort);
  const auto place =
      std::upper_bound(side.begin(), side.end(), order, [](int o, const GTBlock* b) { return o < orderOf(b); });
  const auto position = static_cast<std::size_t>(place - side.begin());
  side.insert(place, &ioPort);
  renumber(side, position);
  return position;
}

void delist(std::vector<GTBlock*>& side, std::size_t position) {
  side.erase(side.begin() + static_cast<std::ptrdiff_t>(position));
  renumber(side, position);
}

GTBlock& ownerOf(const GTBlock& ioPort) {
  return *ioPort.host().system->owner();
}

std::vector<GTBlock*>& sideList(const GTBlock& subsystem, Side side) {
  return subsystem.host().subsystem()->ioPorts[static_cast<int>(side)];
}

/// Moves an outer port within its side.
void shiftPort(GTBlock& subsystem, bool left, std::size_t from, std::size_t to) {
  GTBlockHostData& data = subsystem.host();
  const auto first = data.ports.begin() + static_cast<std::ptrdiff_t>(left ? 0 : data.leftPorts);
  const auto at = [&](std::size_t i) { return first + static_cast<std::ptrdiff_t>(i); };
  if (from < to) {
    std::rotate(at(from), at(from + 1), at(to + 1));
  } else {
    std::rotate(at(to), at(from), at(from + 1));
  }
  for (std::size_t i = 0; i < data.portCount(left); ++i) data.port(left, i)->index = static_cast<int>(i);
}

}  // namespace

void placeIoPort(GTBlock& ioPort) {
  GTBlock& subsystem = ownerOf(ioPort);
  const Side side = ioPort.host().ioPort()->side;
  const std::size_t position = enlist(sideList(subsystem, side), ioPort);
  insertPort(subsystem, side == Side::Left, position);
  netsChanged(*ioPort.host().system);
}

void moveIoPort(GTBlock& ioPort, Side side, int order) {
  GTBlock& subsystem = ownerOf(ioPort);
  IoPortData& data = *ioPort.host().ioPort();
  const Side oldSide = data.side;
  const std::size_t oldPosition = data.position;
  delist(sideList(subsystem, oldSide), oldPosition);
  data.side = side;
  data.order = order;
  if (side == oldSide) {
    shiftPort(subsystem, side == Side::Left, oldPosition, enlist(sideList(subsystem, side), ioPort));
  } else {
    removePort(subsystem, oldSide == Side::Left, oldPosition);
    placeIoPort(ioPort);
  }
  netsChanged(*ioPort.host().system);
}

void takeIoPortAway(GTBlock& ioPort) {
  GTBlock& subsystem = ownerOf(ioPort);
  const IoPortData& data = *ioPort.host().ioPort();
  delist(sideList(subsystem, data.side), data.position);
  removePort(subsystem, data.side == Side::Left, data.position);
}

System* contents(const GTBlock& block) {
  const SubsystemData* data = block.host().subsystem();
  return data ? data->contents.get() : nullptr;
}

const std::string& blockType(const GTBlock& block) {
  return *block.host().type;
}

const std::string& libraryName(const GTBlock& block) {
  static const std::string none;
  return block.host().library ? *block.host().library : none;
}

System& parentSystem(const GTBlock& block) {
  return *block.host().system;
}
SourcePlace sourcePlace(const GTBlock& block) {
  return block.host().place;
}

bool isSubsystem(const GTBlock& block) {
  return block.host().subsystem() != nullptr;
}
bool isIoPort(const GTBlock& block) {
  return block.host().ioPort() != nullptr;
}

bool isOpaque(const GTBlock& subsystem) {
  const SubsystemData* data = subsystem.host().subsystem();
  return data && data->opaque;
}

bool isVariant(const GTBlock& subsystem) {
  const SubsystemData* data = subsystem.host().subsystem();
  return data && data->variant;
}

GTBlock* activeChoice(const GTBlock& variant) {
  if (!isVariant(variant)) return nullptr;
  const SubsystemData& data = *variant.host().subsystem();
  GTBlock* choice = data.contents->find(data.activeVariant);
  return choice && isSubsystem(*choice) ? choice : nullptr;
}

gtPort* outerPort(const GTBlock& ioPort) {
  const IoPortData* data = ioPort.host().ioPort();
  return data ? ownerOf(ioPort).host().port(data->side == Side::Left, data->position) : nullptr;
}

GTBlock* ioPortOf(const gtPort& outer) {
  const GTBlock& owner = *outer.getGrOwnerBlock();
  if (!isSubsystem(owner)) return nullptr;
  const std::vector<GTBlock*>& side = sideList(owner, outer.isLeft() ? Side::Left : Side::Right);
  const auto position = static_cast<std::size_t>(outer.index);
  return position < side.size() ? side[position] : nullptr;
}

gtPort* subsystemPort(const GTBlock& subsystem, const ustring& name) {
  const System* inside = contents(subsystem);
  const GTBlock* ioPort = inside ? inside->find(name) : nullptr;
  return ioPort ? outerPort(*ioPort) : nullptr;
}

bool isHidden(const System& system) {
  for (const GTBlock* owner = system.owner(); owner; owner = parentSystem(*owner).owner()) {
    if (isOpaque(*owner)) return true;
  }
  return false;
}

std::vector<GTBlock*> activeBlocks(const System& system) {
  if (!system.owner() || !isVariant(*system.owner())) return system.blocks();
  std::vector<GTBlock*> blocks = system.ioPorts();
  if (GTBlock* choice = activeChoice(*system.owner())) blocks.push_back(choice);
  return blocks;
}

}  // namespace embedded::block_diagram
