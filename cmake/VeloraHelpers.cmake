# Sources of a folder: every .cpp/.h in it, so that a new class needs no edit here.
function(velora_glob_sources out_var dir)
  file(GLOB _src CONFIGURE_DEPENDS "${dir}/*.cpp" "${dir}/*.h")
  set(${out_var} ${_src} PARENT_SCOPE)
endfunction()

# One QtTest executable registered with CTest, run offscreen.
function(velora_add_test name)
  cmake_parse_arguments(T "" "" "SOURCES;LIBS" ${ARGN})
  add_executable(${name} ${T_SOURCES})
  target_link_libraries(${name} PRIVATE velora_testharness ${T_LIBS})
  add_test(NAME ${name} COMMAND ${name})
  set_tests_properties(${name} PROPERTIES
    ENVIRONMENT "QT_QPA_PLATFORM=offscreen;VELORA_DATA_DIR=${VELORA_DATA_DIR};ASAN_OPTIONS=detect_leaks=0"
    TIMEOUT 300)
endfunction()
