# Compiler settings of every target, and the functions by which the folders declare their targets.
# Sources are found by pattern: a file added to a folder belongs to the folder's target.

add_library(kinemo_options INTERFACE)
target_include_directories(kinemo_options INTERFACE ${PROJECT_SOURCE_DIR})
target_compile_options(kinemo_options INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor)
target_compile_definitions(kinemo_options INTERFACE BOOST_ALL_NO_LIB)
if(KINEMO_SANITIZE)
  target_compile_options(kinemo_options INTERFACE -fsanitize=${KINEMO_SANITIZE} -fno-sanitize-recover=all
                                                  -fno-omit-frame-pointer)
  target_link_options(kinemo_options INTERFACE -fsanitize=${KINEMO_SANITIZE})
  if(CMAKE_CXX_COMPILER_ID STREQUAL GNU)
    # With the sanitizers' instrumentation g++ 12 reports uninitialised members inside the standard library.
    target_compile_options(kinemo_options INTERFACE -Wno-maybe-uninitialized)
  endif()
endif()

find_program(KINEMO_CCACHE ccache)
if(KINEMO_CCACHE)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${KINEMO_CCACHE})
endif()

# kinemo_sources(variable): the sources of this folder and those below.
function(kinemo_sources variable)
  file(GLOB_RECURSE found CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp)
  if(NOT found)
    file(WRITE ${CMAKE_CURRENT_BINARY_DIR}/empty.cpp "")
    set(found ${CMAKE_CURRENT_BINARY_DIR}/empty.cpp)
  endif()
  set(${variable} ${found} PARENT_SCOPE)
endfunction()

# kinemo_object_library(name DEPENDS other... PACKAGES target...)
# The sources of this folder as one object library. Its closure of object libraries is kept in the target's property
# KINEMO_CLOSURE, its packages are linked by whatever links the objects.
function(kinemo_object_library name)
  cmake_parse_arguments(ARG "" "" "DEPENDS;PACKAGES" ${ARGN})
  kinemo_sources(sources)
  add_library(${name} OBJECT ${sources})
  target_link_libraries(${name} PUBLIC kinemo_options ${ARG_PACKAGES})
  set(closure ${name})
  foreach(dependency IN LISTS ARG_DEPENDS)
    get_target_property(inner ${dependency} KINEMO_CLOSURE)
    list(APPEND closure ${inner})
    get_target_property(packages ${dependency} KINEMO_PACKAGES)
    if(packages)
      list(APPEND ARG_PACKAGES ${packages})
    endif()
  endforeach()
  list(REMOVE_DUPLICATES closure)
  list(REMOVE_DUPLICATES ARG_PACKAGES)
  set_target_properties(${name} PROPERTIES KINEMO_CLOSURE "${closure}" KINEMO_PACKAGES "${ARG_PACKAGES}")
endfunction()

# kinemo_link_objects(target object-library...)
# Links the closure of the object libraries and their packages into a program or a shared library.
function(kinemo_link_objects target)
  set(closure)
  set(packages)
  foreach(library IN LISTS ARGN)
    get_target_property(inner ${library} KINEMO_CLOSURE)
    list(APPEND closure ${inner})
    get_target_property(outer ${library} KINEMO_PACKAGES)
    if(outer)
      list(APPEND packages ${outer})
    endif()
  endforeach()
  list(REMOVE_DUPLICATES closure)
  list(REMOVE_DUPLICATES packages)
  target_link_libraries(${target} PRIVATE kinemo_options ${closure} ${packages})
endfunction()

# kinemo_test(name [OBJECTS object-library...] [LIBRARIES target...])
# One test program of the *_test.cpp files of this folder and those below, with the fixtures beside them.
function(kinemo_test name)
  cmake_parse_arguments(ARG "" "" "OBJECTS;LIBRARIES" ${ARGN})
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp)
  if(NOT sources)
    return()
  endif()
  add_executable(${name} ${sources})
  if(ARG_OBJECTS)
    kinemo_link_objects(${name} ${ARG_OBJECTS})
  endif()
  target_link_libraries(${name} PRIVATE kinemo_options ${ARG_LIBRARIES} GTest::gmock GTest::gtest GTest::gtest_main)
  gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST NO_PRETTY_VALUES
                       PROPERTIES TIMEOUT 300 ENVIRONMENT
                                  "LSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/cmake/leaks.supp:print_suppressions=0"
                       DISCOVERY_TIMEOUT 60)
endfunction()
