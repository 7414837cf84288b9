#!/usr/bin/env bash
# Tries a package in a Debian that has never seen the program: apt installs it over an older version, the
# desktop entry starts it on demo data, F1 opens the guide, a purge leaves nothing. try.sh PACKAGE.deb
#
# The new Debian has nothing but what the package brings: display, window manager and hands are this
# machine's. What was downloaded is kept in ~/.cache/tl030101-try for the next time.
set -eu
package=$(realpath "$1")
self=$(realpath "$0")
cd "$(dirname "$self")/.."
. tools/build.sh

name=tl030101
work=$PWD/build/try
cache=${XDG_CACHE_HOME:-$HOME/.cache}/$name-try
root=$work/root
operator=1234 # the user who starts the program

skip() {
    say "skipped: trying the package in a new Debian, because $1"
    exit 0
}

# What dpkg and the desktop's own tools say of the package.
look_over() {
    rm -rf "$work/files"
    mkdir -p "$work"
    dpkg-deb -x "$package" "$work/files"
    lintian --allow-root --fail-on error "$package" || die "lintian found errors" "lintian $package"
    desktop-file-validate "$work"/files/usr/share/applications/*.desktop || die "the desktop entry is wrong"
    appstreamcli validate --no-net "$work"/files/usr/share/metainfo/*.xml >"$work/appstream.log" ||
        { cat "$work/appstream.log" >&2; die "the metainfo is wrong"; }
}

# A minimal Debian 12, younger than a week.
make_root() {
    local base=$cache/base.tar
    mkdir -p "$cache/archives/partial"
    if [ -z "$(find "$base" -mtime -7 2>/dev/null)" ]; then
        mmdebstrap --quiet --mode=root --variant=minbase bookworm "$cache/new.tar" \
            >"$work/mmdebstrap.log" 2>&1 ||
            { cat "$work/mmdebstrap.log" >&2; die "no minimal Debian could be made" "check the network"; }
        mv "$cache/new.tar" "$base"
    fi
    rm -rf "$root"
    mkdir -p "$root"
    tar -xf "$base" -C "$root"
    cp /etc/resolv.conf "$root/etc/resolv.conf"
    mount -t proc proc "$root/proc"
    mount --bind "$cache/archives" "$root/var/cache/apt/archives"
    echo force-unsafe-io >"$root/etc/dpkg/dpkg.cfg.d/try" # it is thrown away
    mkdir -p "$root/home/operator"
    chown $operator:$operator "$root/home/operator"
}

inside() { chroot "$root" env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin LC_ALL=C.UTF-8 "$@"; }

apt() {
    inside DEBIAN_FRONTEND=noninteractive apt-get -qq -o APT::Keep-Downloaded-Packages=true "$@" \
        >>"$work/apt.log" 2>&1 ||
        { tail -20 "$work/apt.log" >&2; die "apt-get $* failed"; }
}

# The operator's program; the rest of the line is its command line.
as_operator() {
    chroot --userspec=$operator:$operator "$root" \
        env -i PATH=/usr/bin:/bin LC_ALL=C.UTF-8 HOME=/home/operator DISPLAY="$DISPLAY" "$@"
}

# The package as an older version that came with other settings.
make_older() {
    rm -rf "$work/older"
    dpkg-deb -R "$package" "$work/older"
    sed -i 's/^Version: .*/Version: 0.0.1/' "$work/older/DEBIAN/control"
    echo "; of the older version" >>"$work/older/etc/talven/TALVEN.INI"
    dpkg-deb --root-owner-group -b "$work/older" "$root/tmp/older.deb" >/dev/null
}

# wait_for WHAT COMMAND...: until the command succeeds.
wait_for() {
    local what=$1 try
    shift
    for try in $(seq 150); do
        "$@" >/dev/null 2>&1 && return
        sleep 0.2
    done
    die "there is no $what" "see the files in $work"
}

window() { xdotool search --onlyvisible --name "$1"; }

# expect WHAT COMMAND...
expect() {
    local what=$1
    shift
    "$@" || die "not so: $what"
}

# expect_status STATUS TEXT COMMAND...: of a start that fails.
expect_status() {
    local wanted=$1 text=$2 status=0
    shift 2
    as_operator "$@" >"$work/failed.log" 2>&1 || status=$?
    expect "$* ends with status $wanted" test $status -eq "$wanted"
    expect "$* says why" grep -q "$text" "$work/failed.log"
}

install_over_older() {
    say "installing over an older version"
    make_older
    cp "$package" "$root/tmp/newer.deb"
    apt update
    apt install /tmp/older.deb
    inside tldb demo /srv/demo --lines 200 >/dev/null
    chown -R $operator:$operator "$root/srv/demo"
    cp "$root/srv/demo/TALVEN.INI" "$root/etc/talven/TALVEN.INI"
    # Enter at the question what is to become of the changed settings.
    echo | apt install /tmp/newer.deb
    expect "the site's settings are kept" cmp "$root/srv/demo/TALVEN.INI" "$root/etc/talven/TALVEN.INI"
    for program in TL030101 tldb; do
        expect "$program tells its version" sh -c "as=\$(chroot '$root' $program --version) &&
            echo \"   \$as\" && case \$as in '$program '[0-9]*' ('*) ;; *) exit 1;; esac"
    done
}

start_by_entry() {
    say "starting it by its desktop entry"
    local entry command status=0
    entry=$root/usr/share/applications/TL030101.desktop
    command=$(sed -n '/^\[Desktop Entry\]/,/^$/s/^Exec=//p' "$entry")
    as_operator sh -c "exec $command" >"$work/program.log" 2>&1 &
    local program=$!
    wait_for "window of the search" window 検索条件
    expect "the window is the entry's" sh -c \
        "xprop -id $(window 検索条件 | head -n 1) WM_CLASS | grep -q '\"$(sed -n 's/^StartupWMClass=//p' "$entry")\"'"
    expect "the window has its icon" sh -c \
        "xprop -id $(window 検索条件 | head -n 1) _NET_WM_ICON | grep -q Icon"
    xdotool key F1
    wait_for "window of the guide" window 操作の手引き
    picture guide
    xdotool windowactivate --sync "$(window 検索条件 | head -n 1)" key alt+x
    wait $program || status=$?
    expect "the program ends well" test $status -eq 0
    expect "the guide ends with it" sh -c "! xdotool search --onlyvisible --name 操作の手引き >/dev/null"
    expect "the log tells of the database" \
        grep -q '/srv/demo/TLDB0010.MDB' "$root/home/operator/.local/state/talven/TL030101.log"
    picture end
}

# A picture to look at when something went wrong.
picture() {
    sleep 0.5
    scrot --overwrite "$work/$1.png"
}

fail_to_start() {
    say "starts that fail"
    expect_status 1 データベースが見つかりません env WINDIR=/nowhere TL030101
    expect_status 1 画面を使えない env DISPLAY= TL030101
    expect_status 2 知らないオプション TL030101 --nowhere
}

purge() {
    say "purging it"
    local files left
    files=$(inside dpkg -L $name)
    apt purge $name
    rm -rf "$root/home/operator" "$root/srv/demo" "$root"/tmp/*.deb
    left=$(for file in $files; do [ -d "$root$file" ] || ls -d "$root$file" 2>/dev/null || true; done
           find "$root" -xdev -path "$root/proc" -prune -o \
               \( -iname '*talven*' -o -iname '*tl030101*' -o -iname '*tldb*' \) -print)
    [ -z "$left" ] || die "the purge leaves something" "$left"
    expect "dpkg has forgotten it" sh -c "! chroot '$root' dpkg -s $name >/dev/null 2>&1"
}

if [ "${2:-}" != --inside ]; then
    look_over
    [ "$(id -u)" -eq 0 ] || skip "that needs root"
    unshare --mount true 2>/dev/null || skip "this machine lets nobody mount"
    exec tools/on-desktop.sh unshare --mount --propagation private "$self" "$package" --inside
fi
: >"$work/apt.log"
make_root
install_over_older
start_by_entry
fail_to_start
purge
umount "$root/proc" "$root/var/cache/apt/archives"
rm -rf "$root" "$work/older" "$work/files"
say "the package is well"
