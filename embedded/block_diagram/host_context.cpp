// The host's services for its blocks.

#include "embedded/block_diagram/host_functions.hpp"
#include "platform/block_diagram/block.hpp"
#include "platform/foundation/exception.hpp"
#include "platform/scripting_runtime/scripting_runtime.hpp"

namespace embedded::block_diagram {

namespace {

class HostContext : public GtBlockContext {
 public:
  GTDiagnostic* runMaskGenerator(GTBlock*, const std::string& function, cvArray_tag* input, cvArray_tag** room, int,
                                 const ustring&, bool, bool, bool) override {
    try {
      // A generator works on the block; it has nothing to return, so `room` stays empty.
      kmf::call_internal_corvane(0, room, 1, &input, function.c_str());
    } catch (const kmf::Exception& error) {
      return new GTDiagnostic{"kinemo:host:block", "MaskGeneratorFailed", function + ": " + error.what()};
    }
    return nullptr;
  }
};

}  // namespace

GtBlockContext& hostContext() {
  static HostContext* const instance = new HostContext;  // outlives the blocks of every module
  return *instance;
}

}  // namespace embedded::block_diagram
