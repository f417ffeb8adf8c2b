# The program reads what commands print and websites answer, so that an overlooked mistake stops it instead of being of
# use to somebody.
if(NOT HARDWARE_DETECTOR_SANITIZER)
    add_compile_options(-fstack-protector-strong $<$<NOT:$<CONFIG:Debug>>:-D_FORTIFY_SOURCE=2>)
endif()
if(CMAKE_SYSTEM_NAME STREQUAL "Linux")
    add_compile_options(-fstack-clash-protection)
    add_link_options(LINKER:-z,relro,-z,now,-z,noexecstack LINKER:--as-needed)
endif()
include(CheckPIESupported)
check_pie_supported()
