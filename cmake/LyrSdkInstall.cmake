# What an installed copy offers: the library, its headers, a CMake package, pkg-config files and gdb's printers. The
# components are what the packages are made of: Runtime is what a program that is already built needs, Development is
# the rest.

include(CMakePackageConfigHelpers)
include(GNUInstallDirs)

set(lPackageDir "${CMAKE_INSTALL_LIBDIR}/cmake/lyrsdk")
set(lPkgConfigDir "${CMAKE_INSTALL_LIBDIR}/pkgconfig")

install(TARGETS lyrsdk EXPORT lyrsdkTargets
    ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT Development
    LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT Runtime NAMELINK_COMPONENT Development
    RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT Runtime
    FILE_SET HEADERS DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}" COMPONENT Development)
if(TARGET lyrsdk_static)
    install(TARGETS lyrsdk_static EXPORT lyrsdkTargets
        ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT Development
        INCLUDES DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}")
endif()
install(EXPORT lyrsdkTargets NAMESPACE lyrsdk:: DESTINATION "${lPackageDir}" COMPONENT Development)

configure_package_config_file(
    "${PROJECT_SOURCE_DIR}/cmake/lyrsdkConfig.cmake.in"
    "${PROJECT_BINARY_DIR}/lyrsdkConfig.cmake"
    INSTALL_DESTINATION "${lPackageDir}"
    NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file("${PROJECT_BINARY_DIR}/lyrsdkConfigVersion.cmake" COMPATIBILITY SameMajorVersion)
install(FILES
    "${PROJECT_BINARY_DIR}/lyrsdkConfig.cmake"
    "${PROJECT_BINARY_DIR}/lyrsdkConfigVersion.cmake"
    DESTINATION "${lPackageDir}" COMPONENT Development)

# lyrsdk_install_pkg_config(NAME LIBS)
#
# The file finds its prefix from where it lies, so that an installed tree can be moved.
function(lyrsdk_install_pkg_config pName pLibs)
    file(RELATIVE_PATH LYRSDK_PC_PREFIX
        "${CMAKE_INSTALL_PREFIX}/${lPkgConfigDir}" "${CMAKE_INSTALL_PREFIX}/.")
    string(REGEX REPLACE "/$" "" LYRSDK_PC_PREFIX "${LYRSDK_PC_PREFIX}")
    list(JOIN LYRSDK_ARITHMETIC_FLAGS " " LYRSDK_PC_CFLAGS)
    set(LYRSDK_PC_LIBS "${pLibs}")
    configure_file("${PROJECT_SOURCE_DIR}/cmake/lyrsdk.pc.in" "${PROJECT_BINARY_DIR}/${pName}.pc" @ONLY)
    install(FILES "${PROJECT_BINARY_DIR}/${pName}.pc" DESTINATION "${lPkgConfigDir}" COMPONENT Development)
endfunction()

lyrsdk_install_pkg_config(lyrsdk "-L\${libdir} -llyrsdk")
if(TARGET lyrsdk_static)
    # By its path: the linker prefers the shared library when both lie in one folder.
    lyrsdk_install_pkg_config(lyrsdk-static "\${libdir}/liblyrsdk.a")
endif()

# The printers lie in one place. A file that leads there is to be loaded by name; another one is named after the shared
# library, for gdb to find. Both know the way by where they lie.
set(lGdbDir "${CMAKE_INSTALL_DATADIR}/lyrsdk/gdb")
install(DIRECTORY "${PROJECT_SOURCE_DIR}/tools/gdb/lyrsdk_gdb" DESTINATION "${lGdbDir}" COMPONENT Development
    FILES_MATCHING PATTERN "*.py")
function(lyrsdk_install_gdb_loader pFolder pName)
    file(RELATIVE_PATH LYRSDK_GDB_MODULE_DIR
        "${CMAKE_INSTALL_PREFIX}/${pFolder}" "${CMAKE_INSTALL_PREFIX}/${lGdbDir}")
    set(lLoader "${PROJECT_BINARY_DIR}/install/${pName}")
    configure_file("${PROJECT_SOURCE_DIR}/tools/gdb/lyrsdk-gdb.py.in" "${lLoader}" @ONLY)
    install(FILES "${lLoader}" DESTINATION "${pFolder}" COMPONENT Development)
endfunction()
lyrsdk_install_gdb_loader("${lGdbDir}" lyrsdk-gdb.py)
if(BUILD_SHARED_LIBS)
    set(lAutoLoadDir "${CMAKE_INSTALL_LIBDIR}")
    if(LYRSDK_PACKAGES)
        # gdb trusts what lies there.
        set(lAutoLoadDir "${CMAKE_INSTALL_DATADIR}/gdb/auto-load/usr/${CMAKE_INSTALL_LIBDIR}")
    endif()
    set(LYRSDK_GDB_AUTO_LOAD_DIR "${lAutoLoadDir}" CACHE STRING
        "Folder in the prefix where gdb looks for what goes with the shared library: beside it, or in its auto-load")
    lyrsdk_install_gdb_loader("${LYRSDK_GDB_AUTO_LOAD_DIR}"
        "${CMAKE_SHARED_LIBRARY_PREFIX}lyrsdk${CMAKE_SHARED_LIBRARY_SUFFIX}.${PROJECT_VERSION}-gdb.py")
endif()
