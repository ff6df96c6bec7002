# Steps that the scripts share; to be sourced. Says what it does while it does it.

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
jobs=${KINEMO_JOBS:-$(nproc)}

say() {
  printf '\n== %s\n' "$*"
}

install_dependencies() {
  say "Packages"
  "$root/scripts/install_deps.sh"
}

# build PRESET [TARGET...]: configures and builds into build/PRESET.
build() {
  local preset=$1
  shift
  say "Configuring the preset '$preset'"
  (cd "$root" && cmake --preset "$preset" --log-level=NOTICE)
  say "Building${*:+ $*} with $jobs jobs (the first build takes some minutes)"
  cmake --build "$root/build/$preset" -j "$jobs" ${*:+--target "$@"}
}
