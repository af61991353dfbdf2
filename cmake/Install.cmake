# What `cmake --install` puts where: libraries, public headers, programs, data, and what other
# builds need to find the library with CMake or pkg-config.
include(CMakePackageConfigHelpers)

# Programs find the libraries beside them, wherever the prefix is moved to. The build tree has the
# same search paths: those that CMake makes for it have empty entries, and such an entry is the
# directory that a program happens to be started in.
file(RELATIVE_PATH bin_to_lib ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
set(program_rpath "$ORIGIN/${bin_to_lib}" "$ORIGIN/../lib")
list(REMOVE_DUPLICATES program_rpath)
foreach(program velclp_host velclp-sim)
    if(TARGET ${program})
        set_target_properties(${program} PROPERTIES
            INSTALL_RPATH "${program_rpath}" BUILD_WITH_INSTALL_RPATH TRUE)
        install(TARGETS ${program})
    endif()
endforeach()
set(libraries velclp velclp_platform)
set(VELCLP_PC_CIM_CLIENT -lcmpisfcc)
if(VELCLP_BUNDLED_CIM_CLIENT)
    set(VELCLP_PC_CIM_CLIENT -lvelclp_cimclient)
    set_target_properties(velclp_cimclient PROPERTIES VERSION ${PROJECT_VERSION} SOVERSION 1)
    list(APPEND libraries velclp_cimclient)
endif()
set_target_properties(${libraries} PROPERTIES
    INSTALL_RPATH "$ORIGIN" BUILD_WITH_INSTALL_RPATH TRUE)
install(TARGETS velclp velclp_platform velclp_cimclient EXPORT velclp-targets)

install(DIRECTORY include/velclp DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
foreach(header config/aim_config.h database/cdbc.h log/osalog.h uri/uriparser.h)
    get_filename_component(folder ${header} DIRECTORY)
    install(FILES platform/${header}
        DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/velclp/platform/${folder})
endforeach()
install(FILES share/schema.conf share/help.txt DESTINATION ${CMAKE_INSTALL_DATADIR}/velclp)
install(DIRECTORY share/model share/sql DESTINATION ${CMAKE_INSTALL_DATADIR}/velclp)

install(EXPORT velclp-targets NAMESPACE velclp:: DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/velclp)
configure_package_config_file(cmake/velclp-config.cmake.in velclp-config.cmake
    INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/velclp)
write_basic_package_version_file(velclp-config-version.cmake COMPATIBILITY SameMajorVersion)
install(FILES
    ${CMAKE_CURRENT_BINARY_DIR}/velclp-config.cmake
    ${CMAKE_CURRENT_BINARY_DIR}/velclp-config-version.cmake
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/velclp)
file(RELATIVE_PATH pc_to_prefix ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
file(RELATIVE_PATH prefix_to_lib ${CMAKE_INSTALL_PREFIX} ${CMAKE_INSTALL_FULL_LIBDIR})
file(RELATIVE_PATH prefix_to_include ${CMAKE_INSTALL_PREFIX} ${CMAKE_INSTALL_FULL_INCLUDEDIR})
configure_file(cmake/velclp.pc.in velclp.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/velclp.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
