# What cpack packs: Debian packages with shared libraries below /usr, libketra0, libketra-dev and, with KETRA_PROGRAM,
# ketra. The preset package configures them.
set(package libketra${KETRA_SOVERSION})
set(packages library ${package} development libketra-dev)
if(KETRA_PROGRAM OR KETRA_DEVELOPER)
  list(APPEND packages program ketra)
endif()

if(CMAKE_INSTALL_PREFIX STREQUAL "/usr")
  find_program(KETRA_GZIP gzip REQUIRED)
  # ketra_compress(FILE RESULT)
  function(ketra_compress file result)
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${file})
    execute_process(COMMAND ${KETRA_GZIP} -9nc ${file} OUTPUT_FILE ${result}
      WORKING_DIRECTORY ${PROJECT_SOURCE_DIR} COMMAND_ERROR_IS_FATAL ANY)
  endfunction()
  ketra_compress(docs/ketra.1 ${PROJECT_BINARY_DIR}/ketra.1.gz)
  ketra_compress(CHANGELOG.md ${PROJECT_BINARY_DIR}/changelog.gz)
  set(KETRA_MANUAL ${PROJECT_BINARY_DIR}/ketra.1.gz)
  set(KETRA_ZSH_FUNCTIONS zsh/vendor-completions)
  set(left ${packages})
  while(left)
    list(POP_FRONT left component name)
    install(FILES cmake/copyright ${PROJECT_BINARY_DIR}/changelog.gz
      DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/doc/${name} COMPONENT ${component})
  endwhile()
endif()

# Which version brought each name: programs that use older ones only run with older libraries.
file(WRITE ${PROJECT_BINARY_DIR}/symbols "${KETRA_SYMBOLS}")
file(WRITE ${PROJECT_BINARY_DIR}/triggers "activate-noawait ldconfig\n")

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_CONTACT "the Ketra authors <ketra@ketra.example>")
set(CPACK_PACKAGING_INSTALL_PREFIX ${CMAKE_INSTALL_PREFIX})
set(CPACK_STRIP_FILES ON)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_LIBRARY_OUTPUT_DIRECTORY})  # our own, named below
set(CPACK_DEBIAN_LIBRARY_PACKAGE_NAME ${package})
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SECTION "libs\nMulti-Arch: same")  # CPack before 3.31 has nothing to say it with
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_CONTROL_EXTRA ${PROJECT_BINARY_DIR}/symbols ${PROJECT_BINARY_DIR}/triggers)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libketra-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION "libdevel\nMulti-Arch: same")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "${package} (= ${PROJECT_VERSION})")
set(CPACK_DEBIAN_PROGRAM_PACKAGE_NAME ketra)
set(CPACK_DEBIAN_PROGRAM_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PROGRAM_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PROGRAM_PACKAGE_DEPENDS "${package} (>= ${PROJECT_VERSION})")
set(CPACK_COMPONENT_LIBRARY_DESCRIPTION "Shared libraries libketra and libketra_runtime.")
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION "Headers of libketra and libketra_runtime.")
set(CPACK_COMPONENT_PROGRAM_DESCRIPTION
  "The program ketra, which shows and checks extensions.")
list(FILTER packages INCLUDE REGEX "^(library|development|program)$")
set(CPACK_COMPONENTS_ALL ${packages})
include(CPack)
