# What `cmake --install` puts where, and how others find it: find_package(kelspar), pkg-config.
include(CMakePackageConfigHelpers)

set(KELSPAR_INCLUDEDIR ${CMAKE_INSTALL_INCLUDEDIR}/kelspar)
set(KELSPAR_CMAKEDIR ${CMAKE_INSTALL_LIBDIR}/cmake/kelspar)

install(TARGETS kelspar EXPORT kelsparTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
          COMPONENT library NAMELINK_COMPONENT development
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development
  FILE_SET HEADERS DESTINATION ${KELSPAR_INCLUDEDIR} COMPONENT development
  INCLUDES DESTINATION ${KELSPAR_INCLUDEDIR})
if(NOT BUILD_SHARED_LIBS)
  install(TARGETS kelspar_compiler EXPORT kelsparTargets COMPONENT development)
endif()
install(EXPORT kelsparTargets NAMESPACE kelspar:: DESTINATION ${KELSPAR_CMAKEDIR}
  COMPONENT development)

configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/kelsparConfig.cmake.in
  ${PROJECT_BINARY_DIR}/kelsparConfig.cmake INSTALL_DESTINATION ${KELSPAR_CMAKEDIR})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/kelsparConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/kelsparConfig.cmake
              ${PROJECT_BINARY_DIR}/kelsparConfigVersion.cmake
              ${PROJECT_SOURCE_DIR}/cmake/KelsparDependencies.cmake
  DESTINATION ${KELSPAR_CMAKEDIR} COMPONENT development)

configure_file(${PROJECT_SOURCE_DIR}/cmake/kelspar.pc.in ${PROJECT_BINARY_DIR}/kelspar.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/kelspar.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
  COMPONENT development)

# The programs' manual pages and completions. Pages that follow from the programs are written by them;
# not under a sanitizer or for another machine, where they may not run here.
find_program(KELSPAR_GZIP gzip)

# kelspar_manual_page(NAME SECTION COMMAND... [DEPENDS ...]): the command writes the page to its output.
function(kelspar_manual_page name section)
  cmake_parse_arguments(ARG "" "" "COMMAND;DEPENDS" ${ARGN})
  set(page ${PROJECT_BINARY_DIR}/man/${name}.${section}.gz)
  add_custom_command(OUTPUT ${page}
    COMMAND ${ARG_COMMAND} > ${name}.${section}
    COMMAND ${KELSPAR_GZIP} -9nf ${name}.${section}
    DEPENDS ${ARG_DEPENDS} WORKING_DIRECTORY ${PROJECT_BINARY_DIR}/man VERBATIM)
  add_custom_target(kelspar-manual-${name}-${section} ALL DEPENDS ${page})
  install(FILES ${page} DESTINATION ${CMAKE_INSTALL_MANDIR}/man${section} COMPONENT programs)
endfunction()

if(KELSPAR_PROGRAMS)
  install(FILES ${PROJECT_SOURCE_DIR}/completions/kelspar.bash RENAME kelspar
    DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions COMPONENT programs)
  install(FILES ${PROJECT_SOURCE_DIR}/completions/_kelspar
    DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/vendor-completions COMPONENT programs)
  install(FILES ${PROJECT_SOURCE_DIR}/completions/kelspar.fish
    DESTINATION ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d COMPONENT programs)

  find_package(Python3 COMPONENTS Interpreter)
  if(Python3_FOUND AND KELSPAR_GZIP AND NOT KELSPAR_SANITIZE AND NOT CMAKE_CROSSCOMPILING)
    file(MAKE_DIRECTORY ${PROJECT_BINARY_DIR}/man)
    set(writer ${PROJECT_SOURCE_DIR}/tools/manual_pages.py)
    set(extension_page ${PROJECT_SOURCE_DIR}/docs/man/kelspar-extension.1)
    kelspar_manual_page(kelspar 1 DEPENDS kelspar-cli ${writer}
      COMMAND Python3::Interpreter ${writer} command $<TARGET_FILE:kelspar-cli> ${PROJECT_VERSION})
    kelspar_manual_page(kelspar 7 DEPENDS kelspar-extension ${writer}
      COMMAND Python3::Interpreter ${writer} operations $<TARGET_FILE:kelspar-extension>
              ${PROJECT_VERSION})
    kelspar_manual_page(kelspar-extension 1 DEPENDS ${extension_page}
      COMMAND ${CMAKE_COMMAND} -E cat ${extension_page})
  endif()
endif()

if(PROJECT_IS_TOP_LEVEL)
  include(KelsparPackages)
endif()
