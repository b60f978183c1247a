# SPDX-License-Identifier: MIT
# Compiles for macOS on a Debian machine; nothing can be linked with it.
#
# MACOS_CHECK   the folder with what scripts/check-macos has fetched and made

set(CMAKE_SYSTEM_NAME Darwin)
set(CMAKE_SYSTEM_VERSION 22)
set(CMAKE_SYSTEM_PROCESSOR arm64)
set(CMAKE_OSX_ARCHITECTURES arm64)
set(CMAKE_OSX_SYSROOT "")

set(llvm /usr/lib/llvm-19)
foreach(language C CXX OBJCXX)
    set(CMAKE_${language}_COMPILER_TARGET arm64-apple-macos13)
endforeach()
set(CMAKE_CXX_COMPILER ${llvm}/bin/clang++)
set(CMAKE_OBJCXX_COMPILER ${llvm}/bin/clang++)
set(CMAKE_AR ${llvm}/bin/llvm-ar)
set(CMAKE_RANLIB ${llvm}/bin/llvm-ranlib)
set(CMAKE_INSTALL_NAME_TOOL ${llvm}/bin/llvm-install-name-tool)
set(CMAKE_TRY_COMPILE_TARGET_TYPE STATIC_LIBRARY)
set(CMAKE_TRY_COMPILE_PLATFORM_VARIABLES MACOS_CHECK)

# The libc++ in the package zig is normally configured by zig's own compiler, with these.
set(zig ${MACOS_CHECK}/zig/lib)
string(JOIN " " flags
    -nostdinc -nostdinc++
    -D_LIBCPP_HARDENING_MODE_DEFAULT=2 -D_LIBCPP_HARDENING_MODE=2
    -D_LIBCPP_ABI_VERSION=1 -D_LIBCPP_ABI_NAMESPACE=__1
    -D_LIBCPP_HAS_NO_VENDOR_AVAILABILITY_ANNOTATIONS -D_LIBCPP_PSTL_BACKEND_SERIAL
    -isystem ${zig}/libcxx/include
    -isystem ${llvm}/lib/clang/19/include
    -isystem ${zig}/libc/include/any-macos-any
    -idirafter ${MACOS_CHECK}/include
    -iframework ${MACOS_CHECK}/sdk)
set(CMAKE_CXX_FLAGS_INIT "${flags}")
set(CMAKE_OBJCXX_FLAGS_INIT "${flags} -Werror=protocol")

list(APPEND CMAKE_MODULE_PATH ${CMAKE_CURRENT_LIST_DIR}/cmake)
# Debian's own Qt; only its headers are used.
set(CMAKE_PREFIX_PATH /usr)
set(CMAKE_LIBRARY_ARCHITECTURE x86_64-linux-gnu)
# The folders of this machine's own headers, which packages list needlessly.
set(ENV{PKG_CONFIG_SYSTEM_INCLUDE_PATH} /usr/include:/usr/include/x86_64-linux-gnu)
