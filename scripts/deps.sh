#!/usr/bin/env bash
# Installs the Debian packages the native build needs when they are missing.
# As root it runs apt-get; otherwise it prints the command and fails.
#
#   ZAVREL_CROSS=armhf   also the 32-bit ARM cross build: the project's armhf
#                        sysroot (scripts/armhf-sysroot.sh), which unpacks
#                        the cross compiler, qemu and the armhf libraries
#                        into the project; none of them goes through dpkg.
#
# Installing only adds packages: apt's plan is read first, and a plan that
# would remove a package or put one at an older version is refused with the
# packages named, before anything is changed. Where the index still carries
# the host's version of a runtime library, its -dev package is asked for at
# that version, so that nothing is upgraded either.
set -euo pipefail
cd "$(dirname "$0")/.."

packages=(cmake ninja-build g++ pkg-config libjsoncpp-dev libgtest-dev libgmock-dev
          libbenchmark-dev libevent-dev libreadline-dev libmnl-dev libyajl-dev iproute2
          iputils-ping clang-format clang libclang-rt-dev)
missing=()
for p in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed"; then
    missing+=("$p")
  fi
done

index_versions() { apt-cache madison "$1" 2>/dev/null | awk -F'|' '{gsub(/ /, "", $2); print $2}'; }

simulate() { apt-get install -s --no-install-recommends --no-remove "$@" 2>/dev/null; }

# Prints the packages to ask apt for, one a line. A -dev package pulls in its
# runtime library at its own version: when the index has a newer version
# than the host's runtime, apt would upgrade the runtime. Where the index
# still carries the host's version, every package of that install that
# would come at the newer version is asked for at the host's instead, so
# that installing adds packages and changes none. If apt cannot do that,
# the plain request stands and the upgrades it makes are named.
keep_installed_versions() {
  local plan pkg old new version
  local -A older
  local -a pinned=()
  plan=$(simulate "$@" | sed -nE 's/^Inst ([^ ]+) (\[([^]]+)\] )?\(([^ ]+) .*/\1 \3 \4/p')
  while read -r pkg old new; do
    [ -n "$new" ] && older[$new]=$old
  done < <(awk 'NF == 3' <<<"$plan")
  if [ ${#older[@]} -eq 0 ]; then
    printf '%s\n' "$@"
    return
  fi
  while read -r pkg version; do
    old=${older[$version]:-}
    if [ -n "$old" ] && index_versions "$pkg" | grep -qxF "$old"; then
      pinned+=("$pkg=$old")
    fi
  done < <(awk '{print $1, $NF}' <<<"$plan")
  if [ ${#pinned[@]} -gt 0 ] && simulate "$@" "${pinned[@]}" >/dev/null &&
     ! simulate "$@" "${pinned[@]}" | grep -qE '^Inst [^ ]+ \['; then
    printf '%s\n' "$@" "${pinned[@]}"
    return
  fi
  echo "note: installing $* upgrades host packages:" \
       "$(awk 'NF == 3 {printf "%s %s -> %s; ", $1, $2, $3}' <<<"$plan")" >&2
  printf '%s\n' "$@"
}

# What apt's plan for these packages would do to packages the host has
# (scripts/apt-plan.sh), one change a line; a request apt cannot plan at all
# is one line too.
host_changes() {
  local plan
  if ! plan=$(apt-get install -s --no-install-recommends "$@" 2>&1); then
    echo "no plan: $(grep -m1 '^E:' <<<"$plan" || echo "apt-get failed")"
    return
  fi
  scripts/apt-plan.sh <<<"$plan"
}

if [ ${#missing[@]} -gt 0 ]; then
  if [ "$(id -u)" -ne 0 ]; then
    echo "Missing packages. Install them with:" >&2
    echo "  sudo apt-get update && sudo apt-get install -y --no-install-recommends ${missing[*]}" >&2
    exit 1
  fi
  export DEBIAN_FRONTEND=noninteractive
  echo "Installing: ${missing[*]}" >&2
  # An index that fails to load (a mirror mid-sync) is reported by apt; the
  # install below then says whether anything needed is missing.
  apt-get update -qq || echo "warning: some package indexes could not be fetched" >&2
  request=()
  mapfile -t request < <(keep_installed_versions "${missing[@]}")
  changes=$(host_changes "${request[@]}")
  if [ -n "$changes" ]; then
    echo "error: ${missing[*]} cannot be installed without changing host packages;" \
         "nothing was installed: $(tr '\n' ';' <<<"$changes" | sed 's/;$//; s/;/; /g')" >&2
    exit 1
  fi
  if ! apt-get install -y -qq --no-install-recommends --no-remove "${request[@]}" >/dev/null; then
    echo "error: apt-get could not install ${missing[*]}" >&2
    exit 1
  fi
fi

if [ "${ZAVREL_CROSS:-}" = "armhf" ]; then
  scripts/armhf-sysroot.sh
fi
