#pragma once

// The functions of the scripting runtime that the host provides.

#include "platform/block_diagram/object.hpp"
#include "platform/scripting_array/scripting_array.hpp"

#include <string>
#include <vector>

class GTBlock;
class GtBlockContext;

namespace embedded::block_diagram {

/// Makes the host's functions known to the runtime, and takes them back.
void registerHostFunctions();
void unregisterHostFunctions();

/// The context of blocks of this host: mask generators run in the scripting runtime.
GtBlockContext& hostContext();

// --- what the functions have in common

/// What a handle or a path names. @throws "kinemo:host:parameters" "UnknownObject" (handle or path),
/// "ObjectGone" (handle)
GantrelObject& objectFrom(double handle);
GantrelObject& objectFrom(const ustring& path);
/// From a scalar handle or a path. @throws as above, and "NotAnObject" (class name) for any other array
GantrelObject& objectFrom(const cvArray_tag* array);

/// The value of a parameter of a block or diagram; the caller owns it.
/// @throws "kinemo:host:parameters" "UnknownParameter" (object, name, nearest or "")
cvUniquePtr parameterValue(GantrelObject& object, const std::string& name);

/// Each function has the shape of a `kmf::CvFunction`.
using Arguments = cvArray_tag**;
void getParam(int nOut, Arguments outputs, int nIn, Arguments inputs);
void setParam(int nOut, Arguments outputs, int nIn, Arguments inputs);
void findSystem(int nOut, Arguments outputs, int nIn, Arguments inputs);
void workspaceData(int nOut, Arguments outputs, int nIn, Arguments inputs);
void runtimeParameters(int nOut, Arguments outputs, int nIn, Arguments inputs);
void resolveRuntimeParameters(int nOut, Arguments outputs, int nIn, Arguments inputs);
void recursiveMaskNames(int nOut, Arguments outputs, int nIn, Arguments inputs);

/// Array of class "Gantrel.ModelWorkspace" around the model workspace of a diagram.
cvUniquePtr modelWorkspaceObject(const GantrelObject& diagram);
/// Variables of the block's own mask: structure array with "Name" and "Value"; empty without a mask.
cvUniquePtr maskWorkspace(const GTBlock& block);
/// "PortHandles": structure with "LConn" and "RConn".
cvUniquePtr portHandles(const GTBlock& block);
/// "PortConnectivity": structure array with "Type", "DstPort" and "SrcPort", one element for each port.
cvUniquePtr portConnectivity(const GTBlock& block);

}  // namespace embedded::block_diagram
