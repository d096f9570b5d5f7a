# lp_add_gtest(<name> [QT] SOURCES ... LIBS ...): one GoogleTest program, each of its
# tests run by CTest in its own process with its own device root. QT gives the tests a
# QGuiApplication on the offscreen platform, with QtTest (QSignalSpy, QAbstractItemModelTester).
function(lp_add_gtest name)
  if(NOT LP_BUILD_TESTS)
    return()
  endif()
  cmake_parse_arguments(ARG "QT" "" "SOURCES;LIBS" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  if(ARG_QT)
    target_link_libraries(${name} PRIVATE lp_test_support_qt ${ARG_LIBS})
  else()
    target_link_libraries(${name} PRIVATE lp_test_support ${ARG_LIBS})
  endif()
  gtest_discover_tests(${name} DISCOVERY_TIMEOUT 60 PROPERTIES TIMEOUT 120)
endfunction()
