#pragma once

// What a system keeps beside its blocks and lines: answers worked out once and held until an edit.

#include "embedded/block_diagram/diagram.hpp"
#include "platform/scripting_array/scripting_array.hpp"

#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

namespace embedded::block_diagram {

class MaskKind;

/// The nets of one system, by the number that each port holds. The first member is a port of a subsystem or an I/O port
/// block where the net has one, of these the one with the smallest handle.
struct Nets {
  std::vector<std::vector<gtPort*>> members;
};

/// Names of dialog parameters of the masks around a system, and as arrays by the mask of the block that asks.
struct MaskNames {
  std::uint64_t epoch = 0;
  std::shared_ptr<const std::vector<std::string>> names;
  struct Array {
    std::shared_ptr<const MaskKind> kind;  ///< kept, so that no other kind takes its address
    cvUniquePtr names;
  };
  std::unordered_map<const MaskKind*, Array> arrays;
};

struct SystemData {
  std::unique_ptr<Nets> nets;
  /// Lines of ports that have more than one: all but the first.
  std::unordered_map<const gtPort*, std::vector<Line*>> moreLines;
  std::unique_ptr<MaskNames> maskNames;
};

/// The way to a system's and a diagram's inside for the host's own files.
struct SystemAccess {
  static SystemData& data(const System& system) { return *system.data_; }
  static int depth(const System& system) { return system.depth_; }
  /// Takes the block in under its name; the system owns it from here on. @throws "DuplicateBlock", "EmptyBlockName"
  static GTBlock& adopt(System& system, std::unique_ptr<GTBlock> block, const ustring& name, const SourcePlace& place);
  /// The same for a new block of the library, which checks its parameters. @throws as above, and what the check raises
  static GTBlock& adoptChecked(System& system, std::unique_ptr<GTBlock> block, const ustring& name,
                               const SourcePlace& place);
  /// Ends the block placed last.
  static void dropLast(System& system);
  static void rename(GTBlock& block, const ustring& name);
  static std::unique_ptr<System> make(Diagram& diagram, GTBlock* owner, int depth);
  /// Ends a system with everything below it, however deep.
  static void destroy(std::unique_ptr<System> system);
  /// Ends a block with its lines and all that lies in it. An I/O port block has no port on the subsystem any more.
  static void drop(GTBlock& block);
  static void dropLine(System& system, const Line& line);
  /// Takes a port off its lines; those that join nothing then end.
  static void detachLines(gtPort& port);
};

/// The nets of a system change with its lines and ports.
void netsChanged(System& system);
/// A mask around other blocks has come, gone or changed.
void masksChanged(GTBlock& block);

const Nets& netsOf(const System& system);
/// Number of the net of a port in `netsOf` its block's system.
std::uint32_t netNumber(const gtPort& port);

/// Gives a new I/O port block its outer port, by its side and order; equal orders stand as they came.
void placeIoPort(GTBlock& ioPort);
/// Moves the outer port of an I/O port block. Its lines stay as long as it stays on its side.
void moveIoPort(GTBlock& ioPort, Side side, int order);
/// Ends the outer port of an I/O port block, which is about to end itself.
void takeIoPortAway(GTBlock& ioPort);

/// Whether the host hides what lies in the system: an opaque subsystem is the system's owner or lies around it.
bool isHidden(const System& system);
/// Children that are part of the network: all blocks, or of a variant subsystem its I/O ports and active choice.
std::vector<GTBlock*> activeBlocks(const System& system);

}  // namespace embedded::block_diagram
