#pragma once

// Bits of the host's flag words that a core block sets. Their meaning is the host's.

#include <cstdint>

namespace gl::gti::host_flags {

/// Attribute word.
constexpr std::uint32_t ATTRIBUTES = 0x2 | 0x8;
/// Block flags: the block draws an icon of its own.
constexpr std::uint32_t BLOCK_OWN_ICON = 0x2000;
/// Block flags: the mark of a block that holds a generated mask.
constexpr std::uint32_t BLOCK_GENERATED_MASK = 0x10000;
/// Second flag word: cleared in every core block.
constexpr std::uint32_t BLOCK2_CLEARED = 0x20000;
/// Second flag word: set in every core block.
constexpr std::uint32_t BLOCK2_SET = 0x10000;
/// Third flag word: the block asks for a generated mask.
constexpr std::uint32_t BLOCK3_GENERATED_MASK = 0x4;
/// Compile flag word.
constexpr std::uint32_t COMPILE_MARK = 0x200;

}  // namespace gl::gti::host_flags
