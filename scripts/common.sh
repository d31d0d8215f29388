# Shared by ./run and ./check: packages, configuration, build.
# shellcheck shell=bash

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
preset=release
build=$root/build/$preset

# A line of scripts/packages.txt is a package name; "test:" before it marks one that only ./check needs, "long:" one that
# only ./check --long does, "package:" one that only ./package does; "?" after it one that not every release has.
wanted_packages() { # kinds...
  local line
  while read -r line; do
    case $line in
      '' | '#'*) ;;
      *:*) [[ " $* " == *" ${line%%:*} "* ]] && echo "${line#*:}" ;;
      *) echo "$line" ;;
    esac
  done <"$root/scripts/packages.txt" | while read -r line; do
    if [[ $line != *'?' ]]; then echo "$line"; elif is_offered "${line%'?'}"; then echo "${line%'?'}"; fi
  done
}

is_offered() { apt-cache pkgnames "$1" 2>/dev/null | grep -xF -e "$1" >/dev/null; }

missing_packages() {
  local wanted
  mapfile -t wanted < <(wanted_packages "$@")
  command -v dpkg-query >/dev/null || { printf '%s\n' "${wanted[@]}"; return; }
  comm -23 <(printf '%s\n' "${wanted[@]}" | sort -u) \
    <(dpkg-query -W -f='${db:Status-Status} ${Package}\n' "${wanted[@]}" 2>/dev/null | sed -n 's/^installed //p' | sort -u)
}

# Installs what is missing where that is possible, and otherwise names it; the build then makes do with what there is.
install_packages() {
  local missing sudo=()
  mapfile -t missing < <(missing_packages "$@")
  ((${#missing[@]})) || return 0
  if ! command -v apt-get >/dev/null; then
    echo "Not a Debian system: please install what corresponds to: ${missing[*]}" >&2
    return 0
  fi
  if ((EUID != 0)); then
    command -v sudo >/dev/null || { echo "Please install as root: ${missing[*]}" >&2; return 0; }
    sudo=(sudo)
  fi
  echo "Installing: ${missing[*]}"
  export DEBIAN_FRONTEND=noninteractive
  "${sudo[@]}" apt-get update -qq || true
  "${sudo[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null || true
  mapfile -t missing < <(missing_packages "$@")
  ((${#missing[@]})) && echo "Could not be installed: ${missing[*]}" >&2
  return 0
}

configure_and_build() { # preset, target (all when missing)
  local name=$1 target=${2:-all}
  command -v cmake >/dev/null || { echo "CMake is missing: nothing can be built." >&2; return 1; }
  local jobs log options=()
  jobs=$(nproc 2>/dev/null || echo 2)
  log=$root/build/$name.configure.log
  mkdir -p "$root/build"
  command -v ninja >/dev/null || options+=(-G "Unix Makefiles")
  # A build folder that belongs to another place or another generator is configured anew.
  fits_here "$root/build/$name/CMakeCache.txt" || options+=(--fresh)
  (cd "$root" && cmake "${options[@]}" --preset "$name" >"$log" 2>&1) || { cat "$log" >&2; return 1; }
  cmake --build "$root/build/$name" --parallel "$jobs" --target "$target" || return 1
}

fits_here() { # a build folder's cache
  [[ -f $1 ]] || return 0
  grep -qxF "CMAKE_HOME_DIRECTORY:INTERNAL=$root" "$1" || return 1
  local generator=Ninja
  command -v ninja >/dev/null || generator="Unix Makefiles"
  grep -qxF "CMAKE_GENERATOR:INTERNAL=$generator" "$1"
}

# Says what the build had to leave out. Fails when CI must not accept that.
report_left_out() { # preset
  local file=$root/build/$1/left-out.txt
  [[ -s $file ]] || return 0
  sed 's/^/Left out: /' "$file" >&2
  echo >&2
  [[ ${CI:-} != true ]]
}
