#pragma once

#include "common/gl/gti/export/api.hpp"
#include "platform/block_diagram/block.hpp"
#include "platform/block_diagram/dialog.hpp"

#include <boost/shared_ptr.hpp>

namespace gl::gti {

class CoreBlockFacade;

/// The dialog parameters that every core block has. A client's own list derives from it.
class KINEMO_GTI_API CommonBlockParams : public GTPrmDescList {
 public:
  using BooleanParameter = GTBooleanPrmDesc<GTBlock, GTBlock>;

  CommonBlockParams(const CommonBlockParams& other);
  CommonBlockParams(CommonBlockParams&& other) noexcept;
  CommonBlockParams& operator=(const CommonBlockParams& other);
  CommonBlockParams& operator=(CommonBlockParams&& other) noexcept;
  ~CommonBlockParams() override;

  /// Gives further parameters of a derived list their defaults; nothing unless overridden.
  virtual void setDefaultParameterValue(CoreBlockFacade& block);

  /// The one instance of the common list; never ends.
  static CommonBlockParams* get();

  /// Writes the defaults of the common parameters, then calls `setDefaultParameterValue`.
  void setDefaultParameterValues(CoreBlockFacade& block);
  /// The common logging parameter, "LogSimulationData".
  const boost::shared_ptr<BooleanParameter>& logSimulationData() const { return logSimulationData_; }

 protected:
  CommonBlockParams();

 private:
  static const char* getBlockDescription();

  boost::shared_ptr<BooleanParameter> logSimulationData_;
};

}  // namespace gl::gti
