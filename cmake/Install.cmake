# Install rules and the CMake package: hosts write
#   find_package(QanResources CONFIG REQUIRED)
#   target_link_libraries(host PRIVATE QanResources::QanResources)
include(CMakePackageConfigHelpers)

install(TARGETS QanResources EXPORT QanResourcesTargets
        RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
        ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
        INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(DIRECTORY include/framework DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})

set(QANRES_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/QanResources)
install(EXPORT QanResourcesTargets NAMESPACE QanResources:: DESTINATION ${QANRES_CMAKE_DIR})
configure_package_config_file(cmake/QanResourcesConfig.cmake.in
                              ${PROJECT_BINARY_DIR}/QanResourcesConfig.cmake
                              INSTALL_DESTINATION ${QANRES_CMAKE_DIR})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/QanResourcesConfigVersion.cmake
                                 COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/QanResourcesConfig.cmake
              ${PROJECT_BINARY_DIR}/QanResourcesConfigVersion.cmake
              cmake/QanResourcesCheck.cmake
        DESTINATION ${QANRES_CMAKE_DIR})

# pkg-config: hosts without CMake write `pkg-config --cflags --libs QanResources`. The
# file names its prefix relative to its own folder.
set(QANRES_PC_DIR ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
file(RELATIVE_PATH QANRES_PC_TO_PREFIX /root/${QANRES_PC_DIR} /root)
string(REGEX REPLACE "/$" "" QANRES_PC_TO_PREFIX "${QANRES_PC_TO_PREFIX}")
configure_file(cmake/QanResources.pc.in ${PROJECT_BINARY_DIR}/QanResources.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/QanResources.pc DESTINATION ${QANRES_PC_DIR})
