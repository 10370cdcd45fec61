#!/usr/bin/env bash
# Installs what is missing and makes the Debian packages, in build/package.
# usage: scripts/package.sh
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

./scripts/setup.sh package
# Packages of an earlier version stay out of the way of those that take all there are.
rm -f build/package/*.deb
cmake --workflow --preset package
echo
# The packages are for use in house: no public address, and no bug that their upload closes.
lintian --suppress-tags bogus-mail-host,bogus-mail-host-in-debian-changelog,initial-upload-closes-no-bugs \
    --fail-on error,warning --tag-display-limit 0 build/package/*.deb
ls -l build/package/*.deb
