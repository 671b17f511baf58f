#!/usr/bin/env bash
# Installs into an empty prefix and uses what is there from outside the source tree: run.sh CMAKE BUILD-FOLDER
set -euo pipefail
cmake=$1
build=$(realpath "$2")
source=$(realpath "$(dirname "$0")/../..")
here=$source/tests/install
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
unset TVK_MAP_MODULE_PATH LD_LIBRARY_PATH

fail() {
  echo "FAILED: $*" >&2
  exit 1
}

# quietly COMMAND...: its output is shown when it fails.
quietly() {
  "$@" >log 2>&1 || { cat log; fail "$*"; }
}

# expect TEXT COMMAND...: the command succeeds and prints the text somewhere.
expect() {
  local text=$1 output
  shift
  output=$("$@") || fail "$* ends with status $?"
  [[ $output == *"$text"* ]] || fail "$* prints no \"$text\": $output"
}

# An installed tree can be moved: nothing in it knows where it was.
quietly "$cmake" --install "$build" --prefix "$work/first"
mkdir moved
mv first moved/prefix
prefix=$work/moved/prefix
pkgconfig=$(dirname "$(find "$prefix" -name tvk-map.pc)")
lib=$(dirname "$pkgconfig")
tool=$prefix/bin/tvk-map

echo "Sonames"
for name in tvk_map tvk_platform; do
  soname=$(objdump -p "$lib/lib$name.so" | awk '$1 == "SONAME" { print $2 }')
  [[ $soname == lib$name.so.[0-9]* && -e $lib/$soname ]] || fail "lib$name.so has the soname \"$soname\""
done

echo "CMake consumers"
cp -r "$here/consumers" .
cp "$source/tests/c_api/main.c" consumers
sed -n '/^```cpp$/,/^```$/{/^```/d;p}' "$source/README.md" >consumers/hostname.cpp
echo '<system xmlns="urn:example:openconfig-system"><hostname>r1</hostname></system>' >consumers/request.xml
quietly "$cmake" -S consumers -B out -DCMAKE_PREFIX_PATH="$prefix"
quietly "$cmake" --build out
out/c_consumer || fail "the program in C"
out/cpp_consumer || fail "the program in C++"
expect "<name>r1</name>" "$cmake" --build out --target run_tool

echo "pkg-config consumers"
export PKG_CONFIG_PATH=$pkgconfig
flags() {
  pkg-config --cflags --libs "$@"
}
# shellcheck disable=SC2046
quietly "${CC:-cc}" -std=c11 consumers/main.c -o c_program $(flags tvk-map tvk-map-platform) "-Wl,-rpath,$lib"
./c_program || fail "the program in C, by pkg-config"
modules=$(pkg-config --variable=moduledir tvk-map)
# shellcheck disable=SC2046
quietly "${CXX:-c++}" -std=c++20 -fPIC -shared consumers/hostname.cpp -o "$modules/hostname.so" $(flags tvk-map)
expect "<name>r1</name>" "$tool" edit --mapping hostname consumers/request.xml

echo "Man page and completion"
man=$(<"$prefix/share/man/man1/tvk-map.1")
# shellcheck source=/dev/null
source "$prefix/share/bash-completion/completions/tvk-map"
complete_line() {
  read -r -a COMP_WORDS <<<"$1"
  [[ $1 != *' ' ]] || COMP_WORDS+=('')
  COMP_CWORD=$((${#COMP_WORDS[@]} - 1))
  _tvk_map
  echo "${COMPREPLY[*]}"
}
for command in edit get apply print; do
  options=$("$tool" $command --help | grep -oE '^ +(-h,)?--[a-z-]+' | sed 's/.*--/--/' | sort)
  [ -n "$options" ] || fail "tvk-map $command --help names no option"
  offered=$(complete_line "tvk-map $command --" | tr ' ' '\n' | sort)
  [ "$options" = "$offered" ] || fail "options of $command: $options; completed: $offered"
  for option in $options; do
    [[ $man == *"\\-\\-${option#--}"* ]] || fail "the man page has no $option"
  done
done
touch "a request.xml" a.txt
[ "$(complete_line 'tvk-map edit a')" = "a request.xml" ] || fail "completion of files"
[ "$(complete_line 'tvk-map get --phase = c')" = container ] || fail "completion of a value"
[ "$(complete_line "$tool edit --mapping host")" = hostname ] || fail "completion of module names"
touch "$modules/\$(touch run).so"
complete_line "$tool edit --mapping " >/dev/null
[ ! -e run ] || fail "completion runs what a file name says"

echo "Debian package"
quietly "$(dirname "$cmake")/cpack" --config "$build/CPackConfig.cmake" -G DEB -B "$work/package"
package=$(echo "$work"/package/*.deb)
expect "Package: tvk-map" dpkg-deb --info "$package"
expect "libxml2" dpkg-deb --field "$package" Depends
if ldd "$tool" | grep -q libmimalloc; then
  expect "libmimalloc" dpkg-deb --field "$package" Depends
fi
dpkg-deb --extract "$package" root
expect "<interface-name>lo0<" root/usr/bin/tvk-map edit --mapping openconfig_interfaces \
  "$source/examples/openconfig_interfaces/requests/merge-bare.xml"
