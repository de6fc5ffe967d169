include(GenerateExportHeader)

# adjustmentgui_library(NAME EXPORT_NAME SOURCES...)
#
# NAME as one shared library, adjustmentgui::EXPORT_NAME, that is installed with the header of its export macro.
# The caller names and installs the other headers, and links what the library needs.
function(adjustmentgui_library name export_name)
    string(MAKE_C_IDENTIFIER ${name} identifier)
    add_library(${name} SHARED ${ARGN})
    add_library(adjustmentgui::${export_name} ALIAS ${name})
    generate_export_header(${name} BASE_NAME ${identifier})
    set_target_properties(${name} PROPERTIES
        EXPORT_NAME ${export_name}
        VERSION ${PROJECT_VERSION}
        SOVERSION ${PROJECT_VERSION_MAJOR}
        CXX_VISIBILITY_PRESET hidden
        VISIBILITY_INLINES_HIDDEN ON)
    target_include_directories(${name} PUBLIC
        $<BUILD_INTERFACE:${CMAKE_CURRENT_BINARY_DIR}>
        $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/adjustmentgui>)
    target_compile_features(${name} PUBLIC cxx_std_17)
    target_link_libraries(${name} PRIVATE $<BUILD_INTERFACE:project_options>)

    install(TARGETS ${name} EXPORT adjustmentgui LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
    install(FILES "${CMAKE_CURRENT_BINARY_DIR}/${identifier}_export.h"
        DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/adjustmentgui)
endfunction()
