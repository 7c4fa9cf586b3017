# Install rules, the CMake package (find_package(ZavrelRouting)) and the
# pkg-config file.
include(CMakePackageConfigHelpers)

install(TARGETS zavrel_platform zavrel_stackapi zavrel_protocols zavrel_routing zavrel_stackemu
  EXPORT ZavrelRoutingTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
  INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/zavrel)

install(EXPORT ZavrelRoutingTargets
  NAMESPACE Zavrel::
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/ZavrelRouting)

configure_package_config_file(
  ${PROJECT_SOURCE_DIR}/cmake/ZavrelRoutingConfig.cmake.in
  ${PROJECT_BINARY_DIR}/ZavrelRoutingConfig.cmake
  INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/ZavrelRouting)
write_basic_package_version_file(
  ${PROJECT_BINARY_DIR}/ZavrelRoutingConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES
  ${PROJECT_BINARY_DIR}/ZavrelRoutingConfig.cmake
  ${PROJECT_BINARY_DIR}/ZavrelRoutingConfigVersion.cmake
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/ZavrelRouting)

# The pkg-config files find the prefix from their own place (pcfiledir), so
# that an install with "cmake --install --prefix <dir>" is right wherever it
# lands.
function(zavrel_pc_dir out dir)
  if(IS_ABSOLUTE "${dir}")
    set(${out} "${dir}" PARENT_SCOPE)
  else()
    set(${out} "\${prefix}/${dir}" PARENT_SCOPE)
  endif()
endfunction()
if(IS_ABSOLUTE "${CMAKE_INSTALL_LIBDIR}")
  set(ZAVREL_PC_PREFIX "${CMAKE_INSTALL_PREFIX}")
else()
  file(RELATIVE_PATH pc_up "/_/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/_")
  string(REGEX REPLACE "/$" "" pc_up "${pc_up}")
  set(ZAVREL_PC_PREFIX "\${pcfiledir}/${pc_up}")
endif()
zavrel_pc_dir(ZAVREL_PC_LIBDIR "${CMAKE_INSTALL_LIBDIR}")
zavrel_pc_dir(ZAVREL_PC_INCLUDEDIR "${CMAKE_INSTALL_INCLUDEDIR}")

foreach(pc zavrel-routing zavrel-stackemu)
  configure_file(${PROJECT_SOURCE_DIR}/cmake/${pc}.pc.in ${PROJECT_BINARY_DIR}/${pc}.pc @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/${pc}.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
endforeach()
