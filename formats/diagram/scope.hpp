// Where the reader of a diagram stands when it looks at a node: file, system and block. Errors are told through a
// scope, so that each names its place, the block's path, and what would have been valid. Scopes are small and passed by
// reference; they own nothing.
#pragma once

#include "embedded/block_diagram/diagram.hpp"
#include "formats/diagnostics.hpp"
#include "formats/diagram/keys.hpp"
#include "formats/diagram/linked_files.hpp"

#include <functional>
#include <optional>
#include <set>
#include <string>
#include <tuple>
#include <vector>

namespace kinemo::formats::diagram {

namespace host = embedded::block_diagram;

/// Hands errors on, each once: a part that is linked a thousand times tells its faults one time.
class Report {
 public:
  explicit Report(DiagnosticList& list) : list_(list), errors_before_(list.error_count()) {}

  /// The new error for its notes; null when it has been told, or when there are too many.
  Diagnostic* error(const std::string& rule, const SourcePlace& place, const std::string& text);
  Diagnostic* warning(const std::string& rule, const SourcePlace& place, const std::string& text);
  bool has_errors() const { return list_.error_count() != errors_before_; }
  DiagnosticList& list() { return list_; }
  /// The nearest of many names, as long as the search for near ones stays cheap on the whole.
  std::string suggest(const std::string& name, const std::vector<std::string>& known);

  static constexpr std::size_t error_limit = 10'000;

 private:
  bool is_new(const SourcePlace& place, const std::string& text);

  DiagnosticList& list_;
  std::size_t errors_before_;
  bool full_ = false;  ///< more than `error_limit` were to be told
  std::size_t comparisons_left_ = 5'000'000;
  std::set<std::tuple<std::string, std::size_t, std::size_t, std::string>> told_;
};

struct Scope {
  Report& report;
  const ModelFile& file;
  const LinkStep* links;   ///< the way of links to `file`
  host::System* system;    ///< null while there is none
  std::string block = {};  ///< UTF-8 name of the block in the system that is being read; may be empty

  Scope at_block(const std::string& name) const { return {report, file, links, system, name}; }
  SourcePlace place(const YamlNode& node) const { return {*file.name, node.line, node.column}; }
  host::SourcePlace host_place(const YamlNode& node) const {
    return {file.name, static_cast<int>(node.line), static_cast<int>(node.column)};
  }
  /// Path of the block or system as messages show it, UTF-8; empty when there is none yet.
  std::string path() const;
  /// The block, or else the system.
  DiagnosticObject object() const;

  /// Tells an error, with the path and what would be `valid` as notes. It is about the object, or else about the block
  /// or system.
  void error(const YamlNode& at, const std::string& rule, const std::string& text, const std::string& valid = {},
             const std::optional<DiagnosticObject>& object = {}) const;
  void warning(const YamlNode& at, const std::string& rule, const std::string& text,
               const std::string& valid = {}) const;
  /// Runs an operation of the host and tells what it raises at `at`; false when it raised.
  bool guarded(const YamlNode& at, const std::function<void()>& operation) const;
};

// --- what a node must be; each tells an error where it isn't

/// A mapping whose keys are all known for the kind. Nothing at all counts as an empty mapping.
bool expect_object(const Scope& scope, const YamlNode& node, ObjectKind kind);
/// A file's root must say the version of the format.
void check_version(const Scope& scope, const YamlNode& root);
/// A mapping of names that the user chooses, or nothing.
bool expect_mapping(const Scope& scope, const YamlNode& node, const std::string& what);
bool expect_list(const Scope& scope, const YamlNode& node, const std::string& what);
std::optional<std::string> expect_text(const Scope& scope, const YamlNode& node, const std::string& what);
/// on, off, true, false, yes or no.
std::optional<bool> expect_switch(const Scope& scope, const YamlNode& node, const std::string& what);
std::optional<double> expect_number(const Scope& scope, const YamlNode& node, const std::string& what);

}  // namespace kinemo::formats::diagram
