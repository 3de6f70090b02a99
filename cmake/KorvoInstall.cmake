# What an installed KorvoLib consists of: the library, what stands between hosts and plug-ins, their headers, and a
# package that find_package reads.

include(CMakePackageConfigHelpers)
install(TARGETS KorvoLib EXPORT KorvoLibTargets FILE_SET HEADERS)
install(TARGETS korvo_shell EXPORT KorvoLibTargets FILE_SET HEADERS)
install(EXPORT KorvoLibTargets NAMESPACE KorvoLib:: DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/KorvoLib)
configure_package_config_file(cmake/KorvoLibConfig.cmake.in ${PROJECT_BINARY_DIR}/KorvoLibConfig.cmake
  INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/KorvoLib)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/KorvoLibConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/KorvoLibConfig.cmake ${PROJECT_BINARY_DIR}/KorvoLibConfigVersion.cmake
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/KorvoLib)
