# How every target of the project is built.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_AUTOUIC_SEARCH_PATHS "")
find_program(TOCKWISE_CCACHE ccache)
if(TOCKWISE_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${TOCKWISE_CCACHE})
endif()

add_library(tockwise_options INTERFACE)
target_compile_definitions(tockwise_options INTERFACE
  QT_NO_KEYWORDS QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_URL_CAST_FROM_STRING
  QT_NO_FOREACH QT_STRICT_ITERATORS QT_DISABLE_DEPRECATED_BEFORE=0x060400
  TOCKWISE_VERSION="${PROJECT_VERSION}")
target_compile_options(tockwise_options INTERFACE -Wall -Wextra -Wpedantic
  $<$<BOOL:${TOCKWISE_WARNINGS_AS_ERRORS}>:-Werror>)
target_include_directories(tockwise_options INTERFACE ${CMAKE_SOURCE_DIR}/src)
if(TOCKWISE_SANITIZE)
  target_compile_options(tockwise_options INTERFACE
    -fsanitize=address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer
    -Wno-maybe-uninitialized) # GCC 12 sees ghosts in variants here
  target_link_options(tockwise_options INTERFACE -fsanitize=address,undefined)
endif()
if(TOCKWISE_FUZZ)
  # Every library tells the fuzzer which branches an input took.
  target_compile_options(tockwise_options INTERFACE -fsanitize=fuzzer-no-link)
endif()

# tockwise_harden(TARGET): what users run checks its buffers and its stack while it runs, lies at
# another address each time, and has its tables read-only. Not for the sanitizers, which do it their
# own way, and not for the tests, which are not optimised.
function(tockwise_harden target)
  if(TOCKWISE_SANITIZE OR CMAKE_BUILD_TYPE STREQUAL "Debug")
    return()
  endif()
  target_compile_options(${target} PRIVATE -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2
    -fstack-protector-strong -fstack-clash-protection)
  get_target_property(type ${target} TYPE)
  if(type STREQUAL "EXECUTABLE")
    target_link_options(${target} PRIVATE -pie LINKER:-z,relro LINKER:-z,now)
  endif()
endfunction()

# tockwise_start_fast(TARGET): half the time until the icon stands goes by while names are looked up in
# the libraries, in the order in which they are linked. Those that define most names come first, and
# what is only needed now and then is loaded when it is (src/platform/loaded_library.h). Not for the
# sanitizers, whose own library comes first.
function(tockwise_start_fast target)
  if(TOCKWISE_SANITIZE OR CMAKE_BUILD_TYPE STREQUAL "Debug")
    return()
  endif()
  set(first "")
  foreach(module Core Gui Widgets DBus)
    string(APPEND first "$<TARGET_FILE:Qt6::${module}>,")
  endforeach()
  target_link_options(${target} PRIVATE
    LINKER:--push-state,--no-as-needed,${first}-lstdc++,-lc,--pop-state LINKER:--as-needed)
endfunction()

# tockwise_precompile(TARGET MODULES…): with TOCKWISE_PRECOMPILE, what most of a target's files
# include of Qt is read once. The release build does without, so that every file is held to its own
# includes.
function(tockwise_precompile target)
  if(NOT TOCKWISE_PRECOMPILE)
    return()
  endif()
  foreach(module Widgets Gui Core)
    if("Qt6::${module}" IN_LIST ARGN)
      target_precompile_headers(${target} PRIVATE <Qt${module}>)
      return()
    endif()
  endforeach()
endfunction()

# tockwise_library(NAME SOURCES … [LINKS …] [PRIVATE_LINKS …] [FORMS])
# A folder of src/ as the static library tockwise_NAME. Includes are written from src/:
# #include "store/reminder_queue.h".
function(tockwise_library name)
  cmake_parse_arguments(ARG "MOC;FORMS" "" "SOURCES;LINKS;PRIVATE_LINKS" ${ARGN})
  add_library(tockwise_${name} STATIC ${ARG_SOURCES})
  target_link_libraries(tockwise_${name} PUBLIC tockwise_options ${ARG_LINKS} PRIVATE ${ARG_PRIVATE_LINKS})
  tockwise_precompile(tockwise_${name} ${ARG_LINKS})
  tockwise_harden(tockwise_${name})
  if(ARG_MOC)
    set_target_properties(tockwise_${name} PROPERTIES AUTOMOC ON)
  endif()
  if(ARG_FORMS)
    set_target_properties(tockwise_${name} PROPERTIES AUTOUIC ON)
  endif()
endfunction()
