# Desktop integration (menu entry, icons, software-centre metadata) and the
# Debian package. Included last from the top-level list so that every target
# to install already exists.
include(GNUInstallDirs)

set(VELTOR_APP_ID com.veltor.CameraTool)
set(VELTOR_HOMEPAGE "https://www.veltor.example/camera-tool/"
    CACHE STRING "Product page, shown by software centres and in the package")
set(VELTOR_SCREENSHOT_URL "${VELTOR_HOMEPAGE}docs/screenshot-main-window.png"
    CACHE STRING "Published copy of docs/screenshot-main-window.png")
# Date of release ${PROJECT_VERSION}; bump it together with the project version.
set(VELTOR_RELEASE_DATE 2026-11-23)

set(VELTOR_PKG_SRC ${PROJECT_SOURCE_DIR}/packaging)
set(VELTOR_PKG_BIN ${PROJECT_BINARY_DIR}/packaging)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME veltor-camera-tool)
set(CPACK_PACKAGE_VENDOR VELTOR)
set(CPACK_PACKAGE_CONTACT "VELTOR <feedback@veltor.example>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "finds and manages VELTOR network cameras")
# One string: separate arguments to set() would become a ;-list.
string(CONCAT CPACK_PACKAGE_DESCRIPTION
    "VELTOR Camera Tool finds the VELTOR network cameras on the local network and\n"
    "lists them with their addresses and firmware versions. For a chosen camera it\n"
    "changes the network settings, uploads firmware and web interfaces, and shows,\n"
    "browses, downloads from and formats the camera's SD card.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION net)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE ${VELTOR_HOMEPAGE})
# Library dependencies come from dpkg-shlibdeps (package dpkg-dev).
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# Web interfaces and the help page open through xdg-open.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS xdg-utils)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

# The simulator is built on its own branch; ship it once it exists.
if(TARGET veltor-camsim)
    install(TARGETS veltor-camsim RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
    set(VELTOR_METAINFO_MORE_BINARIES "    <binary>veltor-camsim</binary>\n")
    string(APPEND CPACK_PACKAGE_DESCRIPTION "\n\nAlso contains veltor-camsim, a camera simulator "
           "for trying the tool\nwithout a camera.")
endif()

configure_file(${VELTOR_PKG_SRC}/${VELTOR_APP_ID}.metainfo.xml.in
               ${VELTOR_PKG_BIN}/${VELTOR_APP_ID}.metainfo.xml @ONLY)
install(FILES ${VELTOR_PKG_BIN}/${VELTOR_APP_ID}.metainfo.xml
        DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)
install(FILES ${VELTOR_PKG_SRC}/${VELTOR_APP_ID}.desktop
        DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
# Made from resources/images/logo.png by make-icons.sh.
foreach(size 16 22 24 32 48 64 128 256)
    install(FILES ${VELTOR_PKG_SRC}/icons/${size}.png
            DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/${size}x${size}/apps
            RENAME ${VELTOR_APP_ID}.png)
endforeach()

include(CPack)
