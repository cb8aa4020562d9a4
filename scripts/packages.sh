# shellcheck shell=bash disable=SC2034  # the lists are for whoever sources this
# Sourced by the other scripts: makes sure that the Debian packages they name are there.

build_packages=(g++ cmake ninja-build libopencv-core-dev libopencv-imgproc-dev
  libopencv-imgcodecs-dev libcli11-dev nlohmann-json3-dev libnlopt-dev liblcms2-dev libraw-dev
  librsvg2-dev libxxhash-dev pkg-config fonts-dejavu-core)
python_packages=(pybind11-dev python3-dev python3-numpy)
check_packages=(clang clang-format clang-tidy libclang-rt-14-dev shellcheck codespell)
test_packages=(libgtest-dev libgmock-dev libbenchmark-dev libgsl-dev
  opencolorio-tools libimage-exiftool-perl python3-yaml python3-pytest python3-hypothesis mypy
  python3-pip python3-skbuild python3-distributed)

# need_packages NAME...: installs what is missing when it may, else says what to install and stops.
need_packages() {
  local missing=() name
  for name in "$@"; do
    dpkg-query -W -f='${Status}\n' "$name" 2>/dev/null | grep -q '^install ok installed$' ||
      missing+=("$name")
  done
  [ ${#missing[@]} -eq 0 ] && return

  local as_root=()
  if [ "$(id -u)" -ne 0 ]; then
    if command -v sudo >/dev/null && sudo -n true 2>/dev/null; then
      as_root=(sudo -n)
    else
      echo "These Debian packages are missing; install them as root and start again:" >&2
      echo "  apt-get install --no-install-recommends ${missing[*]}" >&2
      exit 1
    fi
  fi
  echo "Installing ${missing[*]}"
  "${as_root[@]}" apt-get update -qq
  "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
    apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
}
