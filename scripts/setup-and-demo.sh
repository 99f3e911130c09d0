#!/usr/bin/env bash
# Installs what is missing, builds the library and the qanres tool, and runs the demo on
# the bundled example resources.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-deps.sh
cmake --preset default -G Ninja >/dev/null
cmake --build --preset default -j2
scripts/demo.sh build/default
