#!/usr/bin/env bash
# Wrap of a world polygon layer in 0..360 to -180..180: `tessarine wrap` beside
# PostGIS ST_WrapX composed to the same box (peer_commands.sh wrapbox_pg), on
# feature count, total planar area, longitude range and run time.
#
# The layer is made here: N "countries", irregular rings of 24 to 96 vertices with
# centres anywhere in 0..360 by -75..75, so that a good share cross 180 (and some
# 360/0). Same seed, same layer.
#
# Usage: bench/planetary/wrap_vs_postgis.sh [WORK_FOLDER] [N]
#   TESSARINE  the program (default: build/cli/tessarine beside this script's project)
#   PEERS      peer_commands.sh (default: /work/shared/tools/peer_commands.sh); its PostGIS
#              cluster must be running (peer_pg_start).
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
top=$(cd "$here/../.." && pwd)
work=${1:-/tmp/tessarine-wrap-bench}
count=${2:-2000}
tessarine=${TESSARINE:-$top/build/cli/tessarine}
peers=${PEERS:-/work/shared/tools/peer_commands.sh}
mkdir -p "$work"
cd "$work"

python3 - "$count" > world.geojson <<'PY'
import json, math, random, sys
random.seed(20261123)
features = []
for i in range(int(sys.argv[1])):
    cx, cy = random.uniform(0, 360), random.uniform(-75, 75)
    radius = random.uniform(0.5, 12.0)
    n = random.randint(24, 96)
    ring = []
    for k in range(n):
        a = 2 * math.pi * k / n
        r = radius * random.uniform(0.55, 1.0)
        ring.append([round(cx + r * math.cos(a) / max(0.2, math.cos(math.radians(cy))), 6),
                     round(max(-89.9, min(89.9, cy + r * math.sin(a))), 6)])
    ring.append(ring[0])
    features.append({"type": "Feature", "properties": {"ID": i},
                     "geometry": {"type": "Polygon", "coordinates": [ring]}})
json.dump({"type": "FeatureCollection", "features": features}, sys.stdout)
PY
rm -f world.{shp,shx,dbf,prj,cpg}
ogr2ogr -q -f "ESRI Shapefile" -a_srs EPSG:4326 world.shp world.geojson -nln world
crossing=$(ogrinfo -ro -q -dialect SQLite -sql "SELECT COUNT(*) AS n FROM world WHERE MbrMinX(geometry) < 180 AND MbrMaxX(geometry) > 180" world.shp | sed -n 's/.*n (Integer) = //p')

stats() { # DATASET -> "count area xmin xmax" (planar, square degrees)
  local layer; layer=$(ogrinfo -ro -q "$1" | sed -n '1{s/^1: //;s/ (.*$//;p}')
  ogrinfo -ro -q -dialect SQLite -sql "SELECT COUNT(*) AS n, SUM(ST_Area(geometry)) AS a, MIN(MbrMinX(geometry)) AS x0, MAX(MbrMaxX(geometry)) AS x1 FROM \"$layer\"" "$1" |
    awk -F' = ' '/ n \(/{n=$2} / a \(/{a=$2} / x0 \(/{x0=$2} / x1 \(/{x1=$2} END{printf "%s %s %s %s", n, a, x0, x1}'
}
seconds() { date +%s.%N; }

rm -f ours.{shp,shx,dbf,prj,cpg}
t0=$(seconds)
"$tessarine" wrap --layer world.shp --range -180,180 --output "$work/ours.shp" --progress none > ours.txt
t1=$(seconds)
PEER_QUIET=1 bash "$peers" wrapbox_pg world.shp peer.shp -180 180 > /dev/null
t2=$(seconds)

read -r n_in a_in x0_in x1_in <<< "$(stats world.shp)"
read -r n_ours a_ours x0_ours x1_ours <<< "$(stats ours.shp)"
read -r n_peer a_peer x0_peer x1_peer <<< "$(stats peer.shp)"
awk -v n="$count" -v c="$crossing" -v ni="$n_in" -v ai="$a_in" -v no="$n_ours" -v ao="$a_ours" -v xo0="$x0_ours" -v xo1="$x1_ours" \
    -v np="$n_peer" -v ap="$a_peer" -v xp0="$x0_peer" -v xp1="$x1_peer" -v to="$(echo "$t1 - $t0" | bc)" -v tp="$(echo "$t2 - $t1" | bc)" 'BEGIN {
  printf "world layer: %d polygons, %d across 180, total area %.6f square degrees\n", ni, c, ai
  printf "%-22s %8s %22s %14s %22s %9s\n", "", "features", "total area (deg^2)", "rel. to input", "longitudes", "time (s)"
  printf "%-22s %8d %22.9f %14.2e %10.4f..%-10.4f %9.2f\n", "tessarine wrap", no, ao, (ao - ai) / ai, xo0, xo1, to
  printf "%-22s %8d %22.9f %14.2e %10.4f..%-10.4f %9.2f\n", "PostGIS ST_WrapX x3", np, ap, (ap - ai) / ai, xp0, xp1, tp
  printf "(times are whole runs: tessarine from process start, PostGIS with loading and writing by ogr2ogr)\n"
}'
