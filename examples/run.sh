#!/usr/bin/env bash
# Runs an example project: examples/run.sh EXECUTABLE [EXAMPLE_DIR] (default examples/stl_body).
# The run directory is build/example-run (or $RUN_DIR); it is emptied first.
set -euo pipefail
[ $# -ge 1 ] || { echo "usage: $0 path/to/Kavex3_GridGen [example-dir]" >&2; exit 2; }
here=$(cd "$(dirname "$0")" && pwd)
exe=$(realpath "$1")
example=$(realpath "${2:-$here/stl_body}")
run_dir=$(realpath -m "${RUN_DIR:-$here/../build/example-run}")

project=$(ls "$example"/*.Grid | head -n 1)
rotor=$(ls "$example"/*.SlvrRot | head -n 1)
rm -rf "$run_dir"
mkdir -p "$run_dir"
cp "$example"/* "$run_dir"/
cd "$run_dir"   # relative names in the project (solver input, layer file) are taken from here

# The driver points the generator at <run dir>/N-x.cut for body N, in project order: supply them
# (for an STL or Plot3D body the run writes its own, the body's bounding box).
n=0
while read -r points; do
    n=$((n + 1))
    cp "$points" "$n-x.cut"
done < <(grep "Points File: " "$(basename "$project")" | sed 's/.*Points File: //')

status=0
"$exe" -Grid "$run_dir/$(basename "$project")" -SlvrRot "$run_dir/$(basename "$rotor")" \
    -pth "$run_dir" || status=$?

echo "Run directory: $run_dir"
ls -l "$run_dir"
echo "--- Kavex3_GridGen.out"
cat "$run_dir/Kavex3_GridGen.out" 2>/dev/null || true
if [ -s "$run_dir/Kavex3_GridGen.err" ]; then
    echo "--- Kavex3_GridGen.err"
    cat "$run_dir/Kavex3_GridGen.err"
fi
echo "--- exit status $status"
exit $status
