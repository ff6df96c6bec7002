#pragma once

#include "common/gl/gti/export/block_data.hpp"
#include "common/gl/gti/export/block_descriptor.hpp"
#include "common/gl/gti/export/component_embedding.hpp"
#include "common/gl/gti/export/core_block_info.hpp"
#include "common/gl/gti/export/parameter_rewrites.hpp"
#include "platform/block_diagram/block.hpp"
#include "platform/scripting_array/scripting_array.hpp"

#include <boost/optional.hpp>
#include <boost/shared_ptr.hpp>

#include <filesystem>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace kmf {
class CvCleaner;
}

namespace gl::gti {

class TranslationConfiguration;

/// The host block that stands for one element of a physical network. The host owns it; it owns its clone of the
/// client's `CoreBlockInfo`, which says what it looks like and what it turns into. A copy comes to life without ports
/// and is filled at its first check of parameters.
class CoreBlock : public GTBlock {
 public:
  CoreBlock(const CoreBlockInfo& info, const std::string& domain, GtBlockContext* context);
  CoreBlock(const CoreBlock& other);
  CoreBlock& operator=(const CoreBlock&) = delete;

  // --- for entries, facades and prototypes
  /// Gives a new prototype its name, its flags and its dialog parameters.
  void initializePrototype();
  const BlockDescriptor& descriptor() const { return info_->descriptor(); }
  ComponentEmbedding makeEmbedding(const TranslationConfiguration& config, const BlockData& data);
  void applyRuntimeParameters(const ParameterSetter& setter, const ParameterRewrites& rewrites);
  /// Identifier of the port with this handle, which must be a port of this block.
  const std::string& portName(double portHandle);
  /// A row of the ports' identifiers as texts, held by `cleaner`; null for no ports.
  static cvArray_tag* portIdCell(const std::vector<detail::PortInfo>& ports, kmf::CvCleaner& cleaner);

  // --- operations of the host
  ~CoreBlock() override;
  void refreshGeneratedMask(const std::string& reason, bool active) override;
  ustring getGrLeftPortUnit(int i) override;
  ustring getGrRightPortUnit(int i) override;
  GTExecBlock* createExecBlock() override;
  GTBlock* clone() const override;
  void drawIcon(GTWindow* window, const GTBounds& bounds) const override;
  void setIconPortLabels(IconData& icon) const override;
  void updateGeneratedMask() override;
  const char* getDomainName() const override;
  bool isPhysicalNetworkBlock() const override;
  bool usesPhysicalPortRotation() const override;
  void ignoreNotification() override;
  void markHostFlag() override;
  void writeNothing() override;
  void checkDialogParameters(int mode) override;
  const char* getGeneratedMaskText() const override;
  bool alwaysTrue() const override;
  void getIconStyleName(gtsvString& out) const override;
  bool alwaysFalse() const override;

 private:
  bool holdsGeneratedMask() const;
  /// Lets the client check, then refuses logging where the kind doesn't support it.
  void checkParameters();
  /// Brings texts, switches, ports and icon in line with the client's descriptor.
  void updateFromDescriptor();
  void configurePorts(const BlockDescriptor& descriptor);
  bool portsAreAsIn(const BlockDescriptor& descriptor) const;
  void configurePort(gtPort* port, const detail::PortInfo& info);
  void fillPortNames();
  /// Brings the icon in line with another icon file. A bad file costs a warning.
  void updateIcon(const BlockDescriptor& descriptor);
  void updateBitmap(const std::filesystem::path& file, bool permute);
  /// Takes over `image`, in place of the present one.
  void setIconImage(cvArray_tag* image);
  bool isDrawnByIconService() const;
  void drawPortLabels(GTWindow* window, const GTBounds& bounds) const;

  boost::shared_ptr<CoreBlockInfo> info_;
  std::string domain_;
  std::set<kmf::VnId> portIds_;
  std::vector<detail::PortInfo> leftPorts_;  ///< as last configured
  std::vector<detail::PortInfo> rightPorts_;
  std::map<double, std::string> portNames_;          ///< by port handle; a cache, empty until it is asked for
  cvArray_tag* iconImage_ = nullptr;                 ///< owned, of scope 0
  boost::optional<std::filesystem::path> iconFile_;  ///< the file now in force
  ustring blockText_;
  bool rotateImage_ = false;
  bool physicalPortRotation_ = false;
};

/// Whether the handle names a block of this class.
bool isCoreBlock(double handle);
/// Null where `isCoreBlock` is false.
CoreBlock* coreBlockOf(double handle);

}  // namespace gl::gti
