#!/bin/sh
# An example host from outside: what it prints and how it exits when the stored text is new, when it is known, and
# when it is that of another font.
# Usage: examples_test.sh PROGRAM FONT EXPECTED OTHER_FONT
set -u
program=$1
font=$2
expected=$3
other=$4
folder=$(mktemp -d) || exit 1
trap 'rm -rf "$folder"' EXIT

check() {
  wanted=$1
  shift
  "$program" "$@" >"$folder/output"
  status=$?
  [ "$status" -eq "$wanted" ] && return
  echo "$program $*: exit status $status, not $wanted"
  exit 1
}

for run in new known; do
  check 0 "$font" "$folder/store"
  diff -u "$expected" "$folder/output" || exit 1
done

check 1 "$other" "$folder/store"
grep -q '^! ' "$folder/output" && grep -qx 'the stored faces differ' "$folder/output" || exit 1

echo 'no stored face' >"$folder/store"
check 2 "$font" "$folder/store" 2>"$folder/errors"
check 2 "$folder/no-such-font" "$folder/store" 2>"$folder/errors"
