#pragma once

#include "platform/block_diagram/dialog.hpp"

#include <memory>

/// Dialog information as blocks of a kind share it. A change through one block is that block's alone.
struct GTDialogInfo {
  struct Contents {
    ustring description;
    GTPrmDesc** descriptors = nullptr;
    int count = 0;
  };

  std::shared_ptr<const Contents> contents;

  /// Contents of this block's own, to be written to.
  Contents& edit();
  int count() const { return contents ? contents->count : 0; }
  /// Null out of range.
  const GTPrmDesc* descriptor(int i) const;
  /// -1 when there is none of that name.
  int find(const std::string& name) const;
};
