# Installation and the Debian package: the programs in bin, the shared libraries of the layers and
# the extension in a private folder found through the programs' run path, the demo data, the
# manual page made from the help texts, the notes. `scripts/package` builds the package.

include(GNUInstallDirs)
# Installing needs the programs and their libraries, not the tests and benchmarks.
set(CMAKE_SKIP_INSTALL_ALL_DEPENDENCY ON)

# Where tessarine looks for the extension beside itself (../lib/tessarine).
set(TESS_PRIVATE_LIBDIR lib/tessarine)

# Every shared library that the source folders define, the extension included.
function(tess_install_shared_libraries dir)
  get_property(targets DIRECTORY ${dir} PROPERTY BUILDSYSTEM_TARGETS)
  foreach(target IN LISTS targets)
    get_target_property(type ${target} TYPE)
    if(type STREQUAL "SHARED_LIBRARY")
      set_target_properties(${target} PROPERTIES INSTALL_RPATH "$ORIGIN")
      install(TARGETS ${target} LIBRARY DESTINATION ${TESS_PRIVATE_LIBDIR})
      get_target_property(where ${target} BINARY_DIR)
      set_property(GLOBAL APPEND PROPERTY TESS_PRIVATE_LIBRARY_DIRS ${where})
    endif()
  endforeach()
  get_property(subdirs DIRECTORY ${dir} PROPERTY SUBDIRECTORIES)
  foreach(subdir IN LISTS subdirs)
    tess_install_shared_libraries(${subdir})
  endforeach()
endfunction()

tess_install_shared_libraries(${PROJECT_SOURCE_DIR}/src)
tess_install_shared_libraries(${PROJECT_SOURCE_DIR}/cli)
set_target_properties(tessarine PROPERTIES INSTALL_RPATH "$ORIGIN/../${TESS_PRIVATE_LIBDIR}")
install(TARGETS tessarine RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})

# The demo: the document from the sources, its datasets made by the script users run.
install(FILES ${PROJECT_SOURCE_DIR}/data/demo.map.json DESTINATION ${CMAKE_INSTALL_DATADIR}/tessarine/data)
install(CODE "
  set(demo \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_DATADIR}/tessarine/data/demo\")
  execute_process(COMMAND ${PROJECT_SOURCE_DIR}/data/make-demo-data \"\${demo}\" OUTPUT_QUIET RESULT_VARIABLE made)
  if(NOT made EQUAL 0)
    message(FATAL_ERROR \"the demo datasets could not be made (make-demo-data needs ogr2ogr)\")
  endif()
")

# The manual page, from the help texts of the program just built.
install(CODE "
  execute_process(COMMAND ${PROJECT_SOURCE_DIR}/scripts/make-manpage $<TARGET_FILE:tessarine> ${PROJECT_VERSION}
                  OUTPUT_FILE ${CMAKE_BINARY_DIR}/tessarine.1 RESULT_VARIABLE made)
  if(NOT made EQUAL 0)
    message(FATAL_ERROR \"the manual page could not be made\")
  endif()
")
install(FILES ${CMAKE_BINARY_DIR}/tessarine.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
install(FILES ${PROJECT_SOURCE_DIR}/README.md ${PROJECT_SOURCE_DIR}/docs/cli.md
              ${PROJECT_SOURCE_DIR}/docs/geodesic-measures.md ${PROJECT_SOURCE_DIR}/docs/map-document.md
        DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/tessarine)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME tessarine)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_CONTACT "Tessarine maintainers <maintainers@tessarine.invalid>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Geometry chores of a GIS analyst: conversions, geodesic measures, planetary data")
set(CPACK_PACKAGE_DESCRIPTION "Tessarine turns sketches into feature data, converts features, measures on the
 spheroid of the Earth or a planet and handles planetocentric data, from the command line (tessarine).")
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION science)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_STRIP_FILES ON)
# The private libraries are part of this package, not dependencies to look up.
get_property(private_dirs GLOBAL PROPERTY TESS_PRIVATE_LIBRARY_DIRS)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${private_dirs})
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
include(CPack)
