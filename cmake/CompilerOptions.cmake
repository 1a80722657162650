# Warnings, floating-point rules and sanitizers, for every target of the project.
add_library(doccam_options INTERFACE)

# No fused multiply-add, since results are compared bit for bit with plain formulas.
target_compile_options(doccam_options INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wno-sign-conversion -Wcast-align -Wformat=2
    $<$<COMPILE_LANGUAGE:CXX>:-Wnon-virtual-dtor -Woverloaded-virtual -Wold-style-cast>
    -ffp-contract=off
    # Messages name files as the repository does, wherever it was built.
    -fmacro-prefix-map=${PROJECT_SOURCE_DIR}/=)
if(DOCCAM_WERROR)
    target_compile_options(doccam_options INTERFACE -Werror)
endif()

# By default ccache does not cache compilations that use a precompiled header.
if(CMAKE_CXX_COMPILER_LAUNCHER MATCHES ccache)
    set(CMAKE_DISABLE_PRECOMPILE_HEADERS ON)
endif()

if(DOCCAM_SANITIZE)
    add_compile_options(-fsanitize=${DOCCAM_SANITIZE} -fno-omit-frame-pointer
                        -fno-sanitize-recover=all)
    add_link_options(-fsanitize=${DOCCAM_SANITIZE})
endif()

# doccam_sanitized_program(NAME): under a sanitizer suppresses reports about other libraries' code, and
# under the thread sanitizer keeps OpenCV's work in the calling thread.
function(doccam_sanitized_program name)
    if(NOT DOCCAM_SANITIZE)
        return()
    endif()
    set(support ${PROJECT_SOURCE_DIR}/tests/support)
    target_sources(${name} PRIVATE ${support}/sanitizer_suppressions.cpp)
    if(DOCCAM_SANITIZE MATCHES thread)
        target_sources(${name} PRIVATE ${support}/one_thread.cpp)
        target_include_directories(${name} SYSTEM PRIVATE ${OpenCV_INCLUDE_DIRS})
        target_link_libraries(${name} PRIVATE opencv_core)
    endif()
endfunction()
