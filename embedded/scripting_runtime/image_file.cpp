#include "embedded/scripting_runtime/image_file.hpp"

#include "embedded/foundation/read_file.hpp"
#include "embedded/scripting_runtime/errors.hpp"
#include "embedded/scripting_runtime/evaluate.hpp"
#include "embedded/scripting_runtime/numbers.hpp"
#include "platform/foundation/strings.hpp"

#include <gdk-pixbuf/gdk-pixbuf.h>

#include <memory>

namespace embedded::scripting_runtime {

namespace {

constexpr std::size_t file_limit = std::size_t{1} << 28;

struct Unref {
  void operator()(void* object) const { g_object_unref(object); }
};
struct FreeError {
  void operator()(GError* error) const { g_error_free(error); }
};
using Pixbuf = std::unique_ptr<GdkPixbuf, Unref>;
using Loader = std::unique_ptr<GdkPixbufLoader, Unref>;
using Error = std::unique_ptr<GError, FreeError>;

[[noreturn]] void throw_unreadable(const std::string& file, const std::string& reason) {
  throw_runtime_error("CannotReadImage", file, reason);
}

[[noreturn]] void throw_unreadable(const std::string& file, GError* error) {
  const Error owned(error);
  throw_unreadable(file, owned ? std::string(owned->message) : std::string("the data end too early"));
}

/// Set when an image announces a size that no array can take; it isn't decoded then.
struct SizeCheck {
  int width = 0;
  int height = 0;
  bool too_large = false;
};

void check_size(GdkPixbufLoader* loader, int width, int height, gpointer data) {
  auto& check = *static_cast<SizeCheck*>(data);
  check.width = width;
  check.height = height;
  const std::size_t elements = 3 * static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
  const std::size_t allowed = limits().array_bytes;
  check.too_large = allowed != 0 && elements > allowed / sizeof(double);
  if (check.too_large) gdk_pixbuf_loader_set_size(loader, 0, 0);
}

Pixbuf decode(const std::string& file, const std::string& bytes) {
  const Loader loader(gdk_pixbuf_loader_new());
  SizeCheck size;
  g_signal_connect(loader.get(), "size-prepared", G_CALLBACK(check_size), &size);
  GError* error = nullptr;
  const auto* data = reinterpret_cast<const guchar*>(bytes.data());
  const bool written = gdk_pixbuf_loader_write(loader.get(), data, bytes.size(), &error) != 0;
  // A loader must be closed in any case; its second error would only repeat the first.
  const bool closed = gdk_pixbuf_loader_close(loader.get(), written ? &error : nullptr) != 0;
  if (size.too_large) {
    const Error owned(error);
    checked_count({static_cast<std::size_t>(size.height), static_cast<std::size_t>(size.width), 3});
  }
  GdkPixbuf* image = written && closed ? gdk_pixbuf_loader_get_pixbuf(loader.get()) : nullptr;
  if (image == nullptr) throw_unreadable(file, error);
  return Pixbuf(static_cast<GdkPixbuf*>(g_object_ref(image)));
}

/// One channel of a pixel in front of white.
double on_white(const guchar* pixel, std::size_t channel, bool has_alpha) {
  constexpr unsigned full = 255;
  const unsigned alpha = has_alpha ? pixel[3] : full;
  return (pixel[channel] * alpha + full * (full - alpha) + full / 2) / full;
}

cvUniquePtr array_of_image(const GdkPixbuf* image, std::size_t channels) {
  const auto rows = static_cast<std::size_t>(gdk_pixbuf_get_height(image));
  const auto columns = static_cast<std::size_t>(gdk_pixbuf_get_width(image));
  const auto stride = static_cast<std::size_t>(gdk_pixbuf_get_rowstride(image));
  const auto step = static_cast<std::size_t>(gdk_pixbuf_get_n_channels(image));
  const bool has_alpha = gdk_pixbuf_get_has_alpha(image) != 0;
  const guchar* pixels = gdk_pixbuf_read_pixels(image);
  Shape shape = {rows, columns};
  if (channels > 1) shape.push_back(channels);
  Numbers numbers = Numbers::zeros(shape, cvUINT8_CLASS);
  for (std::size_t row = 0; row < rows; ++row) {
    for (std::size_t column = 0; column < columns; ++column) {
      const guchar* pixel = pixels + row * stride + column * step;
      for (std::size_t channel = 0; channel < channels; ++channel)
        numbers.re[row + rows * (column + columns * channel)] = on_white(pixel, channel, has_alpha);
    }
  }
  return array_of(std::move(numbers));
}

}  // namespace

cvUniquePtr read_image(const std::string& file) {
  const std::string path = kmf::ustring_to_local_encoded_string(kmf::utf8_string_to_ustring(file));
  const auto bytes = kmf::embedded::read_regular_file(path, file_limit);
  if (!bytes) throw_unreadable(file, "there is no such file, or it can't be opened");
  const Pixbuf image = decode(file, *bytes);
  if (ends_too_early(*bytes)) throw_unreadable(file, "the data end too early");
  return array_of_image(image.get(), is_gray_image(*bytes) ? 1 : 3);
}

}  // namespace embedded::scripting_runtime
