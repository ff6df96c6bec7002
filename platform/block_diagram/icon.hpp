#pragma once

// Icons that the host's icon service draws from vector graphics.
//
// Glossary
//   key             text that names an icon in the process; a block whose style name is the key is drawn with the icon
//   resource        what is kept for a key: the file, and the choices of style
//   style           a choice by name, such as "Resize" = "FitToBlock"; unknown ones have no effect
//   port label      text beside a port of the icon
//   setting         a text by name that steers the vector graphics of the whole process
//
// An implementation provides every operation declared here. A file that can't be drawn is told when a block is drawn.

#include "platform/foundation/export.hpp"
#include "platform/foundation/ustring.hpp"

#include <map>
#include <string>
#include <utility>
#include <vector>

/// What is kept for an icon.
struct GTIconResource {
  ustring file;
  std::map<ustring, ustring> styles;
};

/// The icons of the process, by key.
class KINEMO_PLATFORM_API GTBlockIcon {
 public:
  static bool isBlockIconRegistered(const ustring& key);
  /// Makes the icon known, in place of an earlier one of that key. The file isn't read yet.
  static void registerBlockIconFromResource(const ustring& key, const ustring& file,
                                            const std::map<ustring, ustring>& styles);
  /// Null for an unknown key; valid until the key is registered again.
  static const GTIconResource* findResource(const ustring& key);
};

/// Sides of an icon, counted against the clock from the right.
enum GTIconSide { GT_ICON_RIGHT = 0, GT_ICON_TOP = 1, GT_ICON_LEFT = 2, GT_ICON_BOTTOM = 3 };

/// What a block tells the icon service for one drawing.
class IconData {
 public:
  struct PortLabel {
    int side;  ///< a GTIconSide of the icon as it is before rotation
    int index;
    ustring label;
    ustring second;  ///< a second line; empty for none
  };

  void setPortLabel(int side, int index, const ustring& label, const ustring& second) {
    labels_.push_back({side, index, label, second});
  }
  const std::vector<PortLabel>& portLabels() const { return labels_; }

 private:
  std::vector<PortLabel> labels_;
};

/// A setting of the vector graphics library; empty for a name without one.
/// "KMDVGLabel": "on" or "off", whether the icon service draws port labels.
KINEMO_PLATFORM_API ustring kmdvg_setting(const std::string& name);
