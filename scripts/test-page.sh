#!/usr/bin/env bash
# Makes the inspector, tests it in a real browser, and makes the pictures of docs/inspector.md.
#   test-page.sh [FOLDER]   pictures go to FOLDER, docs/inspector to renew them; build/page/pictures when none is named
set -euo pipefail
cd "$(dirname "$0")/.."
# shellcheck source=scripts/talk.sh
. scripts/talk.sh

scripts/page.sh
talk "page: checking its sources" npm run --silent --prefix tools/page check
# The page's answers are compared with those of the command line.
[ -e build/release/build.ninja ] || talk "Preparing build/release" cmake --preset release
talk "Building vekmsg" cmake --build build/release --target vekmsg
talk "page: testing in a browser" node --test --test-concurrency=2 tests/page/*.test.mjs
talkShows '^# ([0-9]+ messages|a key|pass|fail)'
# Those in which browsers differ: policies, keys, layout, drawing, downloads, sockets, unpacking. The rest goes there, too:
# VEK_BROWSER=firefox node --test tests/page/*.test.mjs
talk "page: testing in Firefox" env VEK_BROWSER=firefox \
    node --test --test-concurrency=2 tests/page/{hostile,installing,keeping,keyboard,live,looks,mending,morning,seeing,sources,state}.test.mjs
talkShows '^# (pass|fail)'
talk "page: making pictures" node tests/page/pictures.mjs "${1:-build/page/pictures}"
