# What an installed copy offers: the library, its headers, a CMake package and a pkg-config file.

include(CMakePackageConfigHelpers)
include(GNUInstallDirs)

set(lPackageDir "${CMAKE_INSTALL_LIBDIR}/cmake/lyrsdk")

install(TARGETS lyrsdk EXPORT lyrsdkTargets
    ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}"
    LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}"
    RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}"
    FILE_SET HEADERS DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}")
install(EXPORT lyrsdkTargets NAMESPACE lyrsdk:: DESTINATION "${lPackageDir}")

configure_package_config_file(
    "${PROJECT_SOURCE_DIR}/cmake/lyrsdkConfig.cmake.in"
    "${PROJECT_BINARY_DIR}/lyrsdkConfig.cmake"
    INSTALL_DESTINATION "${lPackageDir}"
    NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file("${PROJECT_BINARY_DIR}/lyrsdkConfigVersion.cmake" COMPATIBILITY SameMajorVersion)
install(FILES
    "${PROJECT_BINARY_DIR}/lyrsdkConfig.cmake"
    "${PROJECT_BINARY_DIR}/lyrsdkConfigVersion.cmake"
    DESTINATION "${lPackageDir}")

# The file finds its prefix from where it lies, so that an installed tree can be moved.
set(lPkgConfigDir "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
file(RELATIVE_PATH LYRSDK_PC_PREFIX
    "${CMAKE_INSTALL_PREFIX}/${lPkgConfigDir}" "${CMAKE_INSTALL_PREFIX}/.")
string(REGEX REPLACE "/$" "" LYRSDK_PC_PREFIX "${LYRSDK_PC_PREFIX}")
list(JOIN LYRSDK_ARITHMETIC_FLAGS " " LYRSDK_PC_CFLAGS)
configure_file("${PROJECT_SOURCE_DIR}/cmake/lyrsdk.pc.in" "${PROJECT_BINARY_DIR}/lyrsdk.pc" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/lyrsdk.pc" DESTINATION "${lPkgConfigDir}")
