#include "views/error_diagnostics.hpp"

#include "embedded/block_diagram/diagram.hpp"
#include "platform/foundation/exception.hpp"
#include "platform/foundation/strings.hpp"
#include "views/block_ports.hpp"

#include <algorithm>
#include <array>
#include <string_view>
#include <vector>

namespace kinemo::views {

namespace host = embedded::block_diagram;

namespace {

std::string rule_of(const kmf::ErrorData& error) {
  return error.id.empty() ? "kinemo:error" : error.group + ":" + error.id;
}

/// Errors that say nothing but that there are others.
bool only_gathers(const kmf::ErrorData& error) {
  static constexpr std::array<std::string_view, 2> gathering{"kinemo:common:gl:gti:compile:MultipleCompilationErrors",
                                                             "kinemo:host:compile:ParameterErrors"};
  return !error.causes.empty() && std::find(gathering.begin(), gathering.end(), rule_of(error)) != gathering.end();
}

formats::SourcePlace to_place(const host::SourcePlace& place, const std::string& file) {
  return {place.file != nullptr ? *place.file : file, static_cast<std::size_t>(std::max(place.line, 0)),
          static_cast<std::size_t>(std::max(place.column, 0))};
}

/// Of the setting that an error is about; line 0 for other errors.
host::SourcePlace place_of_setting(const kmf::ErrorData& error, const host::Diagram* diagram) {
  if (diagram == nullptr || rule_of(error) != "kinemo:common:gl:gti:compile:ConfigSetEvalErr") return {};
  return diagram->parameterPlace(error.arguments.at(1));
}

/// The first object of the error, or of the nearest cause that has one: the block that an error without objects of its
/// own is about.
std::string first_object(const kmf::ErrorData& error) {
  std::vector<const kmf::ErrorData*> queue{&error};
  for (std::size_t i = 0; i < queue.size(); ++i) {
    if (!queue[i]->objects.empty()) return queue[i]->objects.front();
    for (const kmf::ErrorData& cause : queue[i]->causes) queue.push_back(&cause);
  }
  return {};
}

class Adder {
 public:
  Adder(const host::Diagram* diagram, const std::string& file, formats::DiagnosticList& list)
      : diagram_(diagram), file_(file), list_(list) {}

  void add(const kmf::ErrorData& error) {
    std::vector<const kmf::ErrorData*> pending{&error};
    while (!pending.empty()) {
      const kmf::ErrorData* next = pending.back();
      pending.pop_back();
      if (!only_gathers(*next)) {
        add_one(*next);
        continue;
      }
      for (auto cause = next->causes.rbegin(); cause != next->causes.rend(); ++cause) pending.push_back(&*cause);
    }
  }

 private:
  void add_one(const kmf::ErrorData& error) {
    const host::SourcePlace setting = place_of_setting(error, diagram_);
    formats::Diagnostic& diagnostic = list_.error(
        rule_of(error), setting.line != 0 ? to_place(setting, file_) : place_of(first_object(error), diagram_, file_),
        error.text);
    add_objects(diagnostic, error);
    std::vector<const kmf::ErrorData*> causes;
    push_causes(error, causes);
    while (!causes.empty()) {
      const kmf::ErrorData* cause = causes.back();
      causes.pop_back();
      diagnostic.notes.push_back({"because: " + cause->text, {}});
      add_objects(diagnostic, *cause);
      push_causes(*cause, causes);
    }
  }

  static void push_causes(const kmf::ErrorData& error, std::vector<const kmf::ErrorData*>& causes) {
    for (auto cause = error.causes.rbegin(); cause != error.causes.rend(); ++cause) causes.push_back(&*cause);
  }

  void add_objects(formats::Diagnostic& diagnostic, const kmf::ErrorData& error) {
    for (const std::string& object : error.objects) {
      diagnostic.objects.push_back({object, {}, false});
      const std::string text = "in " + object;
      const bool told = std::any_of(diagnostic.notes.begin(), diagnostic.notes.end(),
                                    [&](const formats::DiagnosticNote& note) { return note.text == text; });
      if (told) continue;
      formats::SourcePlace place = place_of(object, diagram_, {});
      const bool same = place.file == diagnostic.file && place.line == diagnostic.line;
      diagnostic.notes.push_back({text, same ? formats::SourcePlace{} : place});
    }
  }

  const host::Diagram* diagram_;
  const std::string& file_;
  formats::DiagnosticList& list_;
};

}  // namespace

formats::SourcePlace place_of(const std::string& block_path, const host::Diagram* diagram, const std::string& file) {
  if (diagram == nullptr || block_path.empty()) return {file, 0, 0};
  const std::string inner = relative_path(kmf::utf8_string_to_ustring(block_path));
  const GTBlock* block = diagram->findBlock(kmf::utf8_string_to_ustring(inner));
  while (block != nullptr) {
    const host::SourcePlace place = host::sourcePlace(*block);
    if (place.line != 0) return to_place(place, file);
    block = host::parentSystem(*block).owner();
  }
  return {file, 0, 0};
}

void add_error(const kmf::Exception& error, const host::Diagram* diagram, const std::string& file,
               formats::DiagnosticList& list) {
  Adder(diagram, file, list).add(error.data());
}

}  // namespace kinemo::views
