#pragma once

// The class system of the scripting runtime: packages, classes with methods, and objects behind scripting arrays.
//
// Glossary
//   package        a named room for methods, classes and further packages; "kinemo.gl.gt" is gt in gl in kinemo
//   package info   what its author tells of a package; the class system hands the package itself to it
//   method         something that can be called: a function of a package, or of the objects of a class
//   method info    what its author tells of a method, and the code that runs it
//   signature      the types of a method's inputs and outputs
//   name id        an interned name: of a type, a class, a package or a method
//   class          what objects are instances of; it knows how to construct them and how to end what is behind them
//   object         an instance, counted by the pointers that refer to it; `COSInterfacePtr`
//   native pointer what an object stands for in C++; an object has one for a class name
//   value          an input or output of a method: a scripting array
//   client         who calls a method
//
// Types of signatures: "any"; the classes of arrays "double", "char", "logical", "cell", "struct", "function_handle"
// (and so on, as the runtime's `class` names them); "numeric"; and names of classes.
//
// An implementation provides every operation of these headers that has no body. The virtual operations of the infos are
// called by the class system and keep their order. Everything happens on the runtime's thread. Packages, and the
// methods and classes in them, stay until the process ends; they may be made known while libraries are loaded, before
// any `main`. Errors are kmf::MessageExceptions of the group "kinemo:scripting:classes".

#include "platform/class_system/class.hpp"
#include "platform/class_system/method.hpp"
#include "platform/class_system/name_id.hpp"
#include "platform/class_system/object.hpp"
#include "platform/class_system/package.hpp"
