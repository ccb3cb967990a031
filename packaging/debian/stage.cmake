# SPDX-License-Identifier: MIT
# Run by CPack on the files of each package before it is made: moves and adds files as Debian requires.
if(NOT CPACK_GENERATOR STREQUAL "DEB")
    return()
endif()

set(USR ${CPACK_TEMPORARY_DIRECTORY}/usr)
set(DOC ${USR}/share/doc/portolan)

file(RENAME ${USR}/share/zsh/site-functions ${USR}/share/zsh/vendor-completions)

execute_process(COMMAND env LC_ALL=C date --utc --date ${CPACK_PORTOLAN_RELEASE_DATE} --rfc-email
    OUTPUT_VARIABLE DATE COMMAND_ERROR_IS_FATAL ANY)
file(WRITE ${DOC}/changelog.Debian
"portolan (${CPACK_PACKAGE_VERSION}) unstable; urgency=medium

  * Version ${CPACK_PACKAGE_VERSION}; changelog.gz says what is new.

 -- ${CPACK_PACKAGE_CONTACT}  ${DATE}")
file(COPY_FILE ${CPACK_PORTOLAN_PACKAGING}/../CHANGELOG.md ${DOC}/changelog)

file(READ ${DOC}/LICENSE LICENSE)
string(REGEX REPLACE "^MIT License\n\nCopyright \\(c\\) ([^\n]+)\n\n" "" TEXT "${LICENSE}")
string(REGEX REPLACE "\n\n" "\n.\n" TEXT "${TEXT}")
string(REGEX REPLACE "\n(.)" "\n \\1" TEXT "${TEXT}")
string(REGEX MATCH "Copyright \\(c\\) ([^\n]+)" COPYRIGHT "${LICENSE}")
file(WRITE ${DOC}/copyright
"Format: https://www.debian.org/doc/packaging-manuals/copyright-format/1.0/
Upstream-Name: Portolan

Files: *
Copyright: ${CMAKE_MATCH_1}
License: Expat
 ${TEXT}")
file(REMOVE ${DOC}/LICENSE)

execute_process(
    COMMAND gzip --best --no-name ${DOC}/changelog ${DOC}/changelog.Debian
        ${USR}/share/man/man1/portolan.1 ${USR}/share/man/man1/portolanctl.1
    COMMAND_ERROR_IS_FATAL ANY)

# Their modes do not depend on the umask of the build.
file(GLOB DOCUMENTS ${DOC}/*)
file(CHMOD ${DOCUMENTS} PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)
