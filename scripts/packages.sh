# Sourced by the scripts beside it. Debian packages are installed only where
# they are missing, so that a second call is quick and needs no network.
# shellcheck shell=bash

# What the two commands of the README need to be built.
# shellcheck disable=SC2034  # read by the scripts that source this file
BUILD_PACKAGES=(g++ cmake ninja-build libsdp-dev libopenblas-serial-dev libeigen3-dev
  libcli11-dev nlohmann-json3-dev libjs-three)

# What only the tests need.
# shellcheck disable=SC2034
TEST_PACKAGES=(libgtest-dev libbenchmark-dev libgmp-dev clang-format clang-tidy shellcheck clang
  libclang-rt-dev lld python3 python3-jsonschema groff-base chromium chromium-driver python3-selenium)

# What only the measurement of coverage needs.
# shellcheck disable=SC2034
COVERAGE_PACKAGES=(gcovr)

# What only the benchmarks need: what to measure against.
# shellcheck disable=SC2034
BENCH_PACKAGES=(coinor-csdp sdpa python3-cvxopt)

# What only making packages, and looking at them, needs.
# shellcheck disable=SC2034
PACKAGE_PACKAGES=(dpkg-dev file pkgconf)
# shellcheck disable=SC2034
PACKAGE_ROOT_PACKAGES=(debootstrap lintian)

# install_packages PACKAGE...: installs those that are not installed yet, as
# root or through sudo.
install_packages() {
  local missing=() package status root=()
  for package in "$@"; do
    status=$(dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null) || status=
    [ "$status" = installed ] || missing+=("$package")
  done
  [ ${#missing[@]} -gt 0 ] || return 0

  if [ "$(id -u)" -ne 0 ]; then
    if ! command -v sudo >/dev/null; then
      echo "$0: missing packages: ${missing[*]}" >&2
      echo "$0: installing them takes root, and there is no sudo here" >&2
      return 1
    fi
    root=(sudo)
  fi
  echo "== installing ${missing[*]}"
  # Another apt may be at work on a machine that has just started: wait for it.
  local apt=("${root[@]}" env DEBIAN_FRONTEND=noninteractive
    apt-get -qq -o DPkg::Lock::Timeout=300)
  "${apt[@]}" update
  "${apt[@]}" install -y --no-install-recommends "${missing[@]}" >/dev/null
}
