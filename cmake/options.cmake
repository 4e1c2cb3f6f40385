# SPDX-License-Identifier: MIT
# What every target of the project is compiled with.
add_library(tarvel_options INTERFACE)
target_include_directories(tarvel_options INTERFACE ${PROJECT_SOURCE_DIR})
target_compile_options(tarvel_options INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Wold-style-cast -Wformat=2 -Wdate-time
  -ffile-prefix-map=${PROJECT_SOURCE_DIR}=.)
if(CMAKE_CXX_COMPILER_ID STREQUAL GNU AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  # GCC 12 warns of overlapping copies in std::string's own operators when it optimises.
  target_compile_options(tarvel_options INTERFACE -Wno-restrict)
endif()
if(CMAKE_SIZEOF_VOID_P EQUAL 4)
  # File numbers of 64 bits, without which a file of a large file system cannot even be looked at.
  target_compile_definitions(tarvel_options INTERFACE _FILE_OFFSET_BITS=64)
endif()
if(TARVEL_WARNINGS_AS_ERRORS)
  target_compile_options(tarvel_options INTERFACE -Werror)
endif()
if(TARVEL_HARDENING)
  target_compile_options(tarvel_options INTERFACE
    -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2 -fstack-protector-strong -fstack-clash-protection -fPIE)
  target_link_options(tarvel_options INTERFACE -pie -Wl,-z,relro,-z,now)
  include(CheckCXXCompilerFlag)
  check_cxx_compiler_flag(-fcf-protection TARVEL_HAS_CF_PROTECTION)
  if(TARVEL_HAS_CF_PROTECTION)
    target_compile_options(tarvel_options INTERFACE -fcf-protection)
  endif()
endif()
