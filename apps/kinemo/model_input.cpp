#include "apps/kinemo/model_input.hpp"

#include "apps/kinemo/console.hpp"
#include "apps/kinemo/exit_codes.hpp"
#include "formats/diagram/read_diagram.hpp"
#include "formats/model_format.hpp"
#include "formats/read_text.hpp"
#include "formats/spice/read_netlist.hpp"

#include <iostream>

namespace kinemo::app {

namespace {

std::string read_input(const Options& options, const std::string& shown) {
  std::string reason;
  const auto text =
      options.model == "-" ? formats::read_text(std::cin, reason) : formats::read_given_text(options.model, reason);
  if (!text) throw UsageError("can't read '" + shown + "': " + reason);
  return *text;
}

}  // namespace

embedded::block_diagram::Diagram* read_model(const Options& options, const std::string& shown, Console& console,
                                             formats::DiagnosticList& list, formats::OnErrors on_errors) {
  const std::string text = read_input(options, shown);
  using formats::ModelFormat;
  const ModelFormat format = options.input_format.empty()        ? formats::detect_format(options.model, text)
                             : options.input_format == "diagram" ? ModelFormat::diagram
                                                                 : ModelFormat::spice;
  console.verbose("reading " + shown + (format == ModelFormat::diagram ? " as a diagram" : " as a netlist"));
  if (format == ModelFormat::diagram) return formats::diagram::read_diagram_text(text, shown, list, on_errors);
  formats::spice::Options netlist;
  if (options.model == "-") netlist.model_name = "model";
  netlist.on_errors = on_errors;
  return formats::spice::read_netlist_text(text, shown, netlist, list);
}

}  // namespace kinemo::app
