# How every library, test and program of the project is built.

add_library(sorvane_options INTERFACE)
target_compile_definitions(sorvane_options INTERFACE
    QT_NO_CAST_FROM_BYTEARRAY QT_STRICT_ITERATORS QT_DEPRECATED_WARNINGS)
target_compile_options(sorvane_options INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual
    # Results are compared byte for byte: no fused multiply-add where the compiler happens to find one.
    -ffp-contract=off
    $<$<BOOL:${SORVANE_WERROR}>:-Werror>)
if(SORVANE_SANITIZE)
    target_compile_options(sorvane_options INTERFACE
        -fsanitize=${SORVANE_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    if(SORVANE_SANITIZE MATCHES "thread")
        # GCC 12 takes the freeing of an instrumented vector for that of something else.
        target_compile_options(sorvane_options INTERFACE -Wno-free-nonheap-object)
    endif()
    string(REPLACE ",fuzzer-no-link" "" link_sanitizers "${SORVANE_SANITIZE}")
    target_link_options(sorvane_options INTERFACE -fsanitize=${link_sanitizers})
endif()

# sorvane_library(NAME SOURCES file... NEEDS target... [INCLUDE folder...])
# A room of the house: its own folder is its include path, and it sees the headers of its needs and no others.
function(sorvane_library name)
    cmake_parse_arguments(arg "" "" "SOURCES;NEEDS;INCLUDE" ${ARGN})
    add_library(${name} STATIC ${arg_SOURCES})
    target_include_directories(${name} PUBLIC ${CMAKE_CURRENT_SOURCE_DIR} ${arg_INCLUDE})
    target_link_libraries(${name} PUBLIC ${arg_NEEDS} PRIVATE sorvane_options)
endfunction()

# sorvane_test(LIBRARY [NAME name] SOURCES file... [NEEDS target...])
# The one test binary of a library, <library>_test, or one more, <name>_test.
function(sorvane_test library)
    cmake_parse_arguments(arg "" "NAME" "SOURCES;NEEDS" ${ARGN})
    if(NOT arg_NAME)
        set(arg_NAME ${library})
    endif()
    set(name ${arg_NAME}_test)
    add_executable(${name} ${arg_SOURCES} ${PROJECT_SOURCE_DIR}/tests/main.cpp)
    target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}/tests ${CMAKE_CURRENT_SOURCE_DIR})
    target_link_libraries(${name} PRIVATE ${library} ${arg_NEEDS} GTest::gtest GTest::gmock sorvane_options)
    add_test(NAME ${name} COMMAND ${name})
    set_tests_properties(${name} PROPERTIES TIMEOUT 1200)
endfunction()
