#!/usr/bin/env bash
# The main job on a fresh machine: installs what is missing, builds the command, renders a photograph
# of the chart under tungsten light, finds the chart in it, fits white-balance gains and a
# colour-correction matrix, and writes the report. Everything lands in out/demo/.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/packages.sh
need_packages "${build_packages[@]}"

cmake --preset release -B build/demo -DGREYCARD_BUILD_TESTS=OFF -DGREYCARD_BUILD_BENCH=OFF -DGREYCARD_PYTHON=OFF
cmake --build build/demo
greycard=$PWD/build/demo/cli/greycard

mkdir -p out/demo
cd out/demo
set -x
"$greycard" simulate -o chart.png --truth truth.json --light A --rotate 12 --tilt 8 --noise 0.01 --seed 1
"$greycard" chart chart.png -o regions.txt --annotate annotated.png
"$greycard" ccm chart.png --light A --gamma VGammaSRGB --json fit.json --report report.html --corrected corrected.png
set +x
echo
echo "Look at $PWD/report.html"
