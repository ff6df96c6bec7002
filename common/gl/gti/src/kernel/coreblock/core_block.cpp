#include "common/gl/gti/src/kernel/coreblock/core_block.hpp"

#include "common/gl/gti/export/core_block_facade.hpp"
#include "common/gl/gti/src/kernel/coreblock/host_flags.hpp"
#include "platform/block_diagram/dialog.hpp"
#include "platform/foundation/strings.hpp"

namespace gl::gti {

namespace {

constexpr char block_type[] = "GL Core Block";
constexpr char16_t default_name[] = u"GL Core Block";
constexpr std::size_t max_id_length = 64;

cvArray_tag* duplicate_image(const cvArray_tag* image) {
  if (!image) return nullptr;
  cvArray_tag* copy = cvDuplicateArray(image);
  cvSetArrayScope(copy, 0);
  return copy;
}

}  // namespace

CoreBlock::CoreBlock(const CoreBlockInfo& info, const std::string& domain, GtBlockContext* context)
    : GTBlock(block_type, context), info_(info.clone()), domain_(domain) {}

// Ports, icon file, texts and switches aren't copied: the copy's first check fills them.
CoreBlock::CoreBlock(const CoreBlock& other)
    : GTBlock(other),
      info_(other.info_->clone()),
      domain_(other.domain_),
      iconImage_(duplicate_image(other.iconImage_)) {}

CoreBlock::~CoreBlock() {
  cvDestroyArray(iconImage_);
}

void CoreBlock::initializePrototype() {
  const ustring& text = descriptor().blockText();
  setGrName(text.empty() ? default_name : text);
  flags().attributes |= host_flags::ATTRIBUTES;
  setGrNumInputPorts(0, nullptr, 1);
  setGrNumOutputPorts(0, nullptr);
  sdi_block_desc(getDialogInfo(), descriptor().description());
  CoreBlockFacade facade(this);
  info_->registerParameters(facade);
  flags().block |= host_flags::BLOCK_OWN_ICON;
  flags().block2 &= ~host_flags::BLOCK2_CLEARED;
  flags().block2 |= host_flags::BLOCK2_SET;
  if (descriptor().autogenMask()) {
    flags().block3 |= host_flags::BLOCK3_GENERATED_MASK;
    flags().block |= host_flags::BLOCK_GENERATED_MASK;
  }
}

ComponentEmbedding CoreBlock::makeEmbedding(const TranslationConfiguration&, const BlockData& data) {
  CoreBlockFacade facade(this);
  ComponentEmbedding embedding(info_->component(facade, data));
  std::vector<kmf::VnId> wanted;
  for (const ustring& name : data.ports()) wanted.push_back(kmf::VnId::make(kmf::ustring_to_utf8_string(name)));
  const std::vector<kmf::VnId> ids = kmf::VnId::unique(wanted, {}, max_id_length);
  auto id = ids.begin();
  for (const ustring& name : data.ports()) embedding.addPortEmbedding(name, *id++);
  return embedding;
}

void CoreBlock::applyRuntimeParameters(const ParameterSetter& setter, const ParameterRewrites& rewrites) {
  info_->applyRuntimeParameters(setter, rewrites);
}

GTBlock* CoreBlock::clone() const {
  return new CoreBlock(*this);
}

const char* CoreBlock::getDomainName() const {
  return domain_.c_str();
}

bool CoreBlock::isPhysicalNetworkBlock() const {
  return true;
}

bool CoreBlock::usesPhysicalPortRotation() const {
  return physicalPortRotation_;
}

void CoreBlock::ignoreNotification() {}

void CoreBlock::markHostFlag() {
  flags().compile |= host_flags::COMPILE_MARK;
}

void CoreBlock::writeNothing() {}

bool CoreBlock::alwaysTrue() const {
  return true;
}

bool CoreBlock::alwaysFalse() const {
  return false;
}

CoreBlock* coreBlockOf(double handle) {
  constexpr int block_object = 9;
  GantrelObject* object = Handle2GantrelObject(handle);
  if (!object || object->getGantrelObjectType() != block_object) return nullptr;
  return dynamic_cast<CoreBlock*>(object);
}

bool isCoreBlock(double handle) {
  return coreBlockOf(handle) != nullptr;
}

}  // namespace gl::gti
