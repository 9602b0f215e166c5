# ketra_build_date(VARIABLE SOURCE FALLBACK): the date for the version banner, YYYY/MM/DD in UTC. It is that of
# SOURCE_DATE_EPOCH, else of the commit that SOURCE is a checkout of, else (in an archive without history) FALLBACK: what
# is built from one source is the same on every day.
function(ketra_build_date variable source fallback)
  set(given "$ENV{SOURCE_DATE_EPOCH}")
  set(seconds "${given}")
  if(seconds STREQUAL "" AND EXISTS ${source}/.git)  # a repository further up is somebody else's
    execute_process(COMMAND git -C ${source} log -1 --format=%ct OUTPUT_VARIABLE seconds
      OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET RESULT_VARIABLE result)
  endif()
  set(date ${fallback})
  if(seconds MATCHES "^[0-9]+$")
    set(ENV{SOURCE_DATE_EPOCH} ${seconds})  # what string(TIMESTAMP) takes for now
    string(TIMESTAMP date "%Y/%m/%d" UTC)
    if(given STREQUAL "")
      unset(ENV{SOURCE_DATE_EPOCH})
    else()
      set(ENV{SOURCE_DATE_EPOCH} ${given})
    endif()
  endif()
  set(${variable} ${date} PARENT_SCOPE)
endfunction()
