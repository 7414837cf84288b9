#!/bin/bash
# Runs as the first process of the virtual machine: serves one folder to itself by NFS and SMB, lets
# two writers add records to one answer file over each of them, and looks at what they left.

count=${COUNT:-100}
folder=/srv/edi
failures=0

# What no lock of a client can prevent; README.md tells why.
known=("SMB 3.1.1, a machine and the server's own disk"
       "SMB 3.1.1, nobrl, two machines"
       "SMB 3.1.1, nobrl, a machine and the server's own disk")

prepare()
{
    export PATH=/usr/sbin:/usr/bin:/sbin:/bin
    mountpoint -q /proc || mount -t proc proc /proc
    mountpoint -q /sys || mount -t sysfs sysfs /sys
    mount -t tmpfs tmpfs /run
    mkdir -p $folder /mnt/a /mnt/b /run/samba /var/log/samba /run/rpcbind
    hostname shares
    ip link set lo up
}

serve_nfs()
{
    modprobe nfsd && mount -t nfsd nfsd /proc/fs/nfsd
    # Nobody has locks of an earlier life of this server to reclaim.
    echo 10 >/proc/fs/nfsd/nfsv4leasetime
    echo 10 >/proc/fs/nfsd/nfsv4gracetime
    echo 10 >/proc/sys/fs/nfs/nlm_grace_period
    echo "$folder 127.0.0.0/8(rw,sync,no_root_squash,no_subtree_check)" >/etc/exports
    rpcbind -w
    rpc.statd --no-notify
    exportfs -ra
    rpc.nfsd 8
    rpc.mountd
}

serve_smb()
{
    cat >/etc/samba/smb.conf <<END
[global]
interfaces = lo
bind interfaces only = yes
server min protocol = SMB3_11
[edi]
path = $folder
read only = no
[shared]
path = $folder
read only = no
kernel oplocks = yes
END
    printf 'edi\nedi\n' | smbpasswd -s -a root >/dev/null
    smbd -D
}

# play NAME FILE FILE: two writers at once, by these two names of one file
play()
{
    local first second ends
    rm -f $folder/*
    answer_writer "$2" "$count" &
    first=$!
    answer_writer "$3" "$count" &
    second=$!
    wait $first; ends=$?
    wait $second; ends="$ends $?"
    # Every number once and in order, every line whole.
    if [ "$ends" = "0 0" ] &&
        tr -d '\r' <$folder/ANS.TXT | awk -v count=$((2 * count)) '
            length != 1236 || substr($0, 1, 9) != sprintf("%05d0702", NR) { exit bad = 1 }
            END { exit bad || NR != count }'
    then
        echo "SEEN $1: $((2 * count)) records, each number once"
    else
        local verdict=WRONG name
        for name in "${known[@]}"; do
            [ "$name" = "$1" ] && verdict="lost, as is known"
        done
        [ "$verdict" = WRONG ] && failures=$((failures + 1))
        echo "SEEN $1: $verdict: ends $ends, $(tr -cd '\n' <$folder/ANS.TXT | wc -c) lines," \
             "$(tr -d '\r' <$folder/ANS.TXT | cut -c1-5 | sort | uniq -d | wc -l) numbers twice"
    fi
}

# share NAME TYPE PATH OPTIONS: over two mounts, as two machines have them. An NFS server knows its
# clients by their host names, a client its servers by their addresses; SMB makes them anew.
share()
{
    mount -t "$2" -o "$4" "${3/SERVER/127.0.0.1}" /mnt/a &&
        unshare --uts bash -c "hostname other; mount -t $2 -o $4 ${3/SERVER/127.0.0.2} /mnt/b"
    if mountpoint -q /mnt/b; then
        play "$1, one machine" /mnt/a/ANS.TXT /mnt/a/ANS.TXT
        play "$1, two machines" /mnt/a/ANS.TXT /mnt/b/ANS.TXT
        play "$1, a machine and the server's own disk" /mnt/a/ANS.TXT $folder/ANS.TXT
    else
        echo "SEEN $1: can't be mounted"
        failures=$((failures + 1))
    fi
    umount /mnt/a /mnt/b
}

prepare
play "local disk" $folder/ANS.TXT $folder/ANS.TXT
serve_nfs
serve_smb
sleep 12
share "NFS 3" nfs SERVER:$folder vers=3,nosharecache
share "NFS 4.2" nfs SERVER:$folder vers=4.2,nosharecache
smb=username=root,password=edi,vers=3.1.1,nosharesock
share "SMB 3.1.1" cifs //127.0.0.1/edi $smb
share "SMB 3.1.1, kernel oplocks" cifs //127.0.0.1/shared $smb
share "SMB 3.1.1, nobrl" cifs //127.0.0.1/edi $smb,nobrl
uname -r
echo "END $failures"
echo o >/proc/sysrq-trigger
sleep 60
