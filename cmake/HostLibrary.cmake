# adjustmentgui_host_library(NAME [WITHOUT_META_OBJECTS] SOURCES ... LINKS ... [PRIVATE_LINKS ...] [INTERNAL ...])
#
# One folder of the reference host as one shared library, host::NAME. LINKS names all that the folder may
# know; its headers are included as "NAME/Header.h", also those that lie in a room, a folder of this one: rooms
# are for who reads the sources, and a header may move from one to another. Those among the INTERNAL sources are
# not installed: they need what an installation does not bring along. WITHOUT_META_OBJECTS spares the build a search
# for classes that moc would have to see.
function(adjustmentgui_host_library name)
    cmake_parse_arguments(ARG "WITHOUT_META_OBJECTS" "" "SOURCES;INTERNAL;LINKS;PRIVATE_LINKS" ${ARGN})
    adjustmentgui_forward_rooms(${name} ${ARG_SOURCES} ${ARG_INTERNAL})
    add_library(host_${name} SHARED ${ARG_SOURCES} ${ARG_INTERNAL})
    add_library(host::${name} ALIAS host_${name})
    set_target_properties(host_${name} PROPERTIES
        OUTPUT_NAME adjustmentgui-host-${name}
        EXPORT_NAME ${name}
        VERSION ${PROJECT_VERSION}
        SOVERSION ${PROJECT_VERSION_MAJOR})
    if(ARG_WITHOUT_META_OBJECTS)
        set_target_properties(host_${name} PROPERTIES AUTOMOC OFF)
    endif()
    target_include_directories(host_${name} PUBLIC
        $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/host>
        $<BUILD_INTERFACE:${PROJECT_BINARY_DIR}/host/include>
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

# Lets a build include the headers among FILES that lie in a room of host/NAME as "NAME/Header.h", which is where
# an installation has them. The paths are relative, so that all work trees share what is cached.
function(adjustmentgui_forward_rooms name)
    set(folder "${PROJECT_BINARY_DIR}/host/include/${name}")
    foreach(file IN LISTS ARGN)
        if(NOT file MATCHES "/.+\\.h$")
            continue()
        endif()
        get_filename_component(header "${file}" NAME)
        if(header IN_LIST headers)
            message(FATAL_ERROR "Two rooms of host/${name} have a ${header}.")
        endif()
        list(APPEND headers ${header})
        file(RELATIVE_PATH path "${folder}" "${CMAKE_CURRENT_SOURCE_DIR}/${file}")
        file(CONFIGURE OUTPUT "${folder}/${header}" CONTENT "#include \"${path}\"\n")
    endforeach()
endfunction()
