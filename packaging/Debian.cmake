# SPDX-FileCopyrightText: 2026 The Dorvantel founders
# SPDX-License-Identifier: MIT

# The Debian packages. What the programs are linked to is found by dpkg-shlibdeps, and the libraries bring the plugins
# that they load (windows, secure connections); only what no library knows of is named here.

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_VENDOR "The Dorvantel founders")
set(CPACK_PACKAGE_DIRECTORY "${CMAKE_BINARY_DIR}/packages")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "") # each package begins its description with its own
set(CPACK_PACKAGE_CHECKSUM SHA256)
set(CPACK_COMPONENTS_ALL dorvantel dorvantel-records dorvantel-demo-model)
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_STRIP_FILES ON)
set(CPACK_SET_DESTDIR ON)
set(CPACK_INSTALL_PREFIX /usr)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "The Dorvantel founders <founders@dorvantel.example>")
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)

set(CPACK_DEBIAN_DORVANTEL_PACKAGE_NAME dorvantel)
set(CPACK_DEBIAN_DORVANTEL_PACKAGE_SECTION misc)
# The file dialog and the buttons of alerts speak Spanish only with Qt's own translations.
set(CPACK_DEBIAN_DORVANTEL_PACKAGE_DEPENDS qt6-translations-l10n)
# The service keeps the candidates, on this machine or on another. Without the emoji font candidates have no figure,
# without xdg-utils an invitation finds no mail program.
set(CPACK_DEBIAN_DORVANTEL_PACKAGE_RECOMMENDS
    "dorvantel-records, fonts-inter, fonts-noto-color-emoji, hicolor-icon-theme, xdg-utils")
set(CPACK_DEBIAN_DORVANTEL_PACKAGE_SUGGESTS "dorvantel-demo-model, qt6-wayland")
set(CPACK_COMPONENT_DORVANTEL_DESCRIPTION "turn CVs into candidates that can be searched
A CV (PDF) that is dropped on the window is read by a language model on a
server of your own; what it found and the invitation mail it wrote are shown
to be checked, and the candidate is stored together with the PDF.

Candidates are found by skills, languages and gender, or by a description in
free words. The interface speaks Spanish.
")

set(CPACK_DEBIAN_DORVANTEL-RECORDS_PACKAGE_NAME dorvantel-records)
set(CPACK_DEBIAN_DORVANTEL-RECORDS_PACKAGE_SECTION database)
set(CPACK_COMPONENT_DORVANTEL-RECORDS_DESCRIPTION "records service of Dorvantel
Keeps the candidates of Dorvantel with their PDFs in one SQLite file, answers
lists and searches over HTTP on this machine, and computes the vectors of the
search by description through a model server.

It comes with a systemd unit for the user's own manager, which is not enabled
by installing it.
")

set(CPACK_DEBIAN_DORVANTEL-DEMO-MODEL_PACKAGE_NAME dorvantel-demo-model)
set(CPACK_DEBIAN_DORVANTEL-DEMO-MODEL_PACKAGE_SECTION misc)
set(CPACK_COMPONENT_DORVANTEL-DEMO-MODEL_DESCRIPTION "stand-in model server for trying Dorvantel
Answers where a model server would, by rules and word lists, so that Dorvantel
can be tried on a machine without one. It is no language model.
")

include(CPack)
