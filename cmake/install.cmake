# cmake --install: the platform library, the driver plug-in, the headers a host needs,
# the posprint host, a CMake package (find_package(posprint)) and a pkg-config file.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(POSPRINT_PLUGIN_INSTALL_DIR ${CMAKE_INSTALL_LIBDIR}/posprint)

install(TARGETS posprint_platform EXPORT posprintTargets
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(TARGETS posprint_drivers
        LIBRARY DESTINATION ${POSPRINT_PLUGIN_INSTALL_DIR})
install(TARGETS posprint RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})

# A host needs the framework interfaces and the model identities.
file(GLOB POSPRINT_PLATFORM_HEADERS platform/*.h)
install(FILES ${POSPRINT_PLATFORM_HEADERS} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/posprint/platform)
install(FILES frame/model_identity.h frame/keywords.h frame/printer_result.h frame/factory.h
        DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/posprint/frame)
install(DIRECTORY docs/ DESTINATION ${CMAKE_INSTALL_DOCDIR} FILES_MATCHING PATTERN "*.md")
install(DIRECTORY examples/ DESTINATION ${CMAKE_INSTALL_DOCDIR}/examples
        PATTERN "host/build*" EXCLUDE)

install(EXPORT posprintTargets NAMESPACE posprint:: DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/posprint)
configure_package_config_file(cmake/posprintConfig.cmake.in
                              ${CMAKE_CURRENT_BINARY_DIR}/posprintConfig.cmake
                              INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/posprint
                              PATH_VARS POSPRINT_PLUGIN_INSTALL_DIR)
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/posprintConfigVersion.cmake
                                 COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/posprintConfig.cmake
              ${CMAKE_CURRENT_BINARY_DIR}/posprintConfigVersion.cmake
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/posprint)

configure_file(cmake/posprint.pc.in ${CMAKE_CURRENT_BINARY_DIR}/posprint.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/posprint.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

# Installed programs find the framework library beside them, wherever the prefix is.
set_target_properties(posprint PROPERTIES INSTALL_RPATH "$ORIGIN/../${CMAKE_INSTALL_LIBDIR}")
set_target_properties(posprint_drivers PROPERTIES INSTALL_RPATH "$ORIGIN/..")
