#!/usr/bin/env bash
# symbols.sh [--write] FOLDER VERSION RECORD: compares the symbols that the shared libraries in FOLDER export with RECORD,
# a text file whose first line is the version that it was recorded of. Names what differs, and fails. --write replaces
# the record, if the version is one that such a change may have (docs/stability.md).
set -euo pipefail
export LC_ALL=C

write=''
if [[ ${1:-} == --write ]]; then
    write=yes
    shift
fi
folder=$1 version=$2 record=$3
project=$(cd -- "$(dirname -- "${BASH_SOURCE[0]}")/../.." && pwd -P)

# public_words: every word of the installed headers. What other headers declare is exported for tests.
public_words() {
    find "$project/include" "$project"/{qt,platform/*}/include -name '*.h' -print0 | xargs -0 cat | grep -oE '[A-Za-z_]\w*' | sort -u
}

# exported_symbols: a line for each symbol, the library's name first. Leaves out those that a compiler may or may not emit:
# inline functions, instances of templates, types of pointers.
exported_symbols() {
    local library words
    words=$(public_words)
    for library in KorvidAppKit KorvidPlatform KorvidQt; do
        nm -D -C --defined-only "$folder/lib$library.so" | awk -v library="$library" '
            NR == FNR { public[$0] = 1; next }
            {
                kind = $2
                sub(/^[0-9a-f]+ . /, "")
                owner = $0
                sub(/^(vtable|typeinfo) for /, "", owner)
                isRuntimeType = owner != $0 && owner ~ /^[A-Za-z_0-9:]+$/ && owner !~ /^std::/
                match(owner, /^[A-Za-z_][A-Za-z_0-9]*/)
                if ((kind ~ /[TDBR]/ || isRuntimeType) && substr(owner, 1, RLENGTH) in public)
                    print library ": " $0
            }' <(printf '%s\n' "$words") -
    done | sort -u
}

# is_newer <index>: whether the version is greater than the recorded one in its first <index> numbers.
is_newer() {
    local place old new
    IFS=. read -ra old <<<"$recorded"
    IFS=. read -ra new <<<"$version"
    for ((place = 0; place < $1; place++)); do
        ((new[place] > old[place])) && return
        ((new[place] < old[place])) && return 1
    done
    return 1
}

current=$(exported_symbols)
[[ -n $current ]] || { echo "symbols: the libraries in $folder export nothing" >&2; exit 2; }
recorded=$(head -n 1 -- "$record" 2>/dev/null || true)
changes=$(diff <(tail -n +2 -- "$record" 2>/dev/null) <(printf '%s\n' "$current") || true)
removed=$(sed -n 's/^< /- /p' <<<"$changes")
added=$(sed -n 's/^> /+ /p' <<<"$changes")

if [[ -z $write ]]; then
    [[ $recorded == "$version" && -z $changes ]] && exit
    [[ -z $changes ]] || printf '%s\n' "$removed" "$added" | sed '/^$/d' >&2
    if [[ $recorded == "$version" ]]; then
        echo "symbols: the exported symbols are not those of version $version any more: raise the version, then record them with './korvid symbols --write'" >&2
    else
        echo "symbols: the record is of version '$recorded', not $version: './korvid symbols --write' records it anew" >&2
    fi
    exit 1
fi

if [[ -n $recorded ]]; then
    # The libraries' file names change with the first number, before 1.0.0 with the second one.
    compatible=1
    [[ $recorded == 0.* ]] && compatible=2
    if [[ -n $removed ]] && ! is_newer "$compatible"; then
        printf '%s\n' "$removed" >&2
        echo "symbols: programs that use these would not start any more: raise the $([[ $compatible == 1 ]] && echo first || echo second) number of the version" >&2
        exit 1
    fi
    if [[ -n $added ]] && ! is_newer 3; then
        printf '%s\n' "$added" >&2
        echo "symbols: these are new: raise the version" >&2
        exit 1
    fi
fi
printf '%s\n' "$version" "$current" >"$record"
