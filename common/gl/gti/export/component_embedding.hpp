#pragma once

#include "common/gl/gti/export/api.hpp"
#include "platform/foundation/ustring.hpp"
#include "platform/foundation/vn_id.hpp"
#include "platform/graph_core/graph.hpp"

#include <boost/shared_ptr.hpp>

#include <map>

namespace gl::gti {

struct ComponentEmbeddingData;

/// What a block factory returns: the component made for a block, and which connector of the component stands for which
/// port of the block. A value type: copies share their contents until one of them is changed.
class KINEMO_GTI_API ComponentEmbedding {
 public:
  /// Holds a copy of `component`; no port is embedded yet.
  ComponentEmbedding(const gl::core::Component& component);
  ComponentEmbedding(const ComponentEmbedding&);
  ComponentEmbedding& operator=(ComponentEmbedding other);
  ~ComponentEmbedding();
  friend KINEMO_GTI_API void swap(ComponentEmbedding& a, ComponentEmbedding& b);

  gl::core::Component component() const;

  /// Ties the block's port to a connector of the component, in place of an earlier tie of that port.
  void addPortEmbedding(const ustring& port, const kmf::VnId& node);
  void removePortEmbedding(const ustring& port);
  /// From port name to connector.
  const std::map<ustring, kmf::VnId>& portEmbedding() const;

  bool operator==(const ComponentEmbedding& other) const;
  bool operator!=(const ComponentEmbedding& other) const { return !(*this == other); }

 protected:
  const ComponentEmbeddingData& data() const { return *data_; }

 private:
  ComponentEmbeddingData& data();

  boost::shared_ptr<ComponentEmbeddingData> data_;
};

KINEMO_GTI_API void swap(ComponentEmbedding& a, ComponentEmbedding& b);

}  // namespace gl::gti
