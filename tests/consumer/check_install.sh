#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Installs the build and uses the library from outside: check_install.sh BUILD_FOLDER CMAKE
set -euo pipefail
source=$(cd "$(dirname "$0")/../.." && pwd)
samples=$source/samples/host
build=$1 cmake=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
fail() { echo "FAILED: $*" >&2; exit 1; }

"$cmake" --install "$build" --prefix "$work/installed" >/dev/null
library=$(find "$work/installed" -name libfbx_to_ts3d.so.0)
[ -n "$library" ] || fail "no library with a version in its name"
exports=$(nm -D --defined-only "$library" | awk '{ print $3 }')
others=$(grep -vxE 'ConvertFBXFile[23]?|ConvertFBXFileFinish|FbxToTs3d[A-Z][A-Za-z]*' <<<"$exports" || true)
[ -z "$others" ] || fail "visible are: $others"
for name in $(grep -oE '(ConvertFBXFile|FbxToTs3d)[A-Za-z0-9]*\(' "$source/include/fbx_to_ts3d.h" | tr -d '(' | sort -u); do
  grep -qx "$name" <<<"$exports" || fail "not visible is: $name"
done

"$cmake" -S "$source/tests/consumer" -B "$work/consumer" -DCMAKE_PREFIX_PATH="$work/installed" \
  -DSAMPLES="$samples" >"$work/log" 2>&1 &&
  "$cmake" --build "$work/consumer" >>"$work/log" 2>&1 || { cat "$work/log"; fail "the hosts do not build"; }

# run NAME COMMAND... : runs a host in a folder of its own that holds a model with pictures
run() {
  local folder="$work/$1 hôst"
  mkdir "$folder" && cp -r "$source/samples/scout.fbx" "$source/samples/textures" "$folder"
  (cd "$folder" && shift && "$@") | grep -x "finished with result 0" >/dev/null || fail "the host in $1"
}
for name in host_c host_cpp; do
  run $name "$work/consumer/$name" "$work/$name hôst/scout.fbx" "$work/$name hôst/scout.czp"
done
run python python3 "$samples/host.py" "$library" scout.fbx scout.czp
hosts="host_cpp python"
if command -v mcs >/dev/null; then
  mcs -warnaserror -out:"$work/Host.exe" "$samples/Host.cs" || fail "the host in C# does not build"
  run csharp env LD_LIBRARY_PATH="$(dirname "$library")" mono "$work/Host.exe" scout.fbx scout.czp
  hosts="$hosts csharp"
fi
for name in $hosts; do
  [ "$(ls "$work/$name hôst" | tr '\n' ' ')" = "scout.czp scout.fbx textures " ] || fail "left over by $name"
  diff <(unzip -p "$work/host_c hôst/scout.czp" | cksum) <(unzip -p "$work/$name hôst/scout.czp" | cksum) ||
    fail "hosts of two languages get different packages: $name"
done
grep -qx cloth.tga <<<"$(unzip -Z1 "$work/host_c hôst/scout.czp")" || fail "the installed library converts no pictures"

run classic_c "$work/consumer/classic_host_c" . scout.fbx
run classic_python python3 "$samples/classic_host.py" "$library" . scout.fbx
cmp "$work/classic_c hôst/scout.xfg" "$work/classic_python hôst/scout.xfg" || fail "classic hosts get different documents"
[ "$(ls "$work/classic_c hôst" | tr '\n' ' ')" = "scout.czp scout.fbx scout.xfg textures " ] || fail "left over"

export PKG_CONFIG_PATH=$(dirname "$(find "$work/installed" -name fbx_to_ts3d.pc)")
# shellcheck disable=SC2046
cc "$samples/host.c" $(pkg-config --cflags --libs fbx_to_ts3d) -o "$work/by_pkg_config" ||
  fail "the pkg-config file"
"$work/installed/bin/fbx2czp" --version >/dev/null || fail "the installed tool does not run"
echo "the installed library serves hosts in C, C++, Python and C#"
