#!/usr/bin/env bash
# Scales our logo artwork to the hicolor sizes desktops look for (Debian
# package imagemagick). The results are checked in; run this again only when
# resources/images/logo.png changes.
set -euo pipefail
cd "$(dirname "$0")"
# Another `convert` may come first on PATH; we want ImageMagick's.
IM=/usr/bin/convert
LOGO=../resources/images/logo.png

for size in 16 22 24 32 48 64 128 256; do
    # Without -strip and the date chunks every run would change the files.
    $IM "$LOGO" -filter Lanczos -resize "${size}x${size}" -depth 8 -strip \
        -define png:exclude-chunks=date,time "PNG32:icons/${size}.png"
done
