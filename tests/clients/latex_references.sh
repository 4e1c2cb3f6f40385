#!/bin/sh
# SPDX-License-Identifier: MIT
# Typesets the example paper with the references that Extract writes, in every journal style, and
# has BibTeX read the new libraries: latex_references.sh TARVEL-BATCH EXAMPLES-DIRECTORY [KEEP-DIR]
#
# Fails on any error of pdflatex, on a citation without a reference and on any error of bibtex.
# Exit status 77: pdflatex or bibtex is not installed. With KEEP-DIR the papers are copied there.
set -u
program=$1
examples=$2
keep=${3:-}

command -v pdflatex >/dev/null && command -v bibtex >/dev/null || exit 77

work=$(mktemp -d) || exit 1
trap 'rm -rf "$work"' EXIT
failures=0
fail() {
  echo "FAILED: $1"
  failures=$((failures + 1))
}

# What a user does by hand with the file of references: the file's header and the notes on entries
# of unsupported types are no LaTeX, and the entries of those notes are typed in.
edit_references() { # edit_references EXTRACTED
  sed -e '1,/^\\bibitem/{/^\\bibitem/!d}' -e '/^Attention!$/,/^You have to enter/d' "$1"
  printf '%s\n%s\n\n' '\bibitem{harbour2014data}' 'Harbour Office of Pelmouth, data sheets (2014).'
  printf '%s\n%s\n\n' '\bibitem{karlsen2012logger}' "V. Karlsen, The Logger's Manual (2012)."
}

typeset() { # typeset STYLE
  for _ in 1 2; do
    pdflatex -interaction=nonstopmode -halt-on-error paper.tex >pdflatex.out 2>&1 || {
      fail "$1: pdflatex"
      grep -A4 '^!' pdflatex.out
      return
    }
  done
  grep 'undefined' paper.log && fail "$1: a citation without a reference"
}

read_library() { # read_library STYLE
  {
    printf '%s\n' '\relax' '\bibstyle{plain}' '\bibdata{lit_extract}'
    while read -r key; do printf '\\citation{%s}\n' "$key"; done <keys
  } >library.aux
  # 1 is a warning, such as that of an entry without a journal; 2 and more are errors.
  bibtex library >bibtex.out
  [ $? -le 1 ] || {
    fail "$1: bibtex"
    cat bibtex.out
  }
  [ "$(grep -c '^\\bibitem' library.bbl)" -eq "$(wc -l <keys)" ] ||
    fail "$1: bibtex does not see every entry"
}

for style in acs aps iop nature wiley springer; do
  mkdir "$work/$style"
  cd "$work/$style" || exit 1
  cp "$examples/paper.tex" "$examples/lit.bib" .
  "$program" extract --style "$style" paper.tex lit.bib >tarvel.out 2>&1 || {
    fail "$style: extract"
    cat tarvel.out
    continue
  }
  sed -e '1,/^#$/d' -e '/^$/d' lit_extract.txt >keys  # the header ends with the second '#'
  [ "$(wc -l <keys)" -eq 25 ] || fail "$style: the paper cites 25 works"
  edit_references lit_extract.tex >references.tex
  typeset "$style"
  read_library "$style"
  [ -n "$keep" ] && cp paper.pdf "$keep/$style.pdf"
done
[ "$failures" -eq 0 ] || exit 1
