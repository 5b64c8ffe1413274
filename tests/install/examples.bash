# examples.bash PROGRAM MANUAL_PAGE RECORDINGS: every command under EXAMPLES of the manual page succeeds.
set -euo pipefail

program=$(readlink -f "$1")
page=$(readlink -f "$2")
recordings=$(readlink -f "$3")

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
cd "$scratch"
cp "$recordings"/*.cfg "$recordings"/*.dat .
ln -s "$recordings" recordings
PATH=$(dirname "$program"):$PATH

sed -n '/^\.SH EXAMPLES/,$p' "$page" | sed -n '/^\.EX/,/^\.EE/{/^\.E[XE]/d;p}' | sed 's/\\-/-/g; s/\\e$/\\/' >commands
count=$(grep -c '^orvcomtrade ' commands)
[ "$count" -gt 0 ] || { echo "the manual page has no example" >&2; exit 1; }
bash -eux commands >/dev/null
