# Sourced by the other scripts: installs the Debian packages that are missing, and nothing else.

brask_missing_packages() {
  local missing=() package
  for package in "$@"; do
    dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'install ok installed' \
      || missing+=("$package")
  done
  printf '%s\n' "${missing[@]}"
}

brask_ensure_packages() {
  local missing
  mapfile -t missing < <(brask_missing_packages "$@")
  [ "${#missing[@]}" -eq 0 ] || [ -z "${missing[0]}" ] && return 0
  echo "Installing missing packages: ${missing[*]}" >&2
  local sudo=()
  [ "$(id -u)" -eq 0 ] || sudo=(sudo)
  "${sudo[@]}" apt-get update -qq </dev/null >&2 || return 1
  DEBIAN_FRONTEND=noninteractive "${sudo[@]}" apt-get install -y -qq "${missing[@]}" </dev/null >&2
}

BRASK_BUILD_PACKAGES=(g++ cmake make libroaring-dev)
BRASK_TEST_PACKAGES=(libgtest-dev python3 xboard xvfb xauth)

# Configures and builds the given build directory (Release unless a type is given). Further
# arguments go to the configuration; BRASK_TARGET, if set, builds one target only.
brask_build() {
  local dir=$1 type=${2:-Release}
  shift 2 || shift $#
  cmake -S "$BRASK_ROOT" -B "$dir" -DCMAKE_BUILD_TYPE="$type" "$@" >/dev/null || return 1
  cmake --build "$dir" -j "$(nproc)" ${BRASK_TARGET:+--target "$BRASK_TARGET"}
}
