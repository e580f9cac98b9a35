#!/usr/bin/env bash
# The docs' examples, compiled with what ships and run with the sample product; see docs.py.
# Exit status 77 (skipped) where there is no release yet.
. "$(dirname "$0")/../../scripts/lib.sh"

[ -e build/release/bin/Varnhelt.dll ] || exit 77
work=$root/build/docs
drive=$WINEPREFIX/drive_c
product=$drive/Program\ Files/Pelto
clean() {
    rm -rf "$work" "$product" "$drive/docs" "$drive/Logs"
}
wine_ready
clean
mkdir -p "$work" "$drive/Logs"
before=$(registered_product)
trap '{ register_product "$before"; scripts/wine build/release/bin/vrnt.exe trace off; } >"$work/log"; clean' EXIT
cmake --install build/release --prefix "$work/tree" >"$work/log"
product_documents "$product"
cp Samples/documents/*.xml "$work"/tree/bin/* "$product"
register_product 'C:\Program Files\Pelto' >"$work/log"
python3 Tests/Shipped/docs.py "$work/tree" "$drive"
