#include "common/gl/gti/src/kernel/parameters/host_queries.hpp"

#include "platform/scripting_runtime/scripting_runtime.hpp"

#include <array>
#include <utility>

namespace gl::gti {

namespace {

template <std::size_t N>
cvUniquePtr call(const char* function, std::array<cvArray_tag*, N> inputs) {
  cvArray_tag* output = nullptr;
  kmf::call_internal_corvane(1, &output, static_cast<int>(N), inputs.data(), function);
  return cvUniquePtr(output);
}

cvUniquePtr handleArray(const std::vector<double>& handles) {
  const auto [rows, columns] = kmf::compute_matrix_dimension(handles.size(), 1);
  return cvUniquePtr(cvCreateDoubleMatrix(rows, columns, handles.data()));
}

template <class Text>
double handleOf(const Text& name) {
  kmf::CvCleaner cleaner;
  return cvGetScalar(getParam(cleaner.createString(name), "Handle").get());
}

ustring doubledSlashes(const ustring& name) {
  ustring text;
  text.reserve(name.size());
  for (const char16_t unit : name) {
    text += unit;
    if (unit == u'/') text += unit;
  }
  return text;
}

}  // namespace

cvUniquePtr getParam(cvArray_tag* object, const std::string& name) {
  kmf::CvCleaner cleaner;
  return call<2>("get_param", {object, cleaner.createString(name)});
}

cvUniquePtr getParam(double handle, const std::string& name) {
  kmf::CvCleaner cleaner;
  return getParam(cleaner.createScalarDouble(handle), name);
}

cvUniquePtr getParamCells(const std::vector<double>& handles, const std::string& name) {
  const cvUniquePtr object = handleArray(handles);
  cvUniquePtr values = getParam(object.get(), name);
  if (handles.size() != 1) return values;
  cvUniquePtr cells(cvCreateCellMatrix(1, 1));
  cvSetCell(cells.get(), 0, values.release());
  return cells;
}

double getParamScalar(double handle, const std::string& name) {
  return cvGetScalar(getParam(handle, name).get());
}

std::vector<std::string> getParamStrings(const std::vector<double>& handles, const std::string& name) {
  return kmf::cvarray_to_string_vector(getParamCells(handles, name).get());
}

std::vector<ustring> getParamUStrings(const std::vector<double>& handles, const std::string& name) {
  return kmf::cvarray_to_ustring_vector(getParamCells(handles, name).get());
}

std::string getParamString(double handle, const std::string& name) {
  return getParamStrings({handle}, name).at(0);
}

ustring getParamUString(double handle, const std::string& name) {
  return getParamUStrings({handle}, name).at(0);
}

double modelHandle(const ustring& name) {
  return handleOf(name);
}

double modelHandle(const std::string& name) {
  return handleOf(name);
}

std::vector<std::string> recursiveMaskNames(double blockHandle) {
  kmf::CvCleaner cleaner;
  const auto names = call<1>("gl.gti.internal.recursiveMaskNames", {cleaner.createScalarDouble(blockHandle)});
  return kmf::cvarray_to_string_vector(names.get());
}

boost::unordered_map<double, ustring> blockPathsByHandle(const std::vector<double>& handles) {
  const std::vector<ustring> parents = getParamUStrings(handles, "Parent");
  const std::vector<ustring> names = getParamUStrings(handles, "Name");
  boost::unordered_map<double, ustring> paths;
  for (std::size_t i = 0; i < handles.size(); ++i) {
    paths.emplace(handles[i], parents.at(i) + u'/' + doubledSlashes(names.at(i)));
  }
  return paths;
}

}  // namespace gl::gti
