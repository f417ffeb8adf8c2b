# Run by CPack between copying the bundle and packing it.
#
# CPACK_TEMPORARY_INSTALL_DIRECTORY              where the bundle was copied to
# CPACK_HARDWARE_DETECTOR_MACDEPLOYQT            the toolkit's tool that takes its libraries into a bundle
# CPACK_HARDWARE_DETECTOR_SIGNING_IDENTITY       for whom it is signed; - for this machine alone
file(GLOB_RECURSE plists LIST_DIRECTORIES false "${CPACK_TEMPORARY_INSTALL_DIRECTORY}/Info.plist")
list(LENGTH plists count)
if(NOT count EQUAL 1)
    message(FATAL_ERROR "Expected one bundle below ${CPACK_TEMPORARY_INSTALL_DIRECTORY}, found ${count}.")
endif()
cmake_path(GET plists PARENT_PATH contents)
cmake_path(GET contents PARENT_PATH bundle)
execute_process(COMMAND ${CMAKE_CURRENT_LIST_DIR}/complete-bundle ${bundle}
    "${CPACK_HARDWARE_DETECTOR_MACDEPLOYQT}" "${CPACK_HARDWARE_DETECTOR_SIGNING_IDENTITY}"
    RESULT_VARIABLE status)
if(NOT status EQUAL 0)
    message(FATAL_ERROR "The bundle was not completed. The last line above says why.")
endif()
