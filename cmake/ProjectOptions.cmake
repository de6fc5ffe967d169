# What every target of this tree shares, as one interface target, so that nothing is set globally.
add_library(project_options INTERFACE)
target_compile_features(project_options INTERFACE cxx_std_17)
target_compile_definitions(project_options INTERFACE
    QT_NO_CAST_TO_ASCII QT_NO_URL_CAST_FROM_STRING QT_STRICT_ITERATORS
    QT_DEPRECATED_WARNINGS)
target_compile_options(project_options INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wundef
    # GCC 12 takes the null pixels of an empty picture for the ones of every picture.
    $<$<CXX_COMPILER_ID:GNU>:-Wno-stringop-overflow>
    $<$<BOOL:${ADJUSTMENTGUI_WERROR}>:-Werror>)
if(ADJUSTMENTGUI_SANITIZE)
    target_compile_options(project_options INTERFACE
        -fsanitize=${ADJUSTMENTGUI_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all
        # A stored QColor keeps a model that there is not, and copying it loads that enumerator. These compilers
        # give enumerations all values of their underlying type unless told otherwise (-fstrict-enums).
        -fno-sanitize=enum)
    target_link_options(project_options INTERFACE -fsanitize=${ADJUSTMENTGUI_SANITIZE})
endif()

# Said even where it is the compiler's default, so that the linter, another compiler, reads the same.
set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)

# Programs, libraries and the loadable module lie in the build tree as they do once installed, so that
# the module is found relative to the library in both places.
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/bin")
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/lib")
set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/lib")
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_AUTOMOC ON)
set(CMAKE_AUTORCC ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_INSTALL_RPATH "$ORIGIN/../${CMAKE_INSTALL_LIBDIR};$ORIGIN")
