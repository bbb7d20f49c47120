#!/usr/bin/env bash
# check_package.sh BUILD_DIR SOURCE_DIR WORK_DIR: installs the build into a temporary prefix and builds and runs
# examples/minimal against it, once by find_package and once by pkg-config.
set -euo pipefail
build=$1 source=$2 work=$3
prefix=$work/prefix
rm -rf "$work"
mkdir -p "$work"

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

echo "-- by find_package"
cp -r "$source/examples/minimal" "$work/find_package"
cmake -S "$work/find_package" -B "$work/find_package/build" -G Ninja -DCMAKE_PREFIX_PATH="$prefix" >"$work/configure.log"
cmake --build "$work/find_package/build" >"$work/build.log" || { cat "$work/build.log"; exit 1; }
expect_replies "$work/find_package/build/minimal"

echo "-- by pkg-config"
export PKG_CONFIG_PATH="$prefix/lib/pkgconfig:$prefix/lib/$(uname -m)-linux-gnu/pkgconfig"
read -ra flags <<<"$(pkg-config --cflags --libs tarnis)"
libdir=$(pkg-config --variable=libdir tarnis)
"${CXX:-c++}" -std=c++20 -fPIC "$source/examples/minimal/main.cpp" -o "$work/minimal" "${flags[@]}" -Wl,-rpath,"$libdir"
expect_replies "$work/minimal"

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
