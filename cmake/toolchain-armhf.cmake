# Cross build for the 32-bit embedded target: ARMv7 hard-float Linux
# (arm-linux-gnueabihf). Everything comes from the project's armhf sysroot
# (scripts/armhf-sysroot.sh, which ZAVREL_CROSS=armhf scripts/deps.sh runs;
# ZAVREL_ARMHF_SYSROOT, default build/sysroot-armhf): Debian's cross
# compiler and its armhf C/C++ runtime under host/, the armhf libraries
# (jsoncpp, googletest, readline with ncurses, libevent, libmnl) at its root.
# Programs built here run on the build machine under the sysroot's qemu-arm,
# which is how ctest runs the tests and gtest lists them.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR arm)

set(ZAVREL_ARMHF_TRIPLET arm-linux-gnueabihf)
set(CMAKE_LIBRARY_ARCHITECTURE ${ZAVREL_ARMHF_TRIPLET})

if(DEFINED ENV{ZAVREL_ARMHF_SYSROOT})
  set(ZAVREL_ARMHF_SYSROOT "$ENV{ZAVREL_ARMHF_SYSROOT}")
else()
  get_filename_component(ZAVREL_ARMHF_SYSROOT "${CMAKE_CURRENT_LIST_DIR}/../build/sysroot-armhf" ABSOLUTE)
endif()
if(NOT EXISTS "${ZAVREL_ARMHF_SYSROOT}/.manifest")
  message(FATAL_ERROR "No armhf sysroot at ${ZAVREL_ARMHF_SYSROOT}: make it with "
                      "ZAVREL_CROSS=armhf scripts/deps.sh (or scripts/armhf-sysroot.sh)")
endif()
set(CMAKE_C_COMPILER "${ZAVREL_ARMHF_SYSROOT}/host/bin/${ZAVREL_ARMHF_TRIPLET}-gcc")
set(CMAKE_CXX_COMPILER "${ZAVREL_ARMHF_SYSROOT}/host/bin/${ZAVREL_ARMHF_TRIPLET}-g++")
set(zavrel_armhf_libdirs
  "${ZAVREL_ARMHF_SYSROOT}/usr/lib/${ZAVREL_ARMHF_TRIPLET}"
  "${ZAVREL_ARMHF_SYSROOT}/lib/${ZAVREL_ARMHF_TRIPLET}")

# Libraries, headers and packages come only from the armhf side: the cross
# runtime's tree and the sysroot. Programs (pkg-config) come from the build
# machine.
set(CMAKE_FIND_ROOT_PATH "${ZAVREL_ARMHF_SYSROOT}/host/usr/${ZAVREL_ARMHF_TRIPLET}" ${ZAVREL_ARMHF_SYSROOT})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# The sysroot's /usr/include is the target's system header folder, as it is
# on the device.
set(CMAKE_C_STANDARD_INCLUDE_DIRECTORIES "${ZAVREL_ARMHF_SYSROOT}/usr/include")
set(CMAKE_CXX_STANDARD_INCLUDE_DIRECTORIES "${ZAVREL_ARMHF_SYSROOT}/usr/include")

# The linker finds the libraries that linked libraries need (readline's
# tinfo, for one) in the sysroot.
string(REPLACE ";" ":" zavrel_armhf_rpath_link "${zavrel_armhf_libdirs}")
foreach(kind EXE SHARED MODULE)
  set(CMAKE_${kind}_LINKER_FLAGS_INIT "-Wl,-rpath-link,${zavrel_armhf_rpath_link}")
endforeach()

# pkg-config reads the sysroot's .pc files only, and puts their -I and -L
# folders inside the sysroot.
set(ENV{PKG_CONFIG_PATH} "")
set(ENV{PKG_CONFIG_LIBDIR}
  "${ZAVREL_ARMHF_SYSROOT}/usr/lib/${ZAVREL_ARMHF_TRIPLET}/pkgconfig:${ZAVREL_ARMHF_SYSROOT}/usr/share/pkgconfig")
set(ENV{PKG_CONFIG_SYSROOT_DIR} "${ZAVREL_ARMHF_SYSROOT}")

# Programs run under the sysroot's qemu-arm with the sysroot as their root
# (the script finds it as this file does); the script also lets a program
# start itself again (death tests).
set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/qemu-armhf.sh)
