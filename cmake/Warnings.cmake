# Every target of the project links project_warnings PRIVATE.
add_library(project_warnings INTERFACE)
target_compile_options(project_warnings INTERFACE -Wall -Wextra -Wconversion -Werror
  # GCC 12 sees overlapping copies in "text" + std::string (GCC bug 105651).
  $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)
