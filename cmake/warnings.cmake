# Warnings for every target; errors only in the presets (CMAKE_COMPILE_WARNING_AS_ERROR), not for packagers.
add_compile_options(-Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wnon-virtual-dtor -Wold-style-cast)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # GCC 12 wrongly reports a std::variant with a std::function as uninitialised, and a string prepended to another as an
    # overlapping copy.
    add_compile_options(-Wno-maybe-uninitialized -Wno-restrict)
endif()
