#include "common/gl/gti/src/kernel/coreblock/icon_bitmap.hpp"

#include "common/gl/gti/src/kernel/coreblock/icon_styling.hpp"
#include "platform/foundation/warning.hpp"
#include "platform/scripting_runtime/scripting_runtime.hpp"

namespace gl::gti {

namespace {

constexpr char group[] = "kinemo:common:gl:gti:core_block";

/// Null where the runtime raises an error, of whatever kind: a bad icon must not fail its block.
cvUniquePtr read_image(const ustring& file) {
  try {
    kmf::CvCleaner cleaner;
    cvArray_tag* input = cleaner.createString(file);
    cvArray_tag* output = nullptr;
    kmf::call_internal_corvane(1, &output, 1, &input, "imread");
    return cvUniquePtr(output);
  } catch (...) {
    return nullptr;
  }
}

bool is_true_colour(const cvArray_tag* image) {
  const std::vector<std::size_t>& dimensions = cvGetDimensions(image);
  return dimensions.size() == 3 && dimensions[2] == 3;
}

cvUniquePtr permuted(const cvArray_tag* image) {
  constexpr double order[] = {2, 1, 3};
  const cvUniquePtr duplicate(cvDuplicateArray(image));
  const cvUniquePtr dimensions(cvCreateDoubleMatrix(1, 3, order));
  return cvUniquePtr(cvPermute(duplicate.get(), dimensions.get()));
}

}  // namespace

cvUniquePtr read_icon_bitmap(const std::filesystem::path& file) {
  const ustring text = path_text(file);
  cvUniquePtr image = read_image(text);
  if (!image) {
    kmf::Warning::get().issueWarning(kmf::Message(kmf::MessageId(group, "InvalidIconFile", text)));
  } else if (!is_true_colour(image.get())) {
    kmf::Warning::get().issueWarning(kmf::Message(kmf::MessageId(group, "InvalidIconImageType", text)));
    image.reset();
  }
  return image;
}

cvUniquePtr kept_icon_image(const cvArray_tag* image, bool permute) {
  cvUniquePtr kept = permute ? permuted(image) : cvUniquePtr(cvDuplicateArray(image));
  cvSetArrayScope(kept.get(), 0);
  return kept;
}

}  // namespace gl::gti
