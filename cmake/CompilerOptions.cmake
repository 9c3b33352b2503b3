# One target carries the language level and all warnings; every target of the project links it privately.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin")
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/lib")

add_library(dataobjects_options INTERFACE)
target_compile_options(dataobjects_options INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wold-style-cast -Wnon-virtual-dtor
    -Woverloaded-virtual -Wcast-qual -Wundef -Wimplicit-fallthrough -Werror
    "-ffile-prefix-map=${PROJECT_SOURCE_DIR}/=" -fno-math-errno -ffp-contract=off)
target_compile_definitions(dataobjects_options INTERFACE
    QT_NO_KEYWORDS QT_NO_CAST_TO_ASCII QT_NO_URL_CAST_FROM_STRING QT_STRICT_ITERATORS)

if(DATAOBJECTS_SANITIZE)
    target_compile_options(dataobjects_options INTERFACE
        "-fsanitize=${DATAOBJECTS_SANITIZE}" -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(dataobjects_options INTERFACE "-fsanitize=${DATAOBJECTS_SANITIZE}")
    target_compile_definitions(dataobjects_options INTERFACE DATAOBJECTS_SANITIZED)
endif()

find_program(DATAOBJECTS_LLD ld.lld)
if(DATAOBJECTS_LLD)
    target_link_options(dataobjects_options INTERFACE -fuse-ld=lld)
endif()

# ccache takes precompiled headers only with these settings (https://ccache.dev/manual/4.7.html#_precompiled_headers).
find_program(DATAOBJECTS_CCACHE ccache)
if(DATAOBJECTS_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    set(CMAKE_CXX_COMPILER_LAUNCHER
        ${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime
        "${DATAOBJECTS_CCACHE}")
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
        target_compile_options(dataobjects_options INTERFACE -fpch-preprocess)
    endif()
endif()
