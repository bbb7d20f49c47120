#!/usr/bin/env bash
# check_package.sh BUILD_DIR SOURCE_DIR WORK_DIR: installs the build into a temporary home and builds against it, by
# find_package, what docs/host.md tells a stranger to write and to type, and the examples minimal, first and plot2d; by
# pkg-config, examples/minimal.
set -euo pipefail
build=$1 source=$2 work=$3
export HOME=$work/home
prefix=$HOME/.local
rm -rf "$work"
mkdir -p "$prefix"

cmake --install "$build" --prefix "$prefix" >"$work/install.log"

# Nothing of the build or source tree may be named in what is installed as text.
if grep -rIlF -e "$build" -e "$source" "$prefix"; then
  echo "the files above name the build or source tree"
  exit 1
fi
[ -z "$(find "$prefix" -name '*_p.h')" ] || { echo "private headers are installed"; exit 1; }

expect_replies() {
  local output
  output=$(timeout 60 "$1" "$prefix/bin/tarnis-simserver")
  printf '%s\n' "$output"
  [ "$(grep -c '^reply: ' <<<"$output")" -eq 3 ] || { echo "$1: expected three replies"; exit 1; }
  grep -q '^state: RUNNING' <<<"$output" || { echo "$1: the server does not run"; exit 1; }
}

# quietly COMMAND...: shows the output only when the command fails.
quietly() {
  "$@" >"$work/output.log" 2>&1 || { cat "$work/output.log"; exit 1; }
}

echo "-- docs/host.md in an empty folder"
documents=$source/tests/project/check_documents.py
python3 "$documents" "$source" --write docs/host.md "$work/stranger/myhost"
python3 "$documents" "$source" --typed docs/host.md tests/project/check_package.sh >"$work/typed.sh"
(cd "$work/stranger" && quietly bash -eu "$work/typed.sh")
for step in a_request b_histogram c_settings d_window 1_connect 2_commands 3_live1d 4_windows 5_restart; do
  [ -x "$work/stranger/myhost/build/host_$step" ] || { echo "docs/host.md builds no host_$step"; exit 1; }
done

echo "-- by find_package"
for example in minimal first plot2d; do
  cp -r "$source/examples/$example" "$work/$example"
  quietly cmake -S "$work/$example" -B "$work/$example/build" -G Ninja -DCMAKE_PREFIX_PATH="$prefix"
  quietly cmake --build "$work/$example/build"
done
expect_replies "$work/minimal/build/minimal"
PATH=$prefix/bin:$PATH quietly timeout 60 "$work/first/build/first"
grep -q 'state: ' "$work/output.log" || { cat "$work/output.log"; echo "first: expected the server's state"; exit 1; }
quietly timeout 60 "$work/plot2d/build/plot2d" --picture "$work/plot2d.png"
[ -s "$work/plot2d.png" ] || { echo "plot2d: no picture"; exit 1; }

echo "-- by pkg-config"
export PKG_CONFIG_PATH="$prefix/lib/pkgconfig:$prefix/lib/$(uname -m)-linux-gnu/pkgconfig"
read -ra flags <<<"$(pkg-config --cflags --libs tarnis)"
libdir=$(pkg-config --variable=libdir tarnis)
"${CXX:-c++}" -std=c++20 -fPIC "$source/examples/minimal/main.cpp" -o "$work/by_pkg_config" "${flags[@]}" -Wl,-rpath,"$libdir"
expect_replies "$work/by_pkg_config"

echo "-- version file"
cat >"$work/CMakeLists.txt" <<'CMAKE'
cmake_minimum_required(VERSION 3.25)
project(Refused LANGUAGES CXX)
find_package(Tarnis 1.0 QUIET)
if(Tarnis_FOUND)
  message(FATAL_ERROR "version 1.0 was accepted")
endif()
find_package(Tarnis 0.1 REQUIRED)
CMAKE
cmake -S "$work" -B "$work/refused" -DCMAKE_PREFIX_PATH="$prefix" >/dev/null
echo "package: good"
