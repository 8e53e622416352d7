# The libraries that libkelspar stands on, by their pkg-config names: one list for our build, for
# kelsparConfig.cmake and for kelspar.pc.
set(KELSPAR_PKGCONFIG_MODULES
  icu-uc icu-i18n glib-2.0 pangocairo pango pangoft2 cairo cairo-pdf gdk-pixbuf-2.0)

set(KELSPAR_DEPENDENCIES)
foreach(module ${KELSPAR_PKGCONFIG_MODULES})
  string(MAKE_C_IDENTIFIER KELSPAR_${module} prefix)
  pkg_check_modules(${prefix} REQUIRED IMPORTED_TARGET ${module})
  list(APPEND KELSPAR_DEPENDENCIES PkgConfig::${prefix})
endforeach()
list(JOIN KELSPAR_PKGCONFIG_MODULES " " KELSPAR_PC_REQUIRES)

# libcurl is loaded when something is fetched: its headers are needed, it is not linked.
pkg_check_modules(KELSPAR_LIBCURL REQUIRED libcurl)
