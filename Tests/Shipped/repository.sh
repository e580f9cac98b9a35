#!/usr/bin/env bash
# Documents in a real repository: what git, pre-commit, a build and code scanning make of the tool. Exit status 77 (skipped)
# where there is no release yet, or one of these programs is missing.
. "$(dirname "$0")/faults.sh"

[ -e build/release/bin/vrnt.exe ] || exit 77
for program in git pre-commit npm; do
    command -v $program >/dev/null || { echo "$program is missing"; exit 77; }
done
/usr/bin/python3 -c 'import jsonschema' 2>/dev/null || { echo "python3-jsonschema is missing"; exit 77; }

work=$root/build/repository
rm -rf "$work"
mkdir -p "$work"/{bin,hooks,documents}
printf '#!/bin/sh\nexec %q "$@"\n' "$root/scripts/vrnt" >"$work/bin/vrnt"
chmod +x "$work/bin/vrnt"
export PATH=$work/bin:$PATH PRE_COMMIT_HOME=$work/pre-commit GIT_CONFIG_GLOBAL=/dev/null GIT_CONFIG_SYSTEM=/dev/null
export GIT_{AUTHOR,COMMITTER}_NAME=author GIT_{AUTHOR,COMMITTER}_EMAIL=author@example.invalid
# expect TEXT FILE: the file has the line.
expect() {
    grep -qxF -- "$1" "$2" || fault "no line \"$1\" in ${2##*/}: $(head -n 20 "$2")"
}

git -C "$work/hooks" init -q
cp Samples/repository/.pre-commit-hooks.yaml "$work/hooks"
git -C "$work/hooks" add .
git -C "$work/hooks" commit -qm Hooks
samples=$root/Samples
cd "$work/documents"
git init -q
cat >.pre-commit-config.yaml <<END
repos:
  - repo: $work/hooks
    rev: $(git -C "$work/hooks" rev-parse HEAD)
    hooks: [{id: vrnt-check}]
END
echo '*.xen diff=vrnt' >.gitattributes
git config diff.vrnt.command "vrnt diff"
git config diff.vrnt.textconv "sh -c 'vrnt xen decrypt --document policy \"\$1\" -' sh"
pre-commit install >"$work/log"

# A hook lets a clean commit through and stops a slip.
vrnt xen encrypt --document policy "$samples/documents/FwPolicy.xml" FwPolicy.xen >>"$work/log"
cp "$samples/documents/DepAlias.xml" .
git add .
git commit -qm "Add two documents" >>"$work/log" 2>&1 || fault "a clean commit is stopped: $(tail -n 20 "$work/log")"
sed '0,/<Alias /s// <Alias Propperty="x" /' DepAlias.xml >slip.xml
git add slip.xml
! git commit -qm "Add a slip" >"$work/stopped" 2>&1 || fault "a slip is let through"
grep -q '^slip.xml:[0-9]*: warning: no reader looks at attribute "Propperty"; did you mean "Property"? \[unknown-name\]$' \
    "$work/stopped" || fault "the hook reports: $(cat "$work/stopped")"

# git's external diff, then its text conversion.
sed '/eHomeNetwork/,/<Permission>/s/ePartial/eDeny/' "$samples/documents/FwPolicy.xml" >"$work/plain.xml"
vrnt xen encrypt --document policy "$work/plain.xml" FwPolicy.xen >>"$work/log"
git diff >"$work/diff" 2>&1 || fault "git diff ends with $?"
expect "vrnt diff FwPolicy.xen" "$work/diff"
expect "eFirewall eHomeNetwork: permission ePartial -> eDeny" "$work/diff"
[ "$(wc -l <"$work/diff")" = 2 ] || fault "git diff prints more: $(cat "$work/diff")"
git diff --no-ext-diff >"$work/textconv"
grep -q '^-.*<Permission>ePartial</Permission>' "$work/textconv" || fault "the conversion gives: $(head "$work/textconv")"

# The matcher reads what check prints; the log for code scanning is what its schema asks for.
cp slip.xml "a ä %.xml"
vrnt check "a ä %.xml" slip.xml >"$work/found" || true
vrnt check --format sarif . none.xml >"$work/log.sarif" 2>>"$work/log" || [ $? = 2 ] || fault "check ends with $?"
schema=$root/build/deps/sarif/sarif-2.1.0-rtm.5.json
if [ ! -e "$schema" ]; then
    mkdir -p "${schema%/*}"
    cd "${schema%/*}"
    npm pack --silent @microsoft/jest-sarif@1.0.0-beta.0 >>"$work/log"
    tar xzf microsoft-jest-sarif-1.0.0-beta.0.tgz --strip-components=3 "package/lib/schemas/${schema##*/}"
fi
/usr/bin/python3 - "$samples/repository/vrnt-matcher.json" "$work/found" "$schema" "$work/log.sarif" <<'END' || fault "see above"
import json, re, sys
import jsonschema

matcher, found, schema, log = (open(name, encoding="utf-8").read() for name in sys.argv[1:])
[pattern] = json.loads(matcher)["problemMatcher"][0]["pattern"]
matched = [match for match in map(re.compile(pattern["regexp"]).match, found.splitlines()) if match]
assert [match[pattern["file"]] for match in matched] == ["a ä %.xml", "slip.xml"], found
assert all(match[pattern["code"]] == "unknown-name" for match in matched), found
jsonschema.validate(json.loads(log), json.loads(schema))
run = json.loads(log)["runs"][0]
uris = [result["locations"][0]["physicalLocation"]["artifactLocation"]["uri"] for result in run["results"]]
assert len(uris) == 2 and any(uri.endswith("a%20%c3%a4%20%25.xml") for uri in uris), uris
assert run["invocations"][0]["executionSuccessful"] is False
END
[ $faults = 0 ]
