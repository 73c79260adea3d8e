#!/bin/bash
# Runs inside the 32-bit guest, in place of a system's start: makes Wine's prefix when there is none, unpacks the job from
# the second disk, runs its job.sh, packs what is there then onto the third disk, and switches the machine off. What the job
# prints goes to the console as well, so that of a job that hangs it is known where.
# Programs run as an ordinary user: root may write read-only files, and a test of what is refused would prove nothing.
mount -t proc proc /proc
mount -t sysfs sys /sys
mount -t tmpfs tmp /tmp
mkdir -p /dev/shm /dev/pts
mount -t tmpfs shm /dev/shm
mount -t devpts pts /dev/pts

export HOME=/guest WINEPREFIX=/guest/prefix WINEARCH=win32 WINEDEBUG=-all LC_ALL=zh_CN.UTF-8
# Without the debugger a crash is a status that is not 0.
export WINEDLLOVERRIDES='winedbg.exe=d;mscoree=;mshtml='
export PATH=/usr/lib/wine:$PATH WINELOADER=/usr/lib/wine/wine WINESERVER=/usr/lib/wine/wineserver32
# A microphone that hears silence.
export ALSA_CONFIG_PATH=/guest/asound.conf PULSE_SERVER=none

readonly ordinary=1234
as_user() { setpriv --reuid="$ordinary" --regid="$ordinary" --clear-groups "$@"; }
quietly() { as_user "$@" </dev/null >/dev/null 2>&1; }

echo 'pcm.!default { type null }' >"$ALSA_CONFIG_PATH"
chown "$ordinary:$ordinary" /guest
cd /guest || exit

if [ ! -e "$WINEPREFIX/ready" ]; then
  quietly wine wineboot -i
  quietly wine reg add 'HKCU\Software\Wine\Drivers' /v Graphics /t REG_SZ /d null /f && quietly touch "$WINEPREFIX/ready"
  quietly wineserver32 -k
  quietly wineserver32 -w
  sync
fi

status=125
if [ -b /dev/vdb ]; then
  # The services are held from here on: programs then start in about a second instead of ten.
  quietly wineserver32 -p
  quietly wine cmd /c rem
  mkdir -p /tmp/job
  tar -C /tmp/job -xf /dev/vdb
  chown -R "$ordinary:$ordinary" /tmp/job
  cd /tmp/job || exit
  : >job.out
  as_user bash ./job.sh </dev/null >>job.out 2>&1 &
  job=$!
  tail -n +1 -f --pid=$job job.out
  wait $job
  status=$?
  echo "$status" >job.status
  quietly wineserver32 -k
  tar -C /tmp/job -cf /dev/vdc . 2>/dev/null
  sync
fi
echo "guest: done, status $status"
cd /
sync
mount -o remount,ro / 2>/dev/null
echo o >/proc/sysrq-trigger
sleep 20
