# SPDX-License-Identifier: MIT
# For scripts that try something in an empty Debian 12: read by them with ". bare_root.sh".
#
# Needs root and debootstrap. TARVEL_BASE names a directory that debootstrap filled before with the
# variant "minbase"; it is copied, not changed.

# Runs the script anew in namespaces of its own: what is mounted and started there goes away with
# it, however the script ends. Call first: own_namespaces "$0" "$@"
own_namespaces() {
  [ "${TARVEL_OWN_NAMESPACES:-}" = yes ] && return
  TARVEL_OWN_NAMESPACES=yes exec unshare --mount --pid --fork --kill-child sh "$@"
}

say() { echo "== $*"; }
fail() {
  echo "FAILED: $*"
  exit 1
}

# make_root DIRECTORY: an empty Debian 12, with the network and apt settings of this machine and an
# ordinary user "user".
make_root() {
  if [ -n "${TARVEL_BASE:-}" ]; then
    cp -a "$TARVEL_BASE/." "$1"
  else
    debootstrap --variant=minbase bookworm "$1" >/dev/null
  fi
  chmod 755 "$1"
  mount -t proc proc "$1/proc"
  mount --rbind /dev "$1/dev"  # with the pseudo terminals below it
  for file in /etc/resolv.conf /etc/hosts; do
    [ ! -f "$file" ] || cp -L --remove-destination "$file" "$1/etc/"
  done
  # Links of the root lead, seen from here, to files of this machine: they are replaced, not
  # followed.
  for directory in /etc/apt/apt.conf.d /usr/local/share/ca-certificates /etc/ssl/certs; do
    [ -d "$directory" ] || continue
    mkdir -p "$1$directory"
    cp -rL --remove-destination "$directory/." "$1$directory"
  done
  in_root "$1" useradd --create-home --shell /bin/sh user
}

# remove_root DIRECTORY: only its own file system is cleared; nothing below a mount is reached.
remove_root() {
  umount -R "$1/proc" "$1/dev" 2>/dev/null || true
  rm -rf --one-file-system "$1"
}

# in_root DIRECTORY COMMAND...: as root; as_user DIRECTORY SCRIPT: as the ordinary user.
in_root() {
  (
    root=$1
    shift
    exec env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/root LC_ALL=C \
      DEBIAN_FRONTEND=noninteractive chroot "$root" "$@"
  )
}
as_user() { in_root "$1" su - user -c "$2"; }
