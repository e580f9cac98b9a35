#!/usr/bin/env bash
# What a customer gets: the package of the release, unpacked, looked at from outside and used by a host of its own.
# Exit status 77 (skipped) where there is no release yet.
. "$(dirname "$0")/faults.sh"

trap 'echo "line $LINENO failed; the log is ${work#"$root"/}.log"' ERR
[ -e build/release/bin/Varnhelt.dll ] || exit 77
work=$root/build/shipped
tree=$work/Varnhelt-$(project_version)-win64
objdump=x86_64-w64-mingw32-objdump

rm -rf "$work"
scripts/package --trial "$work/first.zip" >"$work.log"
(umask 077 && TZ=Asia/Tokyo scripts/package --trial "$work/second.zip") >>"$work.log"
cmp "$work/first.zip" "$work/second.zip" || fault "two packages of the same release differ"
(cd "$work" && cmake -E tar xf first.zip)
for part in README.md bin include lib share/Varnhelt/{docs,samples/{host,json,repository/.pre-commit-hooks.yaml},licenses,schemas/catalog.xml}; do
    [ -n "$(ls "$tree/$part")" ] || fault "the package lacks $part"
done
# Nothing in the tree may know where it was laid out, or built.
grep -rlF -e "$root" "$tree" && fault "names a folder of the build machine"

while read -r library names; do
    exported=$($objdump -p "$tree/bin/$library" | sed -n '/\[Ordinal\/Name Pointer\] Table/,/^$/s/^\t\[ *[0-9]*\] //p' | sort)
    [ "$exported" = "$(tr ' ' '\n' <<<"$names")" ] || fault "$library exports" $exported
done < <(grep -v '^#' Tests/Shipped/exports)

# The system's own libraries; a compiler's run time is none of them.
system=" advapi32 kernel32 msvcrt ole32 shell32 shlwapi user32 version "
for binary in "$tree"/bin/*.dll "$tree"/bin/*.exe; do
    $objdump -p "$binary" | grep '^Time/Date.* 1970$' >/dev/null || fault "${binary##*/} knows when it was built"
    imported=$($objdump -p "$binary" | sed -n 's/.*DLL Name: //p' | tr '[:upper:]' '[:lower:]')
    [ -n "$imported" ] || fault "${binary##*/} imports nothing: is it whole?"
    for library in $imported; do
        [[ $system == *" ${library%.dll} "* ]] || fault "${binary##*/} depends on $library"
    done
    # By the compiler's own stack guard, for which the system loads three libraries whenever this one is loaded.
    $objdump -p "$binary" | grep CryptAcquireContext >/dev/null && fault "${binary##*/} asks a cryptographic provider"
done

# The version resource: words of UTF-16 in its section.
version=$(project_version)
for binary in Varnhelt.dll vrnt.exe VrntJson.dll ZkDbgLog.dll; do
    x86_64-w64-mingw32-objcopy -O binary -j .rsrc "$tree/bin/$binary" "$work/resource"
    words=$(strings -e l "$work/resource" | tr '\n' ' ')
    [[ $words == *"FileVersion $version "* && $words == *"OriginalFilename $binary "* ]] ||
        fault "the version resource of $binary says: $words"
done

for header in "$tree"/include/Varnhelt/*.h; do
    x86_64-w64-mingw32-g++-posix -std=c++20 -Wall -Wextra -Werror -fsyntax-only -I "$tree/include" -x c++ - \
        <<<"#include <Varnhelt/${header##*/}>" ||
        fault "${header##*/} does not compile by itself"
done

# hosted STATUS LOOKS HOST ARGUMENT ...: a host ends with this status, and prints a line that looks so.
hosted() {
    local wanted=$1 pattern=$2 status=0
    (cd "$work" && "$root/scripts/wine" "${@:3}") >"$work/told" 2>&1 || status=$?
    [ $status = "$wanted" ] && grep -E "$pattern" "$work/told" >>"$work.log" ||
        fault "${3##*/} left with $status, not $wanted, and $(cat "$work/told")"
}

# A host that has the package alone.
cmake -S "$tree/share/Varnhelt/samples/host" -B "$work/host" -G Ninja -DCMAKE_BUILD_TYPE=Release \
    -DCMAKE_TOOLCHAIN_FILE="$root/cmake/mingw-w64.cmake" -DCMAKE_PREFIX_PATH="$tree" >>"$work.log"
cmake --build "$work/host" >>"$work.log" || fault "the host does not build: $(tail -n 20 "$work.log")"
product_documents "$work/product"
before=$(registered_product)
register_product "$(windows_path "$work/product")" >>"$work.log"
scripts/wine "$work/host/host.exe" "$(windows_path "$tree/bin/Varnhelt.dll")" >"$work/told" || fault "the host left with $?"
tail -n 4 "$work/told"
[ "$(grep -c '\.\(dll\|exe\) .*17\.' "$work/told")" = 40 ] || fault "the host did not list the forty units"
cp Samples/documents/*.xml "$work/product"
python3 Tests/Shipped/terminal.py "$tree/bin/vrnt.exe" "$(windows_path "$work/product")" || fault "tables"
# The host in C, by the command in its first lines.
json=$tree/share/Varnhelt/samples/json
command=$(sed -n 's|^ \*  *\(x86_64-.*\)|\1|p' "$json/host.c")
(cd "$json" && ${command//SDK/"$tree"} -std=c99 -Wall -Wextra -Werror -o "$work/product/host.exe")
hosted 2 'no VrntJson.dll: error 126' "$work/product/host.exe" '{}'
cp "$tree"/bin/*.dll "$work/product"
hosted 0 '"moduleName": "SrvResMgr.dll"' "$work/product/host.exe" '{"command": "query service-units"}'
hosted 1 '"antispy.xml has no threat 1"' "$work/product/host.exe" '{"command": "query threat-description", "id": 1}'
# Where something is missing, it says in one line what, and ends. (No library, no parser, no document.)
mkdir "$work/bare"
rm "$work/product/libexpat.dll"
cp "$tree"/bin/{Varnhelt,ZkDbgLog}.dll "$work/bare"
missing() {
    local status=0
    scripts/wine "$work/host/host.exe" "$1" >"$work/told" 2>&1 || status=$?
    [ $status = 1 ] && [ "$(wc -l <"$work/told")" = 1 ] && grep -qE "$2" "$work/told" ||
        fault "the host left with $status and said: $(cat "$work/told")"
}
missing 'Q:\none\Varnhelt.dll' '^host: Varnhelt.dll cannot be loaded: '
missing "$(windows_path "$work/bare/Varnhelt.dll")" '^host: 0x80040201: .*0x0000007e'
rm "$work"/product/*
missing "$(windows_path "$tree/bin/Varnhelt.dll")" '^host: 0x80040201: .*FwSvUnit'
# The README at the top, line by line, in a product's stead.
register_product "" >>"$work.log"
sed -n 's/^bin.vrnt.exe //p' "$tree/README.md" >"$work/commands"
[ -s "$work/commands" ] || fault "the README has no commands"
while read -r line <&3; do
    scripts/wine "$tree/bin/vrnt.exe" $line >"$work/told" 2>&1 || fault "vrnt $line: $(cat "$work/told")"
done 3<"$work/commands"
[ -z "$before" ] || register_product "$before" >>"$work.log"

[ $faults = 0 ]
