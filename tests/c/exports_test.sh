#!/bin/sh
# Compares three lists of names: the functions that the header declares, the export list, and the symbols that the
# shared library defines for others. usage: exports_test.sh SOURCE_DIR LIBRARY NM
set -u
declared=$(grep -v '^ \*' "$1/include/quillmark/quillmark.h" | sed -n 's/^QM_EXPORT .*\(QM_[A-Za-z]*\)(.*/\1/p' | LC_ALL=C sort)
listed=$(sed -n 's/^ *\(QM_[A-Za-z]*\);$/\1/p' "$1/cmake/quillmark.map" | LC_ALL=C sort)
defined=$("$3" -D --defined-only "$2" | awk '{ print $NF }' | LC_ALL=C sort)
status=0
count=$(echo "$declared" | wc -l)
[ "$count" -eq 28 ] || { echo "the header declares $count functions"; status=1; }
[ "$listed" = "$declared" ] || { echo "export list: $listed"; status=1; }
[ "$defined" = "$declared" ] || { echo "library: $defined"; status=1; }
exit $status
