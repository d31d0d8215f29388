# A Debian of its own in a folder, for tests; its packages come from where the machine's own come from.
# shellcheck shell=bash

# Lines "address release component" of Debian's own archives, as this machine is configured.
debian_sources() {
  # shellcheck disable=SC2016
  apt-get indextargets --format '$(REPO_URI) $(CODENAME) $(COMPONENT) $(ORIGIN)' 'Identifier: Packages' |
    sed -n 's/ Debian$//p' | sort -u
}

running_release() { # its name
  # shellcheck source=/dev/null
  (. /etc/os-release && echo "$VERSION_CODENAME")
}

in_debian_root() { # root, command...
  chroot "$1" /usr/bin/env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin LC_ALL=C.UTF-8 HOME=/root \
    DEBIAN_FRONTEND=noninteractive "${@:2}"
}

make_debian_root() { # root, release's name
  local running address
  running=$(running_release)
  address=$(debian_sources | awk -v release="$running" '$2 == release && !found++ { print $1 }')
  [[ -n $address ]] || { echo "this machine has no source of Debian $running" >&2; return 1; }
  debootstrap --variant=minbase "$2" "$1" "$address"
  debian_sources | sed "s/^/deb /; s/ $running/ $2/" >"$1/etc/apt/sources.list"
  # Services of packages have no place to start in.
  printf '#!/bin/sh\nexit 101\n' >"$1/usr/sbin/policy-rc.d"
  chmod +x "$1/usr/sbin/policy-rc.d"
}
