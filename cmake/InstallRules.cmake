# Where things go when they are installed, and how others find them there. What is
# installed may be moved as a whole: everything finds the rest from where it stands.
include(CMakePackageConfigHelpers)

# What people use and what programs are built with may be installed apart.
set(CMAKE_INSTALL_DEFAULT_COMPONENT_NAME runtime)
set(CMAKE_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

# Where zelrun looks for plug-ins, seen from the folder above its own. Not the folder
# of the machine's architecture: a command finds it by "../lib".
set(PROJECT_PLUGIN_DIR lib/zel)
# Of what is the same on every machine, and of what is not.
set(PROJECT_COMMON_DIR "${CMAKE_INSTALL_DATADIR}")
set(PROJECT_MACHINE_DIR "${CMAKE_INSTALL_LIBDIR}")

# install_page(FILE) and install_completion(COMMAND FILE): of a command.
function(install_page file)
  install(FILES "${file}" DESTINATION "${CMAKE_INSTALL_MANDIR}/man1")
endfunction()
function(install_completion command file)
  install(FILES "${file}" RENAME "${command}"
    DESTINATION "${CMAKE_INSTALL_DATADIR}/bash-completion/completions")
endfunction()

# install_findable(NAME FOLDER TARGET): makes the target findable from where it is
# installed, by find_package(NAME) as zel::..., and by pkg-config. NAME-config.cmake.in and
# NAME.pc.in stand beside the caller. FOLDER is PROJECT_COMMON_DIR or PROJECT_MACHINE_DIR.
function(install_findable name folder target)
  set(config_dir "${folder}/cmake/${name}")
  if("${folder}" STREQUAL "${PROJECT_COMMON_DIR}")
    set(any_machine ARCH_INDEPENDENT)
  endif()
  set(made "${CMAKE_CURRENT_BINARY_DIR}/${name}")

  install(TARGETS ${target} EXPORT ${name}
    ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT development)
  install(EXPORT ${name} NAMESPACE zel:: FILE ${name}-targets.cmake
    DESTINATION "${config_dir}" COMPONENT development)
  set(plugin_dir "${PROJECT_PLUGIN_DIR}")
  set(common_dir "${PROJECT_COMMON_DIR}")
  configure_package_config_file(${name}-config.cmake.in "${made}-config.cmake"
    INSTALL_DESTINATION "${config_dir}" PATH_VARS plugin_dir common_dir)
  write_basic_package_version_file("${made}-config-version.cmake"
    COMPATIBILITY SameMinorVersion ${any_machine})
  install(FILES "${made}-config.cmake" "${made}-config-version.cmake"
    DESTINATION "${config_dir}" COMPONENT development)

  file(RELATIVE_PATH prefix "/${folder}/pkgconfig" "/")
  string(REGEX REPLACE "/$" "" prefix "${prefix}")
  configure_file(${name}.pc.in "${made}.pc" @ONLY)
  install(FILES "${made}.pc" DESTINATION "${folder}/pkgconfig" COMPONENT development)
endfunction()
