#include "formats/spice/read_netlist.hpp"

#include <filesystem>

#include "embedded/block_diagram/diagram.hpp"
#include "formats/spice/diagram_builder.hpp"
#include "formats/spice/faulty_blocks.hpp"
#include "formats/spice/netlist_reader.hpp"
#include "formats/spice/text_file.hpp"
#include "platform/foundation/exception.hpp"
#include "platform/foundation/vn_id.hpp"

namespace kinemo::formats::spice {

namespace {

using embedded::block_diagram::Diagram;

std::string model_name(const TextFile& file, const Options& options) {
  const std::string& given = options.model_name;
  const std::string stem = std::filesystem::path(file.shown_name).stem().string();
  if (!given.empty()) {
    return given;
  }
  return kmf::VnId::make(stem.empty() || stem == "-" ? "netlist" : stem);
}

/// Null where the diagram couldn't be begun.
Diagram* build(Netlist& netlist, const std::string& name, const TextFile& file, DiagnosticList& diagnostics,
               bool has_mistakes) {
  Diagram* diagram = nullptr;
  try {
    diagram = &Diagram::create(name);
    build_diagram(netlist, *diagram, diagnostics, has_mistakes);
  } catch (const kmf::Exception& raised) {
    diagnostics.error("spice:host", {file.shown_name, 0, 0}, raised.what());
  } catch (...) {
    if (diagram != nullptr) {
      Diagram::close(*diagram);
    }
    throw;
  }
  return diagram;
}

Diagram* read(const std::shared_ptr<const TextFile>& file, const Options& options, DiagnosticList& diagnostics) {
  const std::size_t errors_before = diagnostics.error_count();
  const auto is_right = [&] { return diagnostics.error_count() == errors_before; };
  Netlist netlist = read_cards_and_resolve(file, diagnostics);
  Diagram* diagram = nullptr;
  if (is_right()) {
    diagram = build(netlist, model_name(*file, options), *file, diagnostics, false);
  } else if (options.on_errors == OnErrors::keep && !netlist.too_large) {
    DiagnosticList consequences;  // of what has been told
    diagram = build(netlist, model_name(*file, options), *file, consequences, true);
  }
  diagnostics.sort();
  if (diagram == nullptr || is_right()) {
    return diagram;
  }
  if (options.on_errors == OnErrors::close) {
    Diagram::close(*diagram);
    return nullptr;
  }
  point_at_blocks(netlist, *diagram, diagnostics);
  return diagram;
}

}  // namespace

Diagram* read_netlist(const std::string& path, const Options& options, DiagnosticList& diagnostics) {
  std::string reason;
  TextFiles files;
  const auto file = files.load(path, path, reason);
  if (file == nullptr) {
    diagnostics.error("spice:missing_file", {path, 0, 0}, "the file can't be read: " + reason);
    return nullptr;
  }
  return read(file, options, diagnostics);
}

Diagram* read_netlist_text(const std::string& text, const std::string& name, const Options& options,
                           DiagnosticList& diagnostics) {
  if (looks_binary(text)) {
    diagnostics.error("spice:missing_file", {name, 0, 0}, "the text holds null bytes, so it is no netlist");
    return nullptr;
  }
  return read(make_text_file(name, name, text), options, diagnostics);
}

}  // namespace kinemo::formats::spice
