# adjustmentgui_host_library(NAME SOURCES ... LINKS ... [INTERNAL ...])
#
# One folder of the reference host as one shared library, host::NAME. LINKS names all that the folder may
# know; its headers are included as "NAME/Header.h". Those among the INTERNAL sources are not installed: they
# need what an installation does not bring along.
function(adjustmentgui_host_library name)
    cmake_parse_arguments(ARG "" "" "SOURCES;INTERNAL;LINKS;PRIVATE_LINKS" ${ARGN})
    add_library(host_${name} SHARED ${ARG_SOURCES} ${ARG_INTERNAL})
    add_library(host::${name} ALIAS host_${name})
    set_target_properties(host_${name} PROPERTIES
        OUTPUT_NAME adjustmentgui-host-${name}
        EXPORT_NAME ${name}
        VERSION ${PROJECT_VERSION}
        SOVERSION ${PROJECT_VERSION_MAJOR})
    target_include_directories(host_${name} PUBLIC
        $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/host>
        $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/adjustmentgui/host>)
    target_compile_features(host_${name} PUBLIC cxx_std_17)
    target_link_libraries(host_${name}
        PUBLIC ${ARG_LINKS}
        PRIVATE $<BUILD_INTERFACE:project_options> ${ARG_PRIVATE_LINKS})
    install(TARGETS host_${name} EXPORT adjustmentgui-host
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
    set(headers ${ARG_SOURCES})
    list(FILTER headers INCLUDE REGEX "\\.h$")
    install(FILES ${headers} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/adjustmentgui/host/${name})
endfunction()
