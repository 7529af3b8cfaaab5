# Shared by the scripts of this project: where things are, and how they speak. To be sourced.
# shellcheck shell=bash

# The root of the checkout, whatever folder a script was started from.
ROOT=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd -P)

# What is expensive to make and the same for every checkout lives in the user's cache folder, so
# that a clean checkout does not pay for it again.
CACHE=${XDG_CACHE_HOME:-${HOME:?HOME is not set}/.cache}/kavro-vigil3

# "This machine can't do it": a caller reports such a step as skipped, with the printed reason.
SKIP_STATUS=77

say() { printf '%s\n' "$*"; }
die() { printf '%s: %s\n' "$(basename "$0")" "$*" >&2; exit 1; }
skip() { printf 'skipped: %s\n' "$*"; exit "$SKIP_STATUS"; }

# with_lock FILE CMD...: runs CMD while holding FILE, so that two runs at once take turns. What CMD
# starts does not inherit the lock. A failing CMD ends the script (set -e), and with it the lock.
with_lock() {
  local file=$1
  shift
  mkdir -p "$(dirname "$file")"
  exec 9>"$file"
  flock 9
  "$@" 9>&-
  exec 9>&-
}

# debian_mirrors: prints "URI SUITE" for every part of this Debian release that this machine takes
# packages from, whichever of the two file formats they are written in.
debian_mirrors() {
  local codename files=()
  codename=$(. /etc/os-release && echo "${VERSION_CODENAME:-}")
  local f
  for f in /etc/apt/sources.list /etc/apt/sources.list.d/*.{list,sources}; do
    [ ! -e "$f" ] || files+=("$f")
  done
  awk -v codename="$codename" '
    function stanza_ends(   i, j, u, s, nu, ns) {
      nu = split(uris, u, " "); ns = split(suites, s, " ")
      if (types ~ /deb/)
        for (i = 1; i <= nu; ++i) for (j = 1; j <= ns; ++j) emit(u[i], s[j])
      types = uris = suites = ""
    }
    function emit(uri, suite) {
      if (uri ~ /^https?:/ && (suite == codename || suite ~ "^" codename "(-updates|-security)$")) {
        sub(/\/$/, "", uri)
        print uri, suite
      }
    }
    FNR == 1 { stanza_ends() }
    FILENAME ~ /\.list$/ {
      if ($1 == "deb") { sub(/\[[^]]*\]/, ""); emit($2, $3) }
      next
    }
    /^#/ { next }
    /^[[:space:]]*$/ { stanza_ends(); next }
    tolower($1) == "types:" { $1 = ""; types = $0 }
    tolower($1) == "uris:" { $1 = ""; uris = $0 }
    tolower($1) == "suites:" { $1 = ""; suites = $0 }
    END { stanza_ends() }
  ' "${files[@]}" </dev/null | sort -u
}
DEBIAN_KEYRING=/usr/share/keyrings/debian-archive-keyring.gpg

# start_display LOGFILE: starts an X server of its own; sets DISPLAY and display_pid. The caller ends
# that process.
start_display() {
  local number_file i
  number_file=$(mktemp)
  Xvfb -displayfd 8 -screen 0 1024x768x24 -nolisten tcp -noreset 8>"$number_file" >"$1" 2>&1 &
  display_pid=$!
  for ((i = 0; i < 200; ++i)); do
    [ ! -s "$number_file" ] || break
    sleep 0.05
  done
  DISPLAY=:$(tr -d '\n' <"$number_file")
  rm -f "$number_file"
  [ "$DISPLAY" != : ] || die "Xvfb did not start (its output is in $1)"
  export DISPLAY
}

# Settings under which Wine is quiet and the same on every machine. The two libraries it does without
# are an interpreter and a browser that it would offer to download.
wine_environment() {
  export WINEDEBUG=${WINEDEBUG:--all} WINEARCH=win64 WINEDLLOVERRIDES="mscoree,mshtml="
  export LC_ALL=${WINE_LOCALE:-C.UTF-8} TZ=UTC
}

WINE_TEMPLATE=$ROOT/build/wine-template
WINE_TEMPLATE_LOCK=$ROOT/build/wine-template.lock

# The folder of logs, and run_logged NAME CMD...: CMD's output goes to build/logs/NAME.log; when it
# fails, the end of that is shown.
LOGS=$ROOT/build/logs
run_logged() {
  local log=$LOGS/$1.log status=0
  shift
  mkdir -p "$LOGS"
  "$@" >"$log" 2>&1 </dev/null || status=$?
  if [ "$status" != 0 ] && [ "$status" != "$SKIP_STATUS" ]; then
    say "--- failed with $status; the end of ${log#"$ROOT/"}:" >&2
    tail -n "${LOG_TAIL:-40}" "$log" >&2
    say "---" >&2
  fi
  return "$status"
}
