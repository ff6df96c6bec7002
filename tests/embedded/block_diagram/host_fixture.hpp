#pragma once

// A host with a small library of blocks, for tests. Whatever a test leaves open is closed behind it, and arrays that
// are still alive then fail it.

#include "embedded/block_diagram/diagram.hpp"
#include "platform/block_diagram/block.hpp"
#include "platform/foundation/exception.hpp"
#include "platform/scripting_array/scripting_array.hpp"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace host_tests {

using namespace embedded::block_diagram;

/// A block of the domain "test" with ports on both sides. It fails its check while its text "Fails" is "on".
class TestBlock : public GTBlock {
 public:
  TestBlock(const char* domain, int left, int right);
  GTBlock* clone() const override { return new TestBlock(*this); }
  const char* getDomainName() const override { return domain_; }
  bool isPhysicalNetworkBlock() const override { return true; }
  void checkDialogParameters(int mode) override;

  int checks = 0;

 private:
  const char* domain_;
};

/// Library: "test/two" (one port left, one right), "test/left3" (three ports left), "test/many" (1000 left, 1000
/// right), "test/masked" (as "two", with a mask R, mode, label and flag), "test/none" (no port).
class HostTest : public testing::Test {
 protected:
  void SetUp() override;
  void TearDown() override;

  Diagram& newDiagram(const std::string& name = "model") { return Diagram::create(name); }

  /// Calls a function of the runtime by name with arrays that are released behind it; the result is the caller's.
  static cvUniquePtr call(const char* function, std::vector<cvUniquePtr> inputs);
  static cvUniquePtr getParam(const GTBlock& block, const std::string& name);
  static std::string text(const cvUniquePtr& array);

 private:
  std::size_t arrays_ = 0;
};

cvUniquePtr number(double value);
cvUniquePtr text(const std::string& utf8);

/// Left and right ports of a block by position.
gtPort* left(GTBlock& block, int i = 0);
gtPort* right(GTBlock& block, int i = 0);

/// What `action` raises, as "group:id(arg, arg)"; empty when it raises nothing.
template <class Action>
std::string errorOf(Action action) {
  try {
    action();
  } catch (const kmf::Exception& error) {
    const kmf::ErrorData data = error.data();
    std::string result = data.group + ":" + data.id + "(";
    for (std::size_t i = 0; i < data.arguments.size(); ++i) result += (i ? ", " : "") + data.arguments[i];
    return result + ")";
  }
  return {};
}

}  // namespace host_tests
