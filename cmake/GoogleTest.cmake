# GTest::gmock_main, built from Debian's source package for whatever the target system is.
set(INSTALL_GTEST OFF CACHE INTERNAL "")
set(BUILD_GMOCK ON CACHE INTERNAL "")
add_subdirectory(${GTEST_SOURCE} ${CMAKE_BINARY_DIR}/googletest EXCLUDE_FROM_ALL SYSTEM)
foreach(library gtest gtest_main gmock gmock_main)
  if(NOT TARGET GTest::${library})
    add_library(GTest::${library} ALIAS ${library})
  endif()
endforeach()
