# Debian packages: labelcut and labelcut-dev. Configure with CMAKE_INSTALL_PREFIX=/usr; tools/package
# does all of it, and a test packs and looks at what it is built with.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME labelcut)
set(CPACK_PACKAGE_VERSION "${PROJECT_VERSION}")
set(CPACK_PACKAGE_CONTACT "Labelcut authors <labelcut@users.noreply.example>")
set(CPACK_PACKAGING_INSTALL_PREFIX "${CMAKE_INSTALL_PREFIX}")
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_STRIP_FILES ON)
set(CPACK_THREADS 0)

set(CPACK_COMPONENTS_ALL runtime dev)
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS OFF)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)

set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME labelcut)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION text)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_DEPENDS "ghostscript")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_RECOMMENDS "cups-client, fonts-dejavu-core")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SUGGESTS "cups, qt6-wayland")
set(CPACK_COMPONENT_RUNTIME_DESCRIPTION
"print dialog for label and tape printers
Labelcut shows, before anything is printed, what will be cut: every label,
every few labels, half cuts, chained labels, special tape that is never cut.
Every choice becomes a PPD keyword of the job, and CUPS carries it to the
printer.
.
It prints PDF, PostScript, PNG, JPEG, SVG and plain text, from a window or
from the command line, on queues of CUPS or into a file, and takes panels of
third parties for printers with options of their own.")

set(CPACK_DEBIAN_DEV_PACKAGE_NAME labelcut-dev)
set(CPACK_DEBIAN_DEV_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEV_PACKAGE_SHLIBDEPS OFF)
set(CPACK_DEBIAN_DEV_PACKAGE_DEPENDS
  "libcups2-dev, libfmt-dev, libicu-dev, qt6-base-dev, qt6-svg-dev, qt6-tools-dev")
set(CPACK_DEBIAN_DEV_PACKAGE_RECOMMENDS "labelcut (= ${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE})")
set(CPACK_COMPONENT_DEV_DESCRIPTION
"panels for the print dialog Labelcut - development files
Labelcut takes panels of third parties for label and tape printers with
options of their own: Qt plug-ins that read and choose a printer's PPD
options.
.
This package has the headers of the extension interface, the print objects
and the toolkit with their libraries, and a whole plug-in as an example.")
include(CPack)
