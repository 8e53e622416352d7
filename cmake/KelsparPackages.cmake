# `cpack`: Debian packages of the three parts: the library, what one builds against it with, the programs.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME kelspar)
set(CPACK_PACKAGE_CONTACT "the Kelspar authors <kelspar@localhost.invalid>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL library development programs)
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR})
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_POST_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/packaging/without_ldconfig.cmake)

set(library libkelspar${PROJECT_VERSION_MAJOR})
set(summary "Turns stored e-mail content into text, HTML or PDF")
set(about 
  "Decodes compressed RTF, encapsulated HTML, transfer encodings, charsets,\nheader words and time values.")

set(CPACK_DEBIAN_LIBRARY_PACKAGE_NAME ${library})
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_CONTROL_EXTRA ${PROJECT_SOURCE_DIR}/packaging/triggers)
# Loaded when needed: addresses, drawings (metafiles become such), WebP.
set(CPACK_DEBIAN_LIBRARY_PACKAGE_RECOMMENDS
  "libcurl3-gnutls | libcurl4, librsvg2-common, webp-pixbuf-loader")
set(CPACK_COMPONENT_LIBRARY_DESCRIPTION "${summary}\n${about}")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libkelspar-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "${library} (= ${PROJECT_VERSION})")
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION
  "${summary}, development files\n${about}\n.\nHeaders, CMake and pkg-config files.")

set(CPACK_DEBIAN_PROGRAMS_PACKAGE_NAME kelspar)
set(CPACK_DEBIAN_PROGRAMS_PACKAGE_SECTION mail)
set(CPACK_DEBIAN_PROGRAMS_PACKAGE_DEPENDS "${library} (= ${PROJECT_VERSION})")
set(CPACK_COMPONENT_PROGRAMS_DESCRIPTION
  "${summary}, programs\n${about}\n.\nThe command line and the extension for other languages.")

# Each package carries its licence and its changes.
foreach(part library development programs)
  string(TOUPPER ${part} upper)
  set(doc ${CMAKE_INSTALL_DATADIR}/doc/${CPACK_DEBIAN_${upper}_PACKAGE_NAME})
  install(FILES ${PROJECT_SOURCE_DIR}/packaging/copyright DESTINATION ${doc} COMPONENT ${part}
    EXCLUDE_FROM_ALL)
  if(KELSPAR_GZIP)
    install(FILES ${PROJECT_BINARY_DIR}/changelog.gz DESTINATION ${doc} COMPONENT ${part}
      EXCLUDE_FROM_ALL)
  endif()
endforeach()
if(KELSPAR_GZIP)
  execute_process(COMMAND ${KELSPAR_GZIP} -9nc ${PROJECT_SOURCE_DIR}/packaging/changelog
    OUTPUT_FILE ${PROJECT_BINARY_DIR}/changelog.gz)
endif()

include(CPack)
