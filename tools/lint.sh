#!/usr/bin/env bash
# Checks the format of all sources, then lints the lines that changed, committed or not. A finding of either is a failure.
#   tools/lint.sh [BASE]    changes since the commit BASE; by default since this branch left origin/main, on it since the
#                           commit before. Where there is no such commit, as in a clone of one commit, nothing is linted.
# LINT_FILES limits the files that are linted, those with most changes first; each takes about ten seconds.
set -euo pipefail
cd "$(dirname "$0")/.."
. tools/setup.sh

sources=('*.cpp' '*.h')
max_files=${LINT_FILES:-16}
install_packages
git rev-parse --git-dir >/dev/null || die "git cannot read this folder"
git ls-files -z -- "${sources[@]}" | xargs -0 -P "$(nproc)" -n 32 clang-format --dry-run -Werror \
    || die "these files are not in the project's format; clang-format -i FILE... writes it"

if [ $# -gt 0 ]; then
    base=$(git rev-parse --verify --quiet "$1^{commit}") || die "there is no commit $1"
else
    base=$(git merge-base HEAD origin/main 2>/dev/null || true)
    [ "$base" != "$(git rev-parse HEAD)" ] || base=
    [ -n "$base" ] || base=$(git rev-parse --verify --quiet HEAD~1 || true)
fi
[ -n "$base" ] || { echo "lint.sh: format is right; there is no earlier commit to compare with"; exit 0; }

mapfile -t changed < <(git diff --no-renames --numstat --diff-filter=d "$base" -- "${sources[@]}" | sort -rn | cut -f3)
[ ${#changed[@]} -le "$max_files" ] || echo "lint.sh: ${#changed[@]} files changed; the $max_files with most changes are linted"
changed=("${changed[@]:0:max_files}")
[ ${#changed[@]} -gt 0 ] || { echo "lint.sh: format is right; no source to lint"; exit 0; }
[ -f build/compile_commands.json ] || build release  # which also generates what some sources include
findings=$(git diff --no-renames -U0 "$base" -- "${changed[@]}" \
    | clang-tidy-diff -p1 -path build -j "$(nproc)" -quiet -extra-arg=-Wno-unknown-warning-option 2>/dev/null) \
    || die "clang-tidy-diff failed; run it by hand to see why"
echo "$findings"
! grep -qE '(warning|error):' <<<"$findings" || die "clang-tidy found the above in lines that changed since ${base:0:10}"
echo "lint.sh: format is right, and so are the changed lines"
