#include "common/gl/gti/src/kernel/coreblock/icon_styling.hpp"

#include "platform/foundation/strings.hpp"
#include "platform/scripting_runtime/scripting_runtime.hpp"

#include <cstdio>
#include <cstdlib>

namespace gl::gti {

namespace {

struct Row {
  const char* key;
  const char* value;
};

constexpr Row plain_rows[] = {
    {"Resize", "FitToBlock"},
    {"Geometric", "Off"},
    {"TextScalingOnResize", "Constant"},
    {"StrokeScalingOnResize", "NonScaling"},
    {"PreAdjustStrokeWidth", "Normalized"},
    {"PreAdjustSize", "CropToContent"},
    {"Clipping", "None"},
};

constexpr Row port_rows[] = {
    {"LineExtension", "On"},
    {"StrokeScaling", "PortStyled"},
    {"Foreground", "PortStyled"},
    {"Port", "Auto.Majority"},
};

ustring wide(const char* text) {
  return kmf::local_encoded_string_to_ustring(text);
}

template <std::size_t count>
void add_rows(IconStyles& styles, const Row (&rows)[count]) {
  for (const Row& row : rows) styles[wide(row.key)] = wide(row.value);
}

bool ask_preference() {
  try {
    cvArray_tag* output = nullptr;
    kmf::call_internal_corvane(1, &output, 0, nullptr, "verdane.internal.enableIconStyling");
    const cvUniquePtr answer(output);
    if (cvIsLogical(output) && cvGetNumberOfElements(output) == 1) return cvGetScalar(output) != 0;
  } catch (...) {
    // Falls through to the assertion, as any other answer than a logical does.
  }
  std::fputs("common/gl/gti/src/kernel/coreblock: Call to icon style preference failed.\n", stderr);
  std::abort();
}

}  // namespace

bool& icon_styling_switch() {
  static bool enabled = false;
  return enabled;
}

bool icon_styling_preference() {
  static const bool preference = ask_preference();
  return preference;
}

bool is_svg(const boost::optional<std::filesystem::path>& file) {
  return file && file->extension() == ".svg";
}

ustring path_text(const std::filesystem::path& file) {
  return kmf::local_encoded_string_to_ustring(file.string());
}

ustring icon_style_flag(bool flag) {
  return flag ? u"On" : u"Off";
}

IconStyles icon_styles(const BlockDescriptor& descriptor, bool rotate) {
  IconStyles styles;
  add_rows(styles, plain_rows);
  styles[u"Frame"] = icon_style_flag(descriptor.enableFrame());
  styles[u"Rotate"] = icon_style_flag(rotate);
  if (icon_styling_preference()) add_rows(styles, port_rows);
  return styles;
}

}  // namespace gl::gti
