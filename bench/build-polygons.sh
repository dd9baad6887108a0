#!/usr/bin/env bash
# Polygon building on real line work: the boundaries of a real polygon layer are turned into lines,
# and the regions they bound are built by tessarine (tolerance 0) and by PostGIS
# ST_Polygonize(ST_Node(ST_Collect(geom))), or by the engine alone when no PostGIS database answers.
# Counts, total areas and times are printed; then what each way of applying a cluster tolerance does
# to the same lines (tess_bench_cluster_tolerance).
# Usage: bench/build-polygons.sh BUILD_DIR BENCH_BUILD_DIR [POLYGONS [LAYER]]
#   POLYGONS defaults to the world map that comes with QGIS, LAYER to states_provinces.
# Env: PEER_PGDB (default peers): a PostGIS database of the local server.
set -euo pipefail
build=$(cd "${1:?build dir}" && pwd); bench=$(cd "${2:?bench build dir}" && pwd)
polygons=${3:-/usr/share/qgis/resources/data/world_map.gpkg}
layer=${4:-states_provinces}
db=${PEER_PGDB:-peers}
work=$(mktemp -d); trap 'rm -rf "$work"' EXIT

# Lines: every ring of every polygon, in a metric reference so that tolerances read in metres.
ogr2ogr -q -f "ESRI Shapefile" "$work/lines.shp" "$polygons" -dialect sqlite -t_srs EPSG:3857 \
  -sql "SELECT ST_Boundary(geom) AS geom FROM \"$layer\"" -nlt MULTILINESTRING -nln lines
echo "lines: $(ogrinfo -so "$work/lines.shp" lines | sed -n "s/^Feature Count: //p") features from $layer"

area_of() { # dataset layer -> count and total area
  ogrinfo -q "$1" -dialect sqlite -sql "SELECT COUNT(*) AS n, SUM(ST_Area(geometry)) AS area FROM \"$2\"" |
    sed -n 's/^ *\(n\|area\) ([A-Za-z]*) = /\1=/p' | tr '\n' ' '
}

start=$(date +%s.%N)
(cd "$work" && "$build/cli/tessarine" build-polygons --layer lines.shp --cluster-tolerance 0 \
  --output "$work/ours.shp" --progress none >/dev/null)
end=$(date +%s.%N)
echo "tessarine, tolerance 0:  $(area_of "$work/ours.shp" ours) seconds=$(echo "$end - $start" | bc)"

if psql -d "$db" -qtAc "SELECT postgis_version()" >/dev/null 2>&1; then
  table=tess_bench_build_lines
  ogr2ogr -overwrite -f PostgreSQL "PG:dbname=$db" "$work/lines.shp" -nln $table -lco GEOMETRY_NAME=geom \
    -lco PRECISION=NO -nlt MULTILINESTRING
  psql -d "$db" -qtA -F ' ' <<SQL
\timing on
-- The lines are dumped into single lines first: ST_Node takes a collection of lines only.
SELECT 'postgis, ST_Polygonize(ST_Node(ST_Collect(geom))): n=' || COUNT(*) || ' area=' || SUM(ST_Area(g))
FROM (SELECT (ST_Dump(ST_Polygonize(noded))).geom AS g
      FROM (SELECT ST_Node(ST_Collect(geom)) AS noded
            FROM (SELECT (ST_Dump(geom)).geom FROM $table) parts) n) faces;
DROP TABLE $table;
SQL
else
  echo "no PostGIS database \"$db\": the engine alone, tolerance 0, is the second line below"
fi

"$bench/bench/geometry/tess_bench_cluster_tolerance" "$work" lines ${TOLERANCES:-0 1 10}
