# What an installation holds besides the libraries, headers and programs that their own folders install: the
# package files by which CMake and pkg-config find the library.
include(CMakePackageConfigHelpers)

set(package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/adjustmentgui")
if(NOT ADJUSTMENTGUI_HOST)
    install(EXPORT adjustmentgui-host
        FILE adjustmentgui-host-targets.cmake NAMESPACE host:: DESTINATION ${package_dir})
endif()
install(EXPORT adjustmentgui
    FILE adjustmentgui-targets.cmake NAMESPACE adjustmentgui:: DESTINATION ${package_dir})
configure_package_config_file(
    "${PROJECT_SOURCE_DIR}/packaging/adjustmentgui-config.cmake.in"
    "${PROJECT_BINARY_DIR}/adjustmentgui-config.cmake"
    INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(
    "${PROJECT_BINARY_DIR}/adjustmentgui-config-version.cmake" COMPATIBILITY SameMinorVersion)
install(FILES
    "${PROJECT_BINARY_DIR}/adjustmentgui-config.cmake"
    "${PROJECT_BINARY_DIR}/adjustmentgui-config-version.cmake"
    DESTINATION ${package_dir})

# Relative, so that an installation can be moved.
file(RELATIVE_PATH PC_PREFIX "/prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/prefix")
set(PC_HOST_LIBS "")
set(PC_OPERATIONS_HOST_LIBS "")
if(NOT ADJUSTMENTGUI_HOST)
    foreach(folder gui guicore widgets plugincore theme geometry gpu overlay image threads utilities core)
        string(APPEND PC_HOST_LIBS " -ladjustmentgui-host-${folder}")
    endforeach()
    foreach(folder gpu overlay image threads utilities core)
        string(APPEND PC_OPERATIONS_HOST_LIBS " -ladjustmentgui-host-${folder}")
    endforeach()
endif()
foreach(package adjustmentgui adjustmentgui-operations)
    configure_file("${PROJECT_SOURCE_DIR}/packaging/${package}.pc.in" "${PROJECT_BINARY_DIR}/${package}.pc" @ONLY)
    install(FILES "${PROJECT_BINARY_DIR}/${package}.pc" DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
endforeach()

if(ADJUSTMENTGUI_BUILD_APPS)
    install(FILES packaging/adjust-editor.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
    install(FILES packaging/adjustmentgui.metainfo.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)
    install(FILES packaging/adjust-editor.svg
        DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps)
    install(FILES packaging/adjust-editor.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
endif()
