# Packaging checks, run by ctest with cmake -P.
#
#   -DSTEP=install     installs the build tree BUILD_DIR into WORK_DIR/prefix
#   -DSTEP=cmake       builds and runs the consumer project with
#                      find_package(ZavrelRouting) against that prefix
#   -DSTEP=pkgconfig   compiles and runs the consumer's main.cpp with the
#                      flags pkg-config gives for zavrel-routing
#
# Other inputs: SOURCE_DIR (this folder), WORK_DIR, LIBDIR (the install's
# library folder, relative), CXX (the C++ compiler), GENERATOR.
cmake_minimum_required(VERSION 3.25)

set(prefix "${WORK_DIR}/prefix")

function(run)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE rc OUTPUT_VARIABLE out ERROR_VARIABLE err)
  if(NOT rc EQUAL 0)
    string(REPLACE ";" " " line "${ARGN}")
    message(FATAL_ERROR "failed (${rc}): ${line}\n${out}\n${err}")
  endif()
  set(run_output "${out}" PARENT_SCOPE)
endfunction()

# The consumer prints the addresses it parsed and formatted through the
# installed libraries.
function(check_consumer_output text)
  if(NOT text MATCHES "^192\\.0\\.2\\.1 2001:db8::1 2080\n")
    message(FATAL_ERROR "unexpected consumer output: '${text}'")
  endif()
  message(STATUS "consumer printed: ${text}")
endfunction()

if(STEP STREQUAL "install")
  file(REMOVE_RECURSE "${WORK_DIR}")
  run(${CMAKE_COMMAND} --install "${BUILD_DIR}" --prefix "${prefix}")
  foreach(f "${LIBDIR}/cmake/ZavrelRouting/ZavrelRoutingConfig.cmake"
            "${LIBDIR}/cmake/ZavrelRouting/ZavrelRoutingConfigVersion.cmake"
            "${LIBDIR}/pkgconfig/zavrel-routing.pc"
            "include/zavrel/stackapi/stackapi.h"
            "include/zavrel/platform/Ip4Addr.h")
    if(NOT EXISTS "${prefix}/${f}")
      message(FATAL_ERROR "not installed: ${f}")
    endif()
  endforeach()
elseif(STEP STREQUAL "cmake")
  set(build "${WORK_DIR}/cmake-consumer")
  file(REMOVE_RECURSE "${build}")
  run(${CMAKE_COMMAND} -S "${SOURCE_DIR}/consumer" -B "${build}" -G "${GENERATOR}"
      "-DCMAKE_PREFIX_PATH=${prefix}" "-DCMAKE_CXX_COMPILER=${CXX}")
  run(${CMAKE_COMMAND} --build "${build}")
  run("${build}/consumer")
  check_consumer_output("${run_output}")
elseif(STEP STREQUAL "pkgconfig")
  find_program(PKG_CONFIG pkg-config REQUIRED)
  # Only the installed .pc and the system's (for jsoncpp).
  set(ENV{PKG_CONFIG_PATH} "${prefix}/${LIBDIR}/pkgconfig")
  run(${PKG_CONFIG} --cflags zavrel-routing zavrel-stackemu)
  string(STRIP "${run_output}" cflags)
  run(${PKG_CONFIG} --libs zavrel-routing zavrel-stackemu)
  string(STRIP "${run_output}" libs)
  run(${PKG_CONFIG} --variable=libdir zavrel-routing)
  string(STRIP "${run_output}" libdir)
  get_filename_component(libdir "${libdir}" REALPATH)
  get_filename_component(expected "${prefix}/${LIBDIR}" REALPATH)
  if(NOT libdir STREQUAL expected)
    message(FATAL_ERROR "pkg-config libdir is ${libdir}, the library is in ${expected}")
  endif()
  separate_arguments(cflags UNIX_COMMAND "${cflags}")
  separate_arguments(libs UNIX_COMMAND "${libs}")
  set(exe "${WORK_DIR}/pkgconfig-consumer")
  run("${CXX}" -std=c++17 -Wall -Wextra -Werror ${cflags} "${SOURCE_DIR}/consumer/main.cpp"
      -o "${exe}" ${libs} "-Wl,-rpath,${libdir}")
  run("${exe}")
  check_consumer_output("${run_output}")
else()
  message(FATAL_ERROR "unknown STEP '${STEP}'")
endif()
