#!/usr/bin/env bash
# Draws the tool's pictures with ImageMagick (Debian package imagemagick).
# The results are checked in; run this again only to change the artwork.
set -euo pipefail
cd "$(dirname "$0")"
IM=/usr/bin/convert
ORANGE='#ffa03e'
DARK='#2b3a4a'

# About banner, 379 x 58: product name on a dark band with an orange stripe.
$IM -size 379x58 xc:"$DARK" -fill "$ORANGE" -draw 'rectangle 0,52 379,58' \
    -fill white -font DejaVu-Sans-Bold -pointsize 22 -annotate +64+36 'VELTOR Camera Tool' \
    -fill "$ORANGE" -draw 'circle 32,28 32,12' -fill "$DARK" -draw 'circle 32,28 32,19' \
    -fill white -draw 'circle 32,28 32,24' about.png

# Logo, 128 x 128: a camera lens in the product colours.
$IM -size 128x128 xc:none -fill "$DARK" -draw 'roundrectangle 4,4 123,123 20,20' \
    -fill "$ORANGE" -draw 'circle 64,64 64,22' -fill "$DARK" -draw 'circle 64,64 64,38' \
    -fill white -draw 'circle 64,64 64,54' -fill "$ORANGE" -draw 'circle 78,50 78,46' logo.png

# Window icon with the usual sizes in one .ico.
$IM logo.png -define icon:auto-resize=256,128,64,48,32,16 about.ico

# Back arrow, 32 x 32.
$IM -size 32x32 xc:none -fill "$DARK" -stroke "$DARK" -strokewidth 1 \
    -draw 'polygon 4,16 16,4 16,11 28,11 28,21 16,21 16,28' back.png

# Loading animation, 86 x 86: twelve frames of a rotating orange arc.
frames=()
for i in $(seq 0 11); do
    a=$((i * 30))
    $IM -size 86x86 xc:white -fill none -stroke '#e0e0e0' -strokewidth 8 \
        -draw 'circle 43,43 43,13' -stroke "$ORANGE" \
        -draw "arc 13,13 73,73 $a $((a + 90))" "frame$i.gif"
    frames+=("frame$i.gif")
done
$IM -delay 8 -loop 0 -dispose background "${frames[@]}" loading.gif
rm -f "${frames[@]}"
