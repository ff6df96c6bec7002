// Listings of addresses: ids, entries by predicate, and the blocks of the host that entries stand for.

#include "embedded/graph_core/contents.hpp"
#include "embedded/graph_core/parameter.hpp"
#include "embedded/graph_core/resolve.hpp"
#include "embedded/graph_core/walk.hpp"

namespace gl::core {

namespace detail {

namespace {

struct CollectIds {
  void component(const kmf::VnIdPath& at, const Component&) { ids.emplace_hint(ids.end(), at); }
  void node(const kmf::VnIdPath& at, const Node&) { ids.emplace_hint(ids.end(), at); }
  Ids ids;
};

struct CollectObjects {
  void component(const kmf::VnIdPath& at, const Component& entry) {
    add(at, find_tag(Access::of(entry).tags, OBJECT()));
  }
  void node(const kmf::VnIdPath& at, const Node& entry) {
    if (entry.hasTag(OBJECT())) add(at, &entry.tag(OBJECT()));
  }
  void add(const kmf::VnIdPath& at, const ParameterVariant* tag) {
    const ustring* text = tag == nullptr ? nullptr : boost::get<ustring>(tag);
    if (text != nullptr) objects.emplace_hint(objects.end(), at, *text);
  }
  std::map<kmf::VnIdPath, ustring> objects;
};

/// Offers everything there is to a builder.
class OfferEntries {
 public:
  OfferEntries(GraphIdBuilder& builder, std::size_t depth) : builder_(builder), depth_(depth) {}

  void component(const kmf::VnIdPath& at, const Component& component) {
    builder_.add(at, &component);
    if (component.isSubgraph()) builder_.add(at, &component.graph());
    if (at.size() < depth_) members(at, component);
  }
  void node(const kmf::VnIdPath& at, const Node& node) { builder_.add(at, &node); }

  /// Parameters and connectors of a component.
  void members(const kmf::VnIdPath& component, const Component& owner) {
    kmf::VnIdPath at = component;
    at.append(kmf::VnId());
    const auto move_to = [&](const kmf::VnId& id) {
      at.chop(at.end() - 1);
      at.append(id);
    };
    for (const auto& parameter : owner.parameters()) {
      move_to(parameter.first);
      builder_.add(at, &parameter.second);
      builder_.add(at, value_entry(parameter.second.get({})));
    }
    const Shape& shape = shape_of(Access::of(owner).shape);
    for (std::size_t i = 0; i < shape.order().size(); ++i) {
      move_to(shape.order()[i]);
      builder_.add(at, &shape.connectors()[i]);
    }
  }

 private:
  GraphIdBuilder& builder_;
  std::size_t depth_;
};

struct ObjectOf : boost::static_visitor<ustring> {
  template <class Entry>
  ustring operator()(const Entry& entry) const {
    if (!entry.hasTag(OBJECT())) return {};
    const ustring* text = boost::get<ustring>(&entry.tag(OBJECT()));
    return text == nullptr ? ustring() : *text;
  }
};

}  // namespace

void GraphIdBuilder::add(const kmf::VnIdPath& address, const GraphEntryRef& entry) {
  if (!(*predicate_)(entry)) return;
  if (prefix_.empty()) {
    ids_->emplace_hint(ids_->end(), address);
    return;
  }
  std::vector<kmf::VnId> whole(prefix_.begin(), prefix_.end());
  whole.insert(whole.end(), address.begin(), address.end());
  ids_->emplace_hint(ids_->end(), std::move(whole));
}

}  // namespace detail

Ids Graph::ids(const kmf::VnIdPathIterator& start, std::size_t depth) const {
  const Graph* from = this;
  if (!start.atEnd()) {
    const Component& component = detail::resolved<Component>(*this, start);
    if (!component.isSubgraph()) return {};
    from = &component.graph();
  }
  detail::CollectIds collect;
  detail::walk(*from, depth, collect);
  return std::move(collect.ids);
}

void Graph::buildIds(detail::GraphIdBuilder& builder, const kmf::VnIdPathIterator& start, std::size_t depth) const {
  if (!start.atEnd()) {
    detail::resolved<Component>(*this, start).buildIds(builder, {}, depth);
    return;
  }
  detail::OfferEntries offer(builder, depth);
  detail::walk(*this, depth, offer);
}

void Component::buildIds(detail::GraphIdBuilder& builder, const kmf::VnIdPathIterator& start, std::size_t depth) const {
  if (!start.atEnd()) {
    detail::resolved<Component>(*this, start).buildIds(builder, {}, depth);
    return;
  }
  detail::OfferEntries offer(builder, depth);
  if (depth > 0) offer.members({}, *this);
  if (isSubgraph()) detail::walk(graph(), depth, offer);
}

const kmf::VnId& OBJECT() {
  static const kmf::VnId key("OBJECT");
  return key;
}

ustring object(const GraphEntry& entry) {
  return boost::apply_visitor(detail::ObjectOf(), entry);
}

std::map<kmf::VnIdPath, ustring> objects(const Graph& graph) {
  detail::CollectObjects collect;
  detail::walk(graph, static_cast<std::size_t>(-1), collect);
  return std::move(collect.objects);
}

}  // namespace gl::core
