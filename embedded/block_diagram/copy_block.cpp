#include "embedded/block_diagram/copy_block.hpp"

#include "embedded/block_diagram/block_data.hpp"
#include "embedded/block_diagram/edit.hpp"
#include "embedded/block_diagram/system_data.hpp"

#include <deque>
#include <unordered_map>
#include <utility>

namespace embedded::block_diagram {

namespace {

/// By the block that each is the copy of.
using Copies = std::unordered_map<const GTBlock*, GTBlock*>;

/// One copying: the copy, level by level, of all that lies in a block.
class Copying {
 public:
  /// The copy of the block alone; whoever has it ends it when something else fails.
  GTBlock& begin(const GTBlock& block, System& system, const ustring& name) {
    GTBlock& copy = copyAlone(block, system, name);
    top_ = &copy;
    enqueue(block, copy);
    return copy;
  }
  void finish() {
    while (!pending_.empty()) {
      const auto [from, to] = pending_.front();
      pending_.pop_front();
      copyContents(*from, *to);
    }
  }

 private:
  static GTBlock& copyAlone(const GTBlock& block, System& system, const ustring& name);
  static void copyLook(const GTBlock& from, GTBlock& to);
  void enqueue(const GTBlock& block, GTBlock& copy);
  void copyContents(const GTBlock& from, GTBlock& to);
  static void sortIoPorts(const GTBlock& from, GTBlock& to, const Copies& copies);
  static void copyLines(const System& from, System& to, const Copies& copies);

  const GTBlock* top_ = nullptr;
  std::deque<std::pair<const GTBlock*, GTBlock*>> pending_;  ///< subsystems and their empty copies
};

GTBlock& Copying::copyAlone(const GTBlock& block, System& system, const ustring& name) {
  if (isSubsystem(block)) {
    GTBlock& copy = system.addSubsystem(name);
    copyLook(block, copy);
    return copy;
  }
  if (const IoPortData* port = block.host().ioPort()) {
    GTBlock& copy = system.addPort(name, port->side, port->order);
    copyLook(block, copy);
    return copy;
  }
  return SystemAccess::adoptChecked(system, std::unique_ptr<GTBlock>(block.clone()), name, {});
}

/// What clones of other blocks get by themselves.
void Copying::copyLook(const GTBlock& from, GTBlock& to) {
  if (!properties(from).empty()) to.host().makeExtras().properties = properties(from);
  const GTMask* const mask = from.host().mask.get();
  if (mask == nullptr) return;
  MaskInterface::setMask(&to, mask->kind->definition());
  to.host().mask->texts = mask->texts;
}

void Copying::enqueue(const GTBlock& block, GTBlock& copy) {
  const SubsystemData* const data = block.host().subsystem();
  if (data == nullptr) return;
  SubsystemData& own = *copy.host().subsystem();
  own.atomic = data->atomic;
  own.opaque = data->opaque;
  own.variant = data->variant;
  own.activeVariant = data->activeVariant;
  own.referenceFile = data->referenceFile;
  pending_.emplace_back(&block, &copy);
}

void Copying::copyContents(const GTBlock& from, GTBlock& to) {
  const System& inside = *contents(from);
  System& ownInside = *contents(to);
  Copies copies;
  for (const GTBlock* block : inside.blocks()) {
    // A copy that stands in what it is the copy of isn't copied itself.
    if (block == top_) continue;
    GTBlock& copy = copyAlone(*block, ownInside, block->getGrName());
    copies.emplace(block, &copy);
    enqueue(*block, copy);
  }
  sortIoPorts(from, to, copies);
  copyLines(inside, ownInside, copies);
}

/// Ports of equal order stand as they came to their place, which needn't be the order of the blocks.
void Copying::sortIoPorts(const GTBlock& from, GTBlock& to, const Copies& copies) {
  for (const int side : {0, 1}) {
    const std::vector<GTBlock*>& sorted = from.host().subsystem()->ioPorts[side];
    std::vector<GTBlock*>& own = to.host().subsystem()->ioPorts[side];
    own.clear();
    for (const GTBlock* port : sorted) {
      const auto copy = copies.find(port);
      if (copy == copies.end()) continue;
      copy->second->host().ioPort()->position = own.size();
      own.push_back(copy->second);
    }
  }
}

void Copying::copyLines(const System& from, System& to, const Copies& copies) {
  for (const auto& line : from.lines()) {
    std::vector<gtPort*> ports;
    ports.reserve(line->ports.size());
    for (const gtPort* port : line->ports) {
      const GTBlockHostData& copy = copies.at(port->getGrOwnerBlock())->host();
      const auto index = static_cast<std::size_t>(port->index);
      // A block whose class shows other ports from the start loses the ends that it has no ports for.
      if (index < copy.portCount(port->isLeft())) ports.push_back(copy.port(port->isLeft(), index));
    }
    if (!ports.empty()) to.addLine(ports, line->name);
  }
}

}  // namespace

GTBlock& copyBlock(const GTBlock& block, System& system, const ustring& name) {
  Copying copying;
  GTBlock& copy = copying.begin(block, system, name);
  try {
    copying.finish();
  } catch (...) {
    removeBlock(copy);
    throw;
  }
  return copy;
}

}  // namespace embedded::block_diagram
