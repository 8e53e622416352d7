#!/usr/bin/env bash
# Writes the API documentation: without a warning, with every operation by its name.
# Usage: documentation_test.sh BUILD_DIR SOURCE_DIR EXTENSION
set -euo pipefail
build=$1 source=$2 extension=$3
folder=$build/documentation
mkdir -p "$folder"
python3 "$source/tools/operations_page.py" "$extension" > "$folder/operations.md"
doxygen "$build/Doxyfile"
if [ -s "$folder/warnings.txt" ]; then
  head -n 40 "$folder/warnings.txt"
  exit 1
fi
grep -o '^| [A-Za-z0-9:]*:* | .ref' "$folder/operations.md" | cut -d' ' -f2 > "$folder/names.txt"
[ "$(wc -l < "$folder/names.txt")" -ge 170 ]
while read -r name; do
  grep -qE ">$name *</td>" "$folder/html/index.html" || { echo "$name is not found"; exit 1; }
done < "$folder/names.txt"
echo "$(wc -l < "$folder/names.txt") operations"
