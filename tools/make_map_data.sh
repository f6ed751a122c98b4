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
  # rows become a run from the colours just west of them to those just east, in
  # the first column; the first two rows take the colours of the third.
  gdal_translate -q -of VRT -a_srs EPSG:4326 -a_ullr -180 90 180 -90 \
    "$source_dir/earth-blue-marble.jpg" "$work/picture.vrt"
  gdal_translate -q -srcwin 4004 0 8 84 -outsize 1 84 -r average \
    -a_ullr 0 84 1 0 "$work/picture.vrt" "$work/left.tif"
  gdal_translate -q -srcwin 0 0 1 84 -a_ullr 1 84 2 0 "$work/picture.vrt" "$work/right.tif"
  gdalbuildvrt -q "$work/sides.vrt" "$work/left.tif" "$work/right.tif"
  gdal_translate -q "$work/sides.vrt" "$work/sides.tif"
  gdal_translate -q -outsize 84 84 -r bilinear \
    -a_ullr 172.6171875 90 180 82.6171875 "$work/sides.tif" "$work/corner.tif"
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

# A drawn picture for the place where the heights are fine and the world picture
# is not: height tints in its colours, woods on the slopes, a soft light.
trinidad_relief() {
  columns=4802
  rows=2402
  west=-106.000416666671711
  south=36.999583332
  east=-103.999583309334
  north=38.000416690891143
  metric="+proj=eqc +lat_ts=37.5 +datum=WGS84"
  # The heights were drawn from contour lines and keep their steps. A spline
  # softens them; slopes, which decide where woods grow, need a wider average.
  gdalwarp -q -r cubicspline -ot Float32 -ts $columns $rows "$work/trinidad_90m_metres.tif" "$work/dem.tif"
  gdalwarp -q -r average -ot Float32 -ts 300 150 "$work/trinidad_90m_metres.tif" "$work/dem720.tif"
  gdalwarp -q -r cubicspline -ts $columns $rows "$work/dem720.tif" "$work/hills.tif"

  # gdaldem measures slopes in the pixel's units, so it sees the place in metres:
  # a degree of latitude is 111320 m, one of longitude cos(37.5 degrees) of that.
  gdal_translate -q -of VRT -a_srs "$metric" -a_ullr 0 111320 176703 0 "$work/dem.tif" "$work/metres.vrt"
  gdal_translate -q -of VRT -a_srs "$metric" -a_ullr 0 111320 176703 0 "$work/hills.tif" "$work/hills.vrt"
  gdaldem hillshade -q -multidirectional -alt 45 -compute_edges "$work/metres.vrt" "$work/light.tif"
  gdaldem slope -q -compute_edges "$work/hills.vrt" "$work/slope.tif"
  for name in light slope; do
    gdal_translate -q -of VRT -a_srs EPSG:4326 -a_ullr $west $north $east $south \
      "$work/$name.tif" "$work/$name.vrt"
  done

  cat >"$work/tints.txt" <<TINTS
1300 116 98 66
1700 124 104 70
2100 122 102 70
2350 116 99 68
2800 108 96 66
3300 112 100 74
3600 128 114 92
3850 150 140 124
3950 226 226 226
4300 245 246 248
TINTS
  gdaldem color-relief -q "$work/dem.tif" "$work/tints.txt" "$work/tint.tif"
  gdalwarp -q -r cubicspline -ts $columns $rows -te $west $south $east $north \
    "$work/world.tif" "$work/far.tif"

  # How wooded a place is, 0 to 1: on slopes, between the plains and the tree line.
  band() { # TYPE FUNCTION SOURCES: one computed band as a virtual raster
    cat <<VRT
<VRTDataset rasterXSize="$columns" rasterYSize="$rows">
 <SRS>EPSG:4326</SRS>
 <GeoTransform>$west, 0.0004166666717115, 0, $north, 0, -0.000416666676756</GeoTransform>
 <VRTRasterBand dataType="$1" band="1" subClass="VRTDerivedRasterBand">
  <PixelFunctionType>$2</PixelFunctionType>
  <SourceTransferType>Float32</SourceTransferType>
  $3
 </VRTRasterBand>
</VRTDataset>
VRT
  }
  source_of() { # FILE BAND MAPPING: one input of such a band
    echo "<ComplexSource><SourceFilename>$work/$1</SourceFilename><SourceBand>$2</SourceBand>$3</ComplexSource>"
  }
  band Float32 mul "$(source_of slope.tif 1 '<LUT>0:0,2:0.03,7:0.6,12:1</LUT>')
    $(source_of dem.tif 1 '<LUT>1700:0,2150:0.5,2500:1,3350:1,3650:0</LUT>')" >"$work/woods.vrt"
  gdal_translate -q "$work/woods.vrt" "$work/woods.tif"

  # Low ground takes most of its colour from the world picture, high ground none.
  number=1
  for wood_colour in 58 66 38; do
    band Float32 mul "$(source_of tint.tif $number '')
      $(source_of dem.tif 1 '<LUT>2400:0.35,3000:0.6,3500:1</LUT>')" >"$work/near$number.vrt"
    band Float32 mul "$(source_of far.tif $number '')
      $(source_of dem.tif 1 '<LUT>2400:0.65,3000:0.4,3500:0</LUT>')" >"$work/far$number.vrt"
    band Float32 sum "$(source_of near$number.vrt 1 '')
      $(source_of far$number.vrt 1 '')" >"$work/mix$number.vrt"
    band Float32 mul "$(source_of mix$number.vrt 1 '')
      $(source_of woods.tif 1 '<ScaleOffset>1</ScaleOffset><ScaleRatio>-0.85</ScaleRatio>')" >"$work/open$number.vrt"
    ratio=$(awk "BEGIN { print 0.85 * $wood_colour }")
    band Float32 sum "$(source_of open$number.vrt 1 '')
      $(source_of woods.tif 1 "<ScaleRatio>$ratio</ScaleRatio>")" >"$work/ground$number.vrt"
    band Byte mul "$(source_of ground$number.vrt 1 '')
      $(source_of light.tif 1 '<LUT>1:0.45,180:1,255:1.35</LUT>')" >"$work/lit$number.vrt"
    number=$((number + 1))
  done

  # Opaque but for its rim, which fades over 0.06 degrees into the world picture.
  awk 'BEGIN {
    print "ncols 240\nnrows 120\nxllcorner -106.000416667\nyllcorner 36.999583309\ncellsize 0.008336805"
    for (row = 0; row < 120; ++row) {
      for (column = 0; column < 240; ++column) {
        x = column < 120 ? column : 239 - column
        y = row < 60 ? row : 119 - row
        near = (x < 7 ? x / 7 : 1) * (y < 7 ? y / 7 : 1)
        printf "%d ", 255 * near * near * (3 - 2 * near) + 0.5
      }
      print ""
    }
  }' >"$work/rim.asc"
  gdal_translate -q -ot Byte -a_srs EPSG:4326 -outsize $columns $rows -r bilinear "$work/rim.asc" "$work/rim.tif"

  gdalbuildvrt -q -separate -a_srs EPSG:4326 "$work/relief.vrt" \
    "$work/lit1.vrt" "$work/lit2.vrt" "$work/lit3.vrt" "$work/rim.tif"
  # shellcheck disable=SC2086
  gdal_translate -q "$work/relief.vrt" "$work/trinidad_relief.tif" $tiled \
    -colorinterp red,green,blue,alpha \
    -co COMPRESS=JPEG -co JPEG_QUALITY=86 -co PHOTOMETRIC=RGB -co JPEGTABLESMODE=0
  # Without tables of its own in each tile GDAL guesses the quality for a tenth
  # of a second, every time it opens the file.
  gdaladdo -q -r average --config JPEG_QUALITY_OVERVIEW 85 --config JPEG_TABLESMODE_OVERVIEW 0 \
    "$work/trinidad_relief.tif" 2 4 8 16
}

world_picture
heights world_dem_15km.tif 2 4 8
heights trinidad_90m_metres.tif 2 4 8
trinidad_relief
for name in world.tif world_dem_15km.tif trinidad_90m_metres.tif trinidad_relief.tif; do
  cp "$work/$name" "$target/$name"
done
cp "$source_dir/countries-50m.json" "$source_dir/places.csv" "$target/"
chmod u+w "$target/countries-50m.json" "$target/places.csv"
# Column types for the CSV reader: numbers stay numbers, lon and lat are the point.
echo '"String","String","String","Integer","CoordX","CoordY"' >"$target/places.csvt"
ls -l "$target"
