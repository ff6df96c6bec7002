#include "embedded/compile_layer/stages.hpp"

#include "embedded/block_diagram/block_data.hpp"
#include "platform/scripting_runtime/scripting_runtime.hpp"

#include <algorithm>

namespace embedded::compile_layer {

void Counter::step() {
  ++done_;
  if (done_ % interval != 0 && done_ != total_) return;
  if (kmf::interrupt_requested()) kmf::throw_message("kinemo:host:compile", "Interrupted", stage_);
  if (progress_) progress_(stage_, done_, total_);
}

void BlockErrors::add(const GTBlock& block, const kmf::Exception& error) {
  const ustring path = block.getFullPath(true);
  const auto* attributed = dynamic_cast<const kmf::AttributedException*>(&error);
  std::shared_ptr<const kmf::Exception> copy = error.clone();
  if (attributed) {
    const std::vector<ustring>& objects = attributed->objects();
    const bool named = std::find(objects.begin(), objects.end(), path) != objects.end();
    // The clone is ours alone until it is kept.
    if (!named) dynamic_cast<kmf::AttributedException&>(const_cast<kmf::Exception&>(*copy)).addObject(path);
  }
  errors_.emplace_back(block.getHandle(), std::move(copy));
}

void BlockErrors::raise() {
  if (errors_.empty()) return;
  std::stable_sort(errors_.begin(), errors_.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
  kmf::MessageException error(kmf::Message(kmf::MessageId("kinemo:host:compile", "ParameterErrors", model_)));
  for (const auto& entry : errors_) error.addCause(*entry.second);
  throw error;
}

const block_diagram::System* compiledContents(const GTBlock& block) {
  return block_diagram::isOpaque(block) ? nullptr : block_diagram::contents(block);
}

}  // namespace embedded::compile_layer
