# Before cpack closes the packages: gives each its copyright and changelogs, and compresses what Debian
# wants compressed. Runs in the folder of the staged files, one folder a component.
foreach(component IN LISTS CPACK_COMPONENTS_ALL)
  string(TOUPPER ${component} id)
  set(stage "${CPACK_TEMPORARY_DIRECTORY}/${component}/usr/share")
  set(doc "${stage}/doc/${CPACK_DEBIAN_${id}_PACKAGE_NAME}")
  file(MAKE_DIRECTORY "${doc}")
  file(COPY "${CPACK_VELTGENERAL_SOURCE}/packaging/copyright" DESTINATION "${doc}")
  file(COPY_FILE "${CPACK_VELTGENERAL_SOURCE}/packaging/changelog" "${doc}/changelog.Debian")
  file(COPY_FILE "${CPACK_VELTGENERAL_SOURCE}/CHANGELOG.md" "${doc}/changelog")
  file(GLOB pages "${stage}/man/man*/*")
  execute_process(COMMAND gzip -9nf "${doc}/changelog.Debian" "${doc}/changelog" ${pages}
                  COMMAND_ERROR_IS_FATAL ANY)
  file(GLOB_RECURSE made "${stage}/*")
  file(CHMOD ${made} PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)
  if(EXISTS "${CPACK_VELTGENERAL_SOURCE}/packaging/${component}/overrides")
    file(MAKE_DIRECTORY "${stage}/lintian/overrides")
    file(COPY_FILE "${CPACK_VELTGENERAL_SOURCE}/packaging/${component}/overrides"
         "${stage}/lintian/overrides/${CPACK_DEBIAN_${id}_PACKAGE_NAME}")
  endif()
endforeach()
