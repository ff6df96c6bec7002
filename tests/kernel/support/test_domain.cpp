#include "tests/kernel/support/test_domain.hpp"

#include "common/gl/gti/export/block_data.hpp"
#include "common/gl/gti/export/component_embedding.hpp"
#include "common/gl/gti/export/core_block_facade.hpp"
#include "common/gl/gti/export/core_block_info.hpp"
#include "embedded/block_diagram/host_functions.hpp"
#include "platform/block_diagram/library.hpp"
#include "platform/block_diagram/mask.hpp"
#include "platform/foundation/strings.hpp"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <map>
#include <stdexcept>

namespace kinemo::test {

namespace {

const kmf::VnIdPath1 lineType("test.line");
const kmf::VnIdPath1 opaqueType("test.opaque");

class TestBlockInfo final : public gl::gti::CoreBlockInfo {
 public:
  explicit TestBlockInfo(bool hasRight) : ports_{"p"} {
    descriptor_.addLeftPort(kmf::VnId("p"), u"", "test.line", u"");
    if (!hasRight) return;
    descriptor_.addRightPort(kmf::VnId("n"), u"", "test.line", u"");
    ports_.emplace_back("n");
  }

  CoreBlockInfo* clone() const override { return new TestBlockInfo(*this); }
  void registerParameters(gl::gti::CoreBlockFacade&) override {}
  const gl::gti::BlockDescriptor& descriptor() const override { return descriptor_; }
  void checkParameters(gl::gti::CoreBlockFacade&) override {}
  gl::core::Component component(gl::gti::CoreBlockFacade& block, const gl::gti::BlockData& data) override {
    if (TestDomain::onComponent()) TestDomain::onComponent()(GTBlock::Handle2Block(block.handle())->getGrName(), data);
    gl::core::Component made(kmf::VnIdPath1("test.block"));
    for (const kmf::VnId& id : ports_) made.addConnector(id, lineType);
    return made;
  }
  void applyRuntimeParameters(gl::gti::ParameterSetter, const gl::gti::ParameterRewrites&) override {}

 private:
  gl::gti::BlockDescriptor descriptor_;
  std::vector<kmf::VnId> ports_;
};

gl::gti::ComponentEmbedding opaqueComponent(const gl::gti::BlockData& data) {
  if (TestDomain::onComponent()) TestDomain::onComponent()(u"", data);
  gl::core::Component made(kmf::VnIdPath1("test.opaque"));
  for (const ustring& port : data.ports()) made.addConnector(kmf::VnId(port), opaqueType);
  gl::gti::ComponentEmbedding embedding(made);
  for (const ustring& port : data.ports()) embedding.addPortEmbedding(port, kmf::VnId(port));
  return embedding;
}

GTBlock* prototype(bool hasRight) {
  return gl::gti::create_core_block_prototype(TestBlockInfo(hasRight), "test", &embedded::block_diagram::hostContext());
}

GTMaskParameter maskParameter(const char* name, const ustring& value, GTPrmDesc::Type type) {
  GTMaskParameter parameter;
  parameter.name = name;
  parameter.value = value;
  parameter.type = type;
  return parameter;
}

void addMask(GTBlock* block) {
  auto mask = boost::make_shared<GTMaskDefinition>();
  mask->type = "Masked";
  mask->parameters = {maskParameter("R", u"2", GTPrmDesc::EDIT), maskParameter("R_unit", u"Ohm", GTPrmDesc::STRING),
                      maskParameter("note", u"none", GTPrmDesc::STRING)};
  MaskInterface::setMask(block, mask);
}

ustring wide(const std::string& text) {
  return kmf::utf8_string_to_ustring(text);
}

std::pair<std::string, std::string> splitAt(const std::string& text, char separator) {
  const std::size_t at = text.rfind(separator);
  if (at == std::string::npos) return {"", text};
  return {text.substr(0, at), text.substr(at + 1)};
}

}  // namespace

TestDomain::TestDomain() : key_(gl::gti::TranslationManager::get().registerDomain("test")) {
  gt_register_prototype("test/one", prototype(false));
  gt_register_prototype("test/two", prototype(true));
  GTBlock* masked = prototype(true);
  addMask(masked);
  gt_register_prototype("test/masked", masked);
}

TestDomain::~TestDomain() {
  onComponent() = nullptr;
  gl::gti::TranslationManager::get().unregisterDomain(key_);
  gt_unregister_prototypes("test/");
}

gl::gti::TranslationConfiguration TestDomain::configuration() const {
  gl::gti::TranslationConfiguration made;
  made.factory(gl::gti::BlockType::OPAQUE, opaqueComponent);
  return made;
}

TestDomain::Hook& TestDomain::onComponent() {
  static Hook hook;
  return hook;
}

void Drawing::blocks(const std::string& kind, std::initializer_list<const char*> paths) {
  for (const char* path : paths) block(path, kind);
}

GTBlock& Drawing::block(const std::string& path, const std::string& kind) {
  const auto [parent, name] = splitAt(path, '/');
  return system(parent).addBlock(wide(name), kind);
}

GTBlock& Drawing::subsystem(const std::string& path) {
  const auto [parent, name] = splitAt(path, '/');
  return system(parent).addSubsystem(wide(name));
}

GTBlock& Drawing::subsystem(const std::string& path, std::initializer_list<const char*> left,
                            std::initializer_list<const char*> right) {
  GTBlock& made = subsystem(path);
  int order = 0;
  for (const char* name : left) port(path + "/" + name, Side::Left, ++order);
  order = 0;
  for (const char* name : right) port(path + "/" + name, Side::Right, ++order);
  return made;
}

GTBlock& Drawing::port(const std::string& path, Side side, int order) {
  const auto [parent, name] = splitAt(path, '/');
  return system(parent).addPort(wide(name), side, order);
}

void Drawing::wire(const std::string& systemPath, const std::vector<std::string>& ports) {
  std::vector<gtPort*> found;
  for (const std::string& text : ports) found.push_back(portAt(systemPath, text));
  system(systemPath).addLine(found);
}

void Drawing::set(const std::string& path, const std::string& parameter, const ustring& text) {
  embedded::block_diagram::setParameter(at(path), parameter, text);
}

GTBlock& Drawing::at(const std::string& path) const {
  GTBlock* found = diagram_->findBlock(wide(path));
  if (found == nullptr) throw std::runtime_error("no block " + path);
  return *found;
}

System& Drawing::system(const std::string& path) const {
  return path.empty() ? diagram_->root() : *embedded::block_diagram::contents(at(path));
}

gtPort* Drawing::portAt(const std::string& systemPath, const std::string& text) const {
  const auto [blockName, portName] = splitAt(text, '.');
  GTBlock* owner = system(systemPath).find(wide(blockName.empty() ? portName : blockName));
  if (owner == nullptr) throw std::runtime_error("no block at port " + text);
  if (embedded::block_diagram::isSubsystem(*owner)) {
    return embedded::block_diagram::subsystemPort(*owner, wide(portName));
  }
  for (gtPort* port : embedded::block_diagram::ports(*owner)) {
    if (embedded::block_diagram::isIoPort(*owner)) return port;
    if (gl::gti::handle_to_core_block(owner->getHandle()).portName(gp_handle(port)) == portName) return port;
  }
  throw std::runtime_error("no port " + text);
}

NetworkTest::NetworkTest() : diagram(Diagram::create("m")), draw(diagram), configuration(domain.configuration()) {
  allow_kept_arrays(11);  // standing arguments of the search for blocks
}

NetworkTest::~NetworkTest() {
  if (Diagram::find("m") != nullptr) Diagram::close(diagram);
}

void NetworkTest::intake(Listing listing) {
  const embedded::network_data::MachineData data(diagram, "test", listing);
  manager().registerModel(key(), "m", configuration);
  manager().addConnectivity(key(), data.get());
}

void NetworkTest::intakePorts() {
  const embedded::network_data::PortLists lists = embedded::network_data::portLists(diagram, "test");
  manager().registerModel(key(), "m", configuration);
  manager().addConnectivity(key(), "m", lists.nets, lists.blocks);
}

std::string NetworkTest::compiled(Listing listing) {
  intake(listing);
  return describe(graph());
}

std::string describe(const gl::core::Graph& graph) {
  std::string text;
  for (const auto& [id, component] : graph.components()) {
    if (!text.empty()) text += ' ';
    text += std::string(id);
    if (component.isSubgraph()) {
      text += '[' + describe(component.graph());
      for (const auto& [nodeId, node] : component.graph().nodes()) {
        if (component.isExported(nodeId)) {
          text += "; " + std::string(component.mapExported(nodeId)) + '=' + std::string(nodeId);
        }
      }
      text += ']';
    }
  }
  for (const auto& [nodeId, node] : graph.nodes()) {
    text += "; " + std::string(nodeId) + ':';
    for (const gl::core::Connection& connection : graph.connections(nodeId)) {
      if (text.back() != ':') text += ',';
      text += std::string(connection.connectorSpec().path());
    }
  }
  return text;
}

namespace {

/// Numbers nodes through all levels; a node that is exported has the number of the node outside.
class Flattener {
 public:
  void add(const gl::core::Graph& graph, const std::string& prefix, const std::map<kmf::VnId, std::size_t>& outside) {
    std::map<kmf::VnId, std::size_t> numbers = outside;
    for (const auto& [nodeId, node] : graph.nodes()) {
      if (numbers.emplace(nodeId, nets.size()).second) nets.emplace_back();
    }
    for (const auto& [id, component] : graph.components()) {
      const std::string path = prefix + std::string(id);
      std::map<kmf::VnId, std::size_t> inside;
      for (const kmf::VnId& connector : component.connectorOrder()) {
        const kmf::VnId* node = graph.nodeOf(gl::core::ConnectorSpec(id, connector));
        if (node == nullptr) continue;
        if (!component.isSubgraph()) {
          nets[numbers.at(*node)].push_back(path + '.' + std::string(connector));
          continue;
        }
        for (const auto& [innerId, inner] : component.graph().nodes()) {
          if (component.isExported(innerId) && component.mapExported(innerId) == connector) {
            inside.emplace(innerId, numbers.at(*node));
          }
        }
      }
      if (component.isSubgraph()) add(component.graph(), path + '/', inside);
    }
  }

  std::vector<std::vector<std::string>> nets;
};

}  // namespace

std::vector<std::vector<std::string>> flatNets(const gl::core::Graph& graph) {
  Flattener flattener;
  flattener.add(graph, "", {});
  for (std::vector<std::string>& net : flattener.nets) std::sort(net.begin(), net.end());
  std::sort(flattener.nets.begin(), flattener.nets.end());
  return flattener.nets;
}

}  // namespace kinemo::test
