#pragma once

#include "platform/block_diagram/dialog.hpp"
#include "platform/scripting_array/scripting_array.hpp"

#include <boost/shared_ptr.hpp>

#include <string>
#include <vector>

struct GTBounds;
struct GTWindow;
class GTBlock;

/// One dialog parameter of a mask.
struct GTMaskParameter {
  std::string name;                        ///< an identifier
  std::string prompt;                      ///< what the dialog shows
  ustring value;                           ///< text of the default
  GTPrmDesc::Type type = GTPrmDesc::EDIT;  ///< an EDIT text is evaluated; STRING and POPUP are taken as they stand
  std::string unit;                        ///< unit of the default, for documentation; may be empty
  std::vector<std::string> choices;        ///< of a POPUP
};

/// The parameters of a mask. Shared by all blocks that have the same mask; never changed once a block has it.
struct GTMaskDefinition {
  std::string type;         ///< name of the mask, such as "Resistor"
  std::string description;  ///< text of the dialog
  std::vector<GTMaskParameter> parameters;
};

struct GTMask;

/// Dialog information of the parameters of one mask.
KINEMO_PLATFORM_API GTDialogInfo* gt_mask_dialog_info(GTMask* mask);

class KINEMO_PLATFORM_API MaskInterface {
 public:
  /// Gives the block a mask, in place of an earlier one. Values of parameters that both have are kept.
  static void setMask(GTBlock* block, const boost::shared_ptr<const GTMaskDefinition>& definition);
  /// Null for a block without a mask.
  static boost::shared_ptr<const GTMaskDefinition> mask(const GTBlock* block);
  /// Values of the parameter `i` of the nearest mask of `block`.
  static bool getMaskDialogValueBoolean(const GTBlock* block, int i);
  static ustring getMaskDialogValueString(const GTBlock* block, int i);
  /// Draws a true colour image (rows x columns x 3) into the bounds, as large as its proportions allow. With `rotate`
  /// it turns with the block. `location` is a GTImageLocation.
  static void renderBlockImageByLocation(GTWindow* window, const GTBlock* block, const cvArray_tag* image,
                                         const GTBounds& bounds, bool rotate, int location);
};

/// Walks from a block's own mask outward through the masks of the subsystems around it.
class KINEMO_PLATFORM_API GTMaskReverseHierarchyIterator {
 public:
  explicit GTMaskReverseHierarchyIterator(const GTBlock* block, const GTMask* start = nullptr);
  bool hasNext() const;
  GTMask* next();

 private:
  GTMask* next_;
};
