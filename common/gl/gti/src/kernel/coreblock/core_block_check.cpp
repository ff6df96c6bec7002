// The check of a core block's parameters, and the generated mask that follows it.

#include "common/gl/gti/export/common_block_params.hpp"
#include "common/gl/gti/export/core_block_facade.hpp"
#include "common/gl/gti/src/kernel/coreblock/core_block.hpp"
#include "common/gl/gti/src/kernel/coreblock/host_flags.hpp"
#include "platform/foundation/exception.hpp"
#include "platform/scripting_runtime/scripting_runtime.hpp"

#include <cstring>

namespace gl::gti {

namespace {

constexpr char group[] = "kinemo:common:gl:gti:core_block";

bool is_on(const char* text) {
  return text && std::strcmp(text, "on") == 0;
}

/// The block's own error around what its check has raised.
kmf::MessageException check_failed(const ustring& path, const kmf::Exception& cause) {
  kmf::MessageException error{kmf::Message(kmf::MessageId(group, "ParameterCheckFailed", path))};
  error.addObject(path);
  error.addCause(cause);
  return error;
}

/// Room for an array that a call may put there; ends it, also when the call fails.
struct Room {
  Room() = default;
  Room(const Room&) = delete;
  Room& operator=(const Room&) = delete;
  ~Room() { cvDestroyArray(array); }

  cvArray_tag* array = nullptr;
};

}  // namespace

void CoreBlock::checkParameters() {
  CoreBlockFacade facade(this);
  info_->checkParameters(facade);
  if (descriptor().loggingSupported()) return;
  if (is_on(facade.parameterValue(CommonBlockParams::get()->logSimulationData().get())))
    kmf::throw_message(group, "LoggingNotSupported", getFullPath(false));
}

void CoreBlock::checkDialogParameters(int mode) {
  try {
    checkParameters();
  } catch (const kmf::Exception& cause) {
    const kmf::MessageException error = check_failed(getFullPath(false), cause);
    // Ports and icon follow whatever the descriptor says now, so that the user sees the state that failed.
    updateFromDescriptor();
    kmf::ExceptionSupport::rethrow(error);
  }
  updateFromDescriptor();
  if (mode == 0) refreshGeneratedMask("", true);
}

void CoreBlock::updateFromDescriptor() {
  const BlockDescriptor& now = descriptor();
  blockText_ = now.blockText();
  rotateImage_ = now.rotateImage();
  physicalPortRotation_ = now.physicalPortRotation();
  configurePorts(now);
  updateIcon(now);
}

bool CoreBlock::holdsGeneratedMask() const {
  return (flags().block & host_flags::BLOCK_GENERATED_MASK) != 0;
}

void CoreBlock::refreshGeneratedMask(const std::string&, bool active) {
  if (!active || !holdsGeneratedMask() || !descriptor().autogenMask()) return;
  const BlockDescriptor::MaskAutogenOptions options = *descriptor().autogenMask();
  kmf::CvCleaner cleaner;
  cvArray_tag* handle = cleaner.createScalarDouble(getHandle());
  gtsvSetLocalScope(handle);
  Room output;
  GTDiagnostic* diagnostic = context()->runMaskGenerator(this, options.function, handle, &output.array, 0, ustring(),
                                                         options.flag1, options.flag2, options.flag3);
  if (diagnostic) ThrowException(diagnostic);
}

void CoreBlock::updateGeneratedMask() {
  if (holdsGeneratedMask()) refreshGeneratedMask("", true);
}

const char* CoreBlock::getGeneratedMaskText() const {
  const auto& options = descriptor().autogenMask();
  return options ? options->text : nullptr;
}

}  // namespace gl::gti
