#!/bin/sh
# run_plot2d.sh PROGRAM FOLDER
#
# Runs the example of the 2D plot as docs/plots.md shows it, and with files of its own.
set -eu
program=$1
cd "$2"

"$program" --log --cut 30,50,70,90 --picture plot2d_cut.png
"$program" --log --region 30,70,50,90 --picture plot2d_region.png | grep -q '^(30,70)-(50,90): [1-9][0-9]*$'
for picture in plot2d_cut.png plot2d_region.png; do
  [ -s "$picture" ] || { echo "no $picture"; exit 1; }
done
if cmp -s plot2d_cut.png plot2d_region.png; then echo "cut and region look alike"; exit 1; fi

printf '1,2,3\n\n4,5\n' > plot2d.csv
"$program" --region 0,0,3,3 --picture plot2d.png plot2d.csv | grep -q '^(0,0)-(3,3): 15$'
if "$program" --picture plot2d.png no/such/file 2> plot2d.err; then echo "a missing file is no error"; exit 1; fi
grep -q 'no/such/file' plot2d.err
