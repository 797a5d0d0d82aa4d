# shellcheck shell=bash disable=SC2034
# Shared by the scripts of this folder: what has to be installed, and how the tree is built.
# To be sourced by bash with the root of the tree as the working directory.

# Debian packages, by what they are for.
packages_build=(
  g++ cmake ninja-build pkg-config ccache
  libsigc++-3.0-dev libavformat-dev libavcodec-dev libavutil-dev libsoxr-dev librubberband-dev librtaudio-dev libtag1-dev
  libcairo2-dev libfmt-dev libpugixml-dev libcli11-dev nlohmann-json3-dev
  libgtest-dev libgmock-dev librapidcheck-dev
)
packages_test=(ffmpeg sox lame twolame espeak-ng pulseaudio pulseaudio-utils jackd2 python3-mutagen
  libimage-exiftool-perl libsndfile1-dev sndfile-programs mediainfo)
packages_demo=(parsec47-data espeak-ng ffmpeg lame)
packages_sanitizers=(clang libclang-rt-14-dev)

stop() {
  echo "$0: $*" >&2
  exit 1
}

missing_packages() {
  local package
  for package in "$@"; do
    [ "$(dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null)" = installed ] || echo "$package"
  done
}

# Installs what is missing of the packages named, or says why it may not.
need_packages() {
  if ! command -v dpkg-query >/dev/null; then
    echo "This is no Debian system; it needs what Debian calls: $*" >&2
    return
  fi
  local missing=() root=()
  mapfile -t missing < <(missing_packages "$@")
  [ ${#missing[@]} -eq 0 ] && return
  echo "Missing Debian packages: ${missing[*]}"
  if [ "$(id -u)" -ne 0 ]; then
    command -v sudo >/dev/null || stop "they can be installed by root only, and there is no sudo. As root: apt-get install ${missing[*]}"
    root=(sudo)
  fi
  echo "Installing them ..."
  local apt=("${root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -q)
  "${apt[@]}" update || echo "The lists of packages could not be brought up to date; trying with those at hand" >&2
  "${apt[@]}" install -y --no-install-recommends "${missing[@]}" ||
    stop "the packages could not be installed: ${missing[*]}"
}

# build_preset PRESET [TARGET...]: configures once, then builds what has changed.
build_preset() {
  local preset=$1
  shift
  [ -f "build/$preset/build.ninja" ] || cmake --preset "$preset"
  cmake --build --preset "$preset" ${1:+--target "$@"}
}
