# Hardening of release builds; sanitizer builds find faults instead.
include(CheckCXXCompilerFlag)

# doccam_harden(): hardens the targets of this folder and those below it.
macro(doccam_harden)
    if(CMAKE_BUILD_TYPE MATCHES "Rel" AND NOT DOCCAM_SANITIZE)
        set(CMAKE_POSITION_INDEPENDENT_CODE ON)
        add_compile_options(-U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2
                            -fstack-protector-strong -fstack-clash-protection)
        # x86 only. Debian 12's C runtime start files lack the property, so the linker omits it.
        check_cxx_compiler_flag(-fcf-protection=full DOCCAM_HAS_CF_PROTECTION)
        if(DOCCAM_HAS_CF_PROTECTION)
            add_compile_options(-fcf-protection=full)
        endif()
        add_link_options(LINKER:-z,relro,-z,now,-z,noexecstack)
    endif()
endmacro()

# Programs are position-independent if the compiler and the linker support it.
include(CheckPIESupported)
check_pie_supported(LANGUAGES C CXX)
