# kestan_add_tests(<folder> <source>...): one gtest program for the tests of one folder.

find_package(GTest REQUIRED)
include(GoogleTest)

# A sanitizer report fails the test that caused it.
set(KESTAN_TEST_ENVIRONMENT
    "ASAN_OPTIONS=detect_stack_use_after_return=1:strict_string_checks=1"
    "UBSAN_OPTIONS=print_stacktrace=1"
    "TSAN_OPTIONS=halt_on_error=1:second_deadlock_stack=1:suppressions=${PROJECT_SOURCE_DIR}/cmake/tsan.supp"
)

function(kestan_add_tests folder)
  set(target kestan-tests-${folder})
  add_executable(${target} ${ARGN})
  target_link_libraries(${target} PRIVATE kestan-test-support)
  if(KESTAN_PCH)
    target_precompile_headers(${target} REUSE_FROM kestan-test-support)
  endif()
  gtest_discover_tests(
    ${target}
    TEST_PREFIX ${folder}.
    DISCOVERY_MODE PRE_TEST
    PROPERTIES TIMEOUT 300 ENVIRONMENT "${KESTAN_TEST_ENVIRONMENT}")
endfunction()
