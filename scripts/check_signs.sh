#!/usr/bin/env bash
# Every public header carries a sign (api/greycard/groups.h), everything deliberate has its place in
# docs/contract.md, and the places named there exist.
set -euo pipefail
cd "$(dirname "$0")/.."
page=docs/contract.md
wrong() { echo "$*" && found=1; }
found=0
while read -r header; do
  grep -qE '^/// \\(ingroup (contract|own)|defgroup)' "$header" ||
    wrong "$header: no sign; which of the groups contract and own is it in?"
done < <(find api/greycard -name '*.h')
while read -r file; do
  grep -qF "\`${file##*/}\`" "$page" || wrong "$file: something deliberate that $page doesn't tell of"
done < <(grep -rlwiE 'deliberate(ly)?' api src)
while read -r name; do
  [ -n "$(find api src -name "$name")" ] || wrong "$page: there is no file $name"
done < <(grep -oE "\`[a-z0-9_]+\.(h|cpp)\`" "$page" | tr -d "\`" | sort -u)
exit "$found"
