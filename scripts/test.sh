#!/usr/bin/env bash
# Installs what is missing, builds, and runs all tests: the suite in the release build, again under
# AddressSanitizer + UndefinedBehaviorSanitizer, and the two-threads tests under ThreadSanitizer.
# With GREYCARD_PHOTOS=FOLDER the detector is tried on the photographs in that folder too.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/packages.sh
need_packages "${build_packages[@]}" "${test_packages[@]}"

# run_preset PRESET [TARGET...]
run_preset() {
  local preset=$1
  shift
  echo "== $preset"
  cmake --preset "$preset"
  cmake --build --preset "$preset" "${@/#/--target=}"
  ctest --preset "$preset"
}

run_preset tsan colour_tests detect_tests fitting_tests noise_tests
run_preset asan
run_preset release
