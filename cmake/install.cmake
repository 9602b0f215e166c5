# What cmake --install writes and what cpack packs: headers and libraries, with the files by which CMake and pkg-config
# find them. Two components: library is what programs run with, development what they are built with.
include(CMakePackageConfigHelpers)
set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/Ketra)

install(TARGETS ketra ketra_runtime EXPORT KetraTargets
  RUNTIME COMPONENT library
  LIBRARY COMPONENT library NAMELINK_COMPONENT development
  ARCHIVE COMPONENT development)
install(DIRECTORY include/ketra DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development)
install(EXPORT KetraTargets NAMESPACE Ketra:: DESTINATION ${package_dir} COMPONENT development)
configure_package_config_file(cmake/KetraConfig.cmake.in KetraConfig.cmake INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(KetraConfigVersion.cmake COMPATIBILITY SameMajorVersion)
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

# The Debian packages hold shared libraries below /usr: configure with -DCMAKE_INSTALL_PREFIX=/usr.
set(package libketra${KETRA_SOVERSION})
if(CMAKE_INSTALL_PREFIX STREQUAL "/usr")
  install(FILES cmake/copyright DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/doc/${package} COMPONENT library)
  install(FILES cmake/copyright DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/doc/libketra-dev COMPONENT development)
endif()
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_CONTACT "the Ketra authors")
set(CPACK_PACKAGING_INSTALL_PREFIX ${CMAKE_INSTALL_PREFIX})
set(CPACK_STRIP_FILES ON)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR})  # the runtime lies in the same package
set(CPACK_DEBIAN_LIBRARY_PACKAGE_NAME ${package})
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libketra-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "${package} (= ${PROJECT_VERSION})")
set(CPACK_COMPONENT_LIBRARY_DESCRIPTION "${PROJECT_DESCRIPTION}\nShared libraries libketra and libketra_runtime.")
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION "${PROJECT_DESCRIPTION}\nHeaders of libketra and libketra_runtime.")
set(CPACK_COMPONENTS_ALL library development)
include(CPack)
