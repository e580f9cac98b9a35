# Shared by the scripts: sourced, never run. Moves to the root of the checkout.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$root"
logs=$root/build/log
export LC_ALL=C.UTF-8
export WINEPREFIX="${WINEPREFIX:-$root/build/wine}"

die() {
    echo "${0##*/}: $*" >&2
    exit 1
}

# seconds_since MOMENT: whole seconds since that value of EPOCHREALTIME.
seconds_since() {
    echo $(((${EPOCHREALTIME/./} - ${1/./}) / 1000000))
}

# Shows how far a step has come, by the last line of its log, of a build the last numbered one: on a terminal every second
# in one line that is overwritten, elsewhere after twenty seconds and then every minute in a new line.
tell_progress() {
    local what=$1 log=$2 begin=$3 waited=0 last
    while kill -0 $$ 2>/dev/null; do
        read -rt 1 <> <(:) || waited=$((waited + 1)) # a pause that leaves no child behind
        last=$(tail -c 4000 "$log" 2>/dev/null | tr '\r' '\n' | tr -cd '[:print:]\n' |
            awk '/^\[[0-9]+\/[0-9]+\]/ {counted = $0} {line = $0} END {print counted ? counted : line}')
        if [ -t 1 ]; then
            printf '\r\033[K%s, %s s: %.60s' "$what" "$(seconds_since "$begin")" "$last"
        elif ((waited == 20 || (waited > 20 && waited % 60 == 0))); then
            printf '%s, %s s so far: %.100s\n' "$what" "$(seconds_since "$begin")" "$last"
        fi
    done
}

# step WHAT COMMAND...: runs the command with its output in a log. A line reports what was done when that took a
# second or more; a failure shows the end of the log and ends the script.
step() {
    local what=$1 log begin status=0 ticker
    shift
    mkdir -p "$logs"
    log=$logs/${what//[^A-Za-z0-9.]/-}.log
    begin=$EPOCHREALTIME
    : >"$log"
    tell_progress "$what" "$log" "$begin" &
    ticker=$!
    # A subshell, so that a function fails at its first failing command as a program would.
    set +e
    (set -e; "$@") >"$log" 2>&1 </dev/null
    status=$?
    set -e
    kill "$ticker" 2>/dev/null || true
    wait "$ticker" 2>/dev/null || true
    [ ! -t 1 ] || printf '\r\033[K'
    if [ $status != 0 ]; then
        echo "$what: failed after $(seconds_since "$begin") s. The end of ${log#"$root"/}:"
        # Without its progress, which may follow what failed.
        { grep -v '^\[[0-9]*/[0-9]*\]' "$log" || true; } | tail -n 40
        exit $status
    fi
    [ "$(seconds_since "$begin")" = 0 ] || echo "$what: $(seconds_since "$begin") s"
}

# need PURPOSE...: installs the packages of scripts/packages that are missing for these purposes.
need() {
    local purpose package wanted=() missing=() installed
    for purpose; do
        read -ra packages < <(sed -n "s/^$purpose  *//p" scripts/packages)
        wanted+=("${packages[@]}")
    done
    command -v dpkg-query >/dev/null || die "this is not Debian: install by hand what scripts/packages names for: $*"
    installed=$(dpkg-query -W -f '${Package} ${db:Status-Status}\n' "${wanted[@]}" 2>/dev/null) || true
    for package in "${wanted[@]}"; do
        [[ $'\n'$installed$'\n' == *$'\n'"$package installed"$'\n'* || " ${missing[*]-} " == *" $package "* ]] ||
            missing+=("$package")
    done
    [ ${#missing[@]} -gt 0 ] || return 0
    [ "$(id -u)" = 0 ] || die "packages are missing. As root: apt-get install --no-install-recommends ${missing[*]}"
    echo "Installing ${missing[*]}"
    step "Package lists" apt-get -q update
    for package in "${missing[@]}"; do
        [ -n "$(apt-cache madison "$package" 2>/dev/null)" ] ||
            die "no package source of this machine has $package (is it Debian 12 with its component main?)"
    done
    step "Packages" env DEBIAN_FRONTEND=noninteractive \
        apt-get -qy -o Dpkg::Use-Pty=0 install --no-install-recommends "${missing[@]}"
}

# source_mirrors: the addresses from which this machine has the distribution's main suite, each with the suite's name.
source_mirrors() {
    local codename
    codename=$(. /etc/os-release && echo "${VERSION_CODENAME:-}")
    apt-get indextargets --format '$(REPO_URI) $(CODENAME) $(COMPONENT)' 'Created-By: Packages' 2>/dev/null |
        awk -v codename="$codename" '$2 == codename && $3 == "main" && !seen[$1]++ {print $1, $2}'
}

# fetch_source PACKAGE: unpacks the distribution's source of a package into the current folder. The security suite lists
# sources that its mirrors do not serve, so the main suite is asked first, by an apt state of our own that leaves the
# machine's alone; then the machine's own sources, where it has any.
fetch_source() {
    local package=$1 mirror mirrors keyring=/usr/share/keyrings/debian-archive-keyring.gpg
    mkdir -p apt/lists/partial apt/cache/archives/partial
    mapfile -t mirrors < <(source_mirrors)
    for mirror in "${mirrors[@]}"; do
        echo "deb-src [signed-by=$keyring] $mirror main" >apt/sources.list
        local own=(-o "Dir::Etc::sourcelist=$PWD/apt/sources.list" -o Dir::Etc::sourceparts=/dev/null
            -o "Dir::State::lists=$PWD/apt/lists" -o "Dir::Cache=$PWD/apt/cache" -o APT::Sandbox::User=root)
        if apt-get -q "${own[@]}" update && apt-get -q "${own[@]}" source "$package"; then
            return 0
        fi
    done
    echo "The main suite's source of $package cannot be had; trying the machine's own sources."
    apt-get -q -o APT::Sandbox::User=root source "$package"
}

# build_dependency NAME PACKAGE RECIPE [FILE...]: has the function RECIPE build PACKAGE's source, in the folder of that
# source, and install it into the folder that it gets as its argument; that folder becomes build/deps/NAME, whole or not at
# all. What was built by the same recipe, of the same files of ours, is kept.
build_dependency() {
    local name=$1 package=$2 recipe=$3 made work stamp
    made=$root/build/deps/$name
    stamp=$({ declare -f "$recipe"; cat cmake/mingw-w64.cmake "${@:4}"; } | sha256sum | cut -d ' ' -f 1)
    [ "$(cat "$made/.recipe" 2>/dev/null)" != "$stamp" ] || return 0
    need source
    mkdir -p build/deps
    exec 8>"build/deps/.$name.lock"
    flock 8
    [ "$(cat "$made/.recipe" 2>/dev/null)" != "$stamp" ] || return 0
    [ -n "$(source_mirrors)" ] || [ "$(id -u)" != 0 ] || step "Package lists" apt-get -q update
    rm -rf "build/deps/.$name."?????? # what an interrupted build left
    work=$(mktemp -d "$root/build/deps/.$name.XXXXXX")
    trap 'rm -rf "$work"' EXIT
    cd "$work"
    step "Source of $package" fetch_source "$package"
    cd "$package"-*/
    step "Building $name" "$recipe" "$work/made"
    cd "$root"
    echo "$stamp" >"$work/made/.recipe"
    rm -rf "$made"
    mv "$work/made" "$made"
    rm -rf "$work"
    trap - EXIT
    exec 8>&-
}

# built PRESET [TARGET...]: configures when that is due, and builds.
built() {
    local preset=$1
    shift
    [ build/"$preset"/build.ninja -nt CMakePresets.json ] || step "Configuring $preset" cmake --preset "$preset"
    step "Building $preset" cmake --build --preset "$preset" -j "$(nproc)" ${@:+--target "$@"} -- -k 0
}

# project_version: the version, which CMakeLists.txt alone says.
project_version() {
    sed -n 's/^project(Varnhelt VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt
}

# wine_ready: makes the Wine prefix and starts its server, as a separate step.
wine_ready() {
    need run
    step "Wine prefix" scripts/wine --start
}

# product_documents FOLDER: lays out the sample product there; the folder must be empty or missing.
product_documents() {
    scripts/wine build/release/bin/vrnt.exe sample "$(windows_path "$1")" >/dev/null ||
        die "no sample product could be laid out in $1"
    cp build/release/bin/libexpat.dll "$1/"
}

# windows_path PATH: how a program under Wine names this absolute path.
windows_path() {
    local path=Z:$1
    echo "${path//\//\\}"
}

product_key='HKLM\Software\Kestrovane\Pelto'

# register_product FOLDER: registers the folder of the product, as a Windows program names it; an empty one removes the
# registration.
register_product() {
    if [ -n "$1" ]; then
        scripts/wine reg add "$product_key" /f /v ProductPath /t REG_SZ /d "$1"
    else
        scripts/wine reg delete "$product_key" /f /v ProductPath
    fi
}

# registered_product: the registered folder, empty when there is none.
registered_product() {
    { scripts/wine reg query "$product_key" /v ProductPath 2>/dev/null || true; } |
        tr -d '\r' | sed -n 's/^ *ProductPath *REG_SZ *//p'
}

# product_release VERSION PID LANGUAGE: registers the installed release, edition and language of the product.
product_release() {
    scripts/wine reg add "$product_key" /f /v Version /t REG_SZ /d "$1"
    scripts/wine reg add "$product_key" /f /v PID /t REG_SZ /d "$2"
    scripts/wine reg add "$product_key" /f /v Language /t REG_DWORD /d "$3"
}
