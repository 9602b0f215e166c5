# What cmake --install writes and what cpack packs: headers and libraries, with the files by which CMake and pkg-config
# find them. Three components: library is what programs run with, development what they are built with, program ketra
# with its manual page and completions (tools/).
include(CMakePackageConfigHelpers)
set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/Ketra)

install(TARGETS ketra ketra_runtime ketra_headers EXPORT KetraTargets
  RUNTIME COMPONENT library
  LIBRARY COMPONENT library NAMELINK_COMPONENT development
  ARCHIVE COMPONENT development)
install(DIRECTORY include/ketra DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development)
install(EXPORT KetraTargets NAMESPACE Ketra:: DESTINATION ${package_dir} COMPONENT development)
configure_package_config_file(cmake/KetraConfig.cmake.in KetraConfig.cmake INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(KetraConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/KetraConfig.cmake ${PROJECT_BINARY_DIR}/KetraConfigVersion.cmake
  DESTINATION ${package_dir} COMPONENT development)

# ketra_pkg_config(LIBRARY DESCRIPTION REQUIRES [FLAG...]): LIBRARY.pc, which holds wherever the tree is moved to. The
# flags belong to static libraries: those of the C++ standard library, which the linker of C does not know.
function(ketra_pkg_config library description requires)
  file(RELATIVE_PATH to_prefix /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
  string(REGEX REPLACE "/$" "" to_prefix ${to_prefix})
  if(NOT BUILD_SHARED_LIBS)
    set(libs ${ARGN})
    set(cflags -DKETRA_STATIC)
  endif()
  configure_file(cmake/library.pc.in ${library}.pc @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/${library}.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)
endfunction()
ketra_pkg_config(ketra "${PROJECT_DESCRIPTION}" "ketra_runtime = ${PROJECT_VERSION}")
ketra_pkg_config(ketra_runtime "ASN.1 runtime of libketra" "" -lstdc++)

set(KETRA_MANUAL ${PROJECT_SOURCE_DIR}/docs/ketra.1)
set(KETRA_ZSH_FUNCTIONS zsh/site-functions)
if(PROJECT_IS_TOP_LEVEL)
  include(cmake/packages.cmake)
endif()
