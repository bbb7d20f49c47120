#!/usr/bin/env bash
# check_package.sh BUILD_DIR SOURCE_DIR WORK_DIR: installs the build into a temporary home and builds against it, by
# find_package, the programs and commands of docs/host.md, and examples for each component; by pkg-config,
# examples/minimal and programs in C.
set -euo pipefail
build=$1 source=$2 work=$3
export HOME=$work/home
export CMAKE_GENERATOR=Ninja # make may be missing
prefix=$HOME/.local
rm -rf "$work"
mkdir -p "$prefix"

cmake --install "$build" --prefix "$prefix" >"$work/install.log"

# No installed text file may contain a path of the build or source tree.
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
for step in a_request b_histogram c_settings d_window e_options f_process 1_connect 2_commands 3_live1d 4_windows 5_restart; do
  [ -x "$work/stranger/myhost/build/host_$step" ] || { echo "docs/host.md builds no host_$step"; exit 1; }
done

echo "-- by find_package"
for example in minimal first plot2d fitc headless instrument; do
  cp -r "$source/examples/$example" "$work/$example"
  quietly cmake -S "$work/$example" -B "$work/$example/build" -DCMAKE_PREFIX_PATH="$prefix"
  quietly cmake --build "$work/$example/build"
done
expect_replies "$work/minimal/build/minimal"
PATH=$prefix/bin:$PATH quietly timeout 60 "$work/first/build/first"
grep -q 'state: ' "$work/output.log" || { cat "$work/output.log"; echo "first: expected the server's state"; exit 1; }
quietly timeout 60 "$work/plot2d/build/plot2d" --picture "$work/plot2d.png"
[ -s "$work/plot2d.png" ] || { echo "plot2d: no picture"; exit 1; }
quietly "$work/fitc/build/fitc" <"$source/examples/fitc/decay.txt"
grep -q '^lifetime ' "$work/output.log" || { cat "$work/output.log"; echo "fitc: no lifetime"; exit 1; }
quietly timeout 60 "$work/headless/build/headless" "$prefix/bin/tarnis-simserver"
grep -q '^state: ' "$work/output.log" || { cat "$work/output.log"; echo "headless: no reply"; exit 1; }

# needs PROGRAM LIBRARY. A here-string, since grep -q ends at its first hit and would break objdump's pipe.
needs() { grep -q "NEEDED *lib$2\.so" <<<"$(objdump -p "$1")"; }
# refused NAME LANGUAGES ARGUMENT...: find_package(Tarnis ARGUMENT...) fails; prints why, on one line.
refused() {
  local name=$1 languages=$2
  shift 2
  mkdir -p "$work/$name"
  printf 'cmake_minimum_required(VERSION 3.25)\nproject(Refused LANGUAGES %s)\nfind_package(Tarnis %s)\n' \
    "$languages" "$*" >"$work/$name/CMakeLists.txt"
  if cmake -S "$work/$name" -B "$work/$name/build" -DCMAKE_PREFIX_PATH="$prefix" >"$work/output.log" 2>&1; then
    echo "find_package(Tarnis $*) was accepted with LANGUAGES $languages" >&2
    return 1
  fi
  tr -s ' \n' ' ' <"$work/output.log"
}

echo "-- components"
grep -q "no component 'Plots': it has Fit, Core, Tarnis and Hdf5" \
  <<<"$(refused unknown CXX REQUIRED COMPONENTS Core Plots)"
grep -q 'Core of Tarnis needs C++: add CXX to the LANGUAGES' <<<"$(refused c_core C REQUIRED COMPONENTS Core)"
mkdir -p "$work/optional"
cat >"$work/optional/CMakeLists.txt" <<'CMAKE'
cmake_minimum_required(VERSION 3.25)
project(Optional LANGUAGES C)
find_package(Tarnis REQUIRED)
find_package(Tarnis REQUIRED COMPONENTS Fit OPTIONAL_COMPONENTS Tarnis Plots)
if(NOT TARGET Tarnis::Fit OR TARGET Tarnis::Core OR NOT Tarnis_Fit_FOUND OR Tarnis_Tarnis_FOUND OR Tarnis_Plots_FOUND)
  message(FATAL_ERROR "a project in C has the wrong components")
endif()
enable_language(CXX)
find_package(Tarnis REQUIRED COMPONENTS Core)
if(NOT TARGET Tarnis::Core OR TARGET Tarnis::Tarnis)
  message(FATAL_ERROR "Core does not come alone")
endif()
find_package(Tarnis REQUIRED)
if(NOT TARGET Tarnis::Tarnis)
  message(FATAL_ERROR "a project in C++ does not have everything")
endif()
CMAKE
quietly cmake -S "$work/optional" -B "$work/optional/build" -DCMAKE_PREFIX_PATH="$prefix"
# The widget part shows the message boxes of a program that does not call it.
needs "$work/minimal/build/minimal" tarnis || { echo "minimal: the linker dropped libtarnis"; exit 1; }
! needs "$work/headless/build/headless" tarnis || { echo "headless: needs libtarnis"; exit 1; }

echo "-- by pkg-config"
export PKG_CONFIG_PATH="$prefix/lib/pkgconfig:$prefix/lib/$(uname -m)-linux-gnu/pkgconfig"
read -ra flags <<<"$(pkg-config --cflags --libs tarnis)"
libdir=$(pkg-config --variable=libdir tarnis)
"${CXX:-c++}" -std=c++20 -fPIC "$source/examples/minimal/main.cpp" -o "$work/by_pkg_config" "${flags[@]}" -Wl,-rpath,"$libdir"
expect_replies "$work/by_pkg_config"
needs "$work/by_pkg_config" tarnis || { echo "pkg-config: the linker dropped libtarnis"; exit 1; }
for module in tarnis tarnis-core tarnis-fit; do
  read -ra flags <<<"$(pkg-config --cflags --libs $module)"
  "${CC:-cc}" -std=c99 "$source/tests/peak/mpfit_c99.c" -o "$work/c_$module" "${flags[@]}" -lm -Wl,-rpath,"$libdir"
  quietly "$work/c_$module"
done
! needs "$work/c_tarnis-fit" Qt6Core || { echo "tarnis-fit: needs Qt"; exit 1; }

echo "-- version file"
cat >"$work/CMakeLists.txt" <<'CMAKE'
cmake_minimum_required(VERSION 3.25)
project(Refused LANGUAGES CXX)
foreach(version 0.0 0.2 1.0)
  find_package(Tarnis ${version} QUIET)
  if(Tarnis_FOUND)
    message(FATAL_ERROR "version ${version} was accepted")
  endif()
endforeach()
find_package(Tarnis 0.1 REQUIRED)
CMAKE
cmake -S "$work" -B "$work/refused" -DCMAKE_PREFIX_PATH="$prefix" >/dev/null
echo "package: good"
