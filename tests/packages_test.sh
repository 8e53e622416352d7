#!/usr/bin/env bash
# Makes the Debian packages in a scratch folder, unpacks them there and runs what is inside, without
# privileges. Usage: packages_test.sh BUILD_DIR SOURCE_DIR CPACK
set -euo pipefail
build=$1 source=$2 cpack=$3
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
fail() { echo "$*" >&2; exit 1; }

(cd "$scratch" && "$cpack" --config "$build/CPackConfig.cmake" -B "$scratch/made" >cpack.log 2>&1) ||
  fail "$(cat "$scratch/cpack.log")"
root=$scratch/root
for package in libkelspar0 libkelspar-dev kelspar; do
  file=$(echo "$scratch/made/${package}_"*.deb)
  dpkg-deb -x "$file" "$root"
  [ "$(dpkg-deb -f "$file" Package)" = "$package" ] || fail "$file: another name"

  # Each dependency is a package that is there, or comes along; of alternatives one.
  for field in Depends Recommends; do
    dpkg-deb -f "$file" $field | tr ',' '\n' | sed 's/([^)]*)//g' | while read -r names; do
      found=
      for name in ${names//|/ }; do
        if [ -e "$(echo "$scratch/made/${name}_"*.deb)" ] || dpkg-query -W "$name" >/dev/null 2>&1; then
          found=$name
        fi
      done
      [ -z "$names" ] || [ -n "$found" ] || fail "$package: $field on \"$names\", which is no package"
    done
  done
  for file in changelog.gz copyright; do
    [ -s "$root/usr/share/doc/$package/$file" ] || fail "$package: no $file"
  done
done

library=$(dirname "$(find "$root/usr/lib" -name 'libkelspar.so.0')")
for file in libkelspar.so libkelspar.so.0 pkgconfig/kelspar.pc cmake/kelspar/kelsparConfig.cmake; do
  [ -s "$library/$file" ] || fail "no $file"
done
gzip -t "$root"/usr/share/man/man1/kelspar.1.gz "$root"/usr/share/man/man1/kelspar-extension.1.gz \
  "$root"/usr/share/man/man7/kelspar.7.gz

# Nothing of the build is looked at: not by the programs, and not by the library.
export LD_LIBRARY_PATH=$library
for file in "$root/usr/bin/kelspar" "$root/usr/bin/kelspar-extension" "$library/libkelspar.so.0"; do
  ! readelf -d "$file" | grep -E "R(UN)?PATH" || fail "$file: has a path of its own"
  ! ldd "$file" | grep "not found" || fail "$file: misses a library"
done
# Whole outputs are looked at: who writes into a closed pipe fails.
libraries=$(ldd "$root/usr/bin/kelspar")
[[ $libraries == *"$library/libkelspar.so.0"* ]] || fail "another library is loaded: $libraries"

cd "$scratch"
text=$("$root/usr/bin/kelspar" convert "$source/samples/invitation.rtfz" --to text)
[[ $text == *"Dear neighbours"* ]] || fail "the text is: $text"
"$root/usr/bin/kelspar" convert "$source/samples/invitation.rtfz" --to pdf -o page.pdf
[ "$(head -c 5 page.pdf)" = "%PDF-" ] || fail "the document is none"
request='{"jsonrpc":"2.0","id":1,"method":"stringByStrippingHTML","params":{"receiver":"<p>Hi</p>"}}'
answer=$(echo "$request" | "$root/usr/bin/kelspar-extension" 2>/dev/null)
[ "$answer" = '{"jsonrpc":"2.0","id":1,"result":{"value":"Hi"}}' ] || fail "the answer is: $answer"

lintian --allow-root --fail-on error "$scratch"/made/*.deb
