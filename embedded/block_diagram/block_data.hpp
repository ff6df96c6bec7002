#pragma once

// What the host keeps behind a block and behind a port. Small on purpose: diagrams of a million blocks are held in
// memory. What few blocks have lies in `BlockExtras`.

#include "embedded/block_diagram/diagram.hpp"
#include "embedded/block_diagram/dialog_data.hpp"
#include "embedded/block_diagram/mask_data.hpp"
#include "embedded/block_diagram/shared_text.hpp"
#include "platform/block_diagram/block.hpp"

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace embedded::block_diagram {

/// Of a subsystem block.
struct SubsystemData {
  std::unique_ptr<System> contents;
  bool atomic = false;
  bool opaque = false;
  bool variant = false;
  ustring activeVariant;
  ustring referenceFile;
  /// The I/O port blocks of the sides, left first; each stands for the outer port at the same position.
  std::vector<GTBlock*> ioPorts[2];
};

/// Of an I/O port block.
struct IoPortData {
  Side side = Side::Left;
  int order = 0;
  std::size_t position = 0;  ///< in `SubsystemData::ioPorts`
};

/// What few blocks have.
struct BlockExtras {
  std::unique_ptr<SubsystemData> subsystem;
  std::unique_ptr<IoPortData> ioPort;
  std::map<std::string, ustring> properties;
  std::map<int, gtParam_tag> evaluated;  ///< as `getGrEDP` handed out
};

/// Kinds of block that the host makes itself.
extern const char* const subsystem_type;
extern const char* const io_port_type;

}  // namespace embedded::block_diagram

struct GTBlockHostData {
  double handle = 0.0;
  GtBlockContext* context = nullptr;
  const std::string* type = nullptr;     ///< interned
  const std::string* library = nullptr;  ///< interned; null for none
  ustring name;
  embedded::block_diagram::System* system = nullptr;
  std::vector<gtPort*> ports;  ///< owned; left ones first
  std::uint32_t leftPorts = 0;
  GTBlock::Flags flags;
  GTDialogInfo dialog;
  std::shared_ptr<const std::vector<std::string>> dialogTexts;  ///< by parameter index; may be shorter than the dialog
  std::unique_ptr<GTMask> mask;
  std::unique_ptr<embedded::block_diagram::BlockExtras> extras;
  embedded::block_diagram::SourcePlace place;

  embedded::block_diagram::SubsystemData* subsystem() const { return extras ? extras->subsystem.get() : nullptr; }
  embedded::block_diagram::IoPortData* ioPort() const { return extras ? extras->ioPort.get() : nullptr; }
  embedded::block_diagram::BlockExtras& makeExtras();
  std::size_t portCount(bool left) const { return left ? leftPorts : ports.size() - leftPorts; }
  gtPort* port(bool left, std::size_t i) const { return ports[left ? i : leftPorts + i]; }
};

struct gtPortHostData {
  double handle = 0.0;
  const std::string* type = nullptr;              ///< interned; null while none is set
  embedded::block_diagram::Line* line = nullptr;  ///< the first line at the port; further ones lie in the system
  std::uint32_t net = 0;                          ///< number of its net while the system's nets are kept
};

namespace embedded::block_diagram {

/// Puts a new port at a position of a side; ports behind it move on.
gtPort& insertPort(GTBlock& block, bool left, std::size_t position);
/// Ends a port and what lines it has; ports behind it move up.
void removePort(GTBlock& block, bool left, std::size_t position);

/// Text of a dialog parameter by index: what was set, or the default of its type.
const char* dialogText(const GTBlock& block, int index);
void setDialogText(GTBlock& block, int index, const std::string& text);

/// One description of a port for messages: block path, a full stop, and the port's name or place.
ustring describe(const gtPort& port);

}  // namespace embedded::block_diagram
