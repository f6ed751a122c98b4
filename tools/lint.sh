#!/usr/bin/env bash
# ./ax lint: layout, shell scripts and C++ of what changed or of everything.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

# A change of more translation units than this is read by --all only: 60 of 17 seconds each take two cores
# some nine minutes, and a choice among them would find other faults with each run.
unit_limit=${AX_LINT_UNITS:-60}
database=build/lint/tidy

usage() {
    cat <<'TEXT'
usage: ./ax lint [--changed [BASE]]   what changed since BASE; without one since the last tag, or else the parent
       ./ax lint --all [PATHS]        everything, or everything under PATHS
TEXT
}

say() {
    echo "lint: $*"
}

# The checkout may belong to another user than the one who builds it, as in a container.
git() {
    command git -c safe.directory="$PWD" "$@"
}

# all_files [PATHS]: the files of the project, also where it was unpacked without a history.
all_files() {
    (($#)) || set -- .
    git ls-files --cached --others --exclude-standard -- "$@" 2>/dev/null ||
        find "$@" -path ./build -prune -o -path ./.git -prune -o -type f -print | sed 's|^\./||'
}

# The last tag before this commit, or else its parent; nothing in a checkout that holds one commit only.
default_base() {
    git rev-parse --quiet --verify 'HEAD^' >/dev/null 2>&1 || return 0
    git describe --tags --abbrev=0 'HEAD^' 2>/dev/null || echo 'HEAD^'
}

# What differs between the base and the files as they are now, new ones included.
changed_files() {
    git diff --name-only --no-renames --diff-filter=d "$1" --
    git ls-files --others --exclude-standard
}

is_source() {
    [[ -f $1 && ($1 == *.h || $1 == *.cpp || $1 == earth/include/*) ]]
}

# Writes the compile commands that clang-tidy works with, one for each file of the tree, and the list of these
# files with the target that each belongs to. Only headers are made that programs write: the preset knows no precompiled
# headers.
prepare_database() {
    local log=build/lint.log
    mkdir -p "$database"
    cmake --preset lint >"$log" 2>&1 || {
        cat "$log"
        say "configuring failed"
        exit 1
    }
    cmake --build build/lint --target AxMavMessages >>"$log" 2>&1 || {
        cat "$log"
        say "the MAVLink messages were not written"
        exit 1
    }
    awk -v root="$PWD/" -v units="$database/units" '
        function finish(   path) {
            path = file
            if (index(path, root "build/") != 1 && index(path, root) == 1 && !(path in seen)) {
                seen[path] = 1
                printf "%s%s", (count++ ? ",\n" : "[\n"), entry
                print substr(path, length(root) + 1) "\t" target > units
            }
        }
        /^\{/ { entry = "{"; next }
        /^\}/ { entry = entry "\n}"; finish(); next }
        /^[][]/ { next }
        {
            entry = entry "\n" $0
            if ($1 == "\"file\":") {
                file = $0
                sub(/^ *"file": "/, "", file)
                sub(/",?$/, "", file)
            }
            if ($1 == "\"command\":" && match($0, /CMakeFiles\/[^\/ ]*\.dir/))
                target = substr($0, RSTART + 11, RLENGTH - 15)
        }
        END { print "\n]" }' build/lint/compile_commands.json >"$database/compile_commands.json"
}

# unit_of HEADER: sets `unit` to the source that clang-tidy reads for this header: the one of its name, or else one
# that includes it, if possible one that is chosen anyway; empty for a header that nothing includes. Knows
# `is_unit`, `chosen` and `includers` of select_units, and `asked`, the headers that it has looked at.
unit_of() {
    local header=$1 suffix=$1 file all=()
    asked[$header]=1
    unit=${header%.h}.cpp
    [[ ! ${is_unit[$unit]:-} ]] || return 0
    unit=
    # Includes name a file by any part of its end: "AxFrame.h", "viewer/AxFrame.h".
    while :; do
        read -ra all <<<"${includers[$suffix]:-} ${all[*]}"
        [[ $suffix == */* ]] || break
        suffix=${suffix#*/}
    done
    for file in "${all[@]}"; do
        if [[ ${chosen[$file]:-} ]]; then
            unit=$file
            return 0
        fi
    done
    for file in "${all[@]}"; do
        if [[ ${is_unit[$file]:-} ]]; then
            unit=$file
            return 0
        fi
    done
    for file in "${all[@]}"; do
        [[ ! ${asked[$file]:-} ]] || continue
        unit_of "$file"
        [[ ! $unit ]] || return 0
    done
}

# select_units FILES: fills `units` with the sources among the files and with one source for each header among them.
select_units() {
    local file unit include
    local -A is_unit=() chosen=() includers=() asked=()
    while IFS=$'\t' read -r unit _; do
        is_unit[$unit]=1
    done <"$database/units"
    for file in "$@"; do
        [[ ! ${is_unit[$file]:-} ]] || chosen[$file]=1
    done
    while IFS=: read -r file include; do
        include=${include#*[\"<]}
        includers[$include]+=" $file"
    done < <(all_files | grep -E '\.(h|cpp)$|^earth/include/' | xargs -r grep -HoE '^#include ["<][^">]+')

    for file in "$@"; do
        if ! is_source "$file" || [[ $file == *.cpp ]]; then
            continue
        fi
        asked=()
        unit_of "$file"
        if [[ $unit ]]; then
            chosen[$unit]=1
        else
            say "nothing that is built includes $file"
        fi
    done
    units=()
    ((${#chosen[@]} == 0)) || mapfile -t units < <(printf '%s\n' "${!chosen[@]}" | sort)
}

# Sources that include what moc makes of them need that made.
make_moc_files() {
    local unit target targets=()
    for unit in "${units[@]}"; do
        grep -qE '^#include "[^"]*\.moc"' "$unit" || continue
        target=$(awk -F'\t' -v unit="$unit" '$1 == unit { print $2 }' "$database/units")
        targets+=("${target}_autogen")
    done
    ((${#targets[@]} == 0)) || cmake --build build/lint --target "${targets[@]}" >build/lint.log 2>&1 || {
        cat build/lint.log
        say "moc failed"
        exit 1
    }
}

# One file, its findings in one piece.
tidy_one() {
    local found status=0
    found=$(clang-tidy -p "$1" --quiet "$2" 2>&1) || status=$?
    found=$(grep -vE '^[0-9]+ (warning|error)s? .*(generated|treated as errors?)' <<<"$found" || true)
    printf 'lint: %s\n' "$2${found:+$'\n'}$found"
    return "$status"
}
export -f tidy_one

tidy() {
    prepare_database
    local units
    select_units "$@"
    if ((capped && ${#units[@]} > unit_limit)); then
        say "${#units[@]} translation units changed, more than $unit_limit (AX_LINT_UNITS): ./ax lint --all is for those"
        return 0
    fi
    say "clang-tidy, ${#units[@]} translation units"
    ((${#units[@]})) || return 0
    make_moc_files
    # shellcheck disable=SC2016 # the inner shell expands these
    printf '%s\0' "${units[@]}" | xargs -0 -P "$(nproc)" -I{} bash -c 'tidy_one "$1" "$2"' _ "$database" {}
}

capped=1
tidy_files=() format_files=()
case ${1:---changed} in
    --all)
        capped=0
        mapfile -t tidy_files < <(all_files "${@:2}")
        format_files=("${tidy_files[@]}")
        say "all ${#tidy_files[@]} files${2:+ under ${*:2}}"
        ;;
    --changed)
        base=${2:-$(default_base)}
        if [[ $base ]]; then
            git rev-parse --quiet --verify "$base^{commit}" >/dev/null || {
                say "no commit '$base'"
                exit 2
            }
            mapfile -t tidy_files < <(changed_files "$base" | sort -u)
            format_files=("${tidy_files[@]}")
            say "${#tidy_files[@]} files changed since $base"
        else
            mapfile -t format_files < <(all_files)
            say "no parent commit here to compare with: the layout of all files, clang-tidy of none"
        fi
        ;;
    *)
        usage >&2
        exit 2
        ;;
esac

failed=()
sources=()
for file in "${format_files[@]}"; do
    is_source "$file" && sources+=("$file")
done
say "clang-format, ${#sources[@]} files"
((${#sources[@]} == 0)) || ./ax format --check "${sources[@]}" || failed+=(clang-format)

scripts=(ax .ci/run tools/*.sh)
say "shellcheck, ${#scripts[@]} scripts"
shellcheck "${scripts[@]}" || failed+=(shellcheck)

((${#tidy_files[@]} == 0)) || tidy "${tidy_files[@]}" || failed+=(clang-tidy)

if ((${#failed[@]})); then
    say "findings of ${failed[*]}"
    exit 1
fi
say "nothing found"
