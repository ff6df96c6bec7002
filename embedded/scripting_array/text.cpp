// Arrays of characters.

#include "embedded/scripting_array/errors.hpp"
#include "embedded/scripting_array/payloads.hpp"

#include "platform/foundation/strings.hpp"

using namespace kmf::embedded;

cvArray_tag* cvCreateString(const std::string& utf8) {
  return cvCreateUString(kmf::utf8_string_to_ustring(utf8));
}

cvArray_tag* cvCreateUString(const ustring& text) {
  const Shape shape(text.empty() ? 0 : 1, text.size());
  return make_array(cvCHAR_CLASS, new TextPayload(shape, text));
}

const ustring& cvGetCharacters(const cvArray_tag* array) {
  if (class_of(checked(array)) != cvCHAR_CLASS) throw_array_error("NotText", cvGetClassName(array));
  return payload_as<TextPayload>(*array).text;
}
