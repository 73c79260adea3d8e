#!/usr/bin/env bash
# run_in_guest.sh FOLDER JOB: runs JOB/job.sh in the 32-bit guest of FOLDER (make_guest.sh), in a copy of the folder JOB,
# where `wine PROGRAM` runs 32-bit programs. What is there afterwards comes back in JOB/back, with the output in job.out;
# the status is job.sh's. What the job prints is in JOB/console while it runs, and stays there when it was cut off. Nothing
# that the guest writes to its own disk is kept.
# run_in_guest.sh FOLDER --keep: starts it once without a job and keeps what it writes, for make_guest.sh.
#
# TAVIMO_GUEST_SECONDS  the longest a run may last: 1800 (as if not set)
set -euo pipefail

folder=$(realpath "$1")
work=$(mktemp -d "$folder/run.XXXXXX")
trap 'rm -rf "$work"' EXIT
snapshot=on
disks=()
console=$work/console
if [ "$2" = --keep ]; then
  snapshot=off
else
  job=$(realpath "$2")
  console=$job/console
  tar -C "$job" --exclude=./back --exclude=./console -cf "$work/in.tar" .
  truncate -s '%512' "$work/in.tar"
  truncate -s 512M "$work/out.tar"
  disks=(-drive "file=$work/in.tar,format=raw,if=virtio,readonly=on"
    -drive "file=$work/out.tar,format=raw,if=virtio,cache=unsafe")
fi

# With SMAP the emulated processor faults when a 32-bit Windows thread starts. Where the job needs it, TMPDIR holds what
# the guest writes to its snapshot.
status=0
TMPDIR=$work timeout "${TAVIMO_GUEST_SECONDS:-1800}" qemu-system-i386 -accel tcg,thread=multi -cpu max,-smap,-smep -smp 2 \
  -m 2048 -display none -monitor none -serial "file:$console" -no-reboot -nic none \
  -kernel "$folder/vmlinuz" -initrd "$folder/initrd.cpio" -append 'console=ttyS0 rdinit=/init quiet mitigations=off' \
  -drive "file=$folder/disk.img,format=raw,if=virtio,cache=unsafe,snapshot=$snapshot" "${disks[@]}" \
  </dev/null >"$work/qemu" 2>&1 || status=$?
if [ "$status" -ne 0 ]; then
  cat "$work/qemu" "$console" 2>/dev/null | tail -n 20 >&2
  [ "$status" -ne 124 ] || echo "the guest was cut off after ${TAVIMO_GUEST_SECONDS:-1800} seconds" >&2
  exit "$status"
fi
[ -n "${job:-}" ] || exit 0
rm -rf "$job/back"
mkdir "$job/back"
tar -C "$job/back" -xf "$work/out.tar" 2>/dev/null || true
[ -e "$job/back/job.status" ] || { tail -n 20 "$console" >&2; exit 125; }
status=$(cat "$job/back/job.status")
[ "$status" -eq 0 ] || tail -n 20 "$job/back/job.out" >&2
exit "$status"
