#include "common/gl/gti/export/common_block_params.hpp"

#include "common/gl/gti/export/core_block_facade.hpp"

#include <boost/make_shared.hpp>

#include <cstdint>

namespace gl::gti {

namespace {

// Category and attributes are the host's numbers for a boolean parameter that its dialogs show.
constexpr int parameter_category = 14;
constexpr std::uint64_t parameter_attributes = 0x580201015;

}  // namespace

CommonBlockParams::CommonBlockParams()
    : logSimulationData_(boost::make_shared<BooleanParameter>("LogSimulationData", parameter_category,
                                                              parameter_attributes, GTPrmOptions())) {
  logSimulationData_->setPrompt("Block Logging:");
  addPrmDesc(logSimulationData_);
}

CommonBlockParams::CommonBlockParams(const CommonBlockParams& other) = default;
CommonBlockParams::CommonBlockParams(CommonBlockParams&& other) noexcept = default;
CommonBlockParams& CommonBlockParams::operator=(const CommonBlockParams& other) = default;
CommonBlockParams& CommonBlockParams::operator=(CommonBlockParams&& other) noexcept = default;
CommonBlockParams::~CommonBlockParams() = default;

CommonBlockParams* CommonBlockParams::get() {
  static CommonBlockParams* instance = nullptr;
  if (!instance) instance = new CommonBlockParams();
  return instance;
}

const char* CommonBlockParams::getBlockDescription() {
  return "Kinemo block";
}

void CommonBlockParams::setDefaultParameterValues(CoreBlockFacade& block) {
  block.parameterValue(logSimulationData_.get(), "OFF");
  setDefaultParameterValue(block);
}

void CommonBlockParams::setDefaultParameterValue(CoreBlockFacade&) {}

}  // namespace gl::gti
