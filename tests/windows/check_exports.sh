#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Checks what a Windows host sees: check_exports.sh OBJDUMP CPU DLL HOST TOOL
set -euo pipefail
objdump=$1 cpu=$2 dll=$3
fail() { echo "FAILED: $*" >&2; exit 1; }

declare -A formats=([i686]=pei-i386 [x86_64]=pei-x86-64)
for file in "${@:3}"; do
  "$objdump" -f "$file" | grep "file format ${formats[$cpu]}$" >/dev/null || fail "$file is not for $cpu"
  # What every Windows has; compiler runtimes and zlib must be inside.
  others=$("$objdump" -p "$file" | sed -n 's/^\tDLL Name: //p' | grep -viE '^(kernel32|msvcrt|advapi32|fbx_to_ts3d)\.dll$' || true)
  [ -z "$others" ] || fail "$file needs $others"
done

# Names without "_" before or "@12" behind them: the caller removes the arguments.
exports=$("$objdump" -p "$dll" | sed -n '/\[Ordinal\/Name Pointer\] Table/,/^$/s/^\t\[ *[0-9]*\] //p' | sort | tr '\n' ' ')
header=$(cd "$(dirname "$0")/../.." && pwd)/include/fbx_to_ts3d.h
wanted=$(grep -oE '(ConvertFBXFile|FbxToTs3d)[A-Za-z0-9]*\(' "$header" | tr -d '(' | sort -u | tr '\n' ' ')
[ "$exports" = "$wanted" ] || fail "exported are: $exports"
"$objdump" -p "$4" | grep ConvertFBXFile3 >/dev/null || fail "the host does not import ConvertFBXFile3"
echo "machine, imports and exports are as they should be"
