#include "common/gl/gti/export/component_embedding.hpp"

#include <boost/make_shared.hpp>

namespace gl::gti {

struct ComponentEmbeddingData {
  explicit ComponentEmbeddingData(const gl::core::Component& made) : component(made) {}

  gl::core::Component component;
  std::map<ustring, kmf::VnId> portEmbedding;
};

ComponentEmbedding::ComponentEmbedding(const gl::core::Component& component)
    : data_(boost::make_shared<ComponentEmbeddingData>(component)) {}

ComponentEmbedding::ComponentEmbedding(const ComponentEmbedding&) = default;

ComponentEmbedding& ComponentEmbedding::operator=(ComponentEmbedding other) {
  swap(*this, other);
  return *this;
}

ComponentEmbedding::~ComponentEmbedding() = default;

void swap(ComponentEmbedding& a, ComponentEmbedding& b) { a.data_.swap(b.data_); }

gl::core::Component ComponentEmbedding::component() const { return data().component; }

void ComponentEmbedding::addPortEmbedding(const ustring& port, const kmf::VnId& node) {
  data().portEmbedding.insert_or_assign(port, node);
}

void ComponentEmbedding::removePortEmbedding(const ustring& port) { data().portEmbedding.erase(port); }

const std::map<ustring, kmf::VnId>& ComponentEmbedding::portEmbedding() const { return data().portEmbedding; }

bool ComponentEmbedding::operator==(const ComponentEmbedding& other) const {
  return data().component == other.data().component && data().portEmbedding == other.data().portEmbedding;
}

ComponentEmbeddingData& ComponentEmbedding::data() {
  if (data_.use_count() != 1) data_ = boost::make_shared<ComponentEmbeddingData>(*data_);
  return *data_;
}

}  // namespace gl::gti
