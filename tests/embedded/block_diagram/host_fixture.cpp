#include "host_fixture.hpp"

#include "embedded/block_diagram/host_functions.hpp"
#include "platform/block_diagram/library.hpp"
#include "platform/block_diagram/mask.hpp"
#include "platform/foundation/strings.hpp"
#include "platform/scripting_runtime/scripting_runtime.hpp"

#include <boost/make_shared.hpp>

namespace host_tests {

namespace {

boost::shared_ptr<GTMaskDefinition> maskOfResistor() {
  auto mask = boost::make_shared<GTMaskDefinition>();
  mask->type = "Resistor";
  mask->parameters = {{"R", "Resistance", u"100", GTPrmDesc::EDIT, "Ohm", {}},
                      {"mode", "Mode", u"fast", GTPrmDesc::POPUP, "", {"fast", "slow"}},
                      {"label", "Label", u"", GTPrmDesc::STRING, "", {}},
                      {"flag", "Flag", u"off", GTPrmDesc::BOOLEAN, "", {}}};
  return mask;
}

}  // namespace

TestBlock::TestBlock(const char* domain, int left, int right) : GTBlock("Test Block", &hostContext()), domain_(domain) {
  setGrNumLeftConnectionPorts(left, nullptr);
  setGrNumRightConnectionPorts(right, nullptr);
}

void TestBlock::checkDialogParameters(int) {
  ++checks;
  if (MaskInterface::mask(this) && parameter(*this, "label") == u"fails")
    kmf::throw_message("test", "CheckFailed", getFullPath(true));
}

void HostTest::SetUp() {
  arrays_ = cvLiveArrayCount();
  registerHostFunctions();
  gt_register_prototype("test/two", new TestBlock("test", 1, 1));
  gt_register_prototype("test/left3", new TestBlock("test", 3, 0));
  gt_register_prototype("test/many", new TestBlock("test", 1000, 1000));
  gt_register_prototype("test/none", new TestBlock("test", 0, 0));
  auto* masked = new TestBlock("test", 1, 1);
  MaskInterface::setMask(masked, maskOfResistor());
  gt_register_prototype("test/masked", masked);
}

void HostTest::TearDown() {
  for (Diagram* diagram : Diagram::open()) Diagram::close(*diagram);
  gt_unregister_prototypes("test/");
  unregisterHostFunctions();
  EXPECT_EQ(cvLiveArrayCount(), arrays_) << "arrays are still alive";
}

cvUniquePtr HostTest::call(const char* function, std::vector<cvUniquePtr> inputs) {
  std::vector<cvArray_tag*> lent;
  for (const cvUniquePtr& input : inputs) lent.push_back(input.get());
  cvArray_tag* output = nullptr;
  kmf::call_internal_corvane(1, &output, static_cast<int>(lent.size()), lent.data(), function);
  return cvUniquePtr(output);
}

cvUniquePtr HostTest::getParam(const GTBlock& block, const std::string& name) {
  std::vector<cvUniquePtr> inputs;
  inputs.push_back(number(block.getHandle()));
  inputs.push_back(host_tests::text(name));
  return call("get_param", std::move(inputs));
}

std::string HostTest::text(const cvUniquePtr& array) {
  return kmf::cvarray_to_string(array.get());
}

cvUniquePtr number(double value) {
  return cvUniquePtr(cvCreateDoubleScalar(value));
}
cvUniquePtr text(const std::string& utf8) {
  return cvUniquePtr(cvCreateString(utf8));
}

gtPort* left(GTBlock& block, int i) {
  return block.getGrLeftConnectionPort(i);
}
gtPort* right(GTBlock& block, int i) {
  return block.getGrRightConnectionPort(i);
}

}  // namespace host_tests
