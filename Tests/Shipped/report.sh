#!/usr/bin/env bash
# The report of the sample product in a browser: its parts are there, nothing is refused to it, and no width of screen has
# to be scrolled sideways. Exit status 77 (skipped) where there is no release yet, or no browser.
. "$(dirname "$0")/faults.sh"

vrnt=build/release/bin/vrnt.exe
[ -e $vrnt ] && command -v chromium >/dev/null || exit 77
work=$root/build/report
rm -rf "$work"
product_documents "$work/product"
before=$(registered_product)
register_product "$(windows_path "$work/product")" >"$work/log"
scripts/wine $vrnt report "$(windows_path "$work/report.html")" >>"$work/log" || true
register_product "$before" >>"$work/log"

browse() {
    local root_flag
    [ "$(id -u)" != 0 ] || root_flag=--no-sandbox
    timeout 120 chromium --headless --disable-gpu --disable-dev-shm-usage --user-data-dir="$work/browser" --enable-logging=stderr \
        --allow-file-access-from-files ${root_flag-} "$@" 2>>"$work/browser.log"
}
# expect COUNT TEXT FILE
expect() {
    local count
    count=$(grep -oF -- "$2" "$3" | wc -l) || true # none is no failure
    [ "$count" = "$1" ] || fault "$2 stands $count times in ${3##*/}, not $1 times"
}

browse --dump-dom "file://$work/report.html" >"$work/dom"
for part in versions policy service-units enforce-data findings documents trace; do
    expect 1 "<section id=\"$part\"" "$work/dom"
done
expect 66 '<tr><td data-label="Load"' "$work/dom" # forty units, twenty-six providers
expect 32 '<span class="chip ' <(sed 's/.*id="policy"//; s/<\/section>.*//' "$work/dom")
expect 9 'class="arrow"' "$work/dom"

for width in 360 800 1270 1600; do
    echo "<iframe width=$width height=800 src=report.html onload=\"const page = contentDocument.documentElement;
        document.body.append(page.scrollWidth > page.clientWidth ? 'too wide' : 'fits')\"></iframe>"
done >"$work/widths.html"
browse --dump-dom "file://$work/widths.html" | tr -d '\n' | sed 's/<iframe[^>]*>//g' >"$work/widths"
expect 4 fits "$work/widths"
browse --window-size=390,2000 --screenshot="$work/phone.png" "file://$work/report.html" >>"$work/log"
[ -s "$work/phone.png" ] || fault "there is no picture of it"
expect 0 CONSOLE "$work/browser.log"
[ $faults = 0 ]
