#!/usr/bin/env bash
# Every sample is clean to `vrnt check` and valid by the schema of its kind, to a validator that is not ours; and no longer
# valid when it is spoilt. Schemas say what names and words mean, and the catalog leads to them. Exit status 77 (skipped)
# where there is no release yet.
. "$(dirname "$0")/faults.sh"

vrnt=build/release/bin/vrnt.exe
[ -e $vrnt ] || exit 77
work=$root/build/schemas
rm -rf "$work"
mkdir -p "$work"
scripts/wine $vrnt sample "$(windows_path "$work/product")" >/dev/null || die "no sample product could be laid out"
checked=0

# A kind of document, a sample of it, and what spoils the sample.
while read -r kind sample spoil; do
    [ -e "$sample" ] || sample=$work/product/$sample
    scripts/wine $vrnt schema --document "$kind" >"$work/$kind.xsd" || fault "no schema for $kind"
    told=$(scripts/wine $vrnt check "$(windows_path "$(realpath "$sample")")") ||
        fault "$sample is not clean: $(head -n 3 <<<"$told")"
    xmllint --noout --schema "$work/$kind.xsd" "$sample" 2>"$work/told" || fault "$sample: $(head -n 3 "$work/told")"
    sed "$spoil" "$sample" >"$work/spoilt.xml"
    ! cmp -s "$sample" "$work/spoilt.xml" || fault "$sample was not spoilt by $spoil"
    ! xmllint --noout --schema "$work/$kind.xsd" "$work/spoilt.xml" 2>/dev/null || fault "$sample is valid with $spoil"
    checked=$((checked + 1))
done <<'END'
service-units         Samples/documents/FwSvUnit.xml      s/ePreLoad/ePreload/
policy                Samples/documents/FwPolicy.xml      s/AllowToLoadSetupMode/AllowToLoadInSetupMode/
enforce-data          Samples/documents/FwEnfDat.xml      s/<Layer>eServiceLayer/<Layer>eServicelayer/
pu-ids                Samples/documents/FwCompId.xml      s/0x00000004/0x0000000g/
version-info          Samples/documents/CmpVerIf.xml      s/followProductversion/followProductVersion/
competitor-actions    rivalact.xml                        s/versionCompare/versionComparison/
competitor-detections rivaldet.xml                        s/selfreboot="no"/selfreboot="never"/
compatibility         Samples/documents/compatck.xml      s/<Action>Block/<Action>Blocked/
pre-update-list       Samples/documents/PrePuReq.xml      s/<component /<component colour="red" /
alias                 Samples/documents/DepAlias.xml      s/Property=/property=/
component             Samples/documents/DepComp.xml       s/OverWrite/Overwrite/
key-config            Samples/documents/regkycfg.xml      s/64bitKey/64Key/
registry-data         Samples/documents/RegData.xml       s/REG_DWORD/REG_WORD/
threats               StrVirus.xml                        s/<Name>/<Name kind="x">/
threats               antispy.xml                         s/Recommendation/Recomendation/
local-update          Samples/updates/settings-17.2.xml   s/eMode64bit/eMode64/
END
# What the page for authors says is in the schemas: of the document, of nearly all of its names, and of every word.
scripts/wine $vrnt schema --catalog >"$work/catalog.xml"
said() {
    xmllint --xpath "count(//*[local-name()='$1'][$2])" "$schema"
}
for schema in "$work"/*.xsd; do
    kind=$(basename "$schema" .xsd)
    [[ $(xmlcatalog "$work/catalog.xml" "urn:varnhelt:$kind") == *"/$kind.xsd" ]] || fault "the catalog has no $kind"
    names=$(said documentation "not(ancestor::*[local-name()='enumeration'])")
    bare=$(grep -cE '<xs:documentation>(Default|Needed|Else|Used|With|If|Applies)' "$schema") || true
    [ "$names" -gt 1 ] && [ $(((bare - 1) * 5)) -le "$names" ] || fault "the schema of $kind does not say what $bare of $names names mean"
    words=$(said enumeration "@value != '' and not(.//text()[normalize-space()])")
    [ "$words" = 0 ] || fault "the schema of $kind does not say what $words words mean"
done
[ $checked -ge 16 ] || fault "only $checked samples were looked at"
[ $faults = 0 ]
