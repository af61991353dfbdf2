# What `cmake --install` puts where: libraries, public headers, programs, data, and what other
# builds need to find the library with CMake or pkg-config.
include(CMakePackageConfigHelpers)

# The installed programs find the libraries beside them, wherever the prefix is moved to.
file(RELATIVE_PATH bin_to_lib ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
foreach(program velclp_host velclp-sim)
    if(TARGET ${program})
        set_target_properties(${program} PROPERTIES INSTALL_RPATH "$ORIGIN/${bin_to_lib}")
        install(TARGETS ${program})
    endif()
endforeach()
set(VELCLP_PC_CIM_CLIENT -lcmpisfcc)
if(VELCLP_BUNDLED_CIM_CLIENT)
    set(VELCLP_PC_CIM_CLIENT -lvelclp_cimclient)
    set_target_properties(velclp_cimclient PROPERTIES
        VERSION ${PROJECT_VERSION} SOVERSION 1 INSTALL_RPATH "$ORIGIN")
endif()
set_target_properties(velclp velclp_platform PROPERTIES INSTALL_RPATH "$ORIGIN")
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
configure_file(cmake/velclp.pc.in velclp.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/velclp.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
