# Sourced by the scripts beside it.
# shellcheck shell=bash

# pack BUILD FOLDER: makes the packages of what is built; they land in FOLDER. The umask
# of whoever packs is in the frame around what is packed, and there alone.
pack() {
  local log=$2/log
  mkdir -p "$2"
  if ! (umask 022 && cpack --config "$1/CPackConfig.cmake" -B "$2") >"$log" 2>&1; then
    cat "$log" >&2
    return 1
  fi
  rm -rf "$2/_CPack_Packages" "$log"
}

# same_packages FOLDER FOLDER
same_packages() {
  local one
  for one in "$1"/*.deb; do
    cmp "$one" "$2/${one##*/}" || return 1
  done
}
