#!/bin/sh
# SPDX-License-Identifier: MIT
# Warnings are read by other programs: warning_lines.sh TARVEL-BATCH
# Vim's quickfix list, with its default errorformat, finds file and line of each, and so does the
# regular expression of a problem matcher. Exits with 77 where vim is not installed.
set -u
program=$1
command -v vim >/dev/null || exit 77

work=$(mktemp -d) || exit 1
trap 'rm -rf "$work"' EXIT
cd "$work" || exit 1
cat >'my lib.bib' <<'END'
@article{a,
  title = "T {DNA}", year = {2001},
  numpages = {5},
  note = {Mail a@b.org, see {Jones}},
  url = {x}}
}
@article{b@c,
}
@Online{d,
  author = {A. Roe and others}
END
for operation in text journals clean-doubles clean-authors clean-characters clean-tags; do
  "$program" --warnings - "$operation" 'my lib.bib' 2>&1 >/dev/null | grep -v '^\[' |
    grep warning:
  "$program" --warnings all.tsv "$operation" 'my lib.bib' >/dev/null 2>&1
  cat all.tsv >>every.tsv
done >lines
cut -f 3 every.tsv >wanted

cat >script.vim <<'END'
set errorformat&
cgetfile lines
call writefile(map(filter(getqflist(), 'v:val.valid'), 'bufname(v:val.bufnr) . ":" . v:val.lnum'), 'found')
qa!
END
vim -u NONE -N -i NONE -es -S script.vim </dev/null
sed 's/^/my lib.bib:/' wanted >expected
failures=0
cmp expected found || failures=1
[ "$(wc -l <wanted)" -gt 20 ] || failures=1

# As a problem matcher has it: file, line, severity, message, code.
sed -nE 's/^([^:]+):([0-9]+): (warning): (.+) \[([a-z-]+)\]$/\5	\1	\2/p' lines >matched
cut -f 1-3 every.tsv >codes
cmp codes matched || failures=1
[ "$failures" -eq 0 ]
