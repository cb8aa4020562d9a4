#!/usr/bin/env bash
# What no test sees, on a fresh machine too: format, shellcheck, codespell, clang's build of
# everything (static, with its warnings), the Python wheel, clang-tidy over the sources that changed,
# the library as a guest of another project, and 30 s of every fuzz target.
# check.sh [BASE]: changed means since the commit BASE (default: the one before the last).
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/packages.sh
need_packages "${build_packages[@]}" "${python_packages[@]}" "${test_packages[@]}" "${check_packages[@]}"
base=${1:-HEAD~1}

section() { echo "== $*"; }

section "format"
git ls-files '*.h' '*.cpp' | xargs clang-format --dry-run -Werror

section "shellcheck"
git ls-files '*.sh' .ci/run | xargs shellcheck -x

section "codespell"
# Words of the field, and names that the contract spells so.
git ls-files | grep -v -e '/corpus/' -e '^data/' -e '/golden/' |
  xargs codespell --ignore-words scripts/spelling.txt

section "clang"
cmake --preset fuzz
cmake --build --preset fuzz

section "the wheel that pip makes, without optimisation"
wheel=$(mktemp -d)
CMAKE_ARGS="-DCMAKE_CXX_FLAGS_RELEASE=-O0" /usr/bin/python3 -m pip wheel -q --no-build-isolation --no-deps -w "$wheel" .
/usr/bin/python3 -m pip install -q --no-deps --target "$wheel/site" "$wheel"/greycard-*.whl
(cd "$wheel" && PYTHONPATH=site /usr/bin/python3 -c "import greycard, greycard.core; print(greycard.__file__, greycard.__version__)")
rm -rf "$wheel" _skbuild

section "clang-tidy since $base"
git diff --name-only --diff-filter=d "$base" -- 'src/*.cpp' 'cli/*.cpp' |
  xargs -r -P "$(nproc)" -n 4 clang-tidy -p build/fuzz --quiet

section "as a guest"
cmake -S tests/install/guest -B build/guest -G Ninja -DCMAKE_BUILD_TYPE=Debug \
  -DCMAKE_UNITY_BUILD=ON -DBUILD_SHARED_LIBS=OFF
cmake --build build/guest
build/guest/guest

section "fuzz targets"
found=0
for program in build/fuzz/fuzz/*/*_fuzzer; do
  name=$(basename "$program" _fuzzer)
  folder=$(basename "$(dirname "$program")")
  corpus=$(mktemp -d)
  if ! "$program" -max_total_time=30 -timeout=20 -print_final_stats=1 -artifact_prefix="$corpus/" \
    "$corpus" "fuzz/$folder/corpus/$name" >"$corpus.log" 2>&1; then
    tail -n 40 "$corpus.log"
    found=1
  fi
  echo "$folder/$name: $(sed -n 's/^stat::number_of_executed_units: *//p' "$corpus.log") runs"
done
exit $found
