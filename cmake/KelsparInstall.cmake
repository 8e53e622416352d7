# What `cmake --install` puts where, and how others find it: find_package(kelspar), pkg-config.
include(CMakePackageConfigHelpers)

set(KELSPAR_INCLUDEDIR ${CMAKE_INSTALL_INCLUDEDIR}/kelspar)
set(KELSPAR_CMAKEDIR ${CMAKE_INSTALL_LIBDIR}/cmake/kelspar)

install(TARGETS kelspar EXPORT kelsparTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
  FILE_SET HEADERS DESTINATION ${KELSPAR_INCLUDEDIR}
  INCLUDES DESTINATION ${KELSPAR_INCLUDEDIR})
if(NOT BUILD_SHARED_LIBS)
  install(TARGETS kelspar_compiler EXPORT kelsparTargets)
endif()
install(EXPORT kelsparTargets NAMESPACE kelspar:: DESTINATION ${KELSPAR_CMAKEDIR})

configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/kelsparConfig.cmake.in
  ${PROJECT_BINARY_DIR}/kelsparConfig.cmake INSTALL_DESTINATION ${KELSPAR_CMAKEDIR})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/kelsparConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/kelsparConfig.cmake
              ${PROJECT_BINARY_DIR}/kelsparConfigVersion.cmake
              ${PROJECT_SOURCE_DIR}/cmake/KelsparDependencies.cmake
  DESTINATION ${KELSPAR_CMAKEDIR})

configure_file(${PROJECT_SOURCE_DIR}/cmake/kelspar.pc.in ${PROJECT_BINARY_DIR}/kelspar.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/kelspar.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
