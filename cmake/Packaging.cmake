include(CMakePackageConfigHelpers)

# The installed package: find_package(DataObjects) and pkg-config.
function(dataobjects_package)
    set(destination ${CMAKE_INSTALL_LIBDIR}/cmake/DataObjects)
    install(EXPORT DataObjectsTargets NAMESPACE DataObjects:: DESTINATION ${destination})
    configure_package_config_file("${PROJECT_SOURCE_DIR}/cmake/DataObjectsConfig.cmake.in"
        "${PROJECT_BINARY_DIR}/DataObjectsConfig.cmake" INSTALL_DESTINATION ${destination})
    write_basic_package_version_file("${PROJECT_BINARY_DIR}/DataObjectsConfigVersion.cmake"
        COMPATIBILITY SameMinorVersion)
    install(FILES "${PROJECT_BINARY_DIR}/DataObjectsConfig.cmake"
        "${PROJECT_BINARY_DIR}/DataObjectsConfigVersion.cmake" DESTINATION ${destination})
    file(RELATIVE_PATH DATAOBJECTS_PREFIX_FROM_PC "/prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/prefix")
    configure_file("${PROJECT_SOURCE_DIR}/cmake/dataobjects.pc.in" "${PROJECT_BINARY_DIR}/dataobjects.pc" @ONLY)
    install(FILES "${PROJECT_BINARY_DIR}/dataobjects.pc" DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
    install(FILES "${PROJECT_SOURCE_DIR}/LICENSE" DESTINATION ${CMAKE_INSTALL_DOCDIR})
endfunction()
