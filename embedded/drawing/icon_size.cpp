#include "embedded/drawing/icon_size.hpp"

#include "embedded/drawing/vector_icon.hpp"
#include "platform/block_diagram/block.hpp"
#include "platform/block_diagram/icon.hpp"
#include "platform/foundation/strings.hpp"

#include <algorithm>
#include <filesystem>
#include <mutex>

namespace embedded::drawing {

namespace {

struct KnownSize {
  std::filesystem::file_time_type written;  ///< the smallest of all for a file that isn't there
  boost::optional<Size> size;
};

std::filesystem::file_time_type time_of(const std::string& file) {
  std::error_code error;
  const auto written = std::filesystem::last_write_time(file, error);
  return error ? std::filesystem::file_time_type::min() : written;
}

/// A block that is larger than any other by far would only make all else too small to be seen.
Size bounded(Size page) {
  constexpr double longest_side = 1000;
  const double factor = std::min(1.0, longest_side / std::max(page.width, page.height));
  return {std::max(1.0, page.width * factor), std::max(1.0, page.height * factor)};
}

boost::optional<Size> read_size(const std::string& file) {
  std::string reason;  // is told where the icon is drawn
  const std::unique_ptr<VectorIcon> icon = VectorIcon::load(file, reason);
  return icon && icon->pageSize() ? boost::make_optional(bounded(*icon->pageSize())) : boost::none;
}

boost::optional<Size> size_of_file(const std::string& file) {
  static std::mutex mutex;
  static std::map<std::string, KnownSize> known;
  const std::lock_guard guard(mutex);
  const auto written = time_of(file);
  const auto found = known.find(file);
  if (found != known.end() && found->second.written == written) return found->second.size;
  return (known[file] = {written, read_size(file)}).size;
}

}  // namespace

boost::optional<Size> natural_size(const GTBlock& block) {
  gtsvString style;
  block.getIconStyleName(style);
  const GTIconResource* resource = GTBlockIcon::findResource(style.text());
  if (!resource) return boost::none;
  return size_of_file(kmf::ustring_to_local_encoded_string(resource->file));
}

}  // namespace embedded::drawing
