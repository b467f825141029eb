#!/bin/bash
# Installs a build into an empty prefix and builds the example of an outside host against it, by
# find_package and by pkg-config; then runs the installed program from another place.
set -eu
cd "$(dirname "$0")/.."
build=$1
prefix=$(mktemp -d)
trap 'rm -rf "$prefix"' EXIT

cmake --install "$build" --prefix "$prefix/first" >/dev/null
expected='request 1: command 4 for "report"
request 2: command 2 for ""
table: Output Document, 1 cell
message: There is no keyword NAEM in this command. Did you mean NAME?'

cmake -S examples/embedding -B "$prefix/cmake" -DCMAKE_PREFIX_PATH="$prefix/first" >/dev/null
cmake --build "$prefix/cmake" >/dev/null
[ "$("$prefix/cmake/embedding")" = "$expected" ] || { echo "find_package: another output"; exit 1; }

# The prefix of a package file is the one of the configuration, as for every package.
export PKG_CONFIG_PATH="$prefix/first/lib/pkgconfig:$prefix/first/lib/x86_64-linux-gnu/pkgconfig"
flags=$(pkg-config --define-variable=prefix="$prefix/first" --cflags --libs vornwout)
libraries=$(pkg-config --define-variable=prefix="$prefix/first" --variable=libdir vornwout)
g++ -std=c++20 examples/embedding/main.cpp -o "$prefix/by_pkg_config" $flags "-Wl,-rpath,$libraries"
[ "$("$prefix/by_pkg_config")" = "$expected" ] || { echo "pkg-config: another output"; exit 1; }

mv "$prefix/first" "$prefix/second"
printf 'OUTPUT COMMENT TEXT="moved".\n' >"$prefix/job.qxs"
"$prefix/second/bin/vornwout" run "$prefix/job.qxs" | grep -q moved
printf "STB PRINT PROCEDURE='output.qbb' LANGUAGE='de'.\n" >"$prefix/job.qxs"
"$prefix/second/bin/vornwout" run "$prefix/job.qxs" | grep -q 'TFOMarch *│ März'
