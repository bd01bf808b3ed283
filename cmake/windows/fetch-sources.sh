#!/bin/sh
# Fetches the sources of libraries that Debian has no Windows packages of, from the mirror that the system's packages
# come from, into a directory: one folder a source package, without its version. The system's own lists of packages
# stay as they are.
#     fetch-sources.sh DIRECTORY highway metis ...
set -eu
mkdir -p "$1"
directory=$(cd "$1" && pwd)
shift
own="$directory/apt"
mkdir -p "$own/lists/partial" "$own/archives/partial"

missing=
for package; do
    [ -e "$directory/$package/debian/copyright" ] || missing="$missing $package"
done
[ -n "$missing" ] || exit 0

# The indexes of binary packages that are in use, each as the one of its sources.
list_indexes() {
    apt-get indextargets --format \
        'deb-src [signed-by=/usr/share/keyrings/debian-archive-keyring.gpg] $(REPO_URI) $(RELEASE) $(COMPONENT)' \
        'Created-By: Packages' 'Origin: Debian' | sort -u >"$own/sources.list"
    [ -s "$own/sources.list" ]
}
if ! list_indexes; then # a fresh machine has not fetched them
    if [ "$(id -u)" = 0 ]; then apt-get -q update; else sudo apt-get -q update; fi
fi
if ! list_indexes; then
    echo "fetch-sources.sh: error: apt has no index of Debian's packages" >&2
    echo "  expected: a Debian system whose lists of packages have been fetched" >&2
    echo "  to do:    apt-get update, then again" >&2
    exit 1
fi
apt() {
    apt-get -q -o Dir::Etc::SourceList="$own/sources.list" -o Dir::Etc::SourceParts=/dev/null \
        -o Dir::State::Lists="$own/lists" -o Dir::Cache="$own" -o APT::Sandbox::User=root "$@"
}
apt update
cd "$own/archives"
apt source --download-only $missing
for package in $missing; do
    rm -rf "$directory/$package"
    dpkg-source --no-check --no-copy -x "$package"_*.dsc "$directory/$package"
done
