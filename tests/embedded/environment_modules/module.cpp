// A domain module of one block, in the variants that a program may come across: VARIANT 0 is a good one, 1 is built for
// another interface, 2 fails while it loads, 3 is none at all, 4 brings a kernel that doesn't fit.

#include "platform/block_diagram/library.hpp"
#include "platform/block_diagram/mask.hpp"
#include "platform/foundation/exception.hpp"
#include "platform/scripting_runtime/function_table.hpp"

#include <boost/make_shared.hpp>

namespace {

class Part : public GTBlock {
 public:
  explicit Part(GtBlockContext* context) : GTBlock("Part", context) { setGrNumLeftConnectionPorts(2, nullptr); }
  GTBlock* clone() const override { return new Part(*this); }
  const char* getDomainName() const override { return "module_test"; }
  bool isPhysicalNetworkBlock() const override { return true; }
};

[[maybe_unused]] void load(GtBlockContext* context) {
  auto mask = boost::make_shared<GTMaskDefinition>();
  mask->type = "Part";
  mask->parameters.push_back({"R", "", u"1", GTPrmDesc::EDIT, "", {}});
  auto* part = new Part(context);
  MaskInterface::setMask(part, mask);
  gt_register_prototype("module_test/part", part);
  if (VARIANT == 2) kmf::throw_message("test", "LoadFailed");
}

[[maybe_unused]] void unload() {
  gt_unregister_prototypes("module_test/");
}

}  // namespace

#if VARIANT != 3
extern "C" __attribute__((visibility("default"))) const KinemoDomainModule kinemo_domain_module = {
    VARIANT == 1 ? KINEMO_DOMAIN_ABI + 41 : KINEMO_DOMAIN_ABI, "module_test", load, unload};
#endif

#if VARIANT == 4
extern "C" __attribute__((visibility("default"))) const cvFunctionTable* QueryCVFcnTable_kinemo_common_gl_gti_kernel() {
  static constexpr cvFunctionTable table{nullptr, 0x3defa4fb, 0x5a7a3667, 2};
  return &table;
}
#endif
