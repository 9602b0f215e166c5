# shellcheck shell=bash disable=SC2034
# Sourced by the scripts in the root: the Debian packages that building everything takes.
KETRA_PACKAGES=(cmake ninja-build g++ libgtest-dev libcli11-dev nlohmann-json3-dev)
# What the benchmarks take besides; they leave out a peer that is absent. CI installs them for --full only.
KETRA_PEERS=(libbenchmark-dev libssl-dev libgnutls28-dev libbotan-2-dev android-libboringssl-dev ca-certificates)
# What the presets for other platforms take besides.
KETRA_I386=(g++-multilib googletest)
KETRA_WINDOWS=(g++-mingw-w64-x86-64-posix googletest wine64)
KETRA_WINDOWS_32=(g++-mingw-w64-i686-posix)

# need_packages PACKAGE...: installs what is missing when it may, otherwise names it and fails. Where there is no dpkg,
# the configure step tells what is missing. Says nothing on standard output.
need_packages() {
  command -v dpkg-query >/dev/null || return 0
  local package missing=()
  for package in "$@"; do
    dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q '^install ok installed$' || missing+=("$package")
  done
  [ ${#missing[@]} -eq 0 ] && return 0
  if [ "$(id -u)" -eq 0 ] && command -v apt-get >/dev/null; then
    echo "installing ${missing[*]} ..." >&2
    export DEBIAN_FRONTEND=noninteractive
    { apt-get install -y "${missing[@]}" || { apt-get update && apt-get install -y "${missing[@]}"; }; } \
      </dev/null >/dev/null && return 0
  fi
  echo "missing packages; as root: apt-get install ${missing[*]}" >&2
  return 1
}
