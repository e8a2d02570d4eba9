# Debian packages: sdpsol, what people use, and libzelhost-dev, what programs are built
# with. Made by cpack, or the target package; cmake/debian/ has what only they contain.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_PACKAGE_VENDOR "the sdpsol developers")
set(CPACK_PACKAGE_CONTACT "the sdpsol developers <sdpsol@example.org>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS ${CMAKE_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS})

set(CPACK_COMPONENTS_ALL runtime development)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)

set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME sdpsol)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION math)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SUGGESTS "bash-completion, libzelhost-dev")
# The first line is the summary. A line with a dot alone is an empty one.
set(CPACK_COMPONENT_RUNTIME_DESCRIPTION
"semidefinite programs with proofs, and forces of grasps
The command sdpsol decides matrix inequalities, written in a small language:
feasible, with a point in hand, infeasible, with a proof, or undetermined,
with the reason. The command grasp takes the contacts of a hand with an
object and says whether they can squeeze it and how far from slipping; it
draws pictures for print and pages in 3D, and answers batches on all cores.
.
The command zelrun is a host for plug-ins of the zel environment: it runs
networks of them that are described in JSON files, and checks what a host
expects of any plug-in. The plug-in sdpsol brings the solver into such
networks.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libzelhost-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "nlohmann-json3-dev")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SUGGESTS "sdpsol, cmake, pkgconf")
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION
"library and header for hosts and plug-ins of the zel environment
The header zel/zel.h is what plug-ins and their hosts agree on, in C and in
C++; plug-ins need nothing else. The static library zelhost is a host: it
loads plug-ins, checks how they use its operations, and runs networks of
them.
.
Both are found by find_package of CMake and by pkg-config.")

# Runs between installing and packing. It is handed what it reads.
set(CPACK_PRE_BUILD_SCRIPTS "${CMAKE_CURRENT_LIST_DIR}/debian/finish.cmake")
set(CPACK_PROJECT_SOURCE "${PROJECT_SOURCE_DIR}")
include(CPack)
