#include "views/picture/picture.hpp"

#include "embedded/block_diagram/diagram.hpp"
#include "embedded/drawing/short_text.hpp"
#include "platform/foundation/strings.hpp"
#include "views/picture/draw_scene.hpp"
#include "views/picture/scene.hpp"
#include "views/systems.hpp"

#include <algorithm>
#include <cmath>
#include <unordered_map>

namespace kinemo::views::picture {

namespace drawing = embedded::drawing;

namespace {

constexpr GTColor black{0, 0, 0, -1, 0};
constexpr double margin = 20;
constexpr double title_height = 30;
constexpr double smallest_page = 40;
constexpr double most_sharp_pixels = 16e6;
constexpr std::size_t longest_title = 80;

/// Below what the formats take, and in what viewers show.
double longest_side(drawing::Format format) {
  switch (format) {
    case drawing::Format::Png:
      return 16000;
    case drawing::Format::Pdf:
      return 14400;
    default:
      return 900'000;
  }
}

class Pages {
 public:
  Pages(host::Diagram& diagram, const PictureRequest& request) : request_(request), types_(diagram) {
    for (host::System* system : request.systems) scenes_.push_back(make_scene(*system, shapes_, types_));
  }

  std::string draw(double& scale) {
    scale = page_scale();
    drawing::Canvas canvas(request_.format, page_size(scenes_.front()), scale);
    canvas.setTitle(scenes_.front().system->diagram().root().path());
    for (const Scene& scene : scenes_) {
      if (&scene != &scenes_.front()) canvas.nextPage(page_size(scene));
      draw_page(canvas, scene);
      add_outline(canvas, *scene.system);
    }
    return canvas.finish();
  }

 private:
  /// A page of several tells which system it shows.
  bool has_titles() const { return scenes_.size() > 1; }

  double top() const { return margin + (has_titles() ? title_height : 0); }

  static ustring title(const Scene& scene) { return drawing::shortened(scene.system->path(), longest_title); }

  /// Below the entry of the system around it, where that has a page.
  void add_outline(drawing::Canvas& canvas, const host::System& system) {
    const GTBlock* owner = system.owner();
    const auto around = outline_.find(owner != nullptr ? &host::parentSystem(*owner) : nullptr);
    const int inside = around != outline_.end() ? around->second : 0;
    outline_[&system] = canvas.addOutline(owner != nullptr ? owner->getGrName() : system.path(), inside);
  }

  drawing::Size page_size(const Scene& scene) {
    const layout::Rectangle& bounds = scene.drawing.bounds;
    const double title_width = has_titles() ? shapes_.label_size(title(scene)).width / stub_share : 0;
    return {std::max({bounds.width, title_width, smallest_page}) + 2 * margin,
            std::max(bounds.height, smallest_page) + top() + margin};
  }

  /// The same for all pages.
  double page_scale() {
    double longest = 1;
    double area = 1;
    for (const Scene& scene : scenes_) {
      const drawing::Size size = page_size(scene);
      longest = std::max({longest, size.width, size.height});
      area = std::max(area, size.width * size.height);
    }
    // Two pixels for a unit are sharp, one is legible; many pixels take long to pack.
    const double sharp = std::clamp(std::sqrt(most_sharp_pixels / area), 1.0, 2.0);
    const double wanted = request_.format == drawing::Format::Png ? sharp : 1;
    return std::min(wanted, (longest_side(request_.format) - 1) / longest);
  }

  void draw_page(drawing::Canvas& canvas, const Scene& scene) {
    if (has_titles()) {
      canvas.drawText(title(scene), {margin, margin}, GT_ALIGN_LEFT, GT_ALIGN_TOP, black);
    }
    draw_scene(canvas, scene, request_.marks, {margin, top()});
  }

  const PictureRequest& request_;
  NetTypes types_;
  ShapeMaker shapes_;
  std::vector<Scene> scenes_;
  std::unordered_map<const host::System*, int> outline_;
};

constexpr GTColor net_color{0.9, 0.45, 0.0, -1, 0};
constexpr GTColor net_light{1.0, 0.85, 0.5, -1, 0};

}  // namespace

boost::optional<drawing::Format> picture_format(const std::string& name) {
  const std::string ending = kmf::lower(name.substr(name.rfind('.') + 1));
  if (ending == "svg") return drawing::Format::Svg;
  if (ending == "png") return drawing::Format::Png;
  if (ending == "pdf") return drawing::Format::Pdf;
  return boost::none;
}

PictureRequest request_picture(host::Diagram& diagram, drawing::Format format, host::System* system, gtPort* net) {
  PictureRequest request;
  request.format = format;
  if (net != nullptr) {
    request.marks.color = net_color;
    request.marks.light = net_light;
    request.marks.add_net(*net);
  }
  if (system != nullptr) {
    request.systems = {system};
  } else if (format == drawing::Format::Pdf) {
    for_each_system(diagram, [&](host::System& each) { request.systems.push_back(&each); });
  } else {
    request.systems = {net != nullptr ? &host::parentSystem(*net->getGrOwnerBlock()) : &diagram.root()};
  }
  return request;
}

bool shows_net(const PictureRequest& request, const host::System& system) {
  return std::any_of(request.marks.ports.begin(), request.marks.ports.end(),
                     [&](const gtPort* port) { return &host::parentSystem(*port->getGrOwnerBlock()) == &system; });
}

std::string make_picture(host::Diagram& diagram, const PictureRequest& request, double* scale) {
  double used = 1;
  std::string bytes = Pages(diagram, request).draw(used);
  if (scale != nullptr) *scale = used;
  return bytes;
}

}  // namespace kinemo::views::picture
