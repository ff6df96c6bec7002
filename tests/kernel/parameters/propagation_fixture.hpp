#pragma once

// Components, and the blocks behind them, in which a test propagates run-time parameters.

#include "common/gl/gti/src/kernel/parameters/component_rewriting.hpp"
#include "tests/support/no_leaks.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <boost/make_shared.hpp>

#include <functional>
#include <map>
#include <sstream>
#include <string>

namespace gl::gti::test {

using data2::core::Expr;
using gl::core::Component;
using gl::core::Graph;
using gl::core::Parameter;

inline ParameterVariant number(double value) {
  return data2::core::Value(data2::core::ValueData(value));
}

inline Expr expression(const std::string& text) {
  return data2::cvi::CorvaneParser()(text).value();
}

/// A number or an expression as text.
inline std::string shown(const ParameterVariant& value) {
  std::ostringstream text;
  if (const auto* held = boost::get<data2::core::Value>(&value)) text << held->data().elements().at(0);
  if (const auto* held = boost::get<Expr>(&value)) data2::core::out(text, 0, 0, *held);
  return text.str();
}
inline std::string bound(const std::string& text, const std::string& unit) {
  return shown(Expr(data2::core::UnitBindExpr(expression(text), units2::core::parse(unit))));
}

/// A block of the table beside the graph; a tunable one sets every parameter that it is offered, or what `apply` does.
class Entry final : public BlockEntryData {
 public:
  Entry(const ustring& path, bool tunable) : tunable_(tunable) { path_ = path; }
  void value(const char* id, double value, const ustring& text) {
    data_.addParameter(id, ParameterValue(cvUniquePtr(cvCreateDoubleScalar(value)).get(), text));
  }
  void text(const char* id, const std::string& value) {
    data_.addParameter(id,
                       ParameterValue(cvUniquePtr(cvCreateString(value)).get(), ustring(value.begin(), value.end())));
  }
  void collectSubstitutions(std::map<double, double>&) override {}
  ComponentEmbedding embedding(const TranslationConfiguration&) const override {
    return ComponentEmbedding(Component());
  }
  void applyRuntimeParameters(ParameterSetter setter, const ParameterRewrites& rewrites) override {
    if (!tunable_) return;
    if (apply) return apply(setter);
    for (const auto& rewrite : rewrites) setter(rewrite.first, rewrite.second);
  }
  boost::shared_ptr<BlockEntryData> clone() const override { return boost::make_shared<Entry>(*this); }

  std::function<void(const ParameterSetter&)> apply;

 private:
  bool tunable_;
};

class Propagation : public kinemo::test::NoLeaks {
 protected:
  Entry& entry(const char16_t* path, bool tunable = true) {
    auto made = boost::make_shared<Entry>(path, tunable);
    entries.emplace(path, made);
    return *made;
  }
  /// A leaf with the parameter m.
  static Component leaf(const char16_t* path) {
    Component made(kmf::VnIdPath1("test.block"));
    made.addParameter("m", Parameter(number(7)));
    made.tag(gl::core::OBJECT(), ustring(path));
    return made;
  }
  static Component subgraph(const char16_t* path, const Component& inside,
                            const std::map<kmf::VnId, Parameter>& parameters) {
    Graph graph;
    graph.insert(kmf::VnId("B"), inside);
    Component made(graph, parameters);
    made.tag(gl::core::OBJECT(), ustring(path));
    return made;
  }
  static std::string valueOf(const Component& component, const char* id) {
    return shown(component.parameters().at(id).get(kmf::VnIdPathIterator()));
  }
  /// The parameter m of a leaf whose block has `texts` and the names x (run-time) and bad (without a value).
  std::string rewritten(bool warn = true) {
    return valueOf(propagate_component(leaf(u"m/B"), entries, {"x"}, {"bad", "worse"}, warn).component, "m");
  }

  BlockEntryMap entries;
};

}  // namespace gl::gti::test
