#pragma once

#include "common/gl/gti/export/api.hpp"
#include "common/gl/gti/export/port_info.hpp"
#include "platform/foundation/ustring.hpp"
#include "platform/foundation/vn_id.hpp"

#include <boost/optional.hpp>

#include <cstddef>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace gl::gti {

/// The static look of one kind of core block: text, icon, ports and a few switches. A client fills one for each block
/// kind and hands it out through `CoreBlockInfo`; the block reads it each time its parameters are processed.
class KINEMO_GTI_API BlockDescriptor {
 public:
  /// A request to generate the block's mask.
  struct MaskAutogenOptions {
    kmf::VnIdPath1 function;  ///< scripting function that generates the mask
    const char* text;         ///< told to the host as it stands; of static lifetime
    bool flag1;               ///< the flags are handed to the generating call in this order
    bool flag2;
    bool flag3;
  };

  BlockDescriptor();
  BlockDescriptor(const BlockDescriptor& other);
  BlockDescriptor& operator=(const BlockDescriptor& other);
  ~BlockDescriptor();

  // --- texts and icon
  /// Text of the block's dialog.
  void description(const ustring& text) { description_ = text; }
  const ustring& description() const { return description_; }
  /// Text of a text icon, and the name that a new block takes.
  void blockText(const ustring& text) { blockText_ = text; }
  const ustring& blockText() const { return blockText_; }
  void iconFile(const boost::optional<std::filesystem::path>& file) { iconFile_ = file; }
  const boost::optional<std::filesystem::path>& iconFile() const { return iconFile_; }

  // --- switches
  /// Draw the block's frame.
  void enableFrame(bool flag) { enableFrame_ = flag; }
  bool enableFrame() const { return enableFrame_; }
  /// The block may log simulation data.
  void loggingSupported(bool flag) { loggingSupported_ = flag; }
  bool loggingSupported() const { return loggingSupported_; }
  /// Exchange the first two dimensions of a bitmap icon.
  void permuteImage(bool flag) { permuteImage_ = flag; }
  bool permuteImage() const { return permuteImage_; }
  /// The icon rotates with the block.
  void rotateImage(bool flag) { rotateImage_ = flag; }
  bool rotateImage() const { return rotateImage_; }
  void physicalPortRotation(bool flag) { physicalPortRotation_ = flag; }
  bool physicalPortRotation() const { return physicalPortRotation_; }
  /// The block takes its ports from this descriptor.
  void portConfigurationEnabled(bool flag) { portConfigurationEnabled_ = flag; }
  bool portConfigurationEnabled() const { return portConfigurationEnabled_; }

  // --- ports
  /// Appends a port. An identifier is unique over both sides.
  /// @throws "kinemo:common:gl:gti:core_block" "PortAlreadyExists" (identifier); the descriptor is unchanged then
  void addLeftPort(const kmf::VnId& id, const ustring& label, const std::string& type, const ustring& unit);
  /// @throws as `addLeftPort`
  void addRightPort(const kmf::VnId& id, const ustring& label, const std::string& type, const ustring& unit);
  void clearLeftPorts();
  void clearRightPorts();
  const std::vector<detail::PortInfo>& leftPorts() const { return leftPorts_; }
  const std::vector<detail::PortInfo>& rightPorts() const { return rightPorts_; }
  std::size_t numLeftPorts() const { return leftPorts_.size(); }
  std::size_t numRightPorts() const { return rightPorts_.size(); }

  // --- generated mask
  /// Asks for a generated mask, in place of an earlier request. `text` isn't copied.
  void autogenMask(const kmf::VnIdPath1& function, const char* text, bool flag1, bool flag2, bool flag3);
  const boost::optional<MaskAutogenOptions>& autogenMask() const { return autogenMask_; }
  void clearAutogenMask();

 private:
  void addPort(std::vector<detail::PortInfo>& side, const detail::PortInfo& port);
  void clearPorts(std::vector<detail::PortInfo>& side);

  ustring description_;
  boost::optional<std::filesystem::path> iconFile_;
  ustring blockText_;
  bool permuteImage_ = false;
  bool rotateImage_ = true;
  bool physicalPortRotation_ = true;
  std::map<kmf::VnId, detail::PortInfo> ports_;
  std::vector<detail::PortInfo> leftPorts_;
  std::vector<detail::PortInfo> rightPorts_;
  bool portConfigurationEnabled_ = true;
  bool enableFrame_ = true;
  bool loggingSupported_ = false;
  boost::optional<kmf::VnIdPath1> category_;  ///< room kept in the layout; nothing sets or reads it
  boost::optional<MaskAutogenOptions> autogenMask_;
};

}  // namespace gl::gti
