# Sourced: makes a minimal Debian in a folder by debootstrap and runs commands
# there, in mounts and processes of their own. Needs root and the network: the
# mirrors, the keys and the proxy are those that apt is set to on this machine,
# which must be a Debian.

# debian_mirror SUITE: sets sources, the lines for apt, and mirror, from this
# machine's own Debian archives.
debian_mirror() {
  local suite=$1 here
  here="$(. /etc/os-release && printf '%s' "${VERSION_CODENAME:-}")"
  sources="$(apt-get indextargets --format '$(ORIGIN) $(COMPONENT) $(CODENAME) $(REPO_URI)' 'Created-By: Packages' |
    awk -v here="$here" -v suite="$suite" \
      '$1 == "Debian" && $2 == "main" && index($3, here) == 1 && !seen[$3]++ {
         print "deb", $4, suite substr($3, length(here) + 1), "main" }')"
  mirror="$(awk -v suite="$suite" '$3 == suite { print $2 }' <<< "$sources")"
  [ -n "$mirror" ]
}

# in_mounts COMMAND...: in mounts and processes of its own, which the kernel
# takes down however this ends, so that nothing is left mounted or running.
inside=""
in_mounts() {
  unshare --mount --pid --fork --kill-child --mount-proc "$@" &
  inside=$!
  local status=0
  wait "$inside" || status=$?
  inside=""
  return "$status"
}

# stop_inside: ends what in_mounts runs.
stop_inside() {
  [ -n "$inside" ] || return 0
  # Its child is the first process in there: all others end with it.
  pkill -KILL -P "$inside" || kill -KILL "$inside" 2> /dev/null || true
  wait "$inside" 2> /dev/null || true
}

# make_root SUITE FOLDER: the base system, with this machine's way to its mirror.
make_root() {
  local suite=$1 system=$2 include=() proxy=""
  # Certificates only where the mirror asks for them.
  if grep -q ' https:' <<< "$sources"; then include=(--include=ca-certificates); fi
  eval "$(apt-config shell proxy Acquire::http::Proxy)"
  if [ -n "$proxy" ]; then export http_proxy="${http_proxy:-$proxy}"; fi
  chmod 755 "$(dirname "$system")"
  in_mounts debootstrap --variant=minbase "${include[@]}" "$suite" "$system" "$mirror" || return

  rm -f "$system/etc/apt/sources.list"
  printf '%s\n' "$sources" > "$system/etc/apt/sources.list.d/here.list"
  apt-config dump Acquire | grep -vE '::(IndexTargets|Changelogs)' > "$system/etc/apt/apt.conf.d/90here"
  cp -r /etc/apt/trusted.gpg.d /etc/apt/keyrings "$system/etc/apt/" 2>/dev/null || true
  if [ ${#include[@]} -gt 0 ] && [ -d /usr/local/share/ca-certificates ]; then
    cp -r /usr/local/share/ca-certificates "$system/usr/local/share/"
    chroot "$system" update-ca-certificates
  fi
  cp -L /etc/resolv.conf /etc/hosts "$system/etc/"
  # What is installed for a test must not be started as a service.
  printf '#!/bin/sh\nexit 101\n' > "$system/usr/sbin/policy-rc.d"
  chmod 755 "$system/usr/sbin/policy-rc.d"
}

# stamp: puts the seconds since it began before each line that it reads.
stamp() {
  SECONDS=0
  local line
  while IFS= read -r line || [ -n "$line" ]; do printf '[%4d s] %s\n' "$SECONDS" "$line"; done
}
export -f stamp

# in_root SYSTEM FOLDER COMMAND [ARGUMENT...]: runs it there as on a machine
# without a display.
in_root() {
  in_mounts bash -c 'set -euo pipefail
    system="$1"
    shift
    mount -t proc proc "$system/proc"
    mount -t sysfs -o ro sysfs "$system/sys"
    mount --rbind /dev "$system/dev"
    chroot "$system" env -i HOME=/root LANG=C.UTF-8 PATH=/usr/sbin:/usr/bin:/sbin:/bin \
      bash -c "cd \"\$0\" && exec \"\$@\"" "$@" < /dev/null 2>&1 | stamp' bash "$@"
}
