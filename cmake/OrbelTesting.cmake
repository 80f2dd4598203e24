# Helpers for the test tree.
#
# orbel_add_test(<name> SOURCES ... [LIBS ...] [OFFSCREEN] [XVFB] [QTMAIN] [TIMEOUT s] [LABELS ...])
#   One GoogleTest executable, registered with CTest as one test.
#   OFFSCREEN  runs it under Qt's offscreen platform (no display needed).
#   XVFB       runs it under its own Xvfb server (xvfb-run -a), for tests of real windows and
#              of the real program.
#   QTMAIN     links the main() that creates a QApplication before the tests run; otherwise
#              GoogleTest's own main().
#
# orbel_add_fuzzer(<name> SOURCES ... [LIBS ...] CORPUS <seed dir>)
#   A libFuzzer target (only in the ORBEL_FUZZ build). The test command runs each briefly on
#   a copy of its seed corpus; scripts/fuzz.sh runs them for longer.

set(ORBEL_TEST_ENV
  "ASAN_OPTIONS=detect_leaks=1:abort_on_error=1:detect_stack_use_after_return=0"
  "UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1"
  "LSAN_OPTIONS=suppressions=${CMAKE_SOURCE_DIR}/tests/lsan.supp:print_suppressions=0"
  "ORBEL_SOURCE_DIR=${CMAKE_SOURCE_DIR}"
  "ORBEL_BIN_DIR=${CMAKE_BINARY_DIR}/bin"
  "QT_QPA_FONTDIR=/usr/share/fonts/truetype"
  "LC_ALL=C.UTF-8")

function(orbel_add_test name)
  cmake_parse_arguments(T "OFFSCREEN;XVFB;QTMAIN" "TIMEOUT" "SOURCES;LIBS;LABELS" ${ARGN})
  if(ORBEL_FUZZ)
    return()
  endif()
  add_executable(${name} ${T_SOURCES})
  if(T_QTMAIN)
    target_link_libraries(${name} PRIVATE orbel_testmain)
  else()
    target_link_libraries(${name} PRIVATE GTest::gtest_main)
  endif()
  target_link_libraries(${name} PRIVATE GTest::gtest GTest::gmock orbel_testsupport ${T_LIBS})
  if(T_XVFB)
    add_test(NAME ${name}
      COMMAND xvfb-run -a -s "-screen 0 1920x1080x24 -nolisten tcp" $<TARGET_FILE:${name}>)
  else()
    add_test(NAME ${name} COMMAND ${name})
  endif()
  set(env ${ORBEL_TEST_ENV})
  if(T_OFFSCREEN)
    list(APPEND env "QT_QPA_PLATFORM=offscreen")
  endif()
  if(NOT T_TIMEOUT)
    set(T_TIMEOUT 300)
  endif()
  set_tests_properties(${name} PROPERTIES ENVIRONMENT "${env}" TIMEOUT ${T_TIMEOUT})
  if(T_LABELS)
    set_tests_properties(${name} PROPERTIES LABELS "${T_LABELS}")
  endif()
endfunction()

function(orbel_add_fuzzer name)
  cmake_parse_arguments(F "" "CORPUS" "SOURCES;LIBS" ${ARGN})
  if(NOT ORBEL_FUZZ)
    return()
  endif()
  add_executable(${name} ${F_SOURCES})
  add_dependencies(orbel_fuzzers ${name})
  target_link_libraries(${name} PRIVATE ${F_LIBS})
  target_link_options(${name} PRIVATE -fsanitize=fuzzer)
  add_test(NAME ${name}
    COMMAND ${CMAKE_SOURCE_DIR}/scripts/run-fuzzer.sh $<TARGET_FILE:${name}> ${F_CORPUS} 20)
  set_tests_properties(${name} PROPERTIES ENVIRONMENT "${ORBEL_TEST_ENV}" TIMEOUT 120 LABELS fuzz)
endfunction()

# orbel_folder_library(<target> [DEPS ...] [PRIVATE_DEPS ...])
#   The static library of one source folder, made of every .cpp in it. A folder without
#   sources yet gives an interface target, so that others can link to it already.
#   PRIVATE_DEPS are linked but their headers stay hidden from the library's users.
function(orbel_folder_library target)
  cmake_parse_arguments(L "" "" "DEPS;PRIVATE_DEPS" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp)
  file(GLOB headers CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.h)
  if(sources)
    add_library(${target} STATIC ${sources} ${headers})
    target_include_directories(${target} PUBLIC ${CMAKE_SOURCE_DIR})
    target_link_libraries(${target} PUBLIC ${L_DEPS})
    if(L_PRIVATE_DEPS)
      target_link_libraries(${target} PRIVATE ${L_PRIVATE_DEPS})
    endif()
  else()
    add_library(${target} INTERFACE)
    target_include_directories(${target} INTERFACE ${CMAKE_SOURCE_DIR})
    target_link_libraries(${target} INTERFACE ${L_DEPS})
  endif()
endfunction()
