#!/usr/bin/env bash
# check_translations.sh LUPDATE SOURCE_DIR WORK_DIR: every text of the library and the programs is in its catalogues and
# translated.
set -euo pipefail
lupdate=$1 source=$2 work=$3
rm -rf "$work"
mkdir -p "$work"
cd "$source"
faults=0
for catalogue in $(git ls-files '*.ts' 2>/dev/null || find tarnis apps -name '*.ts'); do
  folder=${catalogue%%/translations/*}
  fresh=$work/$(basename "$catalogue")
  cp "$catalogue" "$fresh"
  only=()
  [[ $catalogue != *_en.ts ]] || only=(-pluralonly) # English texts have a catalogue for their plurals alone
  "$lupdate" -silent -locations none -no-obsolete "${only[@]}" -I "$source" "$folder" -ts "$fresh" 2>/dev/null
  if ! diff -u "$catalogue" "$fresh"; then
    echo "$catalogue: not up to date; run: cmake --build build/dev --target update_translations"
    faults=1
  fi
  if grep -n 'type="unfinished"' "$fresh"; then
    echo "$catalogue: texts without a translation"
    faults=1
  fi
  # A key is named by the system, in the current language.
  if grep -nE '(Ctrl|Strg|Shift|Umschalt)\+|\(F[0-9]+\)' "$fresh"; then
    echo "$catalogue: keys inside texts; see withKey()"
    faults=1
  fi
done
exit $faults
