#!/usr/bin/env bash
# `./korvid packages --check SUITE...`: makes the packages in a new Debian system of each suite, installs them in another one
# and builds the consumer there; see its help.
set -euo pipefail

project=$(cd -- "$(dirname -- "${BASH_SOURCE[0]}")/../.." && pwd -P)

log() { printf 'packages: %s\n' "$*" >&2; }
fail() { log "$1"; exit 1; }

[[ $EUID -eq 0 ]] || fail "only root can make a new system; run this with sudo, or in a container"
command -v debootstrap >/dev/null || fail "debootstrap is missing; as root, run: apt-get install debootstrap"
# In a mount namespace of its own the script leaves no file system mounted, however it ends.
if [[ -z ${KORVID_OWN_MOUNTS:-} ]]; then
    unshare --mount true 2>/dev/null || fail "this machine does not let root mount file systems"
    KORVID_OWN_MOUNTS=yes exec unshare --mount --propagation private "$BASH" "${BASH_SOURCE[0]}" "$@"
fi

folder=$(mktemp -d "${TMPDIR:-/tmp}/korvid-packages.XXXXXX")
remove_systems() {
    umount -- "$folder"/*/proc 2>/dev/null || true # not mounted in all of them
    rm -rf --one-file-system -- "${folder:?}"/*
}
trap 'remove_systems; rmdir -- "$folder"' EXIT

# inside <system> <command>...: runs a command in one of the new systems, in the copy of the project.
inside() {
    chroot "$folder/$1" /usr/bin/env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/root LC_ALL=C.UTF-8 \
        DEBIAN_FRONTEND=noninteractive KORVID_UNITY=ON "CC=${CC:-}" "CXX=${CXX:-}" "CMAKE_PREFIX_PATH=${CMAKE_PREFIX_PATH:-}" \
        "PKG_CONFIG_PATH=${PKG_CONFIG_PATH:-}" nice -n 10 sh -c 'cd /project && exec "$@"' sh "${@:2}"
}

# make_system <name>: a copy of the suite's new system, with the files of the project but not what was built from them.
make_system() {
    cp -a -- "$folder/new" "$folder/$1"
    mount -t proc proc "$folder/$1/proc"
    mkdir -- "$folder/$1/project"
    tar -C "$project" --exclude=./build --exclude=./.git -c . | tar -C "$folder/$1/project" -x
}

# passes <what> <system> <command>...: runs a command in a system, and reports whether it succeeds.
passes() {
    local what=$1
    shift
    if inside "$@" >"$folder/log" 2>&1; then
        log "passed: $suite, $what"
    else
        cat -- "$folder/log" >&2
        log "FAILED: $suite, $what"
        failures=$((failures + 1))
    fi
}

# check_consumers <system> <kind> [--qt] [option of pkg-config]: builds and runs the programs of users in all ways.
check_consumers() {
    local system=$1 kind=$2 check=(tests/project/consumer/check.sh) compiler tool
    shift 2
    if [[ ${1:-} == --qt ]]; then
        kind="Qt and $kind"
        check+=(--qt)
        shift
    fi
    for compiler in gcc clang; do
        for tool in cmake pkg-config; do
            CC=$compiler CXX=${compiler/gcc/g}++ passes "$kind libraries, $compiler, $tool" "$system" \
                "${check[@]}" "/tmp/${kind// /-}-$compiler-$tool" "$tool" "$@"
        done
    done
}

failures=0
for suite in "$@"; do
    log "$suite: making a new system"
    if ! debootstrap --variant=minbase "$suite" "$folder/new" >"$folder/log" 2>&1; then
        cat -- "$folder/log" >&2
        fail "debootstrap cannot make a system of the suite '$suite'"
    fi
    # Packages need not survive a power failure, and are unpacked faster without.
    echo force-unsafe-io >"$folder/new/etc/dpkg/dpkg.cfg.d/korvid"

    log "$suite: making the packages"
    make_system builder
    packages=$(inside builder ./korvid packages)
    for package in $packages; do
        inside builder dpkg-deb --info "$package" >&2
    done

    log "$suite: installing the gallery in a system that has nothing else"
    make_system user
    for package in $packages; do
        cp -- "$folder/builder$package" "$folder/user/tmp"
    done
    inside user apt-get -q update
    install_in_user() { inside user sh -c "apt-get -q install -y --no-install-recommends $*"; }
    install_in_user fonts-liberation '/tmp/libkorvidappkit[0-9]*.deb' '/tmp/korvid-gallery*.deb'
    passes "gallery" user sh -c 'korvid-gallery --snapshot /tmp --scale 1 --page qr && test -s /tmp/qr.png'

    log "$suite: installing the libraries in a system that has only compilers, CMake and pkg-config"
    install_in_user g++ clang cmake make pkg-config '/tmp/libkorvidappkit-dev*.deb'
    check_consumers user shared
    install_in_user '/tmp/libkorvidqt*.deb'
    check_consumers user shared --qt

    log "$suite: making and installing static libraries in the first system"
    inside builder apt-get -q install -y --no-install-recommends clang make
    inside builder cmake --preset packages -B build/static -DBUILD_SHARED_LIBS=OFF -DCMAKE_INSTALL_PREFIX=/opt/korvid
    inside builder cmake --build build/static
    inside builder cmake --install build/static
    export CMAKE_PREFIX_PATH=/opt/korvid PKG_CONFIG_PATH=/opt/korvid/lib/pkgconfig
    check_consumers builder static --static
    check_consumers builder static --qt --static
    unset CMAKE_PREFIX_PATH PKG_CONFIG_PATH

    remove_systems
done
[[ $failures -eq 0 ]] || { log "$failures checks failed"; exit 1; }
log "all programs drew their pictures"
