#include "common/gl/gti/src/kernel/translation/object_parameters.hpp"

#include "common/gl/gti/export/gt_parameter_evaluator.hpp"
#include "common/gl/gti/src/kernel/parameters/host_queries.hpp"
#include "platform/foundation/exception.hpp"
#include "platform/foundation/strings.hpp"
#include "platform/scripting_runtime/scripting_runtime.hpp"

#include <set>
#include <string>

namespace gl::gti {

namespace {

std::set<std::string> knownParameters(double model) {
  const cvUniquePtr known = getParam(model, "ObjectParameters");
  const std::vector<std::string> names = cvGetFieldNames(known.get());
  return {names.begin(), names.end()};
}

using Convert = std::function<ParameterVariant(const cvUniquePtr&, GtParameterEvaluator)>;

/// Turns what the host holds into a value, as the configuration asks.
class Conversion : public boost::static_visitor<ParameterVariant> {
 public:
  Conversion(const cvUniquePtr& value, const ParameterVariant& defaultValue, const GtParameterEvaluator& evaluator)
      : value_(value), default_(defaultValue), evaluator_(evaluator) {}

  ParameterVariant operator()(bool isExpression) const {
    const ustring text = kmf::cvarray_to_ustring(value_.get());
    if (!isExpression) return text;
    return text == u"auto" ? default_ : evaluator_(text);
  }

  ParameterVariant operator()(const Convert& convert) const { return convert(value_, evaluator_); }

 private:
  const cvUniquePtr& value_;
  const ParameterVariant& default_;
  const GtParameterEvaluator& evaluator_;
};

[[noreturn]] void throwNotConverted(const cvUniquePtr& value, const std::string& parameter, const ustring& modelName,
                                    const kmf::Exception& cause) {
  const std::string text = cvIsChar(value.get()) ? kmf::cvarray_to_string(value.get()) : std::string();
  kmf::MessageException error(
      kmf::Message(kmf::MessageId("kinemo:common:gl:gti:compile", "ConfigSetEvalErr", text, parameter, modelName)));
  error.addCause(cause);
  throw error;
}

ParameterVariant readParameter(double model, const std::string& parameter, const ParameterVariant& defaultValue,
                               const ModelParameterConversion& conversion, const GtParameterEvaluator& evaluator,
                               const ustring& modelName) {
  const cvUniquePtr value = getParam(model, parameter);
  try {
    return boost::apply_visitor(Conversion(value, defaultValue, evaluator), conversion);
  } catch (const kmf::Exception& error) {
    throwNotConverted(value, parameter, modelName, error);
  }
}

}  // namespace

void readObjectParameters(const ustring& modelName, const ModelParameterMap& parameters, ObjectParameterMap& values) {
  const double model = modelHandle(modelName);
  const std::set<std::string> known = knownParameters(model);
  const GtParameterEvaluator evaluator(modelName);
  for (const auto& [id, setting] : parameters) {
    const std::string name = id;
    const auto& [defaultValue, conversion] = setting;
    values[id] = known.count(name) == 0 ? defaultValue
                                        : readParameter(model, name, defaultValue, conversion, evaluator, modelName);
  }
}

}  // namespace gl::gti
