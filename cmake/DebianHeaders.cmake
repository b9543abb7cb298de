# Header-only libraries from Debian's packages, for every target system. A cross compiler must not see /usr/include,
# so each library gets a folder below the build folder with links to its own headers alone.
#
# add_debian_headers(<target> <name below /usr/include>...)
#     Who links <target> has these headers on the include path, as system headers.
function(add_debian_headers target)
  set(folder ${CMAKE_BINARY_DIR}/headers/${target})
  file(MAKE_DIRECTORY ${folder})
  foreach(name IN LISTS ARGN)
    if(NOT EXISTS /usr/include/${name})
      message(FATAL_ERROR "/usr/include/${name} is missing: ./setup installs it")
    endif()
    file(CREATE_LINK /usr/include/${name} ${folder}/${name} SYMBOLIC)
  endforeach()
  add_library(${target} INTERFACE)
  target_include_directories(${target} SYSTEM INTERFACE ${folder})
endfunction()
