# Shared by install and uninstall, which source it.
# shellcheck shell=sh

# Everything that an update replaces. The program is last: until it is replaced, the
# old program is the one that starts.
program_files='lib qt.conf Quorrix.hlp installation.sh uninstall quorrix-data.1
  quorrix-data.bash-completion quorrix-data Quorrix'

fail() {
  echo "$(basename -- "$0"): $*" >&2
  exit 1
}

require_ordinary_user_with_home() {
  [ "$(id -u)" -ne 0 ] ||
    fail "Quorrix belongs to one user. Run this as yourself, not as root and without sudo."
  case "${HOME-}" in
    /*) ;;
    *) fail "The variable HOME does not name your home folder, so there is nowhere to look." ;;
  esac
  [ -d "$HOME" ] || fail "Your home folder $HOME does not exist."
}

# Where this desktop looks for a user's menu entries and icons.
data_home() {
  case "${XDG_DATA_HOME-}" in
    /*) printf '%s' "$XDG_DATA_HOME" ;;
    *) printf '%s' "$HOME/.local/share" ;;
  esac
}

# Whether the program of that folder is running. Its process hides which file it was
# started from, because it handles passwords. But the system refuses to open a running
# program for writing, and a program that was started by its full path has that path on
# its command line.
is_running() {
  case "$( (LC_ALL=C; export LC_ALL; [ ! -e "$1/Quorrix" ] || : >> "$1/Quorrix") 2>&1)" in
    *'Text file busy'*) return 0 ;;
  esac
  for process in /proc/[0-9]*; do
    [ "$(cat "$process/comm" 2>/dev/null)" = Quorrix ] || continue
    [ "$(tr '\0' '\n' < "$process/cmdline" 2>/dev/null | head -n 1)" != "$1/Quorrix" ] || return 0
  done
  return 1
}

# Locks the folder against other installations until this script ends. Fails if Quorrix
# is running.
lock_folder() {
  exec 9< "$1"
  flock -n 9 || fail "Another installation works on $1. Try again when it is done."
  ! is_running "$1" || fail "Quorrix is running. End it with File > Exit and try again."
}

menu_entry() {
  printf '%s' "$(data_home)/applications/quorrix.desktop"
}

# The menu entry's line for a program, quoted as the format requires.
exec_line() {
  printf 'Exec="%s"\n' "$(printf '%s' "$1" | sed 's/\\/\\\\\\\\/g; s/["`$]/\\\\&/g; s/%/%%/g')"
}

# Notifies a running desktop of the change. A desktop without these tools notices it by
# itself.
tell_desktop() {
  touch -c -- "$(data_home)/icons/hicolor" 2>/dev/null || true
  update-desktop-database -q "$(data_home)/applications" 2>/dev/null || true
}
