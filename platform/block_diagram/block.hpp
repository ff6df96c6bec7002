#pragma once

// The block classes of the host. Virtual operations stand in the host's order; those that neither a block class
// overrides nor the embedded host calls are left out.

#include "platform/block_diagram/object.hpp"
#include "platform/block_diagram/port.hpp"

#include <cstddef>
#include <cstdint>
#include <string>

struct cvArray_tag;
struct GTBounds;
struct GTColor;
struct GTDialogInfo;
struct gtParam_tag;
struct GTBlockHostData;
struct GTWindow;
class GTPrmDesc;
class IconData;
class GTExecBlock;
class GTBlock;

/// An error that the host made but did not throw. Whoever gets one hands it to `GTBlock::ThrowException`.
struct GTDiagnostic {
  std::string group;
  std::string id;
  std::string text;
};

/// What surrounds a block: the services of the host that made it.
class KINEMO_PLATFORM_API GtBlockContext {
 public:
  virtual ~GtBlockContext();
  /// Runs the scripting function at a dotted path that generates the mask of `block`. `room` takes one output array,
  /// which the caller owns. Null, or a diagnostic.
  virtual GTDiagnostic* runMaskGenerator(GTBlock* block, const std::string& function, cvArray_tag* input,
                                         cvArray_tag** room, int options, const ustring& text, bool flag1, bool flag2,
                                         bool flag3) = 0;
};

/// What the host knows of a block's place.
class KINEMO_PLATFORM_API GTRootBlockPlatformInfo {
 public:
  explicit GTRootBlockPlatformInfo(const GTBlock* block) : block_(block) {}
  ustring getGrFullPathNameUnicode(bool withLineFeeds) const;

 private:
  const GTBlock* block_;
};

class KINEMO_PLATFORM_API GTRootBlock : public GantrelObject {
 public:
  int getGantrelObjectType() const override;
  double getHandle() const override = 0;
  ~GTRootBlock() override;
};

class KINEMO_PLATFORM_API GTCompBlock : public GTRootBlock {
 public:
  ~GTCompBlock() override;
};

/// One block of a diagram or of a library. The host owns it.
class KINEMO_PLATFORM_API GTBlock : public GTCompBlock {
 public:
  /// A block of a type that belongs to no system yet.
  GTBlock(const char* blockType, GtBlockContext* context);
  GTBlock(const GTBlock& other);
  GTBlock& operator=(const GTBlock&) = delete;

  static void* operator new(std::size_t size);
  static void operator delete(void* memory);

  // --- virtual operations, in the host's order
  double getHandle() const override;
  ~GTBlock() override;
  virtual void refreshGeneratedMask(const std::string& reason, bool active);
  virtual ustring getGrLeftPortUnit(int i);
  virtual ustring getGrRightPortUnit(int i);
  virtual GTExecBlock* createExecBlock();
  virtual GTBlock* clone() const;
  /// Draws what the host's icon service doesn't draw.
  virtual void drawIcon(GTWindow* window, const GTBounds& bounds) const;
  /// Tells the labels of the ports where the icon service draws them.
  virtual void setIconPortLabels(IconData& icon) const;
  virtual void updateGeneratedMask();
  virtual const char* getDomainName() const;
  virtual bool isPhysicalNetworkBlock() const;
  virtual bool usesPhysicalPortRotation() const;
  virtual void ignoreNotification();
  virtual void markHostFlag();
  virtual void writeNothing();
  /// Called after the dialog parameters have been evaluated. `mode` is 0 when the user or a program edits the block, 1
  /// in a compile. Errors are thrown.
  virtual void checkDialogParameters(int mode);
  virtual const char* getGeneratedMaskText() const;
  virtual bool alwaysTrue() const;
  /// The key of a registered icon, or "KinemoBlockWithBorder" or "KinemoBlockNoBorder".
  virtual void getIconStyleName(gtsvString& out) const;
  virtual bool alwaysFalse() const;

  // --- name and place
  void setGrName(const ustring& name);
  const ustring& getGrName() const;
  /// Full path with the diagram's name in front; line feeds become blanks where `sanitized`.
  ustring getFullPath(bool sanitized) const;
  const GTRootBlockPlatformInfo platformInfo() const { return GTRootBlockPlatformInfo(this); }
  /// Null for a number that names no block.
  static GTBlock* Handle2Block(double handle);

  // --- ports
  void setGrNumInputPorts(int count, void* options, int minimum);
  void setGrNumOutputPorts(int count, void* options);
  int getGrNumLeftConnectionPorts() const;
  int getGrNumRightConnectionPorts() const;
  /// Keeps the ports that stay in range, with their handles and lines; lines of the others end.
  void setGrNumLeftConnectionPorts(int count, void* options);
  void setGrNumRightConnectionPorts(int count, void* options);
  gtPort* getGrLeftConnectionPort(int i) const;
  gtPort* getGrRightConnectionPort(int i) const;

  // --- dialog parameters
  GTDialogInfo* getDialogInfo() const;
  gtParam_tag* getGrEDP(const GTPrmDesc* parameter) const;
  gtParam_tag* getGrEDP(int index) const;
  void setGrPrmValue(const GTPrmDesc* parameter, const char* value);
  void setGrParamValue(std::size_t index, const char* value);
  /// Null where the block has no such parameter.
  const char* getGrPrmValue(const GTPrmDesc* parameter) const;
  const char* getGrParamValue(std::size_t index, bool evaluated) const;

  // --- drawing
  const GTColor* getGrForegroundColorPtr() const;
  /// Draws a label inside of the bounds, beside the port `index` of a side.
  void DrawLeftConnectionPortLabel(GTWindow* window, const GTBounds& bounds, int index, const ustring& label) const;
  void DrawRightConnectionPortLabel(GTWindow* window, const GTBounds& bounds, int index, const ustring& label) const;

  // --- the host's flag words
  struct Flags {
    std::uint32_t attributes = 0;
    std::uint32_t block = 0;
    std::uint32_t block2 = 0;
    std::uint32_t block3 = 0;
    std::uint32_t compile = 0;
  };
  Flags& flags();
  const Flags& flags() const;

  GtBlockContext* context() const;
  /// Throws the diagnostic as an error on this block and ends it.
  [[noreturn]] void ThrowException(GTDiagnostic* diagnostic) const;

  GTBlockHostData& host() const { return *host_; }

 private:
  GTBlockHostData* host_;
};

/// What a block leaves behind for execution.
class KINEMO_PLATFORM_API GTExecBlock {
 public:
  virtual ~GTExecBlock();
};
