#!/usr/bin/env bash
# Installs what is missing, builds, and runs all tests. PRESET is one of CMakePresets.json, release by default:
#   scripts/test.sh [PRESET] [ctest options]
# KINEMO_CIRCUITS names a folder of netlists that are compared with what ngspice makes of them; without it the
# project's own examples are.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

preset=release
if [ $# -gt 0 ] && [[ $1 != -* ]]; then
  preset=$1
  shift
fi

install_dependencies
build "$preset"

say "Tests"
cd "$root/build/$preset"
ctest --output-on-failure -j "$jobs" "$@"
