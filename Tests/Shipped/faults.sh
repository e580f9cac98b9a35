# What scripts that go on after a fault share; they end with: [ $faults = 0 ]
. "$(dirname "$0")/../../scripts/lib.sh"
faults=0
fault() {
    echo "fault: $*"
    faults=$((faults + 1))
}
