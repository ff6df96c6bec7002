#include "embedded/graph_core/shape.hpp"

#include <boost/functional/hash.hpp>

#include <algorithm>
#include <array>

namespace gl::core::detail {

namespace {

/// Up to here a look through the order beats a hashed one, and shapes are worth sharing.
constexpr std::size_t small_shape = 12;

/// One remembered step from a shape to the one with a connector more, or from nothing to the shape of a type.
struct Step {
  ShapePtr from;
  kmf::VnId id;
  kmf::VnIdPath1 type;
  ShapePtr to;
};

std::size_t extended_hash(std::size_t hash, const kmf::VnId& id, const kmf::VnIdPath1& type) {
  boost::hash_combine(hash, hash_value(id));
  for (const kmf::VnId& part : type) boost::hash_combine(hash, hash_value(part));
  return hash;
}

/// The recent steps. Direct-mapped, so that its size is bounded whatever a program builds.
Step& step_slot(const ShapePtr& from, const kmf::VnId& id, const kmf::VnIdPath1& type) {
  thread_local std::array<Step, 512> steps;
  return steps[extended_hash(shape_of(from).hash(), id, type) % steps.size()];
}

template <class Make>
ShapePtr remembered(const ShapePtr& from, const kmf::VnId& id, const kmf::VnIdPath1& type, const Make& make) {
  Step& step = step_slot(from, id, type);
  if (!step.to || step.from != from || step.id != id || step.type != type) step = Step{from, id, type, make()};
  return step.to;
}

ShapePtr extended(const ShapePtr& from, const kmf::VnId& id, const kmf::VnIdPath1& type) {
  ShapePtr to = std::make_shared<Shape>(shape_of(from));
  to->append(id, type);
  return to;
}

}  // namespace

Shape::Shape(const kmf::VnIdPath1& type) : type_(type), hash_(extended_hash(0, kmf::VnId(), type)) {}

std::uint32_t Shape::index(const kmf::VnId& id) const {
  if (!byId_.empty()) {
    return byId_.find(hash_value(id), [&](std::uint32_t at) { return order_[at] == id; });
  }
  const auto found = std::find(order_.begin(), order_.end(), id);
  return found == order_.end() ? npos : static_cast<std::uint32_t>(found - order_.begin());
}

const Connector* Shape::find(const kmf::VnId& id) const {
  const std::uint32_t at = index(id);
  return at == npos ? nullptr : &connectors_[at];
}

void Shape::append(const kmf::VnId& id, const kmf::VnIdPath1& type) {
  hash_ = extended_hash(hash_, id, type);
  order_.push_back(id);
  connectors_.emplace_back(type);
  const std::uint32_t last = static_cast<std::uint32_t>(order_.size() - 1);
  if (!byId_.empty()) {
    enter(last);
  } else if (order_.size() > small_shape) {
    for (std::uint32_t at = 0; at <= last; ++at) enter(at);
  }
}

void Shape::enter(std::uint32_t index) {
  byId_.insert(index, [this](std::uint32_t at) { return hash_value(order_[at]); });
}

const Shape& shape_of(const ShapePtr& shape) {
  static const Shape none;
  return shape ? *shape : none;
}

ShapePtr shape_of_type(const kmf::VnIdPath1& type) {
  if (type.empty()) return nullptr;
  return remembered(nullptr, kmf::VnId(), type, [&] { return std::make_shared<Shape>(type); });
}

void add_connector(ShapePtr& shape, const kmf::VnId& id, const kmf::VnIdPath1& type) {
  if (shape_of(shape).order().size() < small_shape) {
    shape = remembered(shape, id, type, [&] { return extended(shape, id, type); });
  } else if (shape.use_count() == 1) {
    shape->append(id, type);
  } else {
    shape = extended(shape, id, type);
  }
}

bool same_order(const ShapePtr& a, const ShapePtr& b) {
  if (a == b) return true;
  const Shape& x = shape_of(a);
  const Shape& y = shape_of(b);
  return x.type() == y.type() && x.order() == y.order() && x.connectors() == y.connectors();
}

bool same_connectors(const ShapePtr& a, const ShapePtr& b) {
  if (a == b) return true;
  const Shape& x = shape_of(a);
  const Shape& y = shape_of(b);
  if (x.order().size() != y.order().size()) return false;
  for (std::size_t i = 0; i < x.order().size(); ++i) {
    const Connector* other = y.find(x.order()[i]);
    if (other == nullptr || !(*other == x.connectors()[i])) return false;
  }
  return true;
}

}  // namespace gl::core::detail
