# Cross build for the 32-bit embedded target: ARMv7 hard-float Linux
# (arm-linux-gnueabihf), with Debian's cross compiler and Debian's armhf
# library packages (installed multiarch under /usr/lib/arm-linux-gnueabihf).
# Programs built here run on the build machine under qemu user emulation,
# which is how ctest runs the tests and gtest lists them.
#
# Needs (scripts/deps.sh with ZAVREL_CROSS=armhf installs them):
#   g++-arm-linux-gnueabihf qemu-user and the :armhf -dev packages of
#   jsoncpp, googletest and readline; libevent-dev for armhf, which cannot be
#   installed next to the host's, unpacked into ZAVREL_ARMHF_EXTRA
#   (default /opt/zavrel-armhf).
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR arm)

set(ZAVREL_ARMHF_TRIPLET arm-linux-gnueabihf)
set(CMAKE_C_COMPILER ${ZAVREL_ARMHF_TRIPLET}-gcc)
set(CMAKE_CXX_COMPILER ${ZAVREL_ARMHF_TRIPLET}-g++)
set(CMAKE_LIBRARY_ARCHITECTURE ${ZAVREL_ARMHF_TRIPLET})

if(DEFINED ENV{ZAVREL_ARMHF_EXTRA})
  set(ZAVREL_ARMHF_EXTRA "$ENV{ZAVREL_ARMHF_EXTRA}")
else()
  set(ZAVREL_ARMHF_EXTRA /opt/zavrel-armhf)
endif()

# Libraries, headers and packages come only from the armhf side: the cross
# toolchain's own tree, the multiarch armhf directories under / (selected by
# CMAKE_LIBRARY_ARCHITECTURE) and the unpacked extras. Programs (pkg-config,
# qemu) come from the build machine.
set(CMAKE_FIND_ROOT_PATH /usr/${ZAVREL_ARMHF_TRIPLET} ${ZAVREL_ARMHF_EXTRA} /)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# pkg-config reads the armhf .pc files only.
set(ENV{PKG_CONFIG_PATH} "")
set(ENV{PKG_CONFIG_LIBDIR}
  "${ZAVREL_ARMHF_EXTRA}/usr/lib/${ZAVREL_ARMHF_TRIPLET}/pkgconfig:/usr/lib/${ZAVREL_ARMHF_TRIPLET}/pkgconfig:/usr/share/pkgconfig")

# Programs run under qemu-arm, which loads the armhf dynamic loader and
# libraries from the cross tree first; the script also lets a program start
# itself again (death tests).
set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/qemu-armhf.sh)
