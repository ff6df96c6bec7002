#pragma once

// What components of one kind have in common: their type path and their connectors in order. A model holds a million
// components of a few dozen kinds, so small shapes are shared: adding the same connector to the same shape gives the
// same shape again. Shapes live as long as a component, or the table of recent ones, refers to them.

#include "embedded/graph_core/flat_index.hpp"
#include "platform/graph_core/graph.hpp"

#include <cstdint>
#include <memory>
#include <vector>

namespace gl::core::detail {

class Shape {
 public:
  static constexpr std::uint32_t npos = ~std::uint32_t{0};

  Shape() = default;
  explicit Shape(const kmf::VnIdPath1& type);

  const kmf::VnIdPath1& type() const { return type_; }
  const std::vector<kmf::VnId>& order() const { return order_; }
  const std::vector<Connector>& connectors() const { return connectors_; }  ///< parallel to `order`
  /// The place of a connector in the order; npos when there is none.
  std::uint32_t index(const kmf::VnId& id) const;
  const Connector* find(const kmf::VnId& id) const;
  /// Depends on type and connectors alone, so that what is shared doesn't change from run to run.
  std::size_t hash() const { return hash_; }

  /// Adds a connector whose id isn't there yet.
  void append(const kmf::VnId& id, const kmf::VnIdPath1& type);

 private:
  void enter(std::uint32_t index);

  kmf::VnIdPath1 type_;
  std::size_t hash_ = 0;
  std::vector<kmf::VnId> order_;
  std::vector<Connector> connectors_;
  FlatIndex<std::uint32_t, npos> byId_;  ///< empty as long as a look through the order is quicker
};

/// A null shape is the one of a leaf without type and connectors.
using ShapePtr = std::shared_ptr<Shape>;

/// What the pointer stands for.
const Shape& shape_of(const ShapePtr& shape);
ShapePtr shape_of_type(const kmf::VnIdPath1& type);
/// Replaces `shape` by the one with a connector more; in place when it is large and unshared.
void add_connector(ShapePtr& shape, const kmf::VnId& id, const kmf::VnIdPath1& type);
/// Same type, and same connectors in the same order.
bool same_order(const ShapePtr& a, const ShapePtr& b);
/// Same connectors in any order.
bool same_connectors(const ShapePtr& a, const ShapePtr& b);

}  // namespace gl::core::detail
