# What an installed tree holds: library, headers, CMake package, pkg-config file, model table, and
# what comes with the command line.
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

# The prefix relative to the file, so that the tree can be moved.
file(RELATIVE_PATH DOCCAM_PC_PREFIX ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
configure_file(packaging/doccam.pc.in ${CMAKE_CURRENT_BINARY_DIR}/packaging/doccam.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/packaging/doccam.pc
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

if(DOCCAM_BUILD_HOSTS OR DOCCAM_BUILD_TESTS)
    install(FILES packaging/man/doccam.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
    install(FILES packaging/completions/doccam.bash RENAME doccam
            DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions)
    install(FILES packaging/completions/_doccam
            DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/site-functions)
    install(FILES packaging/completions/doccam.fish
            DESTINATION ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d)
endif()
