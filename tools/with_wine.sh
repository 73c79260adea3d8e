#!/usr/bin/env bash
# with_wine.sh FOLDER COMMAND…: runs a command (wine PROGRAM…) with a Wine of its own that lives in FOLDER: no screen, no
# sound hardware, no crash dialogue, and a service process that is held for the length of the command, so that programs
# start quickly and hold no pipe of the caller's open. Not for desktops: windows are there, but nobody sees them.
# The command starts in FOLDER/work.
#
# TAVIMO_CODE_PAGE  the system's code page: 936 (as if not set) or 1252
# As root the command runs as the owner of FOLDER, who may then not be root: root may write read-only files, and a test
# of what is refused would prove nothing.
set -euo pipefail

folder=$(realpath -m "$1")
shift
case ${TAVIMO_CODE_PAGE:-936} in
  936) locale=zh_CN.UTF-8 ;;
  1252) locale=C.UTF-8 ;;
  *) echo "no such code page here: $TAVIMO_CODE_PAGE" >&2; exit 2 ;;
esac

mkdir -p "$folder"
if [ "$(id -u)" -eq 0 ]; then
  readonly ordinary=1234
  [ "$(stat -c %u "$folder")" -ne 0 ] || chown "$ordinary:$ordinary" "$folder"
  owner=$(stat -c %u "$folder")
  exec setpriv --reuid="$owner" --regid="$owner" --clear-groups env HOME="$folder" "$0" "$folder" "$@"
fi

# The system's own languages may lack this one, and without it no Chinese file name is found.
[ -e "$folder/locale/zh_CN.UTF-8" ] || {
  mkdir -p "$folder/locale"
  localedef -i zh_CN -f UTF-8 "$folder/locale/zh_CN.UTF-8" || [ -e "$folder/locale/zh_CN.UTF-8" ]
}
[ -e "$folder/asound.conf" ] || echo 'pcm.!default { type null }' >"$folder/asound.conf"

unset DISPLAY LANG LC_CTYPE LANGUAGE
export WINEPREFIX="$folder/prefix" WINEDEBUG=${WINEDEBUG:--all} WINEARCH=win64
export PULSE_SERVER=${PULSE_SERVER:-none} ALSA_CONFIG_PATH="$folder/asound.conf"
# Without the debugger a crash is a status that is not 0.
export WINEDLLOVERRIDES='winedbg.exe=d;mscoree=;mshtml='
# What the programs need of temporary files is the prefix's own.
unset TMPDIR TEMP TMP

# The language is for the programs alone: this shell would complain that it does not know it.
in_language=(env LOCPATH="$folder/locale" LC_ALL="$locale")
quietly() { "${in_language[@]}" "$@" </dev/null >/dev/null 2>&1; }

if [ ! -e "$folder/prefix/ready" ]; then
  quietly wineboot -i
  quietly wine reg add 'HKCU\Software\Wine\Drivers' /v Graphics /t REG_SZ /d null /f
  touch "$folder/prefix/ready"
  quietly wineserver -k || true
  quietly wineserver -w
fi
quietly wineserver -p || true
quietly wine cmd /c rem
# A folder that the command may write in.
mkdir -p "$folder/work"
cd "$folder/work"
status=0
"${in_language[@]}" "$@" || status=$?
quietly wineserver -k || true
quietly wineserver -w
exit "$status"
