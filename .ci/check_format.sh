#!/usr/bin/env bash
# CI: every C++ file of the sources follows the .clang-format at the top (clang-format --dry-run
# -Werror). Found with find, not git: a fresh machine may have the sources without git.
set -euo pipefail
cd "$(dirname "$0")/.."
files=$(find dorvabase FEL Kavex3_GridGen tools tests bench -name '*.cpp' -o -name '*.h' | sort)
printf '%s\n' $files | xargs clang-format --dry-run -Werror
echo "clang-format: $(printf '%s\n' $files | wc -l) files formatted"
