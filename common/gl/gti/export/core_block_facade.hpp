#pragma once

#include "common/gl/gti/export/api.hpp"
#include "platform/foundation/ustring.hpp"

#include <cstddef>
#include <map>
#include <string>

class GTPrmDesc;
class GTPrmDescList;
struct gtParam_tag;

namespace gl::gti {

class CoreBlock;

/// What clients see of a core block. Doesn't own the block, and lives no longer than the call that made it.
class KINEMO_GTI_API CoreBlockFacade {
 public:
  explicit CoreBlockFacade(CoreBlock* block) : block_(block) {}

  double handle() const;

  /// The evaluated value of a dialog parameter.
  gtParam_tag* evaluatedParamValue(const GTPrmDesc* param) const;
  gtParam_tag* evaluatedParamValue(std::size_t index) const;
  /// The text of a dialog parameter; null where the block has no such parameter.
  const char* parameterValue(const GTPrmDesc* param) const;
  const char* parameterValue(std::size_t index) const;
  void parameterValue(const GTPrmDesc* param, const char* value);
  void parameterValue(std::size_t index, const char* value);

  /// The identifier of a port of this block.
  std::string portName(double portHandle) const;
  /// Declares the block's dialog parameters. The list must outlive the block and its copies.
  void registerParameters(GTPrmDescList* list);
  /// Names and texts of the parameters of the nearest mask: "on" or "off" of a boolean, the text of a string, and an
  /// empty text of any other type.
  std::map<std::string, ustring> maskParams() const;

 private:
  CoreBlock* block_;
};

/// @throws "kinemo:common:gl:gti:core_block" "HandleNotCoreBlock" (handle)
KINEMO_GTI_API CoreBlockFacade handle_to_core_block(double handle);
KINEMO_GTI_API bool is_handle_to_core_block(double handle);

}  // namespace gl::gti
