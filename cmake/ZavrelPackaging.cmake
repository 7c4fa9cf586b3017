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

configure_file(${PROJECT_SOURCE_DIR}/cmake/zavrel-routing.pc.in
  ${PROJECT_BINARY_DIR}/zavrel-routing.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/zavrel-routing.pc
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
