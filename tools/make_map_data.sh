#!/bin/sh
# Makes the rasters and copies the vector files that the shipped maps show.
#
#   tools/make_map_data.sh SOURCE_FOLDER [TARGET_FOLDER]
#
# SOURCE_FOLDER holds earth-blue-marble.jpg, world_dem_15km.tif,
# trinidad_90m_metres.tif, countries-50m.json and places.csv (NOTICE says where
# each comes from). TARGET_FOLDER is resources/map unless given. Needs gdal-bin.
set -eu

if [ $# -lt 1 ] || [ ! -d "$1" ]; then
  echo "usage: $0 SOURCE_FOLDER [TARGET_FOLDER]" >&2
  exit 2
fi
source_dir=$1
here=$(cd "$(dirname "$0")" && pwd)
target=${2:-$here/../resources/map}
for name in earth-blue-marble.jpg world_dem_15km.tif trinidad_90m_metres.tif countries-50m.json places.csv; do
  if [ ! -r "$source_dir/$name" ]; then
    echo "$0: $source_dir/$name is missing" >&2
    exit 1
  fi
done
mkdir -p "$target"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export GDAL_PAM_ENABLED=NO LC_ALL=C

tiled="-co TILED=YES -co BLOCKXSIZE=256 -co BLOCKYSIZE=256"

world_picture() {
  # The picture's north-east corner fades to grey, which on a globe is a stain at
  # the pole and a bright seam at 180 degrees. The last 84 columns of the first 84
  # rows take the colours just west of them, the first two rows those of the third.
  gdal_translate -q -of VRT -a_srs EPSG:4326 -a_ullr -180 90 180 -90 \
    "$source_dir/earth-blue-marble.jpg" "$work/picture.vrt"
  gdal_translate -q -srcwin 4004 0 8 84 -outsize 84 84 -r bilinear \
    -a_ullr 172.6171875 90 180 82.6171875 "$work/picture.vrt" "$work/corner.tif"
  gdalbuildvrt -q "$work/cornered.vrt" "$work/picture.vrt" "$work/corner.tif"
  gdal_translate -q -srcwin 0 2 4096 1 -outsize 4096 2 \
    -a_ullr -180 90 180 89.82421875 "$work/cornered.vrt" "$work/pole.tif"
  gdalbuildvrt -q "$work/world.vrt" "$work/cornered.vrt" "$work/pole.tif"
  # shellcheck disable=SC2086
  gdal_translate -q "$work/world.vrt" "$work/world.tif" $tiled \
    -co COMPRESS=JPEG -co JPEG_QUALITY=90 -co PHOTOMETRIC=YCBCR
  gdaladdo -q -r average --config JPEG_QUALITY_OVERVIEW 90 "$work/world.tif" 2 4 8 16
}

# heights NAME OVERVIEW...: the same numbers in the same type, cut in tiles.
heights() {
  name=$1
  shift
  # shellcheck disable=SC2086
  gdal_translate -q "$source_dir/$name" "$work/$name" $tiled \
    -co COMPRESS=DEFLATE -co ZLEVEL=9 -co PREDICTOR=2
  gdaladdo -q -r average "$work/$name" "$@"
  before=$(gdalinfo -checksum "$source_dir/$name" | grep Checksum=)
  after=$(gdalinfo -checksum "$work/$name" | grep Checksum=)
  if [ "$before" != "$after" ]; then
    echo "$0: the heights of $name changed ($before, now $after)" >&2
    exit 1
  fi
}

world_picture
heights world_dem_15km.tif 2 4 8
heights trinidad_90m_metres.tif 2 4 8
for name in world.tif world_dem_15km.tif trinidad_90m_metres.tif; do
  cp "$work/$name" "$target/$name"
done
cp "$source_dir/countries-50m.json" "$source_dir/places.csv" "$target/"
chmod u+w "$target/countries-50m.json" "$target/places.csv"
# Column types for the CSV reader: numbers stay numbers, lon and lat are the point.
echo '"String","String","String","Integer","CoordX","CoordY"' >"$target/places.csvt"
ls -l "$target"
