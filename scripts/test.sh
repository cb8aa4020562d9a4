#!/usr/bin/env bash
# Installs what is missing, builds, and runs all tests: the suite in the release build, again under
# AddressSanitizer + UndefinedBehaviorSanitizer, and the two-threads tests under ThreadSanitizer.
# With GREYCARD_PHOTOS=FOLDER the detector is tried on the photographs in that folder too.
# test.sh quick: the suite in the release build alone.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/packages.sh
need_packages "${build_packages[@]}" "${python_packages[@]}" "${test_packages[@]}"

# run_preset PRESET [TARGET...]
run_preset() {
  local preset=$1
  shift
  echo "== $preset"
  cmake --preset "$preset" -DCMAKE_UNITY_BUILD=ON
  cmake --build --preset "$preset" "${@/#/--target=}"
  ctest --preset "$preset"
}

what=${1:-all}
if [ "$what" != all ] && [ "$what" != quick ]; then
  echo "test.sh: \"$what\" is not \"quick\"; without an argument all is run" >&2
  exit 2
fi
if [ "$what" = all ]; then
  run_preset tsan colour_tests detect_tests fitting_tests lut2d_tests noise_tests
  run_preset asan
fi
run_preset release
