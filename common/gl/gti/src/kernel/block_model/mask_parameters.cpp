#include "common/gl/gti/src/kernel/block_model/mask_parameters.hpp"

#include "common/gl/gti/export/block_data.hpp"
#include "common/gl/gti/src/kernel/block_model/property_reader.hpp"
#include "common/gl/gti/src/kernel/parameters/host_queries.hpp"
#include "platform/foundation/strings.hpp"
#include "platform/scripting_runtime/scripting_runtime.hpp"

#include <set>
#include <string>

namespace gl::gti {

namespace {

ustring typedText(const PropertyReader& properties, const std::string& name) {
  const boost::optional<std::string> text = properties.read(name);
  return text ? kmf::utf8_string_to_ustring(*text) : ustring();
}

}  // namespace

void readMaskParameters(double handle, BlockData& out) {
  const cvUniquePtr variables = getParam(handle, "MaskWSVariables");
  const std::vector<std::string> nameList = recursiveMaskNames(handle);
  const PropertyReader properties(handle);
  if (cvIsEmpty(variables.get())) return;

  const std::set<std::string> names(nameList.begin(), nameList.end());
  const int nameField = cvGetFieldNumber(variables.get(), "Name");
  const int valueField = cvGetFieldNumber(variables.get(), "Value");
  for (std::size_t i = 0; i < cvGetNumberOfElements(variables.get()); ++i) {
    const std::string name = kmf::cvarray_to_string(cvGetFieldByNumber(variables.get(), i, nameField));
    const ustring expression = names.count(name) != 0 ? typedText(properties, name) : ustring();
    out.addParameter(kmf::VnId(name), ParameterValue(cvGetFieldByNumber(variables.get(), i, valueField), expression));
  }
}

}  // namespace gl::gti
