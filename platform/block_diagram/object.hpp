#pragma once

// Glossary of the block-diagram host
//   block diagram   a model: a tree of blocks in systems, with lines between their ports
//   system          the contents of the diagram itself or of one subsystem block
//   connection port an undirected port on the left or right side of a block; `gtPort`
//   net             ports of one system that lines join
//   handle          a number that names a block, a port or a diagram as long as it lives; -1.0 is none; never used again
//   mask            dialog parameters in front of a block or subsystem, with a workspace of their evaluated values
//   prototype       the block of a library that is copied whenever a user places one of its kind
//   diagnostic      an error of the host that isn't thrown yet; `GTDiagnostic`
// Full paths join block names by "/" and double a "/" inside a name.
// An implementation provides every operation that the headers of this folder declare.

#include "platform/foundation/export.hpp"
#include "platform/foundation/ustring.hpp"

#include <string>

/// Base of everything that has a handle.
class KINEMO_PLATFORM_API GantrelObject {
 public:
  /// 9 is a block.
  virtual int getGantrelObjectType() const = 0;
  virtual double getHandle() const = 0;
  virtual ~GantrelObject();
};

/// Null for a number that names nothing, or no longer does.
KINEMO_PLATFORM_API GantrelObject* Handle2GantrelObject(double handle);

/// Text of the host; converts to the local code page.
class KINEMO_PLATFORM_API gtsvString {
 public:
  gtsvString() = default;
  explicit gtsvString(ustring text) : text_(std::move(text)) {}
  const ustring& text() const { return text_; }
  std::string get_converted_lcp_str() const;

 private:
  ustring text_;
};
