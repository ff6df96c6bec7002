#include "embedded/graph_core_scripting/load.hpp"

#include "embedded/class_system/packages.hpp"
#include "embedded/graph_core_scripting/script_classes.hpp"
#include "embedded/scripting_runtime/evaluator.hpp"
#include "platform/class_system/gl_package.hpp"

namespace embedded::graph_core_scripting {

namespace {

class KinemoInfo : public ccos::COSPackageInfo {
 public:
  const char* getName() const override { return "kinemo"; }
  void setPackage(ccos::COSPackage* package) override { package_ = package; }
  ccos::COSPackage* package() const { return package_; }

 private:
  ccos::COSPackage* package_ = nullptr;
};

/// Loads a class when it is asked for.
class GlInfo : public ccos::COSPackageInfo {
 public:
  const char* getName() const override { return "gl"; }
  const char* getDescription() const override { return "Graphs of compiled models and their run-time parameters."; }
  void setPackage(ccos::COSPackage* package) override { package_ = package; }
  bool attemptToLoadClass(const ccos::COSNameID& name) override {
    const bool graph = name == "Graph";
    if (!graph && name != "RuntimeParameterInfo") return false;
    class_system::add_class(graph ? graph_class() : parameter_info_class());
    return true;
  }
  ccos::COSPackage* package() const { return package_; }

 private:
  ccos::COSPackage* package_ = nullptr;
};

ccos::COSPackage* make_gl_package() {
  auto* kinemo = new KinemoInfo();  // both stay, as the class system refers to them
  ccos::COSPackage::addPackage(kinemo);
  auto* gl = new GlInfo();
  kinemo->package()->addSubPackage(gl);
  return gl->package();
}

}  // namespace

void load() {
  gl::cvi::gl_package();
  for (const char* name : {graph_class_name, parameter_info_class_name}) class_system::find_class(name);
}

void throw_with_nearest(kmf::MessageException error, const std::string& name, const std::vector<std::string>& known) {
  const std::string nearest = scripting_runtime::nearest_name(name, known);
  if (!nearest.empty()) {
    error.addCause(
        kmf::MessageException(kmf::Message(kmf::MessageId("kinemo:scripting:runtime", "NearestName", nearest))));
  }
  throw error;
}

}  // namespace embedded::graph_core_scripting

ccos::COSPackage* gl::cvi::gl_package() {
  static ccos::COSPackage* const package = embedded::graph_core_scripting::make_gl_package();
  return package;
}
