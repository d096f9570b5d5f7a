# lp_add_gtest(<name> SOURCES ... LIBS ...): one GoogleTest program, each of its
# tests run by CTest in its own process with its own device root.
function(lp_add_gtest name)
  if(NOT LP_BUILD_TESTS)
    return()
  endif()
  cmake_parse_arguments(ARG "" "" "SOURCES;LIBS" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE lp_test_support ${ARG_LIBS})
  gtest_discover_tests(${name} DISCOVERY_TIMEOUT 60 PROPERTIES TIMEOUT 120)
endfunction()
