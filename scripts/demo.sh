#!/usr/bin/env bash
# From a fresh checkout to compiled graphs: installs what is missing, builds, compiles two examples, a real circuit and a
# diagram of several physical domains, draws them, and runs a script that builds a circuit.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

install_dependencies
build release kinemo

kinemo="$root/build/release/bin/kinemo"

show() {
  say "$*"
  shift
  "$@"
}

# Scripts write their pictures into the folder where they are run.
run_script() {
  (cd "$root/build" && "$kinemo" run "$1")
}

show "The library's blocks (first lines)" "$kinemo" blocks | sed -n '1,14p'
show "A two-stage amplifier, from a SPICE netlist: its graph" "$kinemo" compile "$root/examples/amplifier.cir"
show "The same circuit: which pins share a node" "$kinemo" nets "$root/examples/amplifier.cir"
show "A motor drive with masks, a variant, an atomic and an opaque subsystem: its graph" \
  "$kinemo" compile "$root/examples/motor_drive.yaml"
show "The same diagram: checks" "$kinemo" check "$root/examples/motor_drive.yaml"
show "The same diagram: pictures of all its systems" \
  "$kinemo" render "$root/examples/motor_drive.yaml" -o "$root/build/motor_drive.pdf"
show "A script that builds a differential pair, compiles it and asks about it (picture: build/differential_pair.svg)" \
  run_script "$root/examples/differential_pair.kin"
echo "Pictures: build/motor_drive.pdf and build/differential_pair.svg"
