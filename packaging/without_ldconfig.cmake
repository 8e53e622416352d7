# cpack's last step: the library's package has a trigger for ldconfig, and needs no scripts that call it
# as well, which cpack adds to every package with a shared library.
find_program(DPKG_DEB dpkg-deb REQUIRED)
foreach(package ${CPACK_PACKAGE_FILES})
  set(root ${CPACK_TEMPORARY_DIRECTORY}-control)
  file(REMOVE_RECURSE ${root})
  execute_process(COMMAND ${DPKG_DEB} -R ${package} ${root} COMMAND_ERROR_IS_FATAL ANY)
  if(EXISTS ${root}/DEBIAN/triggers)
    file(REMOVE ${root}/DEBIAN/postinst ${root}/DEBIAN/postrm)
    execute_process(COMMAND ${DPKG_DEB} --root-owner-group -b ${root} ${package}
      OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
  endif()
  file(REMOVE_RECURSE ${root})
endforeach()
