# What a Debian package has beyond what is installed: its copyright file, changelogs,
# pages that are compressed. And one date for everything, so that two builds of one
# state give the same bytes.
cmake_minimum_required(VERSION 3.25)

# The date of the state: SOURCE_DATE_EPOCH where it is set, else that of the last commit,
# else that of the list of changes, which an archive of the sources keeps.
function(find_date result)
  set(date "$ENV{SOURCE_DATE_EPOCH}")
  if(date STREQUAL "")
    execute_process(COMMAND git -C "${CPACK_PROJECT_SOURCE}" log -1 --format=%ct
      OUTPUT_VARIABLE date OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
  endif()
  if(date STREQUAL "")
    file(TIMESTAMP "${CPACK_PROJECT_SOURCE}/CHANGELOG.md" date %s UTC)
  endif()
  set(${result} "${date}" PARENT_SCOPE)
endfunction()

# Runs a command, which must succeed.
macro(must)
  execute_process(COMMAND ${ARGN} COMMAND_ERROR_IS_FATAL ANY)
endmacro()

# What the commands contain of others is listed in THIRD-PARTY. Those licences that must
# go along with a package stand in full, as on the machine that it is built on.
function(write_copyright file)
  file(READ "${CPACK_PROJECT_SOURCE}/LICENSE" ours)
  set(text "The source of this package is that of sdpsol.\n\n${ours}")
  if(ARGN)
    file(READ "${CPACK_PROJECT_SOURCE}/THIRD-PARTY" others)
    string(APPEND text "\n\n${others}")
  endif()
  foreach(package IN LISTS ARGN)
    file(READ "/usr/share/doc/${package}/copyright" theirs)
    string(APPEND text "\n\n---- The copyright file of ${package} ----\n\n${theirs}")
  endforeach()
  string(APPEND text "\n\nOn Debian systems the texts of the GNU licences and of the Mozilla Public
License 2.0 are in /usr/share/common-licenses.\n")
  file(WRITE "${file}" "${text}")
endfunction()

# FOLDER: what the package installs. ARGN: whose licences go along.
function(finish package folder)
  set(documents "${folder}/usr/share/doc/${package}")
  file(MAKE_DIRECTORY "${documents}")
  write_copyright("${documents}/copyright" ${ARGN})
  configure_file("${CPACK_PROJECT_SOURCE}/cmake/debian/changelog.in"
    "${documents}/changelog.Debian" @ONLY)
  # It is in the copyright file, and the changes are where Debian has them.
  file(REMOVE "${documents}/LICENSE" "${documents}/CHANGELOG.md")
  file(COPY_FILE "${CPACK_PROJECT_SOURCE}/CHANGELOG.md" "${documents}/changelog")
  set(overrides "${CPACK_PROJECT_SOURCE}/cmake/debian/${package}.lintian-overrides")
  if(EXISTS "${overrides}")
    file(MAKE_DIRECTORY "${folder}/usr/share/lintian/overrides")
    file(COPY_FILE "${overrides}" "${folder}/usr/share/lintian/overrides/${package}")
  endif()

  file(GLOB pages "${folder}/usr/share/man/man1/*.1")
  must(gzip -9nf "${documents}/changelog" "${documents}/changelog.Debian" ${pages})
  # As nobody's umask has it.
  must(chmod -R u=rwX,go=rX "${folder}")
  must(find "${folder}" -exec touch --no-dereference --date=@${date} {} +)
endfunction()

find_date(date)
set(ENV{SOURCE_DATE_EPOCH} "${date}")
execute_process(COMMAND env LC_ALL=C date --utc --rfc-email --date=@${date}
  OUTPUT_VARIABLE date_of_change OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
finish(sdpsol "${CPACK_TEMPORARY_DIRECTORY}/runtime"
  libsdp-dev libopenblas-serial-dev libeigen3-dev libcli11-dev nlohmann-json3-dev libjs-three
  libc6-dev)
finish(libzelhost-dev "${CPACK_TEMPORARY_DIRECTORY}/development" nlohmann-json3-dev)
