# What `cmake --install` puts where, and how consumers find it: find_package(VeltGeneral) and
# pkg-config. The tools, modules and bindings install themselves, beside their own rules.
include(CMakePackageConfigHelpers)

install(TARGETS veltgeneral EXPORT VeltGeneralTargets
        LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT core NAMELINK_COMPONENT dev
        INCLUDES DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}")
install(DIRECTORY "${PROJECT_SOURCE_DIR}/include/veltgeneral"
        DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}" COMPONENT dev)

install(FILES "${PROJECT_SOURCE_DIR}/docs/veltgeneral-pdf.5" DESTINATION "${CMAKE_INSTALL_MANDIR}/man5"
        COMPONENT pdf)

set(package "${CMAKE_INSTALL_LIBDIR}/cmake/VeltGeneral")
install(EXPORT VeltGeneralTargets NAMESPACE VeltGeneral:: DESTINATION "${package}"
        FILE VeltGeneralConfig.cmake COMPONENT dev)
write_basic_package_version_file("${PROJECT_BINARY_DIR}/VeltGeneralConfigVersion.cmake"
                                 COMPATIBILITY SameMajorVersion)
install(FILES "${PROJECT_BINARY_DIR}/VeltGeneralConfigVersion.cmake" DESTINATION "${package}"
        COMPONENT dev)

# Wherever `cmake --install --prefix` puts it.
file(RELATIVE_PATH VELTGENERAL_PC_TO_PREFIX
     "${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig" "${CMAKE_INSTALL_PREFIX}")
configure_file("${PROJECT_SOURCE_DIR}/cmake/veltgeneral.pc.in"
               "${PROJECT_BINARY_DIR}/veltgeneral.pc" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/veltgeneral.pc"
        DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig" COMPONENT dev)
