# What the program and the tests need besides the compiler. Built for another target than the machine's own, they do not
# come from its /usr/include: GoogleTest is built from its source package, and a folder holds the headers of the two
# libraries that are nothing else.
set(KETRA_GOOGLETEST "" CACHE PATH "GoogleTest's sources, when the target is not the machine's own")

# ketra_headers(TARGET FOLDER): a header-only library, all in one folder of /usr/include.
function(ketra_headers target folder)
  find_path(KETRA_HEADERS_OF_${folder} ${folder} PATHS /usr/include NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH REQUIRED)
  file(MAKE_DIRECTORY ${PROJECT_BINARY_DIR}/headers)
  file(CREATE_LINK ${KETRA_HEADERS_OF_${folder}}/${folder} ${PROJECT_BINARY_DIR}/headers/${folder} SYMBOLIC)
  add_library(${target} INTERFACE IMPORTED GLOBAL)
  target_include_directories(${target} SYSTEM INTERFACE ${PROJECT_BINARY_DIR}/headers)
endfunction()

if(KETRA_GOOGLETEST)
  ketra_headers(CLI11::CLI11 CLI)
  ketra_headers(nlohmann_json::nlohmann_json nlohmann)
  find_package(Threads REQUIRED)
  add_library(ketra_gtest STATIC EXCLUDE_FROM_ALL
    ${KETRA_GOOGLETEST}/src/gtest-all.cc ${KETRA_GOOGLETEST}/src/gtest_main.cc)
  set_target_properties(ketra_gtest PROPERTIES COMPILE_OPTIONS "-O1")  # not our warnings
  target_include_directories(ketra_gtest SYSTEM PUBLIC ${KETRA_GOOGLETEST}/include PRIVATE ${KETRA_GOOGLETEST})
  target_link_libraries(ketra_gtest PUBLIC Threads::Threads)
  add_library(GTest::gtest ALIAS ketra_gtest)
  add_library(GTest::gtest_main ALIAS ketra_gtest)
else()
  find_package(CLI11 CONFIG REQUIRED)
  find_package(nlohmann_json CONFIG REQUIRED)
  if(KETRA_DEVELOPER)
    find_package(GTest REQUIRED)
  endif()
endif()
