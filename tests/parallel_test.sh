#!/usr/bin/env bash
# The example of the documentation: an archive over several processes by GNU parallel gives the records
# of one process, in the same order. Usage: parallel_test.sh KELSPAR
set -euo pipefail
export PATH=$(dirname "$1"):$PATH
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
mkdir "$scratch/archive"
cd "$scratch"
for i in $(seq 1 200); do
  printf 'From: a@example.org\nSubject: message %s\n\ntext\n' "$i" > "archive/$i.eml"
done

find archive -name '*.eml' | sort | kelspar stream > one.jsonl
find archive -name '*.eml' | sort | parallel --pipe -N 20 --keep-order kelspar stream --jobs 1 > records.jsonl

[ "$(wc -l < records.jsonl)" -eq 200 ]
cmp one.jsonl records.jsonl
grep -q '"subject":"message 77"' records.jsonl
