#pragma once

// Masks as the host keeps them: one kind for all blocks that share a definition, and for each block the texts that
// differ from the defaults.

#include "embedded/block_diagram/dialog_data.hpp"
#include "embedded/block_diagram/shared_text.hpp"
#include "platform/block_diagram/mask.hpp"
#include "platform/scripting_array/scripting_array.hpp"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace embedded::block_diagram {

/// What follows from a definition alone. Kept as long as a block has it.
class MaskKind {
 public:
  /// The kind of a definition. @throws "kinemo:host:diagram" "InvalidMaskParameter" (parameter, mask)
  static std::shared_ptr<MaskKind> of(const boost::shared_ptr<const GTMaskDefinition>& definition);
  explicit MaskKind(const boost::shared_ptr<const GTMaskDefinition>& definition);
  ~MaskKind();

  const boost::shared_ptr<const GTMaskDefinition>& definition() const { return definition_; }
  const std::vector<GTMaskParameter>& parameters() const { return definition_->parameters; }
  const SharedText& defaultText(std::size_t i) const { return defaults_[i]; }
  /// -1 when there is none of that name.
  int find(std::string_view name) const;
  GTDialogInfo* dialog();

 private:
  boost::shared_ptr<const GTMaskDefinition> definition_;
  std::vector<SharedText> defaults_;
  std::unordered_map<std::string_view, int> index_;
  std::vector<std::unique_ptr<GTPrmDesc>> descriptors_;
  std::vector<GTPrmDesc*> pointers_;
  GTDialogInfo dialog_;
};

}  // namespace embedded::block_diagram

/// The mask of one block.
struct GTMask {
  GTBlock* owner = nullptr;
  std::shared_ptr<embedded::block_diagram::MaskKind> kind;
  /// Texts that differ from the defaults, by ascending parameter number.
  std::vector<std::pair<std::uint32_t, embedded::block_diagram::SharedText>> texts;
  /// Values of the last evaluation, one for each parameter, null where it failed; empty before the first one.
  std::vector<cvUniquePtr> values;

  std::size_t size() const { return kind->parameters().size(); }
  const embedded::block_diagram::SharedText& text(std::size_t i) const;
  void setText(std::size_t i, const ustring& text);
};

namespace embedded::block_diagram {

/// The block's own mask, or the nearest one around it; null when there is none.
GTMask* maskAround(const GTBlock* block);
/// The nearest mask outside of `block`; null when there is none.
GTMask* maskOutside(const GTBlock* block);

}  // namespace embedded::block_diagram
