#pragma once

// Taking the text of a block path apart. The separator is a single "/"; a pair of adjacent ones is text. In a run of an
// odd count the first one separates, and the others pair up; a separator at the front of a text never separates.
// All functions are linear in the text and return views of it.

#include "platform/foundation/ustring.hpp"

#include <string_view>
#include <utility>
#include <vector>

namespace gl::gti {

/// The text before the last separator; empty when there is none.
std::u16string_view parent_text(std::u16string_view text);
/// The first component: what is left when `parent_text` is taken until there is no parent.
std::u16string_view front_text(std::u16string_view text);
/// The text behind the first component and its separator.
std::u16string_view rest_text(std::u16string_view text);
/// The last component: the text behind the parent and its separator. A separator at the end of the text is lost.
std::u16string_view back_text(std::u16string_view text);
/// What stands around the last component, empty for an only one, and the last component. As in `back_text`.
std::pair<std::u16string_view, std::u16string_view> split_last(std::u16string_view text);
/// All components: `front_text` of the text, of its rest, and so on.
std::vector<std::u16string_view> split_path_text(std::u16string_view text);

}  // namespace gl::gti
