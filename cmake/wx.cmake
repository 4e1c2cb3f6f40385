# SPDX-License-Identifier: MIT
# One target for the toolkit and for GTK, on which it stands. Their headers are system headers, so that
# their warnings stay theirs.
find_package(wxWidgets 3.2 REQUIRED COMPONENTS core base)
find_package(PkgConfig REQUIRED)
pkg_check_modules(GTK3 REQUIRED IMPORTED_TARGET gtk+-3.0)
add_library(tarvel_wx INTERFACE)
target_include_directories(tarvel_wx SYSTEM INTERFACE ${wxWidgets_INCLUDE_DIRS})
target_compile_options(tarvel_wx INTERFACE ${wxWidgets_CXX_FLAGS})
target_compile_definitions(tarvel_wx INTERFACE ${wxWidgets_DEFINITIONS}
                           wxNO_IMPLICIT_WXSTRING_ENCODING)
target_link_libraries(tarvel_wx INTERFACE ${wxWidgets_LIBRARIES} PkgConfig::GTK3)
