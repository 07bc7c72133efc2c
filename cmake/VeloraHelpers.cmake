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
  velora_precompile(${name} TEST)
  add_test(NAME ${name} COMMAND ${name})
  set_tests_properties(${name} PROPERTIES
    ENVIRONMENT "QT_QPA_PLATFORM=offscreen;VELORA_DATA_DIR=${VELORA_DATA_DIR};ASAN_OPTIONS=detect_leaks=1;LSAN_OPTIONS=suppressions=${CMAKE_SOURCE_DIR}/scripts/lsan.supp;VELORA_CLOUD_PASSWORD_COST=minimum"
    TIMEOUT 300)
endfunction()

# The test `name` once more as `name`-pg, on a PostgreSQL database of the
# scratch cluster that VELORA_TEST_PG names (the test skips without one).
function(velora_add_pg_variant name)
  add_test(NAME ${name}-pg COMMAND ${name})
  get_test_property(${name} ENVIRONMENT _env)
  set_tests_properties(${name}-pg PROPERTIES ENVIRONMENT "${_env};VELORA_TEST_STORE=postgresql" TIMEOUT 300)
endfunction()

# Stops the configuration when one of the targets links Qt Gui or Widgets,
# directly or through any library it links: the cloud service and its server
# run where there is no display.
function(velora_require_gui_free)
  foreach(_target IN LISTS ARGN)
    set(_seen "")
    set(_todo "")
    if(TARGET ${_target})
      set(_todo ${_target})
    endif()
    while(_todo)
      list(POP_FRONT _todo _t)
      list(APPEND _seen ${_t})
      if(_t MATCHES "^Qt5::(Gui|Widgets)$")
        message(FATAL_ERROR "${_target} links ${_t}; it must stay free of Qt Gui and Widgets")
      endif()
      get_target_property(_type ${_t} TYPE)
      set(_libs "")
      if(NOT _type STREQUAL "INTERFACE_LIBRARY")
        get_target_property(_libs ${_t} LINK_LIBRARIES)
      endif()
      get_target_property(_interface ${_t} INTERFACE_LINK_LIBRARIES)
      foreach(_l IN LISTS _libs _interface)
        string(REGEX REPLACE "^\\$<LINK_ONLY:(.+)>$" "\\1" _l "${_l}")
        if(TARGET "${_l}" AND NOT _l IN_LIST _seen AND NOT _l IN_LIST _todo)
          list(APPEND _todo "${_l}")
        endif()
      endforeach()
    endwhile()
  endforeach()
endfunction()
