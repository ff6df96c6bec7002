#include "embedded/block_diagram/block_data.hpp"
#include "embedded/block_diagram/mask_data.hpp"
#include "embedded/block_diagram/system_data.hpp"
#include "platform/foundation/exception.hpp"
#include "platform/foundation/strings.hpp"
#include "platform/foundation/vn_id.hpp"

#include <algorithm>

using embedded::block_diagram::MaskKind;
using embedded::block_diagram::SharedText;

namespace embedded::block_diagram {

namespace {

using Kinds = std::unordered_map<const GTMaskDefinition*, std::weak_ptr<MaskKind>>;

/// Never destroyed: prototypes of modules may end late.
Kinds& kinds() {
  static Kinds* const instance = new Kinds;
  return *instance;
}

}  // namespace

std::shared_ptr<MaskKind> MaskKind::of(const boost::shared_ptr<const GTMaskDefinition>& definition) {
  const auto found = kinds().find(definition.get());
  if (found != kinds().end()) {
    if (std::shared_ptr<MaskKind> kind = found->second.lock()) return kind;
  }
  auto kind = std::make_shared<MaskKind>(definition);
  kinds()[definition.get()] = kind;
  return kind;
}

MaskKind::MaskKind(const boost::shared_ptr<const GTMaskDefinition>& definition) : definition_(definition) {
  defaults_.reserve(parameters().size());
  for (const GTMaskParameter& parameter : parameters()) {
    const int number = static_cast<int>(defaults_.size());
    if (!kmf::VnId::isLegal(parameter.name) || !index_.emplace(parameter.name, number).second)
      kmf::throw_message("kinemo:host:diagram", "InvalidMaskParameter", parameter.name, definition_->type);
    defaults_.emplace_back(parameter.value);
  }
}

MaskKind::~MaskKind() {
  const auto found = kinds().find(definition_.get());
  if (found != kinds().end() && found->second.expired()) kinds().erase(found);
}

int MaskKind::find(std::string_view name) const {
  const auto found = index_.find(name);
  return found == index_.end() ? -1 : found->second;
}

GTDialogInfo* MaskKind::dialog() {
  if (dialog_.contents) return &dialog_;
  for (const GTMaskParameter& parameter : parameters()) {
    descriptors_.push_back(std::make_unique<GTPrmDesc>(parameter.name, parameter.type, 0, 0));
    descriptors_.back()->setPrompt(parameter.prompt);
    pointers_.push_back(descriptors_.back().get());
  }
  sdi_prm_desc_list(&dialog_, pointers_.data());
  sdi_num_dialog_params(&dialog_, static_cast<int>(pointers_.size()));
  sdi_block_desc(&dialog_, kmf::utf8_string_to_ustring(definition_->description));
  return &dialog_;
}

GTMask* maskAround(const GTBlock* block) {
  for (const GTBlock* at = block; at; at = at->host().system ? at->host().system->owner() : nullptr) {
    if (GTMask* mask = at->host().mask.get()) return mask;
  }
  return nullptr;
}

GTMask* maskOutside(const GTBlock* block) {
  const System* system = block->host().system;
  return system ? maskAround(system->owner()) : nullptr;
}

}  // namespace embedded::block_diagram

const SharedText& GTMask::text(std::size_t i) const {
  const auto found =
      std::lower_bound(texts.begin(), texts.end(), i, [](const auto& entry, std::size_t n) { return entry.first < n; });
  return found != texts.end() && found->first == i ? found->second : kind->defaultText(i);
}

void GTMask::setText(std::size_t i, const ustring& text) {
  const auto place =
      std::lower_bound(texts.begin(), texts.end(), i, [](const auto& entry, std::size_t n) { return entry.first < n; });
  const bool present = place != texts.end() && place->first == i;
  SharedText shared(text);
  if (shared == kind->defaultText(i)) {
    if (present) texts.erase(place);
  } else if (present) {
    place->second = std::move(shared);
  } else {
    texts.emplace(place, static_cast<std::uint32_t>(i), std::move(shared));
  }
}

GTDialogInfo* gt_mask_dialog_info(GTMask* mask) {
  return mask->kind->dialog();
}

void MaskInterface::setMask(GTBlock* block, const boost::shared_ptr<const GTMaskDefinition>& definition) {
  GTBlockHostData& data = block->host();
  if (definition == mask(block)) return;
  std::unique_ptr<GTMask> next;
  if (definition) {
    next = std::make_unique<GTMask>();
    next->owner = block;
    next->kind = MaskKind::of(definition);
    if (data.mask) {
      for (const auto& [number, text] : data.mask->texts) {
        const int kept = next->kind->find(data.mask->kind->parameters()[number].name);
        if (kept >= 0) next->setText(static_cast<std::size_t>(kept), text.text());
      }
    }
  }
  data.mask = std::move(next);
  embedded::block_diagram::masksChanged(*block);
}

boost::shared_ptr<const GTMaskDefinition> MaskInterface::mask(const GTBlock* block) {
  const GTMask* mask = block->host().mask.get();
  return mask ? mask->kind->definition() : boost::shared_ptr<const GTMaskDefinition>();
}

bool MaskInterface::getMaskDialogValueBoolean(const GTBlock* block, int i) {
  return getMaskDialogValueString(block, i) == u"on";
}

ustring MaskInterface::getMaskDialogValueString(const GTBlock* block, int i) {
  const GTMask* mask = embedded::block_diagram::maskAround(block);
  if (!mask || i < 0 || static_cast<std::size_t>(i) >= mask->size()) return {};
  return mask->text(static_cast<std::size_t>(i)).text();
}

GTMaskReverseHierarchyIterator::GTMaskReverseHierarchyIterator(const GTBlock* block, const GTMask* start)
    : next_(start ? const_cast<GTMask*>(start) : embedded::block_diagram::maskAround(block)) {}

bool GTMaskReverseHierarchyIterator::hasNext() const {
  return next_ != nullptr;
}

GTMask* GTMaskReverseHierarchyIterator::next() {
  GTMask* const result = next_;
  if (next_) next_ = embedded::block_diagram::maskOutside(next_->owner);
  return result;
}
