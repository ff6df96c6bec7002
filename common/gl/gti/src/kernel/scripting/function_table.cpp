#include "common/gl/gti/src/kernel/scripting/function_table.hpp"

#include "common/gl/gti/export/core_block_facade.hpp"
#include "common/gl/gti/src/kernel/coreblock/core_block.hpp"
#include "common/gl/gti/src/kernel/coreblock/icon_styling.hpp"
#include "platform/foundation/exception.hpp"
#include "platform/scripting_runtime/scalars.hpp"
#include "platform/scripting_runtime/scripting_runtime.hpp"

namespace gl::gti {

namespace {

using Inputs = cvArray_tag**;

struct InputCounts {
  int least;
  int most;
};

cvArray_tag* icon_styling(int nIn, Inputs inputs) {
  if (nIn == 1) icon_styling_switch() = kmf::cvarray_to_logical_scalar(inputs[0]);
  return cvCreateLogicalScalar(icon_styling_switch());
}

cvArray_tag* logging_supported(int, Inputs inputs) {
  const CoreBlock* block = coreBlockOf(kmf::cvarray_to_double_scalar(inputs[0]));
  return cvCreateLogicalScalar(block != nullptr && block->descriptor().loggingSupported());
}

cvArray_tag* port_name(int, Inputs inputs) {
  const double block = kmf::cvarray_to_double_scalar(inputs[0]);
  const double port = kmf::cvarray_to_double_scalar(inputs[1]);
  return cvCreateString(is_handle_to_core_block(block) ? handle_to_core_block(block).portName(port) : std::string());
}

/// A function of the table: errors reach the runtime as its own.
template <cvArray_tag* (*body)(int, Inputs), InputCounts counts>
void entry(int, cvArray_tag** outputs, int nIn, cvArray_tag** inputs) {
  try {
    kmf::check_num_inputs(counts.least, counts.most, nIn);
    outputs[0] = body(nIn, inputs);
  } catch (const kmf::Exception& error) {
    kmf::ExceptionSupport::rethrow(error);
  }
}

constexpr cvEntryFunction entries[] = {
    entry<icon_styling, InputCounts{0, 1}>,
    entry<logging_supported, InputCounts{1, 1}>,
    entry<port_name, InputCounts{2, 2}>,
    nullptr,
};

constexpr cvFunctionTable table{entries, 0x3defa4fb, 0x5a7a3667, 3};

}  // namespace

}  // namespace gl::gti

const cvFunctionTable* QueryCVFcnTable_kinemo_common_gl_gti_kernel() {
  return &gl::gti::table;
}
