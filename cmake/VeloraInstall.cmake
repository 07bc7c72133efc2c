include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

install(TARGETS velora_hostcore velora_hostapi velora_module velora_resources EXPORT VeloraTargets
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
foreach(_d hostapi cloud storage pricecheck smartpricing features materials)
  install(DIRECTORY ${CMAKE_SOURCE_DIR}/${_d}/ DESTINATION include/velora/${_d}
    FILES_MATCHING PATTERN "*.h")
endforeach()
install(EXPORT VeloraTargets NAMESPACE Velora:: DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/Velora)
configure_package_config_file(${CMAKE_SOURCE_DIR}/cmake/VeloraConfig.cmake.in
  ${CMAKE_BINARY_DIR}/VeloraConfig.cmake
  INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/Velora)
write_basic_package_version_file(${CMAKE_BINARY_DIR}/VeloraConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_BINARY_DIR}/VeloraConfig.cmake ${CMAKE_BINARY_DIR}/VeloraConfigVersion.cmake
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/Velora)
