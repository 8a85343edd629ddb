# SPDX-FileCopyrightText: 2026 The KWToolkit authors
# SPDX-License-Identifier: MIT
#
# What `cmake --install` lays out: libraries, headers, the CMake package and pkg-config files.
include(CMakePackageConfigHelpers)

set(package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/KWToolkit")

# kw_install(<target> <component> <pkg-config requirements>)
function(kw_install target component requires)
    get_target_property(header_sets ${target} INTERFACE_HEADER_SETS)
    set(headers)
    foreach(set IN LISTS header_sets)
        list(APPEND headers FILE_SET ${set} DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}")
    endforeach()
    install(TARGETS ${target} EXPORT KWToolkit${component}Targets
        LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}" ${headers})
    install(EXPORT KWToolkit${component}Targets NAMESPACE KWToolkit::
        DESTINATION "${package_dir}")
    # Relative, so that the package can be moved as a whole.
    file(RELATIVE_PATH PC_PREFIX "/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/")
    set(PC_NAME ${target})
    set(PC_REQUIRES "${requires}")
    configure_file("${PROJECT_SOURCE_DIR}/cmake/library.pc.in"
        "${PROJECT_BINARY_DIR}/${target}.pc" @ONLY)
    install(FILES "${PROJECT_BINARY_DIR}/${target}.pc"
        DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
endfunction()

kw_install(KWToolkit Core "")
if(KW_QT)
    kw_install(KWToolkitQt Qt "KWToolkit = ${PROJECT_VERSION}, Qt6Widgets")
endif()
if(KW_QTWEB)
    kw_install(KWToolkitQtWeb QtWeb
        "KWToolkitQt = ${PROJECT_VERSION}, Qt6WebEngineWidgets")
endif()

configure_package_config_file(cmake/KWToolkitConfig.cmake.in
    "${PROJECT_BINARY_DIR}/KWToolkitConfig.cmake" INSTALL_DESTINATION "${package_dir}")
write_basic_package_version_file("${PROJECT_BINARY_DIR}/KWToolkitConfigVersion.cmake"
    COMPATIBILITY SameMinorVersion)
install(FILES
    "${PROJECT_BINARY_DIR}/KWToolkitConfig.cmake"
    "${PROJECT_BINARY_DIR}/KWToolkitConfigVersion.cmake"
    DESTINATION "${package_dir}")
