#pragma once

// Queries on host objects through the scripting runtime's "get_param". A list of handles is one call. Errors of the
// runtime pass through.

#include "platform/foundation/ustring.hpp"
#include "platform/scripting_array/scripting_array.hpp"

#include <boost/unordered_map.hpp>

#include <string>
#include <vector>

namespace gl::gti {

/// "get_param" of what `object` holds: a handle, a path, or several of either.
cvUniquePtr getParam(cvArray_tag* object, const std::string& name);
cvUniquePtr getParam(double handle, const std::string& name);
/// For several handles at once: always a cell array with one cell for each.
cvUniquePtr getParamCells(const std::vector<double>& handles, const std::string& name);

double getParamScalar(double handle, const std::string& name);
std::vector<std::string> getParamStrings(const std::vector<double>& handles, const std::string& name);
std::vector<ustring> getParamUStrings(const std::vector<double>& handles, const std::string& name);
std::string getParamString(double handle, const std::string& name);
ustring getParamUString(double handle, const std::string& name);

/// The handle of a model, or of a block by its full path.
double modelHandle(const ustring& name);
double modelHandle(const std::string& name);

/// Names of the dialog parameters of the block's own and enclosing masks.
std::vector<std::string> recursiveMaskNames(double blockHandle);

/// Full paths by handle; a "/" in a block's name stands doubled.
boost::unordered_map<double, ustring> blockPathsByHandle(const std::vector<double>& handles);

}  // namespace gl::gti
