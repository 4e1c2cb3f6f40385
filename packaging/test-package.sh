#!/bin/sh
# SPDX-License-Identifier: MIT
# Installs a package in a clean Debian 12 below a temporary directory, as a user runs every
# operation and opens the dialog, removes the package, looks for what it left, and purges it. Then
# autopkgtest runs debian/tests against it, if the source package is in the same directory.
#
#   packaging/test-package.sh [PACKAGE.deb [PREVIOUS.deb]]      (build/package/tarvel_*.deb)
#
# With a previous package that one is installed first and then upgraded. Needs root, debootstrap,
# autopkgtest and a Debian mirror; see bare_root.sh for TARVEL_BASE.
set -eu
here=$(cd "$(dirname "$0")" && pwd)
. "$here/bare_root.sh"
own_namespaces "$0" "$@"

package=$(realpath "${1:-$(ls -t "$here"/../build/package/tarvel_*.deb | head -n 1)}")
previous=${2:-}
source_package=${package%_*}.dsc
root=$(mktemp -d)
trap 'remove_root "$root"' EXIT

say "a clean Debian 12"
make_root "$root"

say "what the package depends on, and a display"
in_root "$root" apt-get update -q >/dev/null
in_root "$root" apt-get satisfy -q -y --no-install-recommends \
  "$(dpkg-deb -f "$package" Depends), xvfb, xdotool, x11-utils" >/dev/null 2>&1

# The names of all files, and what the desktop's databases hold.
list_files() { in_root "$root" find / -xdev -path /proc -prune -o -path /tmp -prune -o -print | sort; }
databases() { in_root "$root" sh -c 'cat /usr/share/mime/globs2 /usr/share/applications/*.cache'; }
list_files >"$root/tmp/before"
databases >"$root/tmp/databases" 2>/dev/null || true

if [ -n "$previous" ]; then
  say "install $(basename "$previous"), to be upgraded"
  cp "$previous" "$root/tmp/previous.deb"
  in_root "$root" apt-get install -q -y --no-install-recommends /tmp/previous.deb >/dev/null 2>&1
fi
say "install $(basename "$package")"
cp "$package" "$root/tmp/tarvel.deb"
in_root "$root" apt-get install -q -y --no-install-recommends /tmp/tarvel.deb >/dev/null 2>&1
version=$(in_root "$root" dpkg-query --show --showformat '${Version}' tarvel)
[ "$version" = "$(dpkg-deb -f "$package" Version)" ] || fail "installed is $version"
in_root "$root" dpkg --verify tarvel
[ "$(in_root "$root" tarvel-batch --version)" = "tarvel-batch (Tarvel) 3.81" ] || fail "the version"

say "run every operation"
as_user "$root" 'mkdir ~/trial && cp /usr/share/doc/tarvel/examples/* ~/trial'
run() { # run ARGUMENTS... -- FILES-WRITTEN...
  arguments=
  while [ "$1" != -- ]; do
    arguments="$arguments $1"
    shift
  done
  shift
  as_user "$root" "cd ~/trial && tarvel-batch$arguments >out 2>&1" || {
    cat "$root/home/user/trial/out"
    fail "tarvel-batch$arguments"
  }
  grep -q '^\[Done!\] Done!$' "$root/home/user/trial/out" || fail "tarvel-batch$arguments: not done"
  for file; do
    [ -s "$root/home/user/trial/$file" ] || fail "tarvel-batch$arguments: no $file"
    echo "tarvel-batch$arguments: $file, $(wc -c <"$root/home/user/trial/$file") bytes"
  done
}
run extract paper.tex lit.bib -- lit_extract.bib lit_extract.txt lit_extract.tex
run compare lit.bib more.bib -- lit_comp_missing.bib lit_comp_equal.bib lit_comp.log
run text lit.bib -- lit_text.txt
run journals more.bib -- more_journal.bib more_journal.log
run clean-doubles more.bib -- more_double.bib more_double.log
run clean-authors more.bib -- more_author.bib more_author.log
run clean-characters more.bib -- more_char.bib more_char.log
run clean-tags more.bib -- more_tag.bib more_tag.log
# These need the files beside the program: the list of journals, the styles.
! grep -q '^0 changes' "$root/home/user/trial/more_journal.log" || fail "no journal was renamed"
grep -q '^.bibitem{arden1998estuaries}' "$root/home/user/trial/lit_extract.tex" || fail "no bibitem"

say "open the dialog"
cat >"$root/tmp/dialog.sh" <<'EOF'
export GSETTINGS_BACKEND=memory NO_AT_BRIDGE=1 GDK_BACKEND=x11
Xvfb -displayfd 3 -screen 0 1280x1024x24 -nolisten tcp 3>/tmp/display 2>/dev/null &
server=$!
for _ in $(seq 100); do [ -s /tmp/display ] && break; sleep 0.1; done
export DISPLAY=:$(cat /tmp/display)
tarvel 2>/tmp/dialog.err &
program=$!
found=
for _ in $(seq 100); do
  found=$(xdotool search --onlyvisible --name '^Tarvel 3.81' 2>/dev/null) && break
  kill -0 $program 2>/dev/null || break
  sleep 0.1
done
[ -n "$found" ] && xdotool getwindowname $found
[ -n "$found" ] && xprop -id $found _NET_WM_ICON | grep -q 'Icon (48 x 48)' || found=
kill $program $server 2>/dev/null
wait
[ -n "$found" ]
EOF
as_user "$root" 'sh /tmp/dialog.sh' || fail "no dialog, or no icon on it: $(cat "$root/tmp/dialog.err")"

say "its manual pages, its completions, its icon and its type of file"
for file in bash-completion/completions/tarvel-batch zsh/vendor-completions/_tarvel-batch \
  fish/vendor_completions.d/tarvel-batch.fish; do
  [ -s "$root/usr/share/$file" ] || fail "$file"
done
for page in man1/tarvel.1 man1/tarvel-batch.1 man5/tarvel-files.5; do
  gzip -t "$root/usr/share/man/$page.gz" || fail "$page"
done
grep -q 'text/x-tarvel-list' "$root/usr/share/mime/globs2" || fail "the type of *.tvl"

say "remove it"
in_root "$root" dpkg --remove tarvel >/dev/null
in_root "$root" userdel --remove user 2>/dev/null
list_files >"$root/tmp/after"
ignored='^/home/user|^/var/log/|^/var/lib/dpkg/|^/var/cache/(apt|man)|^/var/mail|^/etc/.*-$|^/root/'
grep -Ev "$ignored" "$root/tmp/before" >"$root/tmp/before.kept"
grep -Ev "$ignored" "$root/tmp/after" >"$root/tmp/after.kept"
diff "$root/tmp/before.kept" "$root/tmp/after.kept" | grep '^>' && fail "files are left"
databases 2>/dev/null | cmp - "$root/tmp/databases" || fail "a database of the desktop has changed"
in_root "$root" dpkg --purge tarvel >/dev/null 2>&1
# dpkg keeps its state of before as *-old.
left=$(in_root "$root" grep -rlis --exclude="*-old" tarvel /usr /etc /var/lib --exclude-dir=apt || true)
[ -z "$left" ] || fail "named in: $left"
in_root "$root" dpkg -s tarvel >/dev/null 2>&1 && fail "dpkg still knows it"
say "nothing left"

if [ -e "$source_package" ]; then
  say "autopkgtest"
  in_root "$root" useradd --create-home --shell /bin/sh user
  autopkgtest --user user "$source_package" "$package" -- chroot "$root" >"$root/tmp/log" 2>&1 || {
    tail -n 60 "$root/tmp/log"
    fail autopkgtest
  }
  grep -E ' (PASS|FAIL|SKIP)|passed, ' "$root/tmp/log"
fi
say passed
