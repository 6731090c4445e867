# The Debian packages: cpack makes them of the build that the preset `package` configures. What a file
# belongs to is the COMPONENT of its install rule; packaging/ holds what is not built.

# Other files that say the version say the same.
function(veltgeneral_says file text)
  file(READ "${PROJECT_SOURCE_DIR}/${file}" content)
  string(FIND "${content}" "${text}" place)
  if(place EQUAL -1)
    message(FATAL_ERROR "${file} does not say ${text}")
  endif()
endfunction()
veltgeneral_says(packaging/changelog "veltgeneral (${PROJECT_VERSION}-1)")
veltgeneral_says(bindings/python/pyproject.toml "version = \"${PROJECT_VERSION}\"")
veltgeneral_says(CHANGELOG.md "## [${PROJECT_VERSION}]")

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_VERSION "${PROJECT_VERSION}")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")  # each package has its own
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_COMPONENTS_ALL core dev http report pdf tools python)
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_VERBATIM_VARIABLES ON)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "VeltGeneral developers <veltgeneral@example.org>")
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${PROJECT_BINARY_DIR}/src")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
# Copyright, changelog and compressed pages, once the files of each package lie together.
set(CPACK_PRE_BUILD_SCRIPTS "${PROJECT_SOURCE_DIR}/packaging/finish.cmake")
set(CPACK_VELTGENERAL_SOURCE "${PROJECT_SOURCE_DIR}")

# veltgeneral_package(COMPONENT NAME SECTION SUMMARY MULTIARCH DEPENDS LINE...): the lines are the
# description below the summary; DEPENDS comes on top of what the files link.
set(same "veltgeneral (= ${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE})")
function(veltgeneral_package component name section multiarch depends summary)
  string(TOUPPER ${component} id)
  list(JOIN ARGN "\n" text)
  foreach(pair IN ITEMS "NAME=${name}" "SECTION=${section}" "MULTIARCH=${multiarch}"
                        "DEPENDS=${depends}")
    string(REGEX MATCH "^([A-Z]+)=(.*)$" matched "${pair}")
    set(CPACK_DEBIAN_${id}_PACKAGE_${CMAKE_MATCH_1} "${CMAKE_MATCH_2}" PARENT_SCOPE)
  endforeach()
  set(CPACK_DEBIAN_${id}_DESCRIPTION "${summary}\n${text}" PARENT_SCOPE)
endfunction()

set(about "VeltGeneral is a utility library for business applications that exchange files,"
          "values and reports. Its seven classes are created by name.")
veltgeneral_package(core veltgeneral libs same ""
  "utility library of classes created by name"
  "It reads and writes whole files and semicolon tables, keeps settings, converts"
  "values for XML and SQL, fetches URLs, and prints pages. Applications create its"
  "seven classes by name and call their members by name."
  "."
  "This package holds the library. What needs HTTP, the screen, a printer or PDF"
  "lies in packages of its own, which the library opens at first use.")
veltgeneral_package(dev veltgeneral-dev libdevel same "${same}"
  "utility library of classes created by name - development files" ${about}
  "." "This package holds the headers and the files for CMake and pkg-config.")
veltgeneral_package(http veltgeneral-http libs same "${same}"
  "utility library of classes created by name - Internet sessions" ${about}
  "." "This package lets the class VeltInet fetch URLs over HTTP, HTTPS and FTP.")
veltgeneral_package(report veltgeneral-report libs same
  "${same}, fonts-liberation | fonts-liberation2"
  "utility library of classes created by name - report pages" ${about}
  "." "This package lets the class Reporting draw pages on the screen and the printer.")
veltgeneral_package(pdf veltgeneral-pdf libs same "${same}, fonts-liberation | fonts-liberation2"
  "utility library of classes created by name - PDF documents" ${about}
  "." "This package makes the documents of the class Funzioni from command files.")
veltgeneral_package(tools veltgeneral-tools utils foreign "${same}"
  "utility library of classes created by name - command line" ${about}
  "." "This package holds velt, which calls members from the shell and looks after"
  "settings, with its manual pages and completion for bash, zsh and fish.")
veltgeneral_package(python python3-veltgeneral python foreign
  "${same}, python3:any (>= 3.9)"
  "utility library of classes created by name - Python 3" ${about}
  "." "This package holds the Python package veltgeneral with its type stubs.")

set(CPACK_DEBIAN_CORE_PACKAGE_SUGGESTS "veltgeneral-http, veltgeneral-report, veltgeneral-pdf")
# What programs that link the library depend on: the minor version that they were built with.
set(minor "${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR}")
math(EXPR next "${PROJECT_VERSION_MINOR} + 1")
file(CONFIGURE OUTPUT "${PROJECT_BINARY_DIR}/packaging/shlibs" CONTENT
  "libveltgeneral @PROJECT_VERSION_MAJOR@ veltgeneral (>= @minor@), veltgeneral (<< @PROJECT_VERSION_MAJOR@.@next@~)\n"
  @ONLY)
set(CPACK_DEBIAN_CORE_PACKAGE_CONTROL_EXTRA
  "${PROJECT_SOURCE_DIR}/packaging/core/triggers" "${PROJECT_BINARY_DIR}/packaging/shlibs")
set(CPACK_DEBIAN_HTTP_PACKAGE_RECOMMENDS ca-certificates)
set(CPACK_DEBIAN_REPORT_PACKAGE_SUGGESTS cups)
set(CPACK_DEBIAN_TOOLS_PACKAGE_CONTROL_EXTRA "${PROJECT_SOURCE_DIR}/packaging/tools/prerm")
set(CPACK_DEBIAN_PYTHON_PACKAGE_ARCHITECTURE all)
set(CPACK_DEBIAN_PYTHON_PACKAGE_CONTROL_EXTRA
  "${PROJECT_SOURCE_DIR}/packaging/python/postinst" "${PROJECT_SOURCE_DIR}/packaging/python/prerm")
include(CPack)
