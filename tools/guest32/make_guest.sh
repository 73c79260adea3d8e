#!/usr/bin/env bash
# make_guest.sh FOLDER: makes in FOLDER a small 32-bit Debian with Wine for the emulator (disk.img, vmlinuz, initrd.cpio), for
# machines that cannot run 32-bit programs themselves. It is made of Debian's packages alone; this system's own packages
# and architectures stay as they are. Two gigabytes, a few minutes. As root, for what belongs to root in the guest.
set -euo pipefail

folder=$(realpath -m "$1")
here=$(dirname "$(realpath "$0")")
apt=$folder/apt
tree=$folder/tree
mkdir -p "$apt"/{lists/partial,archives/partial,etc/apt.conf.d,etc/preferences.d,etc/trusted.gpg.d}
cd "$folder"

# Where the system's own packages come from, in either of the two ways it may be written down.
source_address() {
  cat /etc/apt/sources.list.d/*.sources /etc/apt/sources.list /etc/apt/sources.list.d/*.list 2>/dev/null |
    awk '$1 == "URIs:" || $1 == "deb" { for (i = 2; i <= NF; ++i) if ($i ~ "://.*/debian/?$") { print $i; exit } }'
}

# apt with a state of its own, for the other architecture.
fetch_packages() {
  local address
  address=$(source_address)
  [ -n "$address" ] || { echo "no source of Debian's packages is written down in /etc/apt" >&2; exit 1; }
  : >"$apt/status"
  echo "deb [arch=i386 signed-by=/usr/share/keyrings/debian-archive-keyring.gpg] $address bookworm main" >"$apt/sources.list"
  local -a options=(-o "Dir::State=$apt" -o "Dir::State::lists=$apt/lists" -o "Dir::State::status=$apt/status"
    -o "Dir::Cache=$apt" -o "Dir::Cache::archives=$apt/archives" -o "Dir::Etc::sourcelist=$apt/sources.list"
    -o Dir::Etc::sourceparts=- -o APT::Architecture=i386 -o APT::Architectures::=i386 -o APT::Sandbox::User=root
    -o APT::Install-Recommends=false -o Debug::NoLocking=1)
  apt-get "${options[@]}" -qq update
  apt-get "${options[@]}" -qq -y --download-only install wine32 wine bash coreutils mount util-linux tar grep sed procps \
    linux-image-686 fonts-wqy-zenhei
}

# The packages' own set-up scripts do not run; the one step that matters is Wine's zlib1.dll: the cross compiler's with Wine's
# mark in its DOS header.
mark_zlib() {
  python3 - "$tree/usr" <<'PYTHON'
import glob
import sys
source = glob.glob(sys.argv[1] + '/i686-w64-mingw32/lib/zlib1.dll')[0]
with open(source, 'rb') as file:
    content = bytearray(file.read())
content[64:96] = b'Wine builtin DLL' + bytes(16)
with open(sys.argv[1] + '/lib/i386-linux-gnu/wine/i386-windows/zlib1.dll', 'wb') as file:
    file.write(content)
PYTHON
}

unpack_root() {
  local package
  rm -rf "$tree"
  mkdir "$tree"
  for package in "$apt"/archives/*.deb; do dpkg-deb -x "$package" "$tree"; done
  rm -rf "$tree"/usr/share/{doc,man,info,locale} "$tree"/boot/System.map*
  mkdir -p "$tree"/{proc,sys,dev,tmp,guest} "$tree/usr/lib/locale"
  localedef -i zh_CN -f UTF-8 "$tree/usr/lib/locale/zh_CN.utf8"
  mark_zlib
  install -m 755 "$here/in_guest.sh" "$tree/guest/run.sh"
}

# The first program and the modules by which the kernel reaches the disk, in the order of their needs.
make_initrd() {
  cp "$tree"/boot/vmlinuz-* vmlinuz
  gcc -m32 -O1 -ffreestanding -nostdlib -static -fno-stack-protector -fno-pie -no-pie -mno-sse -fcf-protection=none \
    -o first_program "$here/first_program.c"
  python3 - "$folder" <<'PYTHON'
import glob
import sys
folder = sys.argv[1]
kernel = glob.glob(folder + '/tree/lib/modules/*/kernel')[0]
archive = bytearray()
made = 0


def add(name, mode, content=b''):
    global made
    made += 1
    text = name.encode() + b'\0'
    fields = (made, mode, 0, 0, 1, 0, len(content), 0, 0, 0, 0, len(text), 0)
    archive.extend(b'070701' + b''.join(b'%08x' % field for field in fields))
    for part in (text, content):
        archive.extend(part)
        archive.extend(bytes(-len(archive) % 4))


def read(path):
    with open(path, 'rb') as file:
        return file.read()


MODULES = ['crypto/crc32c_generic', 'lib/crc16', 'fs/mbcache', 'fs/jbd2/jbd2', 'fs/ext4/ext4', 'drivers/virtio/virtio',
           'drivers/virtio/virtio_ring', 'drivers/virtio/virtio_pci_modern_dev', 'drivers/virtio/virtio_pci_legacy_dev',
           'drivers/virtio/virtio_pci', 'drivers/block/virtio_blk']
for name in ('dev', 'proc', 'r', 'm'):
    add(name, 0o40755)
add('init', 0o100755, read(folder + '/first_program'))
for number, module in enumerate(MODULES):
    add(f'm/{number:02}.ko', 0o100644, read(f'{kernel}/{module}.ko'))
add('TRAILER!!!', 0)
with open(folder + '/initrd.cpio', 'wb') as file:
    file.write(archive)
PYTHON
  rm -rf "${tree:?}"/{lib/modules,boot}
}

make_disk() {
  rm -f disk.img
  mke2fs -q -t ext4 -d "$tree" disk.img 3G
  rm -rf "$tree" "$apt"
}

fetch_packages
unpack_root
make_initrd
make_disk
"$here/run_in_guest.sh" "$folder" --keep
touch ready
