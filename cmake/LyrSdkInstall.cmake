# What an installed copy offers: the library, its headers, a CMake package, a pkg-config file and gdb's printers.

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

# The printers lie in one place. A file that leads there is to be loaded by name; another one is named after the shared
# library, for gdb to find. Both know the way by where they lie.
set(lGdbDir "${CMAKE_INSTALL_DATADIR}/lyrsdk/gdb")
install(DIRECTORY "${PROJECT_SOURCE_DIR}/tools/gdb/lyrsdk_gdb" DESTINATION "${lGdbDir}" FILES_MATCHING PATTERN "*.py")
function(lyrsdk_install_gdb_loader pFolder pName)
    file(RELATIVE_PATH LYRSDK_GDB_MODULE_DIR
        "${CMAKE_INSTALL_PREFIX}/${pFolder}" "${CMAKE_INSTALL_PREFIX}/${lGdbDir}")
    set(lLoader "${PROJECT_BINARY_DIR}/install/${pName}")
    configure_file("${PROJECT_SOURCE_DIR}/tools/gdb/lyrsdk-gdb.py.in" "${lLoader}" @ONLY)
    install(FILES "${lLoader}" DESTINATION "${pFolder}")
endfunction()
lyrsdk_install_gdb_loader("${lGdbDir}" lyrsdk-gdb.py)
if(BUILD_SHARED_LIBS)
    set(LYRSDK_GDB_AUTO_LOAD_DIR "${CMAKE_INSTALL_LIBDIR}" CACHE STRING
        "Folder in the prefix where gdb looks for what goes with the shared library: beside it, or in its auto-load")
    lyrsdk_install_gdb_loader("${LYRSDK_GDB_AUTO_LOAD_DIR}"
        "${CMAKE_SHARED_LIBRARY_PREFIX}lyrsdk${CMAKE_SHARED_LIBRARY_SUFFIX}.${PROJECT_VERSION}-gdb.py")
endif()
