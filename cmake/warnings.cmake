# Warnings for every target; errors in the presets (CMAKE_COMPILE_WARNING_AS_ERROR), not for whoever packages this.
add_compile_options(-Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wnon-virtual-dtor -Wold-style-cast)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # GCC 12 takes the unused half of a std::variant that holds a std::function for a variable read before it is set,
    # and a string put in front of another for an overlapping copy.
    add_compile_options(-Wno-maybe-uninitialized -Wno-restrict)
endif()
