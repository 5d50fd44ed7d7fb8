# The compile settings that all of Fennik's own code shares.
add_library(fennik_options INTERFACE)
target_include_directories(fennik_options INTERFACE ${CMAKE_SOURCE_DIR})
target_compile_options(fennik_options INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wold-style-cast
    -Wnon-virtual-dtor -Woverloaded-virtual
    $<$<BOOL:${FENNIK_WERROR}>:-Werror>)
# Where GCC 12 inlines "literal" + std::string, it takes the two for overlapping (GCC bug 105329).
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    target_compile_options(fennik_options INTERFACE -Wno-restrict)
endif()
if(FENNIK_SANITIZE)
    # The checks that are compiled in make GCC doubt values that it follows without them.
    target_compile_options(fennik_options INTERFACE
        -fsanitize=${FENNIK_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all
        -Wno-maybe-uninitialized)
    target_link_options(fennik_options INTERFACE -fsanitize=${FENNIK_SANITIZE})
endif()

# fennik_module(NAME [FOLDERS subfolders…] [USES targets…] [LINKS private libraries…]
#               [PRECOMPILES headers of others…])
#
# One module of the house: a static library of all sources in the current folder and the named
# folders below it. Every header is public and has to compile alone: most are the first include of
# the source beside them, which tools/check_layers watches over; the others are compiled here. What
# is precompiled is still included where it is used: ./check lint compiles without it.
function(fennik_module name)
    cmake_parse_arguments(arg "" "" "FOLDERS;USES;LINKS;PRECOMPILES" ${ARGN})
    set(sources "")
    set(headers "")
    set(lone_headers "")
    foreach(folder IN ITEMS . LISTS arg_FOLDERS)
        file(GLOB found_sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${folder}/*.cpp)
        file(GLOB found_headers CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${folder}/*.h)
        list(APPEND sources ${found_sources})
        foreach(header IN LISTS found_headers)
            string(REGEX REPLACE "h$" "cpp" own_source ${header})
            if(own_source IN_LIST found_sources)
                list(APPEND headers ${header})
            else()
                list(APPEND lone_headers ${header})
            endif()
        endforeach()
    endforeach()
    add_library(${name} STATIC ${sources})
    target_sources(${name} PUBLIC
        FILE_SET HEADERS BASE_DIRS ${CMAKE_SOURCE_DIR} FILES ${headers}
        FILE_SET lone_headers TYPE HEADERS BASE_DIRS ${CMAKE_SOURCE_DIR} FILES ${lone_headers})
    target_link_libraries(${name} PUBLIC fennik_options ${arg_USES} PRIVATE ${arg_LINKS})
    set_target_properties(${name} PROPERTIES VERIFY_INTERFACE_HEADER_SETS ON
        INTERFACE_HEADER_SETS_TO_VERIFY lone_headers)
    target_precompile_headers(${name} PRIVATE ${arg_PRECOMPILES})
endfunction()
