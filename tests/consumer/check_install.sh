#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Installs the build and uses the library from outside: check_install.sh BUILD_FOLDER CMAKE
set -euo pipefail
source=$(cd "$(dirname "$0")/../.." && pwd)
build=$1 cmake=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
fail() { echo "FAILED: $*" >&2; exit 1; }

"$cmake" --install "$build" --prefix "$work/installed" >/dev/null
library=$(find "$work/installed" -name libfbx_to_ts3d.so.0)
[ -n "$library" ] || fail "no library with a version in its name"
exports=$(nm -D --defined-only "$library" | awk '{ print $3 }' | sort | tr '\n' ' ')
[ "$exports" = "ConvertFBXFile ConvertFBXFile2 ConvertFBXFile3 ConvertFBXFileFinish " ] || fail "visible are: $exports"

"$cmake" -S "$source/tests/consumer" -B "$work/consumer" -DCMAKE_PREFIX_PATH="$work/installed" \
  -DHOST_SOURCE="$source/samples/host/host.c" >"$work/log" 2>&1 &&
  "$cmake" --build "$work/consumer" >>"$work/log" 2>&1 || { cat "$work/log"; fail "the consumer does not build"; }

model() { mkdir "$work/$1" && cp "$source/samples/scout.fbx" "$work/$1"; }
model c && model cpp && model python
"$work/consumer/consumer_c" "$work/c" scout.fbx | grep -x "finished with result 0" >/dev/null || fail "the host in C"
(cd "$work/cpp" && "$work/consumer/consumer_cpp" "$work/cpp/scout.fbx") >/dev/null || fail "the host in C++"
python3 "$source/samples/host/host.py" "$library" "$work/python" scout.fbx | grep -x "finished with result 0" >/dev/null ||
  fail "the host in Python"
for folder in c python; do
  [ "$(ls "$work/$folder" | tr '\n' ' ')" = "scout.czp scout.fbx scout.xfg " ] || fail "left over: $(ls "$work/$folder")"
done
cmp "$work/c/scout.xfg" "$work/python/scout.xfg" || fail "hosts of two languages get different documents"

export PKG_CONFIG_PATH=$(dirname "$(find "$work/installed" -name fbx_to_ts3d.pc)")
# shellcheck disable=SC2046
cc "$source/samples/host/host.c" $(pkg-config --cflags --libs fbx_to_ts3d) -o "$work/by_pkg_config" ||
  fail "the pkg-config file"
"$work/installed/bin/fbx2czp" --version >/dev/null || fail "the installed tool does not run"
echo "the installed library serves hosts in C, C++ and Python"
