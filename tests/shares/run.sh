#!/bin/bash
# Plays two writers of one answer file over network shares, in a virtual machine without a network
# that serves them to itself. See README.md beside this file.
#
#     tests/shares/run.sh BUILD-FOLDER [RECORDS-PER-WRITER]
set -euo pipefail

here=$(cd "$(dirname "$0")" && pwd)
build=$(cd "$1" && pwd)
count=${2:-40}
work=$build/shares
root=$work/root
mkdir -p "$work"

cmake --build "$build" --target answer_writer

if [ ! -e "$root" ]; then
    mmdebstrap --mode=root --variant=minbase --aptopt='APT::Install-Recommends "false"' \
        --include=linux-image-amd64,kmod,iproute2,nfs-kernel-server,nfs-common \
        --include=samba,cifs-utils,libqt6widgets6,libsqlite3-0 bookworm "$work/root.tar"
    mkdir "$root.new"
    tar -xf "$work/root.tar" -C "$root.new"
    mv "$root.new" "$root"
    rm "$work/root.tar"
fi

install "$build/bin/answer_writer" "$root/usr/bin/"
{ sed -n 1p "$here/guest.sh"; echo "COUNT=$count"; sed 1d "$here/guest.sh"; } >"$root/guest.sh"
chmod 755 "$root/guest.sh"
rm -f "$work/disk.img"
mke2fs -q -t ext4 -d "$root" "$work/disk.img" 4G

timeout "${LIMIT:-900}" qemu-system-x86_64 -accel "${ACCEL:-tcg}" -cpu max -smp 2 -m 2048 -nic none \
    -nographic -no-reboot -drive "file=$work/disk.img,format=raw,if=virtio" \
    -kernel "$root"/boot/vmlinuz-* -initrd "$root"/boot/initrd.img-* \
    -append "root=/dev/vda rw console=ttyS0 quiet init=/guest.sh" </dev/null | tee "$work/console.log"
grep -q "^END 0" "$work/console.log"
