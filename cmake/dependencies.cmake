# find_or_note(<list> <what it is called for people> <package> <find_package's other arguments>...) looks for a package and
# appends what it is called to the list when this machine has none, so that all that is missing is told at once.
macro(find_or_note missing description package)
    find_package(${package} ${ARGN} QUIET)
    if(NOT ${package}_FOUND)
        list(APPEND ${missing} "${description}")
    endif()
endmacro()

# The same for a library that only pkg-config knows; it becomes the target PkgConfig::<prefix>.
macro(find_module_or_note missing description prefix)
    if(PkgConfig_FOUND)
        pkg_check_modules(${prefix} QUIET IMPORTED_TARGET ${ARGN})
    endif()
    if(NOT ${prefix}_FOUND)
        list(APPEND ${missing} "${description}")
    endif()
endmacro()

set(missing_of_program "")
find_or_note(missing_of_program "threads" Threads)
find_or_note(missing_of_program "Qt 6.4 or newer (Core, Gui, Widgets)" Qt6 6.4 COMPONENTS Core Gui Widgets)
find_or_note(missing_of_program "libcurl 7.87 or newer" CURL 7.87)
find_or_note(missing_of_program "zlib" ZLIB)
find_or_note(missing_of_program "Boost 1.81 or newer (JSON, URL)" Boost 1.81 CONFIG COMPONENTS json url)
if(NOT APPLE)
    find_or_note(missing_of_program "ICU (i18n, uc)" ICU COMPONENTS i18n uc)
endif()
if(missing_of_program)
    list(JOIN missing_of_program "\n    " missing_of_program)
    message(FATAL_ERROR "Not found, and needed to build the program:\n    ${missing_of_program}\n"
        "Install the development files of each.")
endif()

# Without BUILD_TESTING, tests are built if everything that they need is installed.
if(NOT DEFINED BUILD_TESTING OR BUILD_TESTING)
    set(missing_of_tests "")
    find_or_note(missing_of_tests "GoogleTest" GTest)
    find_or_note(missing_of_tests "Qt 6.4 or newer (Test)" Qt6Test 6.4)
    find_or_note(missing_of_tests "pkg-config" PkgConfig)
    find_module_or_note(missing_of_tests "cpp-httplib" HTTPLIB cpp-httplib)
    if(NOT APPLE)
        find_module_or_note(missing_of_tests "AT-SPI 2" ATSPI atspi-2)
        find_module_or_note(missing_of_tests "X11, Xtst, D-Bus, GObject and Wayland's client" RIG_LIBRARIES
            x11 xtst dbus-1 gobject-2.0 wayland-client)
    endif()
    list(JOIN missing_of_tests "\n    " missing_of_tests)
    if(missing_of_tests AND BUILD_TESTING)
        message(FATAL_ERROR "Not found, and needed by the tests:\n    ${missing_of_tests}\n"
            "Install the development files of each, or build without tests by -DBUILD_TESTING=OFF.")
    elseif(missing_of_tests)
        message(STATUS "Building without tests (BUILD_TESTING=OFF). Not found:\n    ${missing_of_tests}")
        set(BUILD_TESTING OFF)  # Not in the cache: once they are installed, the next configuring builds them.
    endif()
endif()
