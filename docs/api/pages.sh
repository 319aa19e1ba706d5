#!/usr/bin/env bash
# Builds the pages of the documentation in build/docs/html, or checks them:
#
#   pages.sh build    runs Doxygen; any warning is an error
#   pages.sh check    opens all pages in a browser without a window
set -euo pipefail
cd -- "$(dirname -- "${BASH_SOURCE[0]}")/../.."

export KORVID_DOCS=build/docs
pages=$KORVID_DOCS/html

build() {
    rm -rf -- "$pages"
    mkdir -p -- "$KORVID_DOCS"
    KORVID_VERSION=$(sed -n 's/^project(KorvidAppKit VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt)
    KORVID_HEADERS=$(printf "%s " include qt/include platform/*/include)
    export KORVID_VERSION KORVID_HEADERS
    local options='' version
    version=$(doxygen --version)
    # Version 1.9.5 and later have dark colours of their own, which then lie below ours.
    [[ $(printf '%s\n' 1.9.5 "${version%% *}" | sort -V | head -n 1) == 1.9.5 ]] && options='HTML_COLORSTYLE = DARK'
    { cat docs/api/Doxyfile; echo "$options"; } | doxygen -

    cp -r docs/pictures "$pages/pictures"
    # Search results have a style sheet of their own.
    cat docs/api/style.css >>"$pages/search/search.css"
}

check() {
    local profile report options=()
    profile=$(mktemp -d)
    # shellcheck disable=SC2064 # the folder of now
    trap "rm -rf -- '$profile'" EXIT
    [[ $EUID -eq 0 ]] && options=(--no-sandbox) # which root cannot have
    # Time stands still for the browser while it reads files: the number of milliseconds is no limit to the work.
    report=$(HOME=$profile chromium --headless --disable-gpu --disable-dev-shm-usage --allow-file-access-from-files \
        --user-data-dir="$profile" --virtual-time-budget=10000000 "${options[@]}" \
        --dump-dom "file://$PWD/docs/api/check.html?$PWD/$pages/index.html" 2>/dev/null)
    report=$(sed -n '/<pre id="report">/,/<\/pre>/{s/<[^>]*>//g; /./p}' <<<"$report")

    local all faults
    all=$(find "$pages" -maxdepth 1 -name '*.html' ! -name 'dir_*' | wc -l)
    faults=$({
        sed '$d' <<<"$report"
        [[ ${report##*$'\n'} == "$all pages" ]] || echo "of $all pages, links lead to: ${report##*$'\n'}"
    })
    [[ -z $faults ]] || { printf '%s\n' "$faults" >&2; return 1; }
}

"$1"
