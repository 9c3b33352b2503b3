include(GenerateExportHeader)

# dataobjects_library(NAME Common HEADERS … SOURCES … PUBLIC … PRIVATE …)
# A shared library DataObjects::NAME from Core/NAME, its export header Core/NAME/Export.h, installed with the package.
# Each header is checked to compile alone.
function(dataobjects_library)
    cmake_parse_arguments(ARG "" "NAME" "HEADERS;SOURCES;PUBLIC;PRIVATE" ${ARGN})
    set(target DataObjects${ARG_NAME})
    if(ARG_NAME STREQUAL "DataObjects")
        set(target DataObjects)
    endif()
    add_library(${target} SHARED)
    add_library(DataObjects::${ARG_NAME} ALIAS ${target})
    target_sources(${target} PRIVATE ${ARG_SOURCES})
    # Export and import are the same attribute with ELF; without the define all libraries share one precompiled header.
    set_target_properties(${target} PROPERTIES
        DEFINE_SYMBOL "" INSTALL_RPATH "$ORIGIN" EXPORT_NAME ${ARG_NAME} VERSION ${PROJECT_VERSION}
        SOVERSION ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR} VERIFY_INTERFACE_HEADER_SETS ON)

    string(TOUPPER ${ARG_NAME} upper)
    set(generated "${PROJECT_BINARY_DIR}/include")
    generate_export_header(${target} BASE_NAME DATAOBJECTS_${upper}
        EXPORT_MACRO_NAME DATAOBJECTS_${upper}_EXPORT EXPORT_FILE_NAME "${generated}/Core/${ARG_NAME}/Export.h")
    target_sources(${target} PUBLIC
        FILE_SET HEADERS BASE_DIRS "${PROJECT_SOURCE_DIR}" FILES ${ARG_HEADERS}
        FILE_SET generated_headers TYPE HEADERS BASE_DIRS "${generated}"
        FILES "${generated}/Core/${ARG_NAME}/Export.h")
    target_include_directories(${target} PUBLIC $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/DataObjects>)
    target_compile_features(${target} PUBLIC cxx_std_20)
    target_link_libraries(${target} PUBLIC ${ARG_PUBLIC} PRIVATE ${ARG_PRIVATE} $<BUILD_INTERFACE:dataobjects_options>)
    if(TARGET DataObjectsCommon AND NOT ARG_NAME STREQUAL "Common")
        target_precompile_headers(${target} REUSE_FROM DataObjectsCommon)
    else()
        target_precompile_headers(${target} PRIVATE "${PROJECT_SOURCE_DIR}/cmake/Precompiled.h")
    endif()
    install(TARGETS ${target} EXPORT DataObjectsTargets
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
        FILE_SET HEADERS DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/DataObjects
        FILE_SET generated_headers DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/DataObjects)
endfunction()

# dataobjects_test(NAME CommonTests SOURCES … LIBRARIES …): one GoogleTest executable per folder, one ctest entry per case.
function(dataobjects_test)
    cmake_parse_arguments(ARG "" "NAME" "SOURCES;LIBRARIES" ${ARGN})
    add_executable(${ARG_NAME} ${ARG_SOURCES})
    target_link_libraries(${ARG_NAME} PRIVATE dataobjects_test_support ${ARG_LIBRARIES})
    target_precompile_headers(${ARG_NAME} REUSE_FROM dataobjects_test_support)
    gtest_discover_tests(${ARG_NAME} PROPERTIES TIMEOUT 300 DISCOVERY_TIMEOUT 60)
endfunction()

# dataobjects_benchmark(NAME DecoderBenchmark SOURCES … LIBRARIES … [BRIEFLY filter]); a test runs it briefly, on the
# small sizes that the filter leaves, so that it keeps working and its results stay right.
function(dataobjects_benchmark)
    cmake_parse_arguments(ARG "" "NAME;BRIEFLY" "SOURCES;LIBRARIES" ${ARGN})
    add_executable(${ARG_NAME} ${ARG_SOURCES})
    target_link_libraries(${ARG_NAME} PRIVATE dataobjects_options benchmark::benchmark_main ${ARG_LIBRARIES})
    if(DATAOBJECTS_BUILD_TESTS)
        if(NOT ARG_BRIEFLY)
            set(ARG_BRIEFLY all)
        endif()
        add_test(NAME ${ARG_NAME}.Briefly
            COMMAND ${ARG_NAME} --benchmark_min_time=0.001 "--benchmark_filter=${ARG_BRIEFLY}")
        set_tests_properties(${ARG_NAME}.Briefly PROPERTIES
            TIMEOUT 120 FAIL_REGULAR_EXPRESSION "ERROR OCCURRED;Failed to match")
    endif()
endfunction()
