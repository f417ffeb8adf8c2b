if(HARDWARE_DETECTOR_SANITIZER)
    add_compile_options(-fsanitize=${HARDWARE_DETECTOR_SANITIZER} -fno-omit-frame-pointer -fno-sanitize-recover=all)
    add_link_options(-fsanitize=${HARDWARE_DETECTOR_SANITIZER})
endif()
