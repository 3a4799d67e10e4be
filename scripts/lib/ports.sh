# Sourced by the scripts that start servers which pick their own port (port 0) but do not
# say which they got (OpenRTI's rtinode).

# The TCP port process $1 listens on, from /proc; fails while it has none.
listening_port() {
  local fd target inodes=" " hex
  for fd in /proc/"$1"/fd/*; do
    target=$(readlink "$fd" 2>/dev/null) || continue
    [[ $target =~ ^socket:\[([0-9]+)\]$ ]] && inodes+="${BASH_REMATCH[1]} "
  done
  # Fields: slot, local address (hex ip:port), remote address, state (0A: listening), ...,
  # inode (the tenth).
  hex=$(awk -v inodes="$inodes" '$4 == "0A" && index(inodes, " " $10 " ") {
          split($2, a, ":"); print a[2]; exit }' /proc/"$1"/net/tcp /proc/"$1"/net/tcp6 2>/dev/null)
  [ -n "$hex" ] && echo $((16#$hex))
}

# Waits up to ten seconds for process $1 to listen and prints the port; fails when it
# exits first or never listens.
wait_for_port() {
  local i port
  for ((i = 0; i < 100; i++)); do
    port=$(listening_port "$1") && { echo "$port"; return 0; }
    kill -0 "$1" 2>/dev/null || return 1
    sleep 0.1
  done
  return 1
}
