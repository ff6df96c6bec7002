#include "embedded/block_diagram/block_data.hpp"
#include "embedded/block_diagram/diagram_object.hpp"
#include "embedded/block_diagram/handles.hpp"
#include "embedded/block_diagram/paths.hpp"
#include "embedded/block_diagram/system_data.hpp"
#include "platform/foundation/exception.hpp"
#include "platform/foundation/strings.hpp"

#include <memory>
#include <new>
#include <utility>

namespace {

/// Host data of a copy: the look and the parameters, but neither place nor inside.
std::unique_ptr<GTBlockHostData> copiedData(const GTBlockHostData& other) {
  auto data = std::make_unique<GTBlockHostData>();
  data->context = other.context;
  data->type = other.type;
  data->library = other.library;
  data->name = other.name;
  data->flags = other.flags;
  data->dialog = other.dialog;
  data->dialogTexts = other.dialogTexts;
  if (other.extras && !other.extras->properties.empty()) data->makeExtras().properties = other.extras->properties;
  return data;
}

}  // namespace

embedded::block_diagram::BlockExtras& GTBlockHostData::makeExtras() {
  if (!extras) extras = std::make_unique<embedded::block_diagram::BlockExtras>();
  return *extras;
}

GtBlockContext::~GtBlockContext() = default;
GTRootBlock::~GTRootBlock() = default;
GTCompBlock::~GTCompBlock() = default;
GTExecBlock::~GTExecBlock() = default;

int GTRootBlock::getGantrelObjectType() const {
  return embedded::block_diagram::block_object_type;
}

GTBlock::GTBlock(const char* blockType, GtBlockContext* context) : host_(new GTBlockHostData) {
  std::unique_ptr<GTBlockHostData> guard(host_);
  host_->context = context;
  host_->type = embedded::block_diagram::internName(blockType);
  host_->handle = embedded::block_diagram::mintHandle(this);
  guard.release();
}

GTBlock::GTBlock(const GTBlock& other) : GTCompBlock(other), host_(nullptr) {
  std::unique_ptr<GTBlockHostData> data = copiedData(other.host());
  if (other.host().mask) {
    data->mask = std::make_unique<GTMask>();
    data->mask->owner = this;
    data->mask->kind = other.host().mask->kind;
    data->mask->texts = other.host().mask->texts;
  }
  host_ = data.get();
  host_->handle = embedded::block_diagram::mintHandle(this);
  data.release();
  for (const gtPort* port : other.host().ports) {
    gtPort& own = embedded::block_diagram::insertPort(*this, port->isLeft(), host_->portCount(port->isLeft()));
    own.host().type = port->host().type;
  }
}

GTBlock::~GTBlock() {
  for (gtPort* port : host_->ports) delete port;
  embedded::block_diagram::releaseHandle(host_->handle);
  delete host_;
}

void* GTBlock::operator new(std::size_t size) {
  return ::operator new(size);
}
void GTBlock::operator delete(void* memory) {
  ::operator delete(memory);
}

double GTBlock::getHandle() const {
  return host_->handle;
}
GtBlockContext* GTBlock::context() const {
  return host_->context;
}
GTBlock::Flags& GTBlock::flags() {
  return host_->flags;
}
const GTBlock::Flags& GTBlock::flags() const {
  return host_->flags;
}

// --- virtual operations as they are for a block that overrides none

void GTBlock::refreshGeneratedMask(const std::string&, bool) {}
ustring GTBlock::getGrLeftPortUnit(int) {
  return {};
}
ustring GTBlock::getGrRightPortUnit(int) {
  return {};
}
GTExecBlock* GTBlock::createExecBlock() {
  return nullptr;
}
GTBlock* GTBlock::clone() const {
  return new GTBlock(*this);
}
void GTBlock::updateGeneratedMask() {}
const char* GTBlock::getDomainName() const {
  return "";
}
bool GTBlock::isPhysicalNetworkBlock() const {
  return false;
}
bool GTBlock::usesPhysicalPortRotation() const {
  return false;
}
void GTBlock::ignoreNotification() {}
void GTBlock::markHostFlag() {}
void GTBlock::writeNothing() {}
void GTBlock::checkDialogParameters(int) {}
const char* GTBlock::getGeneratedMaskText() const {
  return nullptr;
}
bool GTBlock::alwaysTrue() const {
  return false;
}
bool GTBlock::alwaysFalse() const {
  return false;
}

// --- name and place

void GTBlock::setGrName(const ustring& name) {
  if (host_->system) {
    embedded::block_diagram::SystemAccess::rename(*this, name);
  } else {
    host_->name = name;
  }
}

const ustring& GTBlock::getGrName() const {
  return host_->name;
}

ustring GTBlock::getFullPath(bool sanitized) const {
  ustring path = embedded::block_diagram::fullPath(host_->system, this);
  return sanitized ? kmf::get_sanitized_ustring(path, u'\n', u' ') : path;
}

ustring GTRootBlockPlatformInfo::getGrFullPathNameUnicode(bool withLineFeeds) const {
  return block_->getFullPath(!withLineFeeds);
}

GTBlock* GTBlock::Handle2Block(double handle) {
  return dynamic_cast<GTBlock*>(Handle2GantrelObject(handle));
}

void GTBlock::ThrowException(GTDiagnostic* diagnostic) const {
  const std::unique_ptr<GTDiagnostic> owned(diagnostic);
  const ustring path = getFullPath(true);
  kmf::MessageException error(kmf::Message(kmf::MessageId(owned->group, owned->id, path, owned->text)));
  error.addObject(path);
  throw error;
}
