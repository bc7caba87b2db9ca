# What every target shares: the language, the warnings, and the tools that make a build quick.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/lib)

if(NOT CMAKE_BUILD_TYPE)
  set(CMAKE_BUILD_TYPE Release)
endif()

add_compile_options(-Wall -Wextra -Werror -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual
                    -Wcast-align -Wformat=2 -Wnull-dereference -Wimplicit-fallthrough)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  # g++ 12 reports null dereferences and overreads that cannot happen inside inlined library code.
  add_compile_options(-Wno-null-dereference -Wno-stringop-overread -Wno-array-bounds
                      -Wno-restrict -Wno-stringop-overflow)
endif()

# What is shipped is hardened: guarded stacks, checked calls of the C library, programs at an address
# of the system's choice, and tables of the linker that nothing writes to once the program runs.
include(CheckPIESupported)
check_pie_supported()
if(CMAKE_BUILD_TYPE STREQUAL "Release")
  add_compile_options(-fstack-protector-strong -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2)
  add_link_options(-Wl,-z,relro,-z,now)
endif()

# What is shipped is compiled several sources at a time, in less than half the processor time: most of
# it is what the headers make anew for each. Debug builds keep to one at a time, for quick changes.
function(rova_unity target)
  if(CMAKE_BUILD_TYPE STREQUAL "Release")
    set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_BATCH_SIZE 6)
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
      # Said of types of one source alone as soon as it is not compiled by itself.
      target_compile_options(${target} PRIVATE -Wno-subobject-linkage)
    endif()
  endif()
endfunction()

find_program(ROVA_CCACHE ccache)
if(ROVA_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  # What lets it keep objects that were compiled with a precompiled header.
  set(CMAKE_CXX_COMPILER_LAUNCHER
    ${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros ${ROVA_CCACHE})
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    add_compile_options($<$<COMPILE_LANGUAGE:CXX>:-fpch-preprocess>)
  endif()
endif()

# What is installed stands in an include/ of its library; any other header stands beside its source and
# is named from the root of its library's tree. tests/library/architecture_test.py holds every include
# against the table of folders in docs/architecture.md.
function(rova_object_library name)
  cmake_parse_arguments(ARG "" "" "SOURCES;USES" ${ARGN})
  add_library(${name} OBJECT ${ARG_SOURCES})
  target_include_directories(${name} PUBLIC $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>)
  target_link_libraries(${name} PUBLIC ${ARG_USES})
endfunction()
