# The Debian packages: the shared library for programs that are built, what building a program takes, the tools.
# scripts/package makes them; a preset of its own sets what they are built with.

if(NOT LYRSDK_STATIC_TOO OR NOT BUILD_SHARED_LIBS)
    message(FATAL_ERROR "The packages hold both kinds of library: set BUILD_SHARED_LIBS and LYRSDK_STATIC_TOO")
endif()

set(lRuntimePackage "liblyrsdk${PROJECT_VERSION_MAJOR}")

# lyrsdk_install_copyright(COMPONENT PACKAGE [FILE...]): the project's own, and what the files say one after the other.
function(lyrsdk_install_copyright pComponent pPackage)
    configure_file("${PROJECT_SOURCE_DIR}/cmake/packages/copyright.in" "packages/${pPackage}/copyright" @ONLY)
    foreach(lFile IN LISTS ARGN)
        file(READ "${lFile}" lText)
        file(APPEND "${CMAKE_CURRENT_BINARY_DIR}/packages/${pPackage}/copyright" "\n${lText}")
    endforeach()
    install(FILES "${CMAKE_CURRENT_BINARY_DIR}/packages/${pPackage}/copyright"
        DESTINATION "${CMAKE_INSTALL_DATADIR}/doc/${pPackage}" COMPONENT ${pComponent})
endfunction()

lyrsdk_install_copyright(Runtime ${lRuntimePackage})
lyrsdk_install_copyright(Development liblyrsdk-dev)
if(LYRSDK_BUILD_TOOLS)
    # The inspector has code of its dependencies in it, and their terms go along.
    lyrsdk_install_copyright(Tools lyrsdk-tools
        /usr/share/doc/libtinygltf-dev/copyright
        /usr/share/doc/libcli11-dev/copyright
        /usr/share/doc/nlohmann-json3-dev/copyright)
endif()

# Debugging information stays in the build; strip leaves static libraries alone by default.
set(lArchive "${CMAKE_INSTALL_LIBDIR}/liblyrsdk.a")
install(CODE "
if(CMAKE_INSTALL_DO_STRIP)
    execute_process(COMMAND_ERROR_IS_FATAL ANY
        COMMAND \"${CMAKE_STRIP}\" --strip-debug --enable-deterministic-archives
            \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/${lArchive}\")
endif()" COMPONENT Development)

set(CPACK_GENERATOR DEB)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_STRIP_FILES ON)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")  # each package has its own
set(CPACK_PACKAGE_CONTACT "lyrsdk maintainers <maintainers@users.noreply.example>")
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_COMPONENTS_ALL Runtime Development)
if(LYRSDK_BUILD_TOOLS)
    list(APPEND CPACK_COMPONENTS_ALL Tools)
endif()

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_SOURCE lyrsdk)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
if(LYRSDK_IS_X86_32)
    set(CPACK_DEBIAN_PACKAGE_ARCHITECTURE i386)
    # dpkg-shlibdeps looks for the libraries of the architecture that a build is for.
    set(CPACK_PROJECT_CONFIG_FILE "${PROJECT_SOURCE_DIR}/cmake/packages/i386.cmake")
endif()

# lyrsdk_package(COMPONENT NAME SECTION MULTI-ARCH SUMMARY DESCRIPTION), set in the caller's scope.
macro(lyrsdk_package pComponent pName pSection pMultiArch pSummary pDescription)
    set(CPACK_DEBIAN_${pComponent}_PACKAGE_NAME ${pName})
    set(CPACK_DEBIAN_${pComponent}_PACKAGE_MULTIARCH ${pMultiArch})
    set(CPACK_DEBIAN_${pComponent}_PACKAGE_SECTION ${pSection})
    if(CMAKE_VERSION VERSION_LESS 3.31)
        # The field has no variable there, and a value is written as it stands.
        string(APPEND CPACK_DEBIAN_${pComponent}_PACKAGE_SECTION "\nMulti-Arch: ${pMultiArch}")
    endif()
    set(CPACK_DEBIAN_${pComponent}_DESCRIPTION "${pSummary}\n${pDescription}")
endmacro()

set(lAbout "An object is a page: a tree of named, typed properties. A page can be an
instance of another one and holds only what differs from it. Values convert
between 24 types on every read and write, and properties connect to each other
as sources and destinations.
.
")

lyrsdk_package(RUNTIME ${lRuntimePackage} libs same
    "properties for the objects of a 3D scene (shared library)"
    "${lAbout}This package holds the shared library.")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SHLIBDEPS ON)

lyrsdk_package(DEVELOPMENT liblyrsdk-dev libdevel same
    "properties for the objects of a 3D scene (development files)"
    "${lAbout}This package holds the headers, the static library, and what CMake and\npkg-config need to find both kinds of library.")
set(CPACK_COMPONENT_DEVELOPMENT_DEPENDS Runtime)

lyrsdk_package(TOOLS lyrsdk-tools graphics foreign
    "properties for the objects of a 3D scene (inspector)"
    "${lAbout}This package holds lyrinspect, which shows the objects of a glTF scene as\nproperties.")
set(CPACK_DEBIAN_TOOLS_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${PROJECT_BINARY_DIR}/lyrfilesdk")
set(CPACK_COMPONENT_TOOLS_DEPENDS Runtime)

include(CPack)
