# One place for what every target of this project has in common.
set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_AUTOMOC ON)
set(CMAKE_AUTORCC ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin")
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin")
set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/lib")

if(NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
  set(CMAKE_BUILD_TYPE RelWithDebInfo CACHE STRING "" FORCE)
endif()

find_program(AX_CCACHE ccache)
if(AX_CCACHE)
  set(CMAKE_CXX_COMPILER_LAUNCHER "${AX_CCACHE}")
endif()

# Several sources are compiled as one: nearly all of the time to compile one goes into headers that its
# neighbours read too. Every source is still read alone by ./ax lint, which notices an include that is missing.
option(AX_UNITY "Compile several sources as one" ON)
set(CMAKE_UNITY_BUILD ${AX_UNITY})
set(AX_UNITY_SIZE 12) # sources
# Enough for a stack with functions and lines.
string(REGEX REPLACE "-g( |$)" "-g1\\1" CMAKE_CXX_FLAGS_RELWITHDEBINFO "${CMAKE_CXX_FLAGS_RELWITHDEBINFO}")

set(AX_SANITIZE "" CACHE STRING "Sanitizers, comma-separated: address,undefined or thread")
option(AX_COVERAGE "Instrument for coverage" OFF)

function(ax_common target)
  if(MSVC)
    target_compile_options(${target} PRIVATE /W4 /WX /utf-8)
    target_compile_definitions(${target} PRIVATE _USE_MATH_DEFINES NOMINMAX)
  else()
    target_compile_options(${target} PRIVATE -Wall -Wextra -Wconversion -Wshadow -Wno-sign-conversion -Werror)
    if(AX_UNITY) # GCC takes what the unit includes for headers, which may have no classes of their own alone
      target_compile_options(${target} PRIVATE $<$<CXX_COMPILER_ID:GNU>:-Wno-subobject-linkage>)
    endif()
  endif()
  target_compile_definitions(${target} PRIVATE QT_DEPRECATED_WARNINGS QT_NO_CAST_TO_ASCII)
  if(AX_SANITIZE)
    target_compile_options(${target} PRIVATE -fsanitize=${AX_SANITIZE} -fno-omit-frame-pointer)
    target_link_options(${target} PRIVATE -fsanitize=${AX_SANITIZE})
    get_target_property(type ${target} TYPE)
    if(type STREQUAL "EXECUTABLE")
      target_sources(${target} PRIVATE "${PROJECT_SOURCE_DIR}/cmake/KeepLibrariesLoaded.cpp")
    endif()
  endif()
  if(AX_COVERAGE)
    target_compile_options(${target} PRIVATE --coverage)
    target_link_options(${target} PRIVATE --coverage)
  endif()
endfunction()

# ax_unite(TARGET): the sources of one folder are compiled together, so that a new one moves none of another folder.
function(ax_unite target)
  get_target_property(sources ${target} SOURCES)
  list(FILTER sources INCLUDE REGEX "\\.cpp$")
  foreach(source IN LISTS sources)
    get_filename_component(folder "${source}" DIRECTORY)
    string(REPLACE "${PROJECT_SOURCE_DIR}/" "" folder "${folder}")
    string(MAKE_C_IDENTIFIER "unit_${folder}" folder)
    list(APPEND ${folder} "${source}")
    list(LENGTH ${folder} count)
    math(EXPR number "(${count} - 1) / ${AX_UNITY_SIZE}")
    set_source_files_properties("${source}" PROPERTIES UNITY_GROUP "${folder}_${number}")
  endforeach()
  set_target_properties(${target} PROPERTIES UNITY_BUILD_MODE GROUP)
endfunction()

# ax_library(NAME SOURCES ... PUBLIC libs... PRIVATE libs... PCH headers...)
# A shared library whose export macro is NAME in capitals plus _EXPORT.
function(ax_library name)
  cmake_parse_arguments(ARG "" "" "SOURCES;PUBLIC;PRIVATE;PCH" ${ARGN})
  string(TOUPPER ${name} upper)
  add_library(${name} SHARED ${ARG_SOURCES})
  ax_unite(${name})
  add_library(AxEarthViewer::${name} ALIAS ${name})
  ax_common(${name})
  target_compile_definitions(${name} PRIVATE ${upper}_LIBRARY)
  target_link_libraries(${name} PUBLIC ${ARG_PUBLIC} PRIVATE ${ARG_PRIVATE})
  set_target_properties(${name} PROPERTIES VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR})
  if(ARG_PCH AND NOT AX_COVERAGE)
    target_precompile_headers(${name} PRIVATE ${ARG_PCH})
  endif()
endfunction()

# ax_test(LABEL [WINDOW] SOURCES ... LIBS ...): the test program test_LABEL.
# Without WINDOW every case is a CTest test of its own; with WINDOW the program
# runs once under a virtual display, because its cases share one open viewer.
function(ax_test label)
  cmake_parse_arguments(ARG "WINDOW" "" "SOURCES;LIBS;PCH" ${ARGN})
  set(target test_${label})
  add_executable(${target} ${ARG_SOURCES})
  ax_unite(${target})
  ax_common(${target})
  target_include_directories(${target} PRIVATE "${PROJECT_SOURCE_DIR}/tests/support")
  target_compile_definitions(${target} PRIVATE
    AX_TEST_DATA="${PROJECT_SOURCE_DIR}/tests/data" AX_RESOURCES="${PROJECT_SOURCE_DIR}/resources")
  target_link_libraries(${target} PRIVATE ${ARG_LIBS} GTest::gtest)
  if(ARG_PCH AND NOT AX_COVERAGE)
    target_precompile_headers(${target} PRIVATE ${ARG_PCH})
  endif()
  if(ARG_WINDOW)
    add_test(NAME ${label} COMMAND xvfb-run -a -s "-screen 0 1600x1200x24 -noreset" $<TARGET_FILE:${target}>)
    set(limit 600)
    if(AX_SANITIZE)
      set(limit 1800) # pictures take ten times as long
    endif()
    set_tests_properties(${label} PROPERTIES LABELS ${label} TIMEOUT ${limit}
      ENVIRONMENT "LIBGL_ALWAYS_SOFTWARE=1;QT_QPA_PLATFORM=xcb;LC_ALL=C.UTF-8")
  else()
    gtest_discover_tests(${target} NO_PRETTY_VALUES DISCOVERY_TIMEOUT 60
      PROPERTIES LABELS ${label} TIMEOUT 120
      ENVIRONMENT "QT_QPA_PLATFORM=offscreen;LC_ALL=C.UTF-8")
  endif()
endfunction()
