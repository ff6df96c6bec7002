#include "embedded/block_diagram/dialog_data.hpp"

#include <utility>

GTPrmDesc::GTPrmDesc(std::string name, Type type, int category, std::uint64_t attributes)
    : name_(std::move(name)), type_(type), category_(category), attributes_(attributes) {}
GTPrmDesc::~GTPrmDesc() = default;

GTPrmDescList::GTPrmDescList() = default;
GTPrmDescList::GTPrmDescList(const GTPrmDescList&) = default;
GTPrmDescList::GTPrmDescList(GTPrmDescList&&) noexcept = default;
GTPrmDescList& GTPrmDescList::operator=(const GTPrmDescList&) = default;
GTPrmDescList& GTPrmDescList::operator=(GTPrmDescList&&) noexcept = default;
GTPrmDescList::~GTPrmDescList() = default;

int GTPrmDescList::getLength() const {
  return static_cast<int>(pointers_.size());
}
const GTPrmDesc* const* GTPrmDescList::getPrmDescs() const {
  return pointers_.data();
}
GTPrmDesc** GTPrmDescList::getPrmDescs() {
  return pointers_.data();
}
void GTPrmDescList::ValidatePrmPortData() const {}
void GTPrmDescList::CheckPrmPortData() const {}

void GTPrmDescList::addPrmDesc(const boost::shared_ptr<GTPrmDesc>& descriptor) {
  owned_.push_back(descriptor);
  pointers_.push_back(descriptor.get());
}

GTDialogInfo::Contents& GTDialogInfo::edit() {
  auto own = contents ? std::make_shared<Contents>(*contents) : std::make_shared<Contents>();
  Contents& result = *own;
  contents = std::move(own);
  return result;
}

const GTPrmDesc* GTDialogInfo::descriptor(int i) const {
  return i >= 0 && i < count() && contents->descriptors ? contents->descriptors[i] : nullptr;
}

int GTDialogInfo::find(const std::string& name) const {
  for (int i = 0; i < count(); ++i) {
    const GTPrmDesc* candidate = descriptor(i);
    if (candidate && candidate->getName() == name) return i;
  }
  return -1;
}

void sdi_prm_desc_list(GTDialogInfo* dialog, GTPrmDesc** descriptors) {
  dialog->edit().descriptors = descriptors;
}
void sdi_num_dialog_params(GTDialogInfo* dialog, int count) {
  dialog->edit().count = count;
}
void sdi_block_desc(GTDialogInfo* dialog, const ustring& description) {
  dialog->edit().description = description;
}

const ustring& gdi_block_desc(const GTDialogInfo* dialog) {
  static const ustring none;
  return dialog->contents ? dialog->contents->description : none;
}

int gdi_num_dialog_params(const GTDialogInfo* dialog) {
  return dialog->count();
}
const GTPrmDesc* gdi_prm_desc(const GTDialogInfo* dialog, int i) {
  return dialog->descriptor(i);
}

int gdi_param_type(const GTDialogInfo* dialog, int i) {
  const GTPrmDesc* descriptor = dialog->descriptor(i);
  return descriptor ? descriptor->type() : GTPrmDesc::EDIT;
}
