#pragma once

// The graph core: nested graphs of components, nodes and connections as persistent values.
//
// Glossary
//   graph        named components and named nodes, and connections that tie a connector of a component to a node
//   component    a leaf with connectors of its own, or a subgraph whose exported nodes are its connectors
//   node         a junction of connectors
//   connector    a port of a component; its type is a path such as physical.electrical
//   export       makes an inner node of a subgraph a connector of the component
//   tag          a free annotation of a component or a node; `OBJECT()` ties it to a block of the host
//   address      a path through nested graphs: component ids, then at last the id of a component or a node, or of a
//                component's parameter or connector
//
// An implementation provides every operation below. All classes are values with shared structure: a copy is one
// reference count however large the value is; a write to a value that nobody shares is done in place, and otherwise
// copies what lies on the address alone. Deep nesting never overflows the stack.
// Errors of bad addresses are kmf::MessageExceptions of the group "kinemo:graph:core".

#include "platform/data/data.hpp"
#include "platform/foundation/export.hpp"
#include "platform/foundation/ustring.hpp"
#include "platform/foundation/vn_id.hpp"

#include <boost/shared_ptr.hpp>
#include <boost/variant.hpp>

#include <cstddef>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

/// The value of a tag, a parameter or a model parameter: plain text, a numeric value with its unit, or an expression.
using ParameterVariant = boost::variant<ustring, data2::core::Value, data2::core::Expr>;

namespace gl::core {

class Component;
class Connector;
class Graph;
class Node;
class Parameter;

/// Addresses, ordered and unique.
using Ids = std::set<kmf::VnIdPath>;

/// What can be inserted in a graph at an id.
using GraphEntry = boost::variant<Component, Node>;

/// What an address in a graph can lead to. Pointers stay valid until the graph that was asked is changed or ends.
using GraphEntryRef =
    boost::variant<const ustring*, const data2::core::Value*, const data2::core::Expr*, const Component*, const Node*,
                   const Parameter*, const Connector*, const Graph*>;

namespace detail {

struct NotFound {};
struct TypeMismatch {};

/// A test of what an address leads to.
template <class Ref>
class IdPredicate {
 public:
  virtual ~IdPredicate() = default;
  virtual bool operator()(const Ref& entry) const = 0;
  virtual boost::shared_ptr<IdPredicate> clone() const = 0;
};

/// The test for one alternative.
template <class Ref, class Alternative>
class IdTypePredicate : public IdPredicate<Ref> {
 public:
  bool operator()(const Ref& entry) const override { return boost::get<Alternative>(&entry) != nullptr; }
};

template <class T>
class GraphIdTypePredicate final : public IdTypePredicate<GraphEntryRef, const T*> {
 public:
  boost::shared_ptr<IdPredicate<GraphEntryRef>> clone() const override {
    return boost::shared_ptr<IdPredicate<GraphEntryRef>>(new GraphIdTypePredicate(*this));
  }
};

/// Collects the addresses that pass a predicate, each behind a prefix.
class KINEMO_PLATFORM_API GraphIdBuilder {
 public:
  GraphIdBuilder(const IdPredicate<GraphEntryRef>& predicate, const kmf::VnIdPath& prefix, Ids& ids)
      : predicate_(predicate.clone()), prefix_(prefix), ids_(&ids) {}
  /// Called by `buildIds` for each entry, with its address behind the start.
  void add(const kmf::VnIdPath& address, const GraphEntryRef& entry);

 private:
  boost::shared_ptr<IdPredicate<GraphEntryRef>> predicate_;
  kmf::VnIdPath prefix_;
  Ids* ids_;
};

using FindResult = boost::variant<NotFound, TypeMismatch, GraphEntryRef>;

/// @throws kmf::MessageException "EntryNameNotFound" (address)
[[noreturn]] KINEMO_PLATFORM_API void throw_entry_name_not_found(const kmf::VnIdPathIterator& address);
/// @throws kmf::MessageException "EntryTypeMismatch" (address)
[[noreturn]] KINEMO_PLATFORM_API void throw_type_mismatch(const kmf::VnIdPathIterator& address);

struct Access;  ///< the implementation's way to the contents of the values below
struct ComponentData;
struct GraphData;
struct NodeData;

}  // namespace detail

/// The address of a connector: a component's id and a connector's id.
class KINEMO_PLATFORM_API ConnectorSpec {
 public:
  ConnectorSpec(const kmf::VnId& component, const kmf::VnId& connector)
      : path_(std::vector<kmf::VnId>{component, connector}) {}
  const kmf::VnId& componentId() const { return path_[0]; }
  const kmf::VnId& connectorId() const { return path_[1]; }
  const kmf::VnIdPath& path() const { return path_; }

  friend bool operator==(const ConnectorSpec& a, const ConnectorSpec& b) { return a.path_ == b.path_; }
  friend bool operator!=(const ConnectorSpec& a, const ConnectorSpec& b) { return a.path_ != b.path_; }
  friend bool operator<(const ConnectorSpec& a, const ConnectorSpec& b) { return a.path_ < b.path_; }
  friend std::size_t hash_value(const ConnectorSpec& spec) { return hash_value(spec.path_); }

 private:
  kmf::VnIdPath path_;
};

/// A connector tied to a node. Ordered by node, then by connector.
class KINEMO_PLATFORM_API Connection {
 public:
  Connection(const kmf::VnId& nodeId, const ConnectorSpec& connector) : nodeId_(nodeId), connector_(connector) {}
  const kmf::VnId& nodeId() const { return nodeId_; }
  const ConnectorSpec& connectorSpec() const { return connector_; }

  friend bool operator==(const Connection& a, const Connection& b) {
    return a.nodeId_ == b.nodeId_ && a.connector_ == b.connector_;
  }
  friend bool operator<(const Connection& a, const Connection& b) {
    return a.nodeId_ != b.nodeId_ ? a.nodeId_ < b.nodeId_ : a.connector_ < b.connector_;
  }

 private:
  kmf::VnId nodeId_;
  ConnectorSpec connector_;
};

/// What a parameter may hold. `any()` holds everything; a typed one holds text, or numbers of one unit's dimension.
class KINEMO_PLATFORM_API ParameterType {
 public:
  static ParameterType any();
  static ParameterType text();
  /// Numbers told in `unit`; the empty unit stands for numbers of any dimension.
  static ParameterType number(const units2::core::ExprString& unit);

  enum class Kind { Any, Text, Number };
  Kind kind() const { return kind_; }
  const units2::core::ExprString& unit() const { return unit_; }
  friend bool operator==(const ParameterType& a, const ParameterType& b) {
    return a.kind_ == b.kind_ && a.unit_ == b.unit_;
  }

 private:
  Kind kind_ = Kind::Any;
  units2::core::ExprString unit_;
};

class KINEMO_PLATFORM_API Parameter {
 public:
  explicit Parameter(const ParameterVariant& value);
  Parameter(const ParameterVariant& value, const ParameterType& type);
  /// The value; only the empty address leads anywhere. @throws "EntryNameNotFound"
  const ParameterVariant& get(const kmf::VnIdPathIterator& at) const;
  const ParameterType& type() const;
  friend KINEMO_PLATFORM_API bool operator==(const Parameter& a, const Parameter& b);

 private:
  struct Data;
  std::shared_ptr<const Data> data_;
};

class KINEMO_PLATFORM_API Connector {
 public:
  explicit Connector(const kmf::VnIdPath1& type) : type_(type) {}
  const kmf::VnIdPath1& type() const { return type_; }
  friend bool operator==(const Connector& a, const Connector& b) { return a.type_ == b.type_; }

 private:
  kmf::VnIdPath1 type_;
};

class KINEMO_PLATFORM_API Node {
 public:
  Node();
  void tag(const kmf::VnId& key, const ParameterVariant& value);
  /// @throws "NoSuchTag" (key)
  const ParameterVariant& tag(const kmf::VnId& key) const;
  bool hasTag(const kmf::VnId& key) const;
  std::vector<kmf::VnId> tags() const;
  friend KINEMO_PLATFORM_API bool operator==(const Node& a, const Node& b);

 private:
  friend struct detail::Access;
  std::shared_ptr<detail::NodeData> data_;
};

class KINEMO_PLATFORM_API Component {
 public:
  /// A leaf without connectors, parameters or type.
  Component();
  /// A leaf of a type such as physical.resistor.
  explicit Component(const kmf::VnIdPath1& type);
  /// A subgraph.
  Component(const Graph& subgraph, const std::map<kmf::VnId, Parameter>& parameters);
  Component(const Component&) noexcept;
  Component(Component&&) noexcept;
  Component& operator=(Component) noexcept;
  ~Component();
  friend KINEMO_PLATFORM_API bool operator==(const Component& a, const Component& b);
  friend bool operator!=(const Component& a, const Component& b) { return !(a == b); }

  bool isSubgraph() const;
  const kmf::VnIdPath1& type() const;  ///< empty for a subgraph

  /// Adds a connector to a leaf. @throws "DuplicateEntry" (id) when a connector or parameter has the id
  void addConnector(const kmf::VnId& id, const kmf::VnIdPath1& type);
  /// Connectors in the order in which they were added; of a subgraph, in the order of export.
  const std::vector<kmf::VnId>& connectorOrder() const;
  /// Adds a parameter, or replaces the one of that id.
  void addParameter(const kmf::VnId& id, const Parameter& parameter);
  const std::map<kmf::VnId, Parameter>& parameters() const;
  /// Sets the value of a parameter that is there, at an address inside the component; the type stays.
  /// @throws "EntryNameNotFound", or "ParameterTypeMismatch" (address) when the type doesn't take the value
  void set(const kmf::VnIdPathIterator& parameter, const ParameterVariant& value);

  void tag(const kmf::VnId& key, const ParameterVariant& value);
  /// @throws "NoSuchTag" (key)
  const ParameterVariant& tag(const kmf::VnId& key) const;
  bool hasTag(const kmf::VnId& key) const;
  std::vector<kmf::VnId> tags() const;

  /// @throws "EntryNameNotFound" for an unknown node, "DuplicateEntry" for an id in use
  void exportNode(const kmf::VnIdPathIterator& node, const kmf::VnId& exportedId, const kmf::VnIdPath1& type);
  bool isExported(const kmf::VnIdPathIterator& node) const;
  /// @throws "EntryNameNotFound" for a node that isn't exported
  const kmf::VnId& mapExported(const kmf::VnIdPathIterator& node) const;

  /// The inner graph. @throws "EntryTypeMismatch" for a leaf
  const Graph& graph() const;

  detail::FindResult findEntry(const kmf::VnIdPathIterator& at,
                               const detail::IdPredicate<GraphEntryRef>& predicate) const;
  void buildIds(detail::GraphIdBuilder& builder, const kmf::VnIdPathIterator& start, std::size_t depth) const;

 private:
  friend class Graph;
  friend struct detail::Access;
  detail::ComponentData& write();
  std::shared_ptr<detail::ComponentData> data_;
};

class KINEMO_PLATFORM_API Graph {
 public:
  Graph();
  Graph(const Graph&) noexcept;
  Graph(Graph&&) noexcept;
  Graph& operator=(Graph) noexcept;
  ~Graph();
  friend KINEMO_PLATFORM_API bool operator==(const Graph& a, const Graph& b);
  friend bool operator!=(const Graph& a, const Graph& b) { return !(a == b); }

  /// Adds a component or node under the last id of `at`. @throws "DuplicateEntry" (id)
  void insert(const kmf::VnIdPathIterator& at, const GraphEntry& entry);
  /// Connects, in the graph at `at`. @throws "EntryNameNotFound" for an unknown node, component or connector, and
  /// "AlreadyConnected" (connector, node) for a connector that another node holds
  void insert(const kmf::VnId& nodeId, const ConnectorSpec& connector, const kmf::VnIdPathIterator& at);
  void insert(const Connection& connection, const kmf::VnIdPathIterator& at);

  /// The connections of one connector (at most one), or of one node.
  std::set<Connection> incident(const kmf::VnIdPathIterator& connector) const;
  /// All connections of the graph at `at`; where `at` leads to a node, the connections of that node. The set is valid
  /// until the graph that was asked is changed or ends.
  const std::set<Connection>& connections(const kmf::VnIdPathIterator& at) const;
  /// The node that a connector is tied to; null when it is tied to none. O(log n).
  const kmf::VnId* nodeOf(const ConnectorSpec& connector) const;

  /// Every id of components and nodes under `start` down to `depth` levels, told from `start` on; depth 1 is one level.
  /// A leaf component has none. @throws "EntryNameNotFound", "EntryTypeMismatch" for a start that is no component
  Ids ids(const kmf::VnIdPathIterator& start, std::size_t depth) const;
  /// Every entry (components, nodes, and of components their parameters and connectors) that the builder takes.
  void buildIds(detail::GraphIdBuilder& builder, const kmf::VnIdPathIterator& start, std::size_t depth) const;
  detail::FindResult findEntry(const kmf::VnIdPathIterator& at,
                               const detail::IdPredicate<GraphEntryRef>& predicate) const;

  /// The entries of this level, in the order of their ids.
  const std::map<kmf::VnId, Component>& components() const;
  const std::map<kmf::VnId, Node>& nodes() const;

 private:
  friend class Component;
  friend struct detail::Access;
  detail::GraphData& write();
  std::shared_ptr<detail::GraphData> data_;
};

/// The parameters that stay tunable at run time: values by id, and ids that have no value.
class KINEMO_PLATFORM_API RuntimeParameterInfo {
 public:
  void addParameter(const kmf::VnId& id, const data2::core::ValueData& value);
  void addNonValueParameter(const kmf::VnId& id);
  /// @throws "EntryNameNotFound"
  const data2::core::ValueData& value(const kmf::VnId& id) const;
  std::set<kmf::VnId> runtimeParameters() const;
  const std::set<kmf::VnId>& nonValueParameters() const { return nonValues_; }
  friend KINEMO_PLATFORM_API bool operator==(const RuntimeParameterInfo& a, const RuntimeParameterInfo& b);

 private:
  std::map<kmf::VnId, data2::core::ValueData> values_;
  std::set<kmf::VnId> nonValues_;
};

class KINEMO_PLATFORM_API Model {
 public:
  Model(const Graph& graph, const RuntimeParameterInfo& parameters) : graph_(graph), parameters_(parameters) {}
  const Graph& graph() const { return graph_; }
  const RuntimeParameterInfo& runtimeParameters() const { return parameters_; }
  friend bool operator==(const Model& a, const Model& b) {
    return a.graph_ == b.graph_ && a.parameters_ == b.parameters_;
  }

 private:
  Graph graph_;
  RuntimeParameterInfo parameters_;
};

/// Splits a graph into its connected pieces. Each is a graph of its own with the ids of the input. Two components are
/// in one piece when nodes join them, also through subgraphs: a piece holds of a subgraph just what belongs to the
/// piece. A component without connections is a piece of its own. Linear in the size of the graph, up to logarithms.
class KINEMO_PLATFORM_API ConnectedComponents {
 public:
  std::vector<Graph> operator()(const Graph& graph) const;
};

/// The key of the tag that ties a graph entry to a block of the host.
KINEMO_PLATFORM_API const kmf::VnId& OBJECT();
/// The text of the `OBJECT` tag; empty when there is none.
KINEMO_PLATFORM_API ustring object(const GraphEntry& entry);
/// All such tags of the graph, at every depth, by address.
KINEMO_PLATFORM_API std::map<kmf::VnIdPath, ustring> objects(const Graph& graph);

}  // namespace gl::core
