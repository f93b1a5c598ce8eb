# One place for language level, warnings, hardening and sanitizers.
# `labelcut_library(NAME SOURCES… LINK… )` is how every static library of this tree is made.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM)
  # Precompiled headers hold neither macros of the command line nor the time. They are large: the
  # caches of ccache for what a file's bytes and a source's headers are spare a quarter of a second
  # for every source.
  set(CMAKE_CXX_COMPILER_LAUNCHER "${CMAKE_COMMAND}" -E env
    CCACHE_SLOPPINESS=pch_defines,time_macros CCACHE_DEPEND=1 CCACHE_INODECACHE=1
    "${CCACHE_PROGRAM}")
endif()

# What users run is linked as their system links; tests by the fastest linker that there is.
if(NOT CMAKE_BUILD_TYPE STREQUAL "Release")
  find_program(LLD_PROGRAM ld.lld)
  if(LLD_PROGRAM)
    add_link_options(-fuse-ld=lld)
  endif()
endif()

add_library(labelcut_compiler INTERFACE)
target_compile_options(labelcut_compiler INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion -Wshadow
  $<$<BOOL:${LABELCUT_WERROR}>:-Werror>)
target_compile_definitions(labelcut_compiler INTERFACE
  QT_NO_KEYWORDS QT_NO_CAST_TO_ASCII QT_NO_CAST_FROM_BYTEARRAY)
target_include_directories(labelcut_compiler INTERFACE "${PROJECT_SOURCE_DIR}")

# Hardening for what users run; sanitizers and _FORTIFY_SOURCE exclude each other.
if(CMAKE_BUILD_TYPE STREQUAL "Release")
  target_compile_options(labelcut_compiler INTERFACE -fstack-protector-strong -fstack-clash-protection)
  # Jumps and returns go where they may only; each kind of processor has its own word for it.
  if(CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86_64|AMD64|i[3-6]86)$")
    target_compile_options(labelcut_compiler INTERFACE -fcf-protection=full)
  elseif(CMAKE_SYSTEM_PROCESSOR MATCHES "^(aarch64|arm64)$")
    target_compile_options(labelcut_compiler INTERFACE -mbranch-protection=standard)
  endif()
  target_compile_definitions(labelcut_compiler INTERFACE _FORTIFY_SOURCE=2 _GLIBCXX_ASSERTIONS)
  target_link_options(labelcut_compiler INTERFACE -Wl,-z,relro,-z,now -Wl,-z,noexecstack -Wl,--as-needed)
endif()
if(LABELCUT_SANITIZE)
  target_compile_options(labelcut_compiler INTERFACE
    -fsanitize=${LABELCUT_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(labelcut_compiler INTERFACE -fsanitize=${LABELCUT_SANITIZE})
endif()
# libFuzzer steers by the edges that an input reached; its main function joins the targets only.
if(LABELCUT_FUZZ)
  target_compile_options(labelcut_compiler INTERFACE -fsanitize=fuzzer-no-link)
endif()
if(LABELCUT_COVERAGE)
  target_compile_options(labelcut_compiler INTERFACE --coverage -O0)
  target_link_options(labelcut_compiler INTERFACE --coverage)
endif()
# Two versions of the plug-in share a process: a template's static must not become one for both.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  target_compile_options(labelcut_compiler INTERFACE -fno-gnu-unique)
endif()

# labelcut_library(NAME [MOC] SOURCES file… [LINK target…]): a static library whose public link
# interface is LINK. With MOC, what the sources declare as Q_OBJECT gets its code; without it the
# build spares the look for it, and a forgotten MOC fails to link (no vtable).
function(labelcut_library name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "MOC" "" "SOURCES;LINK")
  add_library(${name} STATIC ${arg_SOURCES})
  set_target_properties(${name} PROPERTIES AUTOMOC ${arg_MOC})
  target_link_libraries(${name} PUBLIC labelcut_compiler ${arg_LINK})
  labelcut_reuse_headers(${name} labelcut_library_headers)
endfunction()
