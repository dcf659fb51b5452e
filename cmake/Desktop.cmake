# What makes Corvanta a desktop application like any other: the desktop entry, the icon in the
# sizes desktops look for, the AppStream metainfo and the manual page. One application ID
# (CORVANTA_APP_ID) names the desktop entry, the icon and the metainfo.
find_program(RSVG_CONVERT_EXECUTABLE rsvg-convert REQUIRED)
find_program(GZIP_EXECUTABLE gzip REQUIRED)

set(CORVANTA_DESKTOP_ENTRY ${CMAKE_SOURCE_DIR}/resources/${CORVANTA_APP_ID}.desktop)
set(CORVANTA_ICON ${CMAKE_SOURCE_DIR}/resources/${CORVANTA_APP_ID}.svg)
set(CORVANTA_SCREENSHOT resources/screenshots/main-window.png)
set(CORVANTA_SCREENSHOT_URL ${CORVANTA_HOMEPAGE}/raw/main/${CORVANTA_SCREENSHOT})

install(FILES ${CORVANTA_DESKTOP_ENTRY} DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES ${CORVANTA_ICON} DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps)

# PNG icons for the places that do not draw SVG, rendered from the SVG.
set(rendered)
foreach(size 48 128 256)
    set(folder ${CMAKE_BINARY_DIR}/icons/${size}x${size})
    add_custom_command(
        OUTPUT ${folder}/${CORVANTA_APP_ID}.png
        COMMAND ${CMAKE_COMMAND} -E make_directory ${folder}
        COMMAND ${RSVG_CONVERT_EXECUTABLE} --width ${size} --height ${size}
            --output ${folder}/${CORVANTA_APP_ID}.png ${CORVANTA_ICON}
        DEPENDS ${CORVANTA_ICON}
        COMMENT "Rendering the ${size} pixel icon"
        VERBATIM)
    list(APPEND rendered ${folder}/${CORVANTA_APP_ID}.png)
    install(FILES ${folder}/${CORVANTA_APP_ID}.png
            DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/${size}x${size}/apps)
endforeach()

# The metainfo lists the media types of the desktop entry, so the two cannot disagree.
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${CORVANTA_DESKTOP_ENTRY})
file(STRINGS ${CORVANTA_DESKTOP_ENTRY} mime_line REGEX "^MimeType=")
string(REGEX REPLACE "^MimeType=" "" mime_types "${mime_line}")
set(CORVANTA_METAINFO_MEDIATYPES "")
foreach(type IN LISTS mime_types)
    if(type)
        string(APPEND CORVANTA_METAINFO_MEDIATYPES "    <mediatype>${type}</mediatype>\n")
    endif()
endforeach()
set(CORVANTA_METAINFO ${CMAKE_BINARY_DIR}/${CORVANTA_APP_ID}.metainfo.xml)
configure_file(resources/${CORVANTA_APP_ID}.metainfo.xml.in ${CORVANTA_METAINFO} @ONLY)
install(FILES ${CORVANTA_METAINFO} DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)

# The manual page, compressed without a time stamp as Debian wants it.
configure_file(resources/corvanta.1.in ${CMAKE_BINARY_DIR}/man/corvanta.1 @ONLY)
add_custom_command(
    OUTPUT ${CMAKE_BINARY_DIR}/man/corvanta.1.gz
    COMMAND ${GZIP_EXECUTABLE} -9 -n -f -k ${CMAKE_BINARY_DIR}/man/corvanta.1
    DEPENDS ${CMAKE_BINARY_DIR}/man/corvanta.1
    VERBATIM)
list(APPEND rendered ${CMAKE_BINARY_DIR}/man/corvanta.1.gz)
install(FILES ${CMAKE_BINARY_DIR}/man/corvanta.1.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)

add_custom_target(desktop_files ALL DEPENDS ${rendered})
