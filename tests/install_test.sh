#!/usr/bin/env bash
# Installs the build into a scratch prefix and compiles a small program against it, found by CMake and
# by pkg-config. Usage: install_test.sh BUILD_DIR SOURCE_DIR CXX
set -euo pipefail
build=$1 source=$2 cxx=$3
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

cmake --install "$build" --prefix "$scratch/prefix" >/dev/null
libdir=$(dirname "$(find "$scratch/prefix" -name kelspar.pc)")/..
export LD_LIBRARY_PATH=$libdir

echo "find_package(kelspar)"
cmake -S "$source/tests/consumer" -B "$scratch/consumer" -G Ninja -DCMAKE_CXX_COMPILER="$cxx" \
  -DCMAKE_PREFIX_PATH="$scratch/prefix" >/dev/null
cmake --build "$scratch/consumer" >/dev/null
[ "$("$scratch/consumer/consumer")" = Hello ]

echo "pkg-config"
export PKG_CONFIG_PATH=$libdir/pkgconfig
# The prefix that was configured is not the scratch one.
flags=$(pkg-config --define-variable=prefix="$scratch/prefix" --cflags --libs kelspar)
# shellcheck disable=SC2086
"$cxx" -std=c++20 "$source/tests/consumer/main.cpp" $flags -o "$scratch/by-pkg-config"
[ "$("$scratch/by-pkg-config")" = Hello ]

echo "the README's example"
{
  echo '#include <cstdio>'
  echo '#include <fstream>'
  echo '#include <iterator>'
  awk '/^```cpp$/ { inside = 1; next } /^```$/ { inside = 0 } inside' "$source/README.md"
  echo 'int main(int, char** arguments) {'
  echo '  std::ifstream file(arguments[1], std::ios::binary);'
  echo '  const std::string blob(std::istreambuf_iterator<char>(file), {});'
  echo '  std::puts(textOfStoredBody(NSData(blob)).utf8().c_str());'
  echo '}'
} >"$scratch/example.cpp"
# shellcheck disable=SC2086
"$cxx" -std=c++20 "$scratch/example.cpp" $flags -o "$scratch/example"
[[ $("$scratch/example" "$source/samples/invitation.rtfz") == *"Dear neighbours"* ]]

echo "programs"
"$scratch/prefix/bin/kelspar" --version
"$scratch/prefix/bin/kelspar-extension" </dev/null
