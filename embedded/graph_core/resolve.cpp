#include "embedded/graph_core/resolve.hpp"

#include "embedded/graph_core/contents.hpp"
#include "embedded/graph_core/errors.hpp"
#include "embedded/graph_core/parameter.hpp"

namespace gl::core::detail {

namespace {

/// The candidates of one address. The first one that passes the predicate is kept.
class Candidates {
 public:
  explicit Candidates(const IdPredicate<GraphEntryRef>& predicate) : predicate_(&predicate) {}

  void offer(const GraphEntryRef& candidate) {
    if (boost::get<GraphEntryRef>(&result_) != nullptr) return;
    if ((*predicate_)(candidate)) {
      result_ = candidate;
    } else {
      result_ = TypeMismatch();
    }
  }
  void offer_component(const Component& component) {
    offer(&component);
    if (component.isSubgraph()) offer(&component.graph());
  }
  void offer_entry(const Graph& graph, const kmf::VnId& id) {
    const auto component = graph.components().find(id);
    if (component != graph.components().end()) offer_component(component->second);
    const auto node = graph.nodes().find(id);
    if (node != graph.nodes().end()) offer(&node->second);
  }
  void offer_member(const Component& component, const kmf::VnId& id) {
    const auto parameter = component.parameters().find(id);
    if (parameter != component.parameters().end()) {
      offer(&parameter->second);
      offer(value_entry(parameter->second.get({})));
    }
    const Connector* connector = shape_of(Access::of(component).shape).find(id);
    if (connector != nullptr) offer(connector);
    if (component.isSubgraph()) offer_entry(component.graph(), id);
  }
  const FindResult& result() const { return result_; }

 private:
  const IdPredicate<GraphEntryRef>* predicate_;
  FindResult result_;
};

const Component* component_in(const Graph& graph, const kmf::VnId& id) {
  const auto found = graph.components().find(id);
  return found == graph.components().end() ? nullptr : &found->second;
}

}  // namespace

FindResult resolve(const Graph& graph, kmf::VnIdPathIterator at, const IdPredicate<GraphEntryRef>& predicate) {
  Candidates candidates(predicate);
  if (at.atEnd()) {
    candidates.offer(&graph);
  } else if (at.remaining() == 1) {
    candidates.offer_entry(graph, *at);
  } else {
    const Component* component = component_in(graph, *at);
    if (component == nullptr) return NotFound();
    return resolve(*component, ++at, predicate);
  }
  return candidates.result();
}

FindResult resolve(const Component& component, kmf::VnIdPathIterator at, const IdPredicate<GraphEntryRef>& predicate) {
  Candidates candidates(predicate);
  if (at.atEnd()) {
    candidates.offer_component(component);
    return candidates.result();
  }
  const Component* enclosing = &component;
  for (; at.remaining() > 1; ++at) {
    if (!enclosing->isSubgraph()) return NotFound();
    enclosing = component_in(enclosing->graph(), *at);
    if (enclosing == nullptr) return NotFound();
  }
  candidates.offer_member(*enclosing, *at);
  return candidates.result();
}

template <class T, class Start>
const T& resolved(const Start& start, const kmf::VnIdPathIterator& at) {
  const FindResult result = resolve(start, at, GraphIdTypePredicate<T>());
  return *boost::get<const T*>(found_or_throw(result, at));
}

template const Component& resolved(const Graph&, const kmf::VnIdPathIterator&);
template const Component& resolved(const Component&, const kmf::VnIdPathIterator&);
template const Graph& resolved(const Graph&, const kmf::VnIdPathIterator&);
template const Parameter& resolved(const Component&, const kmf::VnIdPathIterator&);

}  // namespace gl::core::detail
