# The Debian package that ./package makes with CPack: the installation above under /usr, the
# libraries' packages found by dpkg-shlibdeps, and the programs and plug-ins Corvanta needs at
# run time, which no library link reveals.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME corvanta)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_VENDOR "The Corvanta developers")
set(CPACK_PACKAGE_CONTACT "The Corvanta developers <corvanta@users.noreply.github.com>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "cut video and audio files into segments and join them")
string(JOIN "\n" CPACK_PACKAGE_DESCRIPTION
    "Corvanta opens a video, lets you mark any number of segments on its timeline,"
    "and saves them as one joined video, as one video per segment, or as their"
    "sound alone. It also joins several videos, saves single frames as PNG images,"
    "and saves series of frames as numbered PNG images or one animated WebP image."
    "The work is done by ffmpeg and img2webp.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION video)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE ${CORVANTA_HOMEPAGE})
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS
    "ffmpeg, webp, gstreamer1.0-plugins-base, gstreamer1.0-plugins-good, "
    "gstreamer1.0-plugins-bad, gstreamer1.0-libav")
string(JOIN "" CPACK_DEBIAN_PACKAGE_DEPENDS ${CPACK_DEBIAN_PACKAGE_DEPENDS})
# Qt's own texts in the desktop's language; without them they stay in English.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS qt6-translations-l10n)

# Debian wants the copyright and a compressed changelog in the package's doc folder.
execute_process(
    COMMAND date -u -R -d "${CORVANTA_RELEASE_DATE} 12:00"
    OUTPUT_VARIABLE CORVANTA_RELEASE_DATE_RFC2822 OUTPUT_STRIP_TRAILING_WHITESPACE
    COMMAND_ERROR_IS_FATAL ANY)
configure_file(packaging/changelog.in ${CMAKE_BINARY_DIR}/packaging/changelog @ONLY)
add_custom_command(
    OUTPUT ${CMAKE_BINARY_DIR}/packaging/changelog.gz
    COMMAND ${GZIP_EXECUTABLE} -9 -n -f -k ${CMAKE_BINARY_DIR}/packaging/changelog
    DEPENDS ${CMAKE_BINARY_DIR}/packaging/changelog
    VERBATIM)
add_custom_target(package_changelog ALL DEPENDS ${CMAKE_BINARY_DIR}/packaging/changelog.gz)
install(FILES packaging/copyright ${CMAKE_BINARY_DIR}/packaging/changelog.gz
        DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/corvanta)

include(CPack)
