// One run of the program: the environment with its domain modules, and the steps that commands share. Made by `main`.
#pragma once

#include "apps/kinemo/console.hpp"
#include "apps/kinemo/options.hpp"
#include "embedded/environment/environment.hpp"
#include "formats/diagnostics.hpp"
#include "formats/on_errors.hpp"
#include "platform/graph_core/graph.hpp"

#include <boost/optional.hpp>

#include <string>

namespace embedded::block_diagram {
class Diagram;
}
namespace kmf::embedded {
class WarningCapture;
}

namespace kinemo::app {

/// What a domain made of a diagram.
struct CompiledModel {
  std::string domain;
  gl::core::Model model;
};

/// Warnings of the host as those of a file.
void add_warnings(const kmf::embedded::WarningCapture& capture, const std::string& file, formats::DiagnosticList& list);

class Session {
 public:
  /// Opens the domain modules. @throws UsageError
  Session(const Options& options, Console& console);

  const Options& options() const { return options_; }
  Console& console() { return console_; }
  /// How messages name the model's file.
  std::string model_file() const;

  /// Reads the model; where it has errors, which are in the list then, null or what could be read. @throws UsageError
  embedded::block_diagram::Diagram* read(formats::DiagnosticList& list,
                                         formats::OnErrors on_errors = formats::OnErrors::close);
  /// Opens the models that a script works with, and tells their errors on standard error. Whether all are right.
  /// @throws UsageError
  bool open_models();
  /// Compiles; none where it has errors, which are in the list then. Warnings of the compile are in it, too.
  boost::optional<CompiledModel> compile(embedded::block_diagram::Diagram& diagram, formats::DiagnosticList& list);
  /// Both, with everything that is to be said told on standard error.
  boost::optional<CompiledModel> read_and_compile(embedded::block_diagram::Diagram*& diagram);

 private:
  void load_domains();
  embedded::block_diagram::Diagram* read(const Options& options, const std::string& shown,
                                         formats::DiagnosticList& list, formats::OnErrors on_errors);

  const Options& options_;
  Console& console_;
  embedded::Environment environment_;
};

}  // namespace kinemo::app
