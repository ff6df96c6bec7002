#pragma once

// Owners of what the drawing libraries hand out.

#include <cairo.h>
#include <glib-object.h>

#include <memory>

namespace embedded::drawing {

struct EndSurface {
  void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
};
struct EndContext {
  void operator()(cairo_t* context) const { cairo_destroy(context); }
};
struct EndError {
  void operator()(GError* error) const { g_error_free(error); }
};
struct EndObject {
  void operator()(void* object) const { g_object_unref(object); }
};

using SurfacePointer = std::unique_ptr<cairo_surface_t, EndSurface>;
using ContextPointer = std::unique_ptr<cairo_t, EndContext>;
using ErrorPointer = std::unique_ptr<GError, EndError>;
template <class Object>
using ObjectPointer = std::unique_ptr<Object, EndObject>;

/// Keeps the state of a context for a scope.
class SavedContext {
 public:
  explicit SavedContext(cairo_t* context) : context_(context) { cairo_save(context_); }
  SavedContext(const SavedContext&) = delete;
  SavedContext& operator=(const SavedContext&) = delete;
  ~SavedContext() { cairo_restore(context_); }

 private:
  cairo_t* context_;
};

}  // namespace embedded::drawing
