#!/bin/sh
# An example host from outside: what it prints and how it exits when the stored text is new, when it is known, and
# when it is that of another font.
# Usage: examples_test.sh PROGRAM EXPECTED
set -u
fonts=/usr/share/fonts/truetype
bold=$fonts/dejavu/DejaVuSans-Bold.ttf
collection=$fonts/wqy/wqy-zenhei.ttc
folder=$(mktemp -d) || exit 1
trap 'rm -rf "$folder"' EXIT

check() {
  wanted=$1
  shift
  "$program" "$@" >"$folder/output" 2>"$folder/errors"
  status=$?
  [ "$status" -eq "$wanted" ] && return
  echo "$program $*: exit status $status, not $wanted"
  exit 1
}

program=$1
for run in new known; do
  check 0 "$bold" "$folder/store"
  diff -u "$2" "$folder/output" || exit 1
  check 0 "$collection" "$folder/collection"
  [ "$(grep -c -e '^face [012]$' -e '^  kerning checksum  44764C75$' "$folder/output")" -eq 6 ] || exit 1
done
# A file with as many faces, whose answers are compared, and one with more.
for other in "$fonts/dejavu/DejaVuSans.ttf" "$collection"; do
  check 1 "$other" "$folder/store"
  grep -q '^! ' "$folder/output" && grep -qx 'the stored faces differ' "$folder/output" || exit 1
done

echo 'no stored face' >"$folder/store"
check 2 "$bold" "$folder/store"
check 2 "$folder/no-such-font" "$folder/store"
