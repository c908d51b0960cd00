# Looks for all dependencies first, and then names the Debian packages of all that are missing.
set(missing_packages "")

# need(<Debian package> <found>): adds the package to the missing ones unless <found> is true.
macro(need package found)
    if(NOT ${found})
        list(APPEND missing_packages ${package})
    endif()
endmacro()

foreach(component IN ITEMS
        Core:qtbase5-dev Gui:qtbase5-dev Widgets:qtbase5-dev PrintSupport:qtbase5-dev
        Test:qtbase5-dev Svg:libqt5svg5-dev LinguistTools:qttools5-dev)
    string(REPLACE ":" ";" component ${component})
    list(POP_FRONT component name)
    find_package(Qt5${name} 5.15 QUIET)
    need(${component} Qt5${name}_FOUND)
endforeach()
find_package(PkgConfig QUIET)
need(pkg-config PKG_CONFIG_FOUND)
find_package(Threads REQUIRED)
find_package(JPEG QUIET)
need(libjpeg-dev JPEG_FOUND)
find_package(PNG QUIET)
need(libpng-dev PNG_FOUND)
if(PKG_CONFIG_FOUND)
    pkg_check_modules(UVC QUIET IMPORTED_TARGET libuvc)
    need(libuvc-dev UVC_FOUND)
    pkg_check_modules(USB QUIET IMPORTED_TARGET libusb-1.0)
    need(libusb-1.0-0-dev USB_FOUND)
    pkg_check_modules(UMOCKDEV QUIET IMPORTED_TARGET umockdev-1.0)
    need(libumockdev-dev UMOCKDEV_FOUND)
    pkg_check_modules(GSTREAMER QUIET IMPORTED_TARGET
        gstreamer-1.0 gstreamer-app-1.0 gstreamer-video-1.0 gstreamer-audio-1.0 gstreamer-pbutils-1.0)
    need(libgstreamer-plugins-base1.0-dev GSTREAMER_FOUND)
    pkg_check_modules(GIO QUIET IMPORTED_TARGET gio-2.0)
    need(libglib2.0-dev GIO_FOUND)
endif()
find_library(YUV_LIBRARY yuv)
need(libyuv-dev YUV_LIBRARY)

if(missing_packages)
    list(REMOVE_DUPLICATES missing_packages)
    list(JOIN missing_packages " " missing_packages)
    # CMake wraps lines of a message that do not begin with a space.
    message(FATAL_ERROR " Missing Debian packages: ${missing_packages}\n"
        " Install them as root: apt-get install ${missing_packages}")
endif()
