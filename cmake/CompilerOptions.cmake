# Warnings, floating-point rules and sanitizers, for every target of the project.
add_library(doccam_options INTERFACE)

# Results are compared bit for bit with plain formulas: no fused multiply-add.
target_compile_options(doccam_options INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wno-sign-conversion -Wcast-align -Wformat=2
    $<$<COMPILE_LANGUAGE:CXX>:-Wnon-virtual-dtor -Woverloaded-virtual -Wold-style-cast>
    -ffp-contract=off)
if(DOCCAM_WERROR)
    target_compile_options(doccam_options INTERFACE -Werror)
endif()

if(DOCCAM_SANITIZE)
    add_compile_options(-fsanitize=${DOCCAM_SANITIZE} -fno-omit-frame-pointer
                        -fno-sanitize-recover=all)
    add_link_options(-fsanitize=${DOCCAM_SANITIZE})
endif()
