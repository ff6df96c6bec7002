#pragma once

// Diagrams of the embedded host, as readers, programs and tests build and ask them. The host owns diagrams, diagrams
// own their systems, systems own their blocks and lines.

#include "platform/block_diagram/block.hpp"
#include "platform/block_diagram/mask.hpp"
#include "platform/scripting_array/scripting_array.hpp"

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <unordered_set>
#include <vector>

namespace embedded::scripting_runtime {
class Workspace;
}

namespace embedded::block_diagram {

class Diagram;
class System;

/// Where in a model file something was written. The empty place has line 0.
struct SourcePlace {
  std::shared_ptr<const std::string> file;
  int line = 0;
  int column = 0;
};

enum class Side { Left = 0, Right = 1 };

/// A net drawn by the user: two ports or more, or a named stub of one.
struct Line {
  std::vector<gtPort*> ports;
  ustring name;
  SourcePlace place;
};

/// Blocks by their names, without a second copy of these.
struct BlockNameHash {
  using is_transparent = void;
  std::size_t operator()(const GTBlock* block) const noexcept;
  std::size_t operator()(const ustring& name) const noexcept;
};
struct BlockNameEqual {
  using is_transparent = void;
  bool operator()(const GTBlock* a, const GTBlock* b) const noexcept;
  bool operator()(const ustring& name, const GTBlock* block) const noexcept;
  bool operator()(const GTBlock* block, const ustring& name) const noexcept { return (*this)(name, block); }
};

struct SystemData;

/// The contents of a diagram or of a subsystem block.
class System {
 public:
  ~System();

  Diagram& diagram() const { return *diagram_; }
  /// The subsystem block that this is the inside of; null at the top.
  GTBlock* owner() const { return owner_; }

  /// Places a copy of the prototype `type`, such as "physical/resistor", and lets it check its parameters.
  /// @throws "kinemo:host:diagram" "DuplicateBlock" (name, system path), "UnknownBlockType" (type, nearest or "")
  GTBlock& addBlock(const ustring& name, const std::string& type, const SourcePlace& place = {});
  /// Places an empty subsystem; `contents` gives its inside. @throws as above, and "TooDeep" (limit)
  GTBlock& addSubsystem(const ustring& name, const SourcePlace& place = {});
  /// Places an I/O port block; the subsystem's icon gets a port of that name. `order` sorts the ports of a side.
  /// @throws "DuplicateBlock", "PortAtTop" (name) in the system of a diagram
  GTBlock& addPort(const ustring& name, Side side, int order, const SourcePlace& place = {});
  /// Joins ports of blocks of this system. @throws "LineAcrossSystems" (port, system path)
  void addLine(const std::vector<gtPort*>& ports, const ustring& name = {}, const SourcePlace& place = {});

  /// Null for an unknown name.
  GTBlock* find(const ustring& name) const;
  const std::vector<GTBlock*>& blocks() const { return blocks_; }  ///< in the order of placing
  const std::vector<GTBlock*>& subsystems() const { return subsystems_; }
  const std::vector<GTBlock*>& ioPorts() const { return ioPorts_; }
  const std::vector<std::unique_ptr<Line>>& lines() const { return lines_; }
  /// Full path of the owner, or the diagram's name.
  ustring path() const;

 private:
  friend class Diagram;
  friend struct SystemAccess;
  System(Diagram& diagram, GTBlock* owner, int depth);

  Diagram* diagram_;
  GTBlock* owner_;
  int depth_;
  std::vector<GTBlock*> blocks_;
  std::vector<GTBlock*> subsystems_;
  std::vector<GTBlock*> ioPorts_;
  std::unordered_set<GTBlock*, BlockNameHash, BlockNameEqual> byName_;
  std::vector<std::unique_ptr<Line>> lines_;
  std::unique_ptr<SystemData> data_;
};

/// One open block diagram.
class Diagram {
 public:
  /// @throws "kinemo:host:diagram" "DiagramAlreadyOpen" (name), "InvalidModelName" (name) unless it is an identifier
  static Diagram& create(const std::string& name);
  static Diagram* find(const std::string& name);
  static std::vector<Diagram*> open();
  /// Raises the block-diagram event, then ends the diagram with all that it holds.
  static void close(Diagram& diagram);

  const std::string& name() const { return name_; }
  double handle() const;
  System& root() { return *root_; }
  const System& root() const { return *root_; }

  /// Model parameters ("settings"), texts by name; a few standing ones exist from the start
  /// ("InitializeInteractiveRuns" = "off", "DataDictionary" = "").
  void setParameter(const std::string& name, const ustring& value, const SourcePlace& place = {});
  /// Where the setting was written; line 0 where nobody said.
  SourcePlace parameterPlace(const std::string& name) const;
  const std::map<std::string, ustring>& parameters() const { return parameters_; }

  /// The model workspace. Variables with a unit or marked as run-time are "Gantrel.Parameter" objects with the
  /// properties "Value", "Unit" and "Runtime".
  scripting_runtime::Workspace& workspace() { return *workspace_; }
  /// Evaluates `expression` (over the workspaces and the dictionary) into a variable of the model workspace.
  void setVariable(const std::string& name, const ustring& expression, const std::string& unit, bool runtime);

  /// The block of a path without the diagram's name in front; null when there is none.
  GTBlock* findBlock(const ustring& path) const;
  std::size_t blockCount() const { return blockCount_; }

 private:
  friend class System;
  friend struct DiagramAccess;
  friend struct SystemAccess;
  explicit Diagram(const std::string& name);
  ~Diagram();

  std::string name_;
  std::unique_ptr<System> root_;
  std::map<std::string, ustring> parameters_;
  std::map<std::string, SourcePlace> parameterPlaces_;
  std::unique_ptr<scripting_runtime::Workspace> workspace_;
  std::size_t blockCount_ = 0;
  struct Object;
  std::unique_ptr<Object> object_;
};

// --- blocks

/// "SubSystem", "KMIOPort", or the block's own type such as "GL Core Block".
const std::string& blockType(const GTBlock& block);
/// The library name that the block was copied from; empty for subsystems and I/O ports.
const std::string& libraryName(const GTBlock& block);
/// The inside of a subsystem; null for any other block.
System* contents(const GTBlock& block);
System& parentSystem(const GTBlock& block);
SourcePlace sourcePlace(const GTBlock& block);

bool isSubsystem(const GTBlock& block);
bool isIoPort(const GTBlock& block);
bool isOpaque(const GTBlock& subsystem);
bool isVariant(const GTBlock& subsystem);
/// The active choice of a variant subsystem; null when it names none.
GTBlock* activeChoice(const GTBlock& variant);

/// Sets a parameter: of the block's mask, of its dialog ("LogSimulationData"), or one that the host keeps for every
/// block of the kind (subsystems: "TreatAsAtomicUnit", "Opaque", "Variant", "ActiveVariant", "ReferenceFile").
/// @throws "kinemo:host:diagram" "UnknownParameter" (name, block path, nearest or "")
void setParameter(GTBlock& block, const std::string& name, const ustring& text);
/// Text of a parameter as the user wrote it. @throws "UnknownParameter"
ustring parameter(const GTBlock& block, const std::string& name);
std::vector<std::string> parameterNames(const GTBlock& block);
/// A free property of the block, which object reflection shows as a "ustring"; for blocks of any kind.
void setProperty(GTBlock& block, const std::string& name, const ustring& text);
/// Lets the block check its parameters again after an edit, so that ports and mask follow. Errors are thrown.
void refresh(GTBlock& block);

/// Ports, left ones first.
std::vector<gtPort*> ports(const GTBlock& block);
/// The port of a subsystem's icon that an I/O port block stands for, and the reverse; null when there is none.
gtPort* outerPort(const GTBlock& ioPort);
GTBlock* ioPortOf(const gtPort& outer);
/// The port of a subsystem by the name of its I/O port block; null when there is none.
gtPort* subsystemPort(const GTBlock& subsystem, const ustring& name);
/// The lines that end at the port.
std::vector<const Line*> linesAt(const gtPort& port);
/// All ports of the net that the port belongs to, itself included. Nets are kept until the system is edited.
const std::vector<gtPort*>& netOf(const gtPort& port);

}  // namespace embedded::block_diagram
