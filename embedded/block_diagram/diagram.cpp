#include "embedded/block_diagram/diagram.hpp"

#include "embedded/block_diagram/block_data.hpp"
#include "embedded/block_diagram/data_dictionary.hpp"
#include "embedded/block_diagram/diagram_object.hpp"
#include "embedded/block_diagram/edit.hpp"
#include "embedded/block_diagram/events.hpp"
#include "embedded/block_diagram/handles.hpp"
#include "embedded/block_diagram/paths.hpp"
#include "embedded/block_diagram/system_data.hpp"
#include "embedded/scripting_runtime/workspace.hpp"
#include "platform/foundation/exception.hpp"
#include "platform/foundation/strings.hpp"
#include "platform/foundation/vn_id.hpp"

#include <algorithm>

GTBlockDiagram::GTBlockDiagram(embedded::block_diagram::Diagram& diagram)
    : diagram_(&diagram), handle_(embedded::block_diagram::mintHandle(this)) {}
GTBlockDiagram::~GTBlockDiagram() {
  embedded::block_diagram::releaseHandle(handle_);
}

namespace embedded::block_diagram {

struct Diagram::Object {
  GTBlockDiagram object;
};

struct DiagramAccess {
  static Diagram* make(const std::string& name) { return new Diagram(name); }
  static void end(Diagram* diagram) { delete diagram; }
  static GTBlockDiagram& object(const Diagram& diagram) { return diagram.object_->object; }
  static std::map<std::string, ustring>& parameters(Diagram& diagram) { return diagram.parameters_; }
  static void forgetPlace(Diagram& diagram, const std::string& name) { diagram.parameterPlaces_.erase(name); }
};

namespace {

/// What every diagram has, as a new one has it.
const std::map<std::string, ustring>& standingParameters() {
  static const std::map<std::string, ustring> all{{"DataDictionary", u""}, {"InitializeInteractiveRuns", u"off"}};
  return all;
}

/// In the order of opening. Never destroyed: whoever opens diagrams closes them.
std::vector<Diagram*>& diagrams() {
  static auto* const instance = new std::vector<Diagram*>;
  return *instance;
}

}  // namespace

GTBlockDiagram* diagramObject(const Diagram& diagram) {
  return &DiagramAccess::object(diagram);
}

Diagram& Diagram::create(const std::string& name) {
  if (!kmf::VnId::isLegal(name)) kmf::throw_message("kinemo:host:diagram", "InvalidModelName", name);
  if (find(name)) kmf::throw_message("kinemo:host:diagram", "DiagramAlreadyOpen", name);
  Diagram* diagram = DiagramAccess::make(name);
  diagrams().push_back(diagram);
  return *diagram;
}

Diagram* Diagram::find(const std::string& name) {
  for (Diagram* diagram : diagrams()) {
    if (diagram->name() == name) return diagram;
  }
  return nullptr;
}

std::vector<Diagram*> Diagram::open() {
  return diagrams();
}

void Diagram::close(Diagram& diagram) {
  /// The diagram goes away even if a listener fails.
  struct Ending {
    Diagram* diagram;
    ~Ending() {
      auto& all = diagrams();
      all.erase(std::remove(all.begin(), all.end(), diagram), all.end());
      DiagramAccess::end(diagram);
    }
  } const ending{&diagram};
  raiseBlockDiagramEvent(diagram.object_->object);
}

Diagram::Diagram(const std::string& name)
    : name_(name),
      root_(SystemAccess::make(*this, nullptr, 0)),
      parameters_(standingParameters()),
      workspace_(std::make_unique<scripting_runtime::Workspace>()),
      object_(new Object{GTBlockDiagram(*this)}) {}

Diagram::~Diagram() {
  SystemAccess::destroy(std::move(root_));
}

double Diagram::handle() const {
  return object_->object.getHandle();
}

void Diagram::setParameter(const std::string& name, const ustring& value, const SourcePlace& place) {
  checkSettingName(*this, name);
  parameters_[name] = value;
  parameterPlaces_[name] = place;
}

bool clearSetting(Diagram& diagram, const std::string& name) {
  std::map<std::string, ustring>& parameters = DiagramAccess::parameters(diagram);
  const auto found = parameters.find(name);
  if (found == parameters.end()) return false;
  const auto standing = standingParameters().find(name);
  if (standing != standingParameters().end()) {
    found->second = standing->second;
  } else {
    parameters.erase(found);
  }
  DiagramAccess::forgetPlace(diagram, name);
  return true;
}

SourcePlace Diagram::parameterPlace(const std::string& name) const {
  const auto found = parameterPlaces_.find(name);
  return found == parameterPlaces_.end() ? SourcePlace{} : found->second;
}

void Diagram::setVariable(const std::string& name, const ustring& expression, const std::string& unit, bool runtime) {
  if (!kmf::VnId::isLegal(name)) kmf::throw_message("kinemo:host:diagram", "InvalidVariable", name, name_);
  workspace_->set(name, makeVariable(expression, VariableScope(*this).scope(), unit, runtime));
}

GTBlock* Diagram::findBlock(const ustring& path) const {
  return findBelow(*root_, path);
}

}  // namespace embedded::block_diagram
