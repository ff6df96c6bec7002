# Third-party libraries. scripts/install_deps.sh lists the packages that bring them.

find_package(Boost 1.74 REQUIRED COMPONENTS locale filesystem system)
find_package(Eigen3 3.3 REQUIRED NO_MODULE)
find_package(nlohmann_json REQUIRED)
find_package(CLI11 REQUIRED)
find_package(fmt REQUIRED)
find_package(Gettext REQUIRED)
find_package(PkgConfig REQUIRED)
pkg_check_modules(LIBYAML REQUIRED IMPORTED_TARGET yaml-0.1)
find_package(Threads REQUIRED)

find_package(pegtl REQUIRED)

find_path(UDUNITS2_INCLUDE_DIR udunits2.h REQUIRED)
find_library(UDUNITS2_LIBRARY udunits2 REQUIRED)
add_library(kinemo_udunits2 INTERFACE)
target_include_directories(kinemo_udunits2 SYSTEM INTERFACE ${UDUNITS2_INCLUDE_DIR})
target_link_libraries(kinemo_udunits2 INTERFACE ${UDUNITS2_LIBRARY})

if(KINEMO_TESTS)
  find_package(GTest REQUIRED)
endif()
if(KINEMO_BENCHMARKS)
  find_package(benchmark REQUIRED)
endif()
