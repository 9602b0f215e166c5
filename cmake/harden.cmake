# ketra_harden(TARGET): protects what runs against faults that were not found. The program always has it; libraries by
# KETRA_HARDEN, because it costs their shortest operations most (SECURITY.md). Sanitizers bring their own.
include(CheckCXXCompilerFlag)
include(CheckLinkerFlag)

function(ketra_harden target)
  if(WIN32 OR APPLE OR KETRA_SANITIZE)
    return()
  endif()
  check_cxx_compiler_flag(-fcf-protection=full KETRA_HAS_CF_PROTECTION)
  check_linker_flag(CXX -Wl,-z,shstk KETRA_HAS_SHSTK)
  # FORTIFY takes an optimizer; some compilers define it already.
  target_compile_options(${target} PRIVATE -fstack-protector-strong
    $<$<CONFIG:Release,RelWithDebInfo,MinSizeRel>:-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=2>
    $<$<BOOL:${KETRA_HAS_CF_PROTECTION}>:-fcf-protection=full>)
  target_link_options(${target} PRIVATE -Wl,-z,relro -Wl,-z,now -Wl,-z,noexecstack
    $<$<STREQUAL:$<TARGET_PROPERTY:${target},TYPE>,EXECUTABLE>:-pie>)
  # Said to the linker, because the C library's start files are not marked. They return to where they were called from,
  # so the shadow stack holds for them; but they have no ENDBR where they are entered, so nothing is said of branches.
  if(KETRA_HAS_SHSTK)
    target_link_options(${target} PRIVATE -Wl,-z,shstk)
  endif()
endfunction()
