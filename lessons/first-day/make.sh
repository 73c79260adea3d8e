#!/bin/sh
# Makes the sample lesson: first-day.wav and, beside it, first-day.truth.tsv with the true start and end of every
# sentence. And first-day.learner.wav: what a learner makes of the second sentence. Each sentence is spoken and trimmed alone, so where it begins is counted in samples, not measured by ear.
# Needs espeak-ng and sox. The same versions of the two give the same bytes.
set -eu

cd "$(dirname "$0")"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
rate=22050

# voice | pause after the sentence in milliseconds | the sentence
sentences='en-us+f3|900|Good morning, everyone, and welcome to your first day at school.
en-us+f3|700|My name is Anna Wilson, and I am your new teacher.
en-us+f3|1200|Please sit down, open your books, and look at the picture on page one.
en-us+f3|650|What can you see in the picture?
en-us+m3|1000|I can see a big house, a garden, and two children.
en-us+f3|600|Very good!
en-us+f3|800|What are the children doing?
en-us+m3|1100|They are playing with a small brown dog under the apple tree.
en-us+f3|550|Is the dog sleeping?
en-us+m3|750|No, it is not.
en-us+m3|1300|It is running after a red ball, because the boy has thrown it over the wall.
en-us+f3|900|Excellent, Peter, that was a long and very clear sentence.
en-us+f3|700|Now listen to the story, and try to remember the most important words.
en-us+f3|850|On Monday, Tom walked to the station and bought a ticket to London.
en-us+f3|650|The train was late, so he drank a cup of tea and read the newspaper.
en-us+f3|1000|When it came at last, it was already dark.
en-us+f3|1400|How many words can you remember?
en-us+f3|1500|Write them down, and read them to your neighbour.
en-us+f3|0|See you tomorrow!'

# Half a second to breathe before the first sentence, a full one behind the last.
sox -D -r $rate -n -b 16 -c 1 "$work/000.wav" trim 0 0.5
printf '%s\n' "$sentences" | {
  number=0
  now=$(soxi -s "$work/000.wav")
  printf 'number\tstart_ms\tend_ms\ttext\n' > "$work/truth.tsv"
  while IFS='|' read -r voice pause text; do
    number=$((number + 1))
    piece=$(printf '%s/%03d' "$work" "$number")
    # A reader stops a little longer at a comma than the synthesizer does of itself.
    spoken=$(printf '%s' "$text" | sed 's|, |, <break time="300ms"/>|g')
    espeak-ng -m -v "$voice" -s 150 -a 120 -w "$work/raw.wav" "$spoken"
    # The level that counts as sound is that of a breath: one part in two hundred of full scale.
    sox -D "$work/raw.wav" -r $rate -b 16 -c 1 "${piece}a.wav" silence 1 0.002 0.5% reverse silence 1 0.002 0.5% reverse
    end=$((now + $(soxi -s "${piece}a.wav")))
    printf '%d\t%d\t%d\t%s\n' "$number" $((now * 1000 / rate)) $((end * 1000 / rate)) "$text" >> "$work/truth.tsv"
    [ "$pause" -gt 0 ] || pause=1000
    sox -D -r $rate -n -b 16 -c 1 "${piece}b.wav" trim 0 $((pause * rate / 1000))s
    now=$((end + $(soxi -s "${piece}b.wav")))
  done
}

# A little room noise, so that silence is what a microphone hears; -R keeps it the same every time.
sox -D "$work"/[0-9]*.wav "$work/speech.wav"
sox -R -D -r $rate -n -b 16 -c 1 "$work/noise.wav" synth "$(soxi -s "$work/speech.wav")s" pinknoise vol 0.004
sox -D -m -v 1 "$work/speech.wav" -v 1 "$work/noise.wav" -b 16 first-day.wav
mv "$work/truth.tsv" first-day.truth.tsv

# The learner: another voice, slower, with a breath before and behind; half the rate is enough for a microphone.
learner=$(printf '%s\n' "$sentences" | sed -n '2s/^[^|]*|[^|]*|//p')
espeak-ng -v en-us+m1 -s 130 -a 100 -w "$work/learner.wav" "$learner"
sox -R -D "$work/learner.wav" -r 11025 -b 16 -c 1 first-day.learner.wav \
  silence 1 0.002 0.5% reverse silence 1 0.002 0.5% reverse pad 0.2 0.3
