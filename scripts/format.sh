#!/usr/bin/env bash
# Formats every C++ source and header under version control (and every new one git does
# not ignore, so a file not added yet is checked before it is committed) with the repository's
# .clang-format, or with --check only lists the files that are not formatted and fails.
#   scripts/format.sh [--check]
set -euo pipefail
cd "$(dirname "$0")/.."

check=0
case "${1:-}" in
  --check) check=1 ;;
  "") ;;
  *) sed -n '2,5p' "$0"; exit 2 ;;
esac
command -v clang-format >/dev/null || scripts/setup.sh >/dev/null

mapfile -t files < <(git ls-files --cached --others --exclude-standard '*.cpp' '*.h')
if [ $check -eq 0 ]; then
  clang-format -i "${files[@]}"
  echo "format: ${#files[@]} files formatted"
  exit 0
fi
bad=()
for f in "${files[@]}"; do
  clang-format --dry-run -Werror "$f" >/dev/null 2>&1 || bad+=("$f")
done
if [ ${#bad[@]} -gt 0 ]; then
  echo "format: not formatted (run scripts/format.sh):"
  printf '  %s\n' "${bad[@]}"
  exit 1
fi
echo "format: ${#files[@]} files formatted as .clang-format says"
