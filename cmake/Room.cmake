# room(NAME HEADERS ... SOURCES ... FORMS ... LINK ... DEFINE ...)
#
# Declares one room of the house: a static library whose public headers live below include/NAME (include/PATH
# for the forms of a room) and are included as <NAME/Header.h>; private headers stand beside their .cpp and are
# included in quotes. LINK names the rooms below and the libraries that its public headers need; a room that is
# declared further up in the house does not stand yet and is refused. A room whose name does not end in "ui" must
# not see Qt6::Widgets. DEFINE names what only this room is compiled with; it pays for precompiled headers of its own.
function(room name)
  cmake_parse_arguments(R "" "" "HEADERS;SOURCES;FORMS;LINK;DEFINE" ${ARGN})
  if(R_UNPARSED_ARGUMENTS)
    message(FATAL_ERROR "room(${name}): what are ${R_UNPARSED_ARGUMENTS}?")
  endif()
  foreach(link IN LISTS R_LINK)
    if(NOT TARGET ${link})
      message(FATAL_ERROR "room(${name}) must not link ${link}, which does not stand yet")
    endif()
    if(NOT name MATCHES "ui$" AND (link STREQUAL "Qt6::Widgets" OR link MATCHES "^([a-z]+_)?ui$"))
      message(FATAL_ERROR "room(${name}) is a core and must not link ${link}")
    endif()
  endforeach()
  add_library(${name} STATIC ${R_HEADERS} ${R_SOURCES} ${R_FORMS})
  target_include_directories(${name} PUBLIC "${CMAKE_CURRENT_SOURCE_DIR}/include")
  target_link_libraries(${name} PUBLIC ${R_LINK} PRIVATE house)
  target_compile_definitions(${name} PRIVATE QT_NO_CAST_FROM_ASCII)
  kind_of(${name} kind)
  if(R_DEFINE)
    target_compile_definitions(${name} PRIVATE ${R_DEFINE})
    precompiled(${name} HEADERS ${core_headers} LINK house Qt6::Core DEFINE QT_NO_CAST_FROM_ASCII ${R_DEFINE})
    set(kind ${name})
  endif()
  use_precompiled(${name} ${kind})
  set_target_properties(${name} PROPERTIES AUTOMOC ON AUTOUIC ON AUTOUIC_SEARCH_PATHS "${CMAKE_CURRENT_SOURCE_DIR}")
endfunction()

# Whether the room NAME may see widgets: "ui" or "core".
function(kind_of name result)
  set(kind core)
  if(name MATCHES "ui$")
    set(kind ui)
  endif()
  set(${result} ${kind} PARENT_SCOPE)
endfunction()

# room_test(ROOM SOURCES ... LINK ...): the GoogleTest program test_ROOM, one ctest entry for each test. With
# BOTH_STORES each test runs a second time, as ROOM_pg., on a PostgreSQL server that ctest starts and stops; suites
# named File* are then left out, as those named Server* are in the first round.
function(room_test name)
  cmake_parse_arguments(T "BOTH_STORES" "TIMEOUT" "SOURCES;LINK;ENVIRONMENT" ${ARGN})
  if(NOT T_TIMEOUT)
    set(T_TIMEOUT 120)
  endif()
  add_executable(test_${name} ${T_SOURCES})
  target_link_libraries(test_${name} PRIVATE ${T_LINK} house_tests GTest::gmock GTest::gtest)
  if(NOT "test_main" IN_LIST T_LINK)
    target_link_libraries(test_${name} PRIVATE GTest::gtest_main)
  endif()
  target_include_directories(test_${name} PRIVATE "${CMAKE_CURRENT_SOURCE_DIR}")
  target_compile_definitions(test_${name} PRIVATE TEST_DATA="${CMAKE_CURRENT_SOURCE_DIR}"
    DEMO_ASSETS="${CMAKE_SOURCE_DIR}/assets/demo")
  set_target_properties(test_${name} PROPERTIES AUTOMOC ON)
  kind_of(${name} kind)
  use_precompiled(test_${name} tests_${kind})
  include(GoogleTest)
  set(environment QT_QPA_PLATFORM=offscreen LC_ALL=C.UTF-8 ${T_ENVIRONMENT})
  set(filter)
  if(T_BOTH_STORES)
    set(filter TEST_FILTER "-Server*:*/Server*")
    if(MERIVANE_TEST_SERVER)
      gtest_discover_tests(test_${name} DISCOVERY_MODE PRE_TEST TEST_PREFIX "${name}_pg." TEST_LIST test_${name}_pg
        TEST_FILTER "-File*:*/File*" PROPERTIES TIMEOUT ${T_TIMEOUT} FIXTURES_REQUIRED postgres)
      test_environment(test_${name}_pg ${environment} "MERIVANE_TEST_STORE=${MERIVANE_TEST_SERVER}")
    endif()
  endif()
  gtest_discover_tests(test_${name} DISCOVERY_MODE PRE_TEST TEST_PREFIX "${name}." TEST_LIST test_${name} ${filter}
    PROPERTIES TIMEOUT ${T_TIMEOUT})
  test_environment(test_${name} ${environment} MERIVANE_TEST_STORE=)
endfunction()

# The environment of discovered tests: several variables do not survive as a property of gtest_discover_tests.
function(test_environment tests)
  set(file "${CMAKE_CURRENT_BINARY_DIR}/${tests}_environment.cmake")
  file(WRITE "${file}"
    "if(${tests})\n  set_tests_properties(\${${tests}} PROPERTIES ENVIRONMENT [==[${ARGN}]==])\nendif()\n")
  set_property(DIRECTORY APPEND PROPERTY TEST_INCLUDE_FILES "${file}")
endfunction()
