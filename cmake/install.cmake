# Install rules and the Debian package.
#
# Installed layout (under the prefix):
#   bin/morvane-navarch                    the application
#   lib/morvane-navarch/                   private: our shared libraries and the default engine
#   share/applications, share/metainfo,    desktop entry, AppStream data and the icon
#   share/icons/hicolor/scalable/apps
# The application reaches its libraries through a run path relative to itself
# and finds the engine in the private folder (EngineLocator), so the tree
# works wherever it is unpacked.
include(GNUInstallDirs)

set(NAVARCH_APP_ID com.quillonsystems.MorvaneNavarch)
set(NAVARCH_PRIVATE_DIR lib/morvane-navarch)

# EngineLocator looks in ../lib/morvane-navarch from the executable.
if(NOT CMAKE_INSTALL_BINDIR STREQUAL "bin")
    message(FATAL_ERROR "CMAKE_INSTALL_BINDIR must be bin: the application finds its engine "
                        "in ../${NAVARCH_PRIVATE_DIR}")
endif()

# Every shared library of our own, however the sources are split into folders.
function(navarch_shared_libraries dir out)
    set(found)
    get_property(targets DIRECTORY ${dir} PROPERTY BUILDSYSTEM_TARGETS)
    foreach(target ${targets})
        get_target_property(type ${target} TYPE)
        if(type STREQUAL "SHARED_LIBRARY")
            list(APPEND found ${target})
        endif()
    endforeach()
    get_property(subdirs DIRECTORY ${dir} PROPERTY SUBDIRECTORIES)
    foreach(subdir ${subdirs})
        navarch_shared_libraries(${subdir} more)
        list(APPEND found ${more})
    endforeach()
    set(${out} ${found} PARENT_SCOPE)
endfunction()
navarch_shared_libraries(${PROJECT_SOURCE_DIR}/sources navarch_libraries)

set_target_properties(morvane-navarch PROPERTIES INSTALL_RPATH "$ORIGIN/../${NAVARCH_PRIVATE_DIR}")
if(navarch_libraries)
    set_target_properties(${navarch_libraries} PROPERTIES
        INSTALL_RPATH "$ORIGIN"
        VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR})
    install(TARGETS ${navarch_libraries} LIBRARY DESTINATION ${NAVARCH_PRIVATE_DIR} NAMELINK_SKIP)
endif()
install(TARGETS morvane-navarch RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})

# The default engine, as the build places it beside the application, and its
# package of Python modules (from the sources: running it leaves compiled files
# in the build folder).
install(PROGRAMS ${CMAKE_BINARY_DIR}/bin/morvane DESTINATION ${NAVARCH_PRIVATE_DIR})
install(DIRECTORY ${PROJECT_SOURCE_DIR}/engine/morvane_sql DESTINATION ${NAVARCH_PRIVATE_DIR}
        FILES_MATCHING PATTERN "*.py")

set(desktop ${PROJECT_SOURCE_DIR}/resources/desktop)
install(FILES ${desktop}/${NAVARCH_APP_ID}.desktop
        DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES ${desktop}/${NAVARCH_APP_ID}.metainfo.xml
        DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)
install(FILES ${PROJECT_SOURCE_DIR}/resources/images/Morvane.svg
        DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps
        RENAME ${NAVARCH_APP_ID}.svg)

# The newest release in the AppStream data is the version being built.
file(READ ${desktop}/${NAVARCH_APP_ID}.metainfo.xml metainfo)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS
             ${desktop}/${NAVARCH_APP_ID}.metainfo.xml)
string(REGEX MATCH "<release version=\"([^\"]*)\"" release "${metainfo}")
if(NOT CMAKE_MATCH_1 STREQUAL PROJECT_VERSION)
    message(FATAL_ERROR "${NAVARCH_APP_ID}.metainfo.xml: the first release is ${CMAKE_MATCH_1}, "
                        "the project is ${PROJECT_VERSION}")
endif()

# Debian package: cpack -G DEB (scripts/package.sh).
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME morvane-navarch)
set(CPACK_PACKAGE_VENDOR "Quillon Systems Ltd.")
set(CPACK_PACKAGE_CONTACT "Quillon Systems Ltd. <navarch@quillonsystems.example>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "two-panel file manager for SQL script conversion")
set(CPACK_PACKAGE_DESCRIPTION "\
Morvane Navarch is a two-panel file manager built round the morvane
conversion engine, for engineers who migrate databases and application code
from one database platform to another: browse the source scripts and the
output folder side by side, edit them, run the engine with pause, resume and
stop, follow its log and compare the results.")
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION devel)
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE "https://navarch.quillonsystems.example/")
set(CPACK_STRIP_FILES ON)
# Qt and QScintilla come from the libraries' own dependency data; the engine
# runs on Python with sqlglot, and the editor's fixed-width font is DejaVu.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_BINARY_DIR}/bin)
set(CPACK_DEBIAN_PACKAGE_DEPENDS "python3, python3-sqlglot, fonts-dejavu-core")
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "qtwayland5")
# Python leaves compiled modules beside the engine when root runs it; they go
# with the package.
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
configure_file(${PROJECT_SOURCE_DIR}/cmake/prerm.in ${CMAKE_BINARY_DIR}/debian/prerm @ONLY)
set(CPACK_DEBIAN_PACKAGE_CONTROL_EXTRA ${CMAKE_BINARY_DIR}/debian/prerm)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
include(CPack)
