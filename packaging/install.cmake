# The contents of an installed tree: library, headers, CMake package, pkg-config files, model table, and
# the command line's files.
include(CMakePackageConfigHelpers)

install(TARGETS doccam EXPORT doccam LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(DIRECTORY include/doccam DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(FILES config/supported_models.txt DESTINATION ${CMAKE_INSTALL_DATADIR}/doccam)

install(EXPORT doccam NAMESPACE doccam:: FILE doccamTargets.cmake
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/doccam)
configure_package_config_file(packaging/doccamConfig.cmake.in
    ${CMAKE_CURRENT_BINARY_DIR}/packaging/doccamConfig.cmake
    INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/doccam)
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/packaging/doccamConfigVersion.cmake
                                 COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/packaging/doccamConfig.cmake
              ${CMAKE_CURRENT_BINARY_DIR}/packaging/doccamConfigVersion.cmake
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/doccam)

# The prefix is relative to the file, so that the tree can be moved.
file(RELATIVE_PATH DOCCAM_PC_PREFIX ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
get_target_property(opencv_core_file opencv_core LOCATION)
cmake_path(GET opencv_core_file PARENT_PATH DOCCAM_OPENCV_LIBDIR)
# As system headers, which a host's stricter warnings do not cover.
list(TRANSFORM OpenCV_INCLUDE_DIRS PREPEND "-isystem " OUTPUT_VARIABLE DOCCAM_PC_OPENCV_CFLAGS)
list(JOIN DOCCAM_PC_OPENCV_CFLAGS " " DOCCAM_PC_OPENCV_CFLAGS)
foreach(package IN ITEMS doccam doccam-opencv)
    configure_file(packaging/${package}.pc.in ${CMAKE_CURRENT_BINARY_DIR}/packaging/${package}.pc @ONLY)
    install(FILES ${CMAKE_CURRENT_BINARY_DIR}/packaging/${package}.pc
            DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
endforeach()

if(DOCCAM_BUILD_HOSTS OR DOCCAM_BUILD_TESTS)
    install(FILES packaging/man/doccam.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
    install(FILES packaging/systemd/doccam.service DESTINATION lib/systemd/user)
    install(FILES packaging/completions/doccam.bash RENAME doccam
            DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions)
    install(FILES packaging/completions/_doccam
            DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/site-functions)
    install(FILES packaging/completions/doccam.fish
            DESTINATION ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d)
endif()
