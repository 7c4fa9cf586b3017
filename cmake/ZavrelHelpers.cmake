# Helpers shared by the library folders.

# zavrel_add_shared_library(<target> SOURCES <file>... [PUBLIC_LINK <libs>...]
#                           [PRIVATE_LINK <libs>...])
# Builds one shared library from the sources named (relative to the calling
# folder), with a SONAME derived from the project's major version.
function(zavrel_add_shared_library target)
  cmake_parse_arguments(ARG "" "" "SOURCES;PUBLIC_LINK;PRIVATE_LINK" ${ARGN})
  add_library(${target} SHARED ${ARG_SOURCES})
  # Every reference is resolved at link time, from the libraries linked, except
  # the stack API's other side, which stackapi.h declares weak (see there).
  # Not with clang's sanitizers: their runtime lives in the executable only.
  if(NOT (CMAKE_CXX_COMPILER_ID MATCHES "Clang" AND (ZAVREL_SANITIZE OR ZAVREL_BUILD_FUZZ)))
    target_link_options(${target} PRIVATE -Wl,-z,defs)
  endif()
  set_target_properties(${target} PROPERTIES
    VERSION ${PROJECT_VERSION}
    SOVERSION ${PROJECT_VERSION_MAJOR}
    EXPORT_NAME ${target}
    # Installed libraries find each other in their own folder.
    INSTALL_RPATH "$ORIGIN")
  target_include_directories(${target} PUBLIC
    $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>
    $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/lib>
    $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/zavrel>)
  if(ARG_PUBLIC_LINK)
    target_link_libraries(${target} PUBLIC ${ARG_PUBLIC_LINK})
  endif()
  if(ARG_PRIVATE_LINK)
    target_link_libraries(${target} PRIVATE ${ARG_PRIVATE_LINK})
  endif()
  add_library(Zavrel::${target} ALIAS ${target})
endfunction()

# zavrel_install_headers(<dest-subdir> <header>...)
# Installs the headers named under include/zavrel/<dest-subdir>.
function(zavrel_install_headers dest)
  install(FILES ${ARGN} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/zavrel/${dest})
endfunction()
