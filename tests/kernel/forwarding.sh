#!/usr/bin/env bash
# End to end in network namespaces: host A - router - host B (and host C on
# a second VLAN). The router runs zavrel-router --kernel; a ping from A to a
# prefix behind B works only through a static route our system installed.
#
#   forwarding.sh <zavrel-router> <case>
#     ipv4 | ipv6   the ping works with the route, stops when it is removed,
#                   works again when it is added back
#     isolation     a prefix of VLAN 20 is not reachable from VLAN 10 (no
#                   fall-through to the main table)
#     drift         a route of ours deleted with 'ip route del' is put back;
#                   a route of another protocol in the table is left alone
#     restart       killing the router and starting it again leaves the
#                   table as it was, without removing and re-adding routes
#     exit          a clean exit removes our routes and rules
#     bad-bindings  a bindings file with a bad entry stops the start with
#                   exit status 1 and a message naming the entry, and leaves
#                   no rule of the entries before it
#
# Needs root (namespaces of its own); without it prints "skipped: needs
# CAP_SYS_ADMIN" and exits 77, which is a failure under CI=true.
# ZAVREL_APP_LAUNCHER, when set, runs the router (the armhf emulator).
set -uo pipefail

app=$1
case_name=$2
id="zr$$"
A="$id-a" R="$id-r" B="$id-b" C="$id-c"

if ! ip netns add "$A" 2>/dev/null; then
  echo "skipped: needs CAP_SYS_ADMIN"
  [ "${CI:-}" = "true" ] && { echo "CI=true: this test must run (as root)"; exit 1; }
  exit 77
fi
work=$(mktemp -d)
router_pid=""
cleanup() {
  [ -n "$router_pid" ] && kill -9 "$router_pid" 2>/dev/null
  exec 9>&- 2>/dev/null
  for ns in "$A" "$R" "$B" "$C"; do ip netns del "$ns" 2>/dev/null; done
  rm -rf "$work"
}
trap cleanup EXIT

fail() { echo "FAIL: $*"; [ -f "$work/router.out" ] && { echo "--- router output"; cat "$work/router.out"; }; exit 1; }
in_ns() { local ns=$1; shift; ip netns exec "$ns" "$@"; }

for ns in "$R" "$B" "$C"; do ip netns add "$ns"; done
for ns in "$A" "$R" "$B" "$C"; do in_ns "$ns" ip link set lo up; done
# A - R (VLAN 10), R - B (VLAN 10), R - C (VLAN 20)
ip link add a0 netns "$A" type veth peer name ra0 netns "$R"
ip link add b0 netns "$B" type veth peer name rb0 netns "$R"
ip link add c0 netns "$C" type veth peer name rc0 netns "$R"
in_ns "$A" sh -e -c 'ip addr add 10.10.0.2/24 dev a0; ip addr add 2001:db8:10::2/64 dev a0 nodad
  ip link set a0 up; ip route add default via 10.10.0.1; ip -6 route add default via 2001:db8:10::1'
in_ns "$B" sh -e -c 'ip addr add 10.20.0.2/24 dev b0; ip addr add 2001:db8:20::2/64 dev b0 nodad
  ip link set b0 up; ip route add default via 10.20.0.1; ip -6 route add default via 2001:db8:20::1
  ip addr add 198.51.100.1/32 dev lo; ip addr add 2001:db8:99::1/128 dev lo'
in_ns "$C" sh -e -c 'ip addr add 10.30.0.2/24 dev c0; ip link set c0 up
  ip route add default via 10.30.0.1; ip addr add 203.0.113.1/32 dev lo'
in_ns "$R" sh -e -c 'sysctl -qw net.ipv4.ip_forward=1 net.ipv6.conf.all.forwarding=1
  ip addr add 10.10.0.1/24 dev ra0; ip addr add 2001:db8:10::1/64 dev ra0 nodad
  ip addr add 10.20.0.1/24 dev rb0; ip addr add 2001:db8:20::1/64 dev rb0 nodad
  ip addr add 10.30.0.1/24 dev rc0
  for l in ra0 rb0 rc0; do ip link set $l up; done'

cat >"$work/attach.json" <<'JSON'
{"attach": [{"vlan": 10, "interface": "ra0"}, {"vlan": 10, "interface": "rb0"},
            {"vlan": 20, "interface": "rc0"}]}
JSON
cat >"$work/options.json" <<'JSON'
{"VLAN_CONFIGURATIONS": [{"vid": 10, "RTM": {}}, {"vid": 20, "RTM": {}}]}
JSON
cat >"$work/start.script" <<EOF2
load $work/options.json
route add 10 198.51.100.0/24 via 10.20.0.2
route add 10 2001:db8:99::/64 via 2001:db8:20::2
route add 20 203.0.113.0/24 via 10.30.0.2
EOF2

# Starts the router in R; its standard input is the fifo behind fd 9.
start_router() {
  rm -f "$work/in"; mkfifo "$work/in"
  in_ns "$R" ${ZAVREL_APP_LAUNCHER:-} "$app" --kernel-attach "$work/attach.json" \
    --script "$work/start.script" <"$work/in" >>"$work/router.out" 2>&1 &
  router_pid=$!
  exec 9>"$work/in"
}
# Waits until the table of VLAN 10 in R holds a line matching the pattern
# (or, with !, no longer holds one).
wait_route() {
  local want=$1 pattern=$2 family=${3:--4} table=${4:-10} i
  for i in $(seq 1 150); do
    if in_ns "$R" ip -N $family route show table "$table" 2>/dev/null | grep -q -- "$pattern"; then
      [ "$want" = yes ] && return 0
    else
      [ "$want" = no ] && return 0
    fi
    sleep 0.1
  done
  fail "table $table: expected $want '$pattern'; it holds: $(in_ns "$R" ip -N $family route show table "$table")"
}
# True when any of three echo requests is answered: the first may be lost
# while neighbour discovery resolves the next hop on a loaded machine.
pings() { in_ns "$A" ping $1 -c 3 -i 0.2 -W 1 "$2" >/dev/null 2>&1; }
# Waits until the router's tables have stayed the same for a second: the
# library is still writing interface and address rows for a moment after
# the start-up commands.
settle() {
  local last="" now i steady=0
  for i in $(seq 1 100); do
    now=$(in_ns "$R" ip -N route show table all proto 201; in_ns "$R" ip -N -6 route show table all proto 201)
    if [ "$now" = "$last" ]; then
      steady=$((steady + 1))
      [ $steady -ge 5 ] && return 0
    else
      steady=0
    fi
    last=$now
    sleep 0.2
  done
  fail "the router's tables did not settle"
}

if [ "$case_name" = bad-bindings ]; then
  echo '{"attach": [{"vlan": 10, "interface": "ra0"}, {"vlan": 0, "interface": "rb0"}]}' >"$work/bad.json"
  in_ns "$R" ${ZAVREL_APP_LAUNCHER:-} "$app" --kernel-attach "$work/bad.json" --no-stdin \
    >"$work/router.out" 2>&1
  status=$?
  [ $status -eq 1 ] || fail "exit status $status, expected 1"
  expected="zavrel-router: --kernel-attach: $work/bad.json: attach[1]: needs \"vlan\" (1 to 4094) and \"interface\" (a name)"
  [ "$(cat "$work/router.out")" = "$expected" ] || fail "unexpected message"
  [ -z "$(in_ns "$R" ip rule show | grep 'proto 201')" ] || fail "rules left after the failed start"
  echo "ok: $case_name"
  exit 0
fi

start_router
wait_route yes "198.51.100.0/24 via 10.20.0.2 dev rb0 proto 201 metric 20"
wait_route yes "2001:db8:99::/64 via 2001:db8:20::2 dev rb0 proto 201 metric 20" -6
settle

case $case_name in
  ipv4|ipv6)
    if [ "$case_name" = ipv4 ]; then
      fam=-4; target=198.51.100.1; route="10 198.51.100.0/24 via 10.20.0.2"; pat="198.51.100.0/24"
    else
      fam=-6; target=2001:db8:99::1; route="10 2001:db8:99::/64 via 2001:db8:20::2"; pat="2001:db8:99::/64"
    fi
    # The main table of the router knows nothing of the prefix: only our
    # route in table 10 can carry the ping.
    in_ns "$R" ip $fam route show table main | grep -q "$pat" && fail "the main table knows $pat"
    pings $fam $target || fail "no answer from $target with the route in place"
    printf 'route remove %s\n' "$route" >&9
    wait_route no "$pat" $fam
    pings $fam $target && fail "$target answered without the route"
    printf 'route add %s\n' "$route" >&9
    wait_route yes "$pat" $fam
    pings $fam $target || fail "no answer from $target after the route came back"
    ;;
  isolation)
    # VLAN 20 reaches its prefix from its own side...
    in_ns "$R" ip -N route show table 20 | grep -q "203.0.113.0/24 via 10.30.0.2" || fail "VLAN 20 has no route"
    # ...but from VLAN 10 neither it nor VLAN 20's connected network is
    # reachable, although the main table has the latter.
    in_ns "$R" ip route show table main | grep -q "10.30.0.0/24" || fail "main table lacks 10.30.0.0/24"
    pings -4 203.0.113.1 && fail "VLAN 20's prefix answered from VLAN 10"
    pings -4 10.30.0.2 && fail "VLAN 20's network answered from VLAN 10"
    pings -4 198.51.100.1 || fail "VLAN 10's own prefix did not answer"
    ;;
  drift)
    in_ns "$R" ip route add 192.0.2.0/24 via 10.20.0.2 table 10 proto static
    in_ns "$R" ip route del 198.51.100.0/24 table 10
    wait_route yes "198.51.100.0/24 via 10.20.0.2 dev rb0 proto 201 metric 20"
    wait_route yes "192.0.2.0/24 via 10.20.0.2 dev rb0 proto 4"
    pings -4 198.51.100.1 || fail "no answer after the repair"
    ;;
  restart)
    before=$(in_ns "$R" ip -N route show table 10; in_ns "$R" ip -N -6 route show table 10)
    in_ns "$R" ip monitor route >"$work/monitor" 2>&1 &
    monitor=$!
    sleep 0.3
    kill -9 "$router_pid"; wait "$router_pid" 2>/dev/null; router_pid=""
    exec 9>&-
    start_router
    # The start-up commands have run once the last route of the script is
    # there again and nothing is pending.
    sleep 3
    kill "$monitor"; wait "$monitor" 2>/dev/null
    after=$(in_ns "$R" ip -N route show table 10; in_ns "$R" ip -N -6 route show table 10)
    [ "$before" = "$after" ] || fail "table 10 changed over the restart: before
$before
after
$after"
    grep -E "198.51.100.0|2001:db8:99::|10.20.0.0/24|10.10.0.0/24" "$work/monitor" &&
      fail "routes were removed or added again during the restart"
    pings -4 198.51.100.1 || fail "no answer after the restart"
    ;;
  exit)
    printf 'quit\n' >&9
    wait "$router_pid"; router_pid=""
    [ -z "$(in_ns "$R" ip -N route show table all proto 201)" ] || fail "routes of ours left after quit"
    [ -z "$(in_ns "$R" ip -N -6 route show table all proto 201)" ] || fail "IPv6 routes of ours left after quit"
    [ -z "$(in_ns "$R" ip rule show | grep 'proto 201')" ] || fail "rules left after quit"
    ;;
  *) fail "unknown case $case_name" ;;
esac
echo "ok: $case_name"
