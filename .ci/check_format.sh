#!/usr/bin/env bash
# CI: every tracked C++ file follows the .clang-format at the top (clang-format --dry-run -Werror).
set -euo pipefail
cd "$(dirname "$0")/.."
files=$(git ls-files '*.cpp' '*.h')
printf '%s\n' $files | xargs clang-format --dry-run -Werror
echo "clang-format: $(printf '%s\n' $files | wc -l) files formatted"
