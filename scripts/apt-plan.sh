#!/usr/bin/env bash
# Reads apt's plan ("apt-get install -s" output) on standard input and
# prints what it would do to packages the host already has, one change a
# line: "remove <package>" or "downgrade <package> <installed> -> <older>".
# New packages and upgrades are not changes of that kind. scripts/deps.sh
# refuses to install when this prints anything.
set -euo pipefail
removal='^Remv ([^ ]+)'
replacement='^Inst ([^ ]+) \[([^]]+)\] \(([^ ]+)'
while read -r line; do
  if [[ $line =~ $removal ]]; then
    echo "remove ${BASH_REMATCH[1]}"
  elif [[ $line =~ $replacement ]]; then
    if dpkg --compare-versions "${BASH_REMATCH[3]}" lt "${BASH_REMATCH[2]}"; then
      echo "downgrade ${BASH_REMATCH[1]} ${BASH_REMATCH[2]} -> ${BASH_REMATCH[3]}"
    fi
  fi
done
