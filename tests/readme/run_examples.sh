#!/usr/bin/env bash
# run_examples.sh SOURCE BIN WORK: runs the README's ```console blocks (lines after "$ ") in one shell
# in the folder WORK, and compares its ```cpp block with the example program that the tests build.
set -euo pipefail
source=$1 bin=$2 work=$3

rm -rf "$work"
mkdir -p "$work"
awk '/^```console/ { on = 1; next } /^```/ { on = 0 } on && sub(/^\$ /, "")' "$source/README.md" |
  grep -v '^\./scripts/' >"$work/examples.sh"
count=$(grep -c '^greycard' "$work/examples.sh")
[ "$count" -ge 8 ] || { echo "only $count examples found in the README" >&2; exit 1; }
(cd "$work" && PATH="$bin:$PATH" bash -euxo pipefail examples.sh)

awk '/^```cpp/ { on = 1; next } /^```/ { on = 0 } on' "$source/README.md" |
  diff - "$source/examples/fit_chart/main.cpp" ||
  { echo "the README's program is not examples/fit_chart/main.cpp" >&2; exit 1; }
