#!/usr/bin/env bash
# What a new learner does in the first five minutes, with nothing but the program and a lesson as MP3, in a clean home.
#
#   five_minutes.sh TAVIMO LESSON-FOLDER
set -euo pipefail

program=$(realpath "$1")
lesson=$(realpath "$2")
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
export HOME=$folder/home
mkdir "$HOME"
unset XDG_DATA_HOME XDG_CONFIG_HOME
PATH=$folder/bin:$PATH
mkdir "$folder/bin" "$folder/lessons"
ln -s "$program" "$folder/bin/tavimo"

sox "$lesson/first-day.wav" "$folder/lessons/lesson.mp3"
cp "$lesson/first-day.scr" "$folder/lessons/lesson.scr"
cp "$lesson/first-day.txt" "$folder/lessons/lesson.txt"
cd "$folder/lessons"
{ tavimo import lesson.mp3 && tavimo cut lesson && tavimo wave lesson -o w.png && tavimo lesson lesson; } 2>errors.txt

for file in lesson.wav w.png lesson.html; do
  [ -s "$file" ] || { echo "five_minutes.sh: there is no $file" >&2; exit 1; }
done
[ ! -s errors.txt ] || { cat errors.txt >&2; exit 1; }
[ "$(grep -o '"number":' lesson.html | wc -l)" = 19 ]
grep -q '"kind":"question"' lesson.html && grep -q 'data:image/png' lesson.html
