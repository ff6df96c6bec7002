#include "formats/diagram/linked_files.hpp"

#include "formats/read_text.hpp"

namespace kinemo::formats::diagram {

ModelFile::ModelFile(std::string shown_name, std::filesystem::path where, const std::string& text,
                     DiagnosticList& problems)
    : name(std::make_shared<const std::string>(std::move(shown_name))),
      location(std::move(where)),
      tree(text, *name, problems) {}

const ModelFile& LinkedFiles::add(std::string shown_name, std::filesystem::path location, const std::string& text) {
  auto file = std::make_unique<ModelFile>(std::move(shown_name), location, text, problems_);
  return *(files_[std::move(location)] = std::move(file));
}

const ModelFile* LinkedFiles::open(const ModelFile& from, const std::string& path, std::string& reason) {
  std::error_code ignored;
  const std::filesystem::path written = from.location.parent_path() / path;
  std::filesystem::path location = std::filesystem::weakly_canonical(written, ignored);
  if (ignored) location = written.lexically_normal();
  const auto known = files_.find(location);
  if (known != files_.end()) return known->second.get();
  const auto text = read_text(location.string(), reason);
  if (!text) return nullptr;
  // Shown relative to where the model's own name was given from, so that messages read as the user typed the paths.
  const std::filesystem::path shown = (std::filesystem::path(*from.name).parent_path() / path).lexically_normal();
  return &add(shown.string(), location, *text);
}

bool names_a_file(const std::string& type) {
  const auto starts = [&](std::string_view start) { return type.compare(0, start.size(), start) == 0; };
  const auto ends = [&](std::string_view end) {
    return type.size() > end.size() && type.compare(type.size() - end.size(), end.size(), end) == 0;
  };
  return starts("./") || starts("../") || starts("/") || ends(".yaml") || ends(".yml") || ends(".json");
}

}  // namespace kinemo::formats::diagram
