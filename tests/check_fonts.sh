#!/bin/sh
# Fails on a font of the machine that tests, fuzz targets, examples or benchmarks name and that no package which
# script/bootstrap names brings: on another machine it would be missing. A name counts when it is written with its
# folder, or is that of a font which some installed package brings.
set -u
cd "$1" || exit 1
command -v dpkg-query >/dev/null || exit 77
{
  tr -s '()= ' '\n' <script/bootstrap | sed 's/^/package /'
  dpkg-query -S '/usr/share/fonts/*' | sed 's/, /,/g; s/^/owned /'
  grep -rIhoE --exclude=check_fonts.sh \
    '/usr/share/fonts/[A-Za-z0-9_./-]+|[A-Za-z0-9_-]+\.(ttf|ttc|otf|otc|t1|pfb|pfa|afm)' tests fuzz examples bench |
      sed "s|/*$||; s/^/named /" | sort -u
} | awk '
  $1 == "package" { listed[$2] = 1 }
  $1 == "owned" {
    owners = $2
    sub(/:$/, "", owners)
    count = split(owners, each, ",")
    name = $3
    sub(/.*\//, "", name)
    brought[$3] = brought[$3] " " owners
    if (name ~ /\.[a-z0-9]+$/) brought[name] = brought[name] " " owners
    for (i = 1; i <= count; ++i) if (each[i] in listed) installed[$3] = installed[name] = 1
  }
  $1 == "named" && !($2 in installed) && ($2 ~ /\// || $2 in brought) {
    print $2 " comes with no package of script/bootstrap" ($2 in brought ? ", but with" brought[$2] : "")
    status = 1
  }
  END { exit status }'
