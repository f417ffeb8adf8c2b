# Run by CPack between copying the bundle and packing it: takes in the libraries that no Mac has, signs all of it, and
# checks the signature.
#
# CPACK_TEMPORARY_INSTALL_DIRECTORY              where the bundle was copied to
# CPACK_HARDWARE_DETECTOR_SIGNING_IDENTITY       for whom it is signed; - for this machine alone
file(GLOB_RECURSE plists LIST_DIRECTORIES false "${CPACK_TEMPORARY_INSTALL_DIRECTORY}/Info.plist")
list(LENGTH plists count)
if(NOT count EQUAL 1)
    message(FATAL_ERROR "Expected one bundle below ${CPACK_TEMPORARY_INSTALL_DIRECTORY}, found ${count}")
endif()
cmake_path(GET plists PARENT_PATH contents)
cmake_path(GET contents PARENT_PATH bundle)

find_program(MACDEPLOYQT macdeployqt REQUIRED)
find_program(CODESIGN codesign REQUIRED)
if(CPACK_HARDWARE_DETECTOR_SIGNING_IDENTITY STREQUAL "-")
    set(signature -codesign=-)
else()
    set(signature "-sign-for-notarization=${CPACK_HARDWARE_DETECTOR_SIGNING_IDENTITY}")
endif()
execute_process(COMMAND ${MACDEPLOYQT} ${bundle} ${signature} COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND ${CODESIGN} --verify --deep --strict ${bundle} COMMAND_ERROR_IS_FATAL ANY)
