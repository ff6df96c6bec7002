// What the image library doesn't tell of a file: whether it is stored in shades of gray, which the library turns into
// colours, and whether it was cut off, which it makes up for with pixels of its own.

#include "embedded/scripting_runtime/image_file.hpp"

namespace embedded::scripting_runtime {

namespace {

constexpr std::string_view png_head = "\x89PNG\r\n\x1A\n";
constexpr std::string_view jpeg_head = "\xFF\xD8\xFF";

unsigned byte_at(std::string_view bytes, std::size_t i) {
  return i < bytes.size() ? static_cast<unsigned char>(bytes[i]) : 0U;
}

bool begins_with(std::string_view bytes, std::string_view head) {
  return bytes.substr(0, head.size()) == head;
}

/// Colour type of the header chunk: 0 is gray, 4 is gray with transparency.
bool is_gray_png(std::string_view bytes) {
  constexpr std::size_t color_type = 25;
  return bytes.size() > color_type && (bytes[color_type] == 0 || bytes[color_type] == 4);
}

bool is_start_of_frame(unsigned marker) {
  return marker >= 0xC0 && marker <= 0xCF && marker != 0xC4 && marker != 0xC8 && marker != 0xCC;
}

/// One component in the header of the frame.
bool is_gray_jpeg(std::string_view bytes) {
  constexpr std::size_t components = 9;  // behind the segment's marker
  for (std::size_t at = 2; at + components < bytes.size() && byte_at(bytes, at) == 0xFF;) {
    const unsigned marker = byte_at(bytes, at + 1);
    if (is_start_of_frame(marker)) return byte_at(bytes, at + components) == 1;
    // A marker may be filled up with further bytes 0xFF.
    at += marker == 0xFF ? 1 : 2 + 256 * byte_at(bytes, at + 2) + byte_at(bytes, at + 3);
  }
  return false;
}

/// "P1", "P4" are black and white, "P2", "P5" gray.
bool is_gray_pnm(std::string_view bytes) {
  return bytes.size() > 2 && bytes[0] == 'P' && std::string_view("1245").find(bytes[1]) != std::string_view::npos;
}

/// Without the chunk that ends the file.
bool is_cut_png(std::string_view bytes) {
  constexpr std::size_t head = 8;
  constexpr std::size_t around_data = 12;  // length, type, checksum
  for (std::size_t at = head; at + around_data <= bytes.size();) {
    if (bytes.substr(at + 4, 4) == "IEND") return false;
    std::size_t length = 0;
    for (std::size_t i = 0; i < 4; ++i) length = 256 * length + byte_at(bytes, at + i);
    at += around_data + length;
  }
  return true;
}

/// Without the marker that ends an image after the last scan begins. Neither marker can stand among a scan's data.
bool is_cut_jpeg(std::string_view bytes) {
  const std::size_t scan = bytes.rfind("\xFF\xDA");
  return scan != std::string_view::npos && bytes.find("\xFF\xD9", scan) == std::string_view::npos;
}

}  // namespace

bool ends_too_early(std::string_view bytes) {
  if (begins_with(bytes, png_head)) return is_cut_png(bytes);
  return begins_with(bytes, jpeg_head) && is_cut_jpeg(bytes);
}

bool is_gray_image(std::string_view bytes) {
  if (begins_with(bytes, png_head)) return is_gray_png(bytes);
  if (begins_with(bytes, jpeg_head)) return is_gray_jpeg(bytes);
  return is_gray_pnm(bytes);
}

}  // namespace embedded::scripting_runtime
