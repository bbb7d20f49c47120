# Common functions of the scripts in this folder; sourced, not run.
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$root"

jobs=${TARNIS_JOBS:-$(nproc)}
# Tests wait for servers and timers half of their time.
export CMAKE_BUILD_PARALLEL_LEVEL=$jobs CTEST_PARALLEL_LEVEL=$((jobs * 2))

# stage NAME COMMAND...: runs the command and prints how long it took.
stage() {
  local name=$1 started status=0
  shift
  printf '== %s\n' "$name"
  started=$(date +%s)
  "$@" || status=$?
  printf '== %s: %s in %d s\n' "$name" "$([ $status -eq 0 ] && echo done || echo "failed ($status)")" \
    $(($(date +%s) - started))
  return $status
}

# usage_from_header: prints the comment at the head of the calling script.
usage_from_header() {
  sed -n '2,/^$/s/^# \{0,1\}//p' "$root/script/$(basename "$0")"
}

# build PRESET [TARGET...]: configures and builds build/PRESET; the configuration's output is shown only when it fails.
build() {
  local preset=$1 output
  shift
  output=$(cmake --preset "$preset" 2>&1) || { printf '%s\n' "$output"; return 1; }
  cmake --build --preset "$preset" ${1:+--target "$@"}
  # The header of a changed form is generated in the first pass; Ninja detects it in the second.
  cmake --build --preset "$preset" ${1:+--target "$@"} > /dev/null
}
