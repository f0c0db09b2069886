#!/usr/bin/env bash
# Runs the command-line tool on files of its own and compares what it prints,
# what it leaves in the files and how it exits: host_test.sh QUILL
set -u
quill=$(realpath "$1")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work" || exit 1
failures=0
input=''

equal() {  # WHAT WANTED GOT
  [[ $2 == "$3" ]] && return
  printf 'FAILED: %s\n  want %q\n  got  %q\n' "$@"
  failures=$((failures + 1))
}

# One run on $input: its exit status and all that it prints. Messages come
# before the listings, which wait in a buffer for the end.
check() {  # WHAT STATUS OUTPUT ARGUMENT...
  local what=$1 status=$2 output=$3 got
  shift 3
  got=$("$quill" "$@" 2>&1 <<<"$input")
  equal "$what" "$status|$output" "$?|$got"
}

# --- replace -----------------------------------------------------------------
printf 'one cat, Cats\n' >a
chmod 640 a
ln -s a link
check 'in place' 0 '' replace cat dog a
equal 'in place: text' 'one dog, Cats' "$(<a)"
equal 'permissions are kept' 640 "$(stat -c %a a)"
check 'through a link' 0 'link:1' replace --count dog cow link
equal 'the link stays' 'one cow, Cats' "$([[ -L link ]] && cat a)"
check 'no match' 1 '' replace bird dog a
check 'dry run' 0 'a:1' replace --dry-run cow dog a
equal 'dry run: text' 'one cow, Cats' "$(<a)"
check 'result elsewhere' 0 '' replace cow ox a --output b
equal 'result elsewhere: texts' 'one cow, Cats|one ox, Cats' "$(<a)|$(<b)"
check 'result on standard output' 0 'one ox, Cats' replace cow ox a -o -
check 'result of several' 2 \
  'quill: --output takes the result of one FILE, not of several' \
  replace cow ox a b --output c

input='x cat'
check 'filter' 0 'x dog' replace cat dog
check 'filter, counting' 0 $'(standard input):1\nx dog' replace -c cat dog
check 'filter, no match' 1 'x cat' replace bird dog
check 'delete' 0 'x ' replace cat ''
input='Ὀδυσσεύς ΟΔΟΣ οδος Ёлка ЁЛКА ёлка'
check 'Greek in any case' 0 'Ὀδυσσεύς X X Ёлка ЁЛКА ёлка' replace -i οδοσ X
check 'Cyrillic in any case' 0 3 find -ic ёлКА
input='Straße STRASSE'
check 'no fold to several characters' 0 1 find -ic strasse
input='cat concat cat_ cat2 caté cat. —cat 猫cat Cat'
check 'whole words' 0 'X concat cat_ cat2 caté X. —X 猫cat Cat' replace -w cat X
check 'whole words in any case' 0 4 find -wic CAT
input=''

# --- errors ------------------------------------------------------------------
printf 'cat \xff\n' >bad
printf 'cat\n' >good
printf 'cat\n' >sealed
truncate -s 2147483648 huge
mkdir dir
check 'troubles name the file, and the others run' 2 \
'quill: bad: not UTF-8 (at byte 4)
quill: dir: is a directory
quill: gone: No such file or directory
quill: huge: larger than 2,147,483,647 bytes' \
  replace cat dog bad dir gone huge good
equal 'the others have run' dog "$(<good)"
rm huge
check 'no place for the result' 2 'quill: none/x: No such file or directory' \
  replace dog cat good -o none/x
check 'nothing sought' 2 'quill: WORD must not be empty' find '' good
check 'argument not UTF-8' 2 'quill: REPLACEMENT is not UTF-8' \
  replace a $'\xff' good
"$quill" replace dog >/dev/null 2>&1
equal 'an argument is missing' 2 $?
equal 'full disk' 'quill: (standard output): No space left on device' \
  "$({ "$quill" fold good -o - >/dev/full; } 2>&1)"

# --- find, extract -----------------------------------------------------------
printf 'één twee\ndrie één\n\nvier\n' >f
check 'find' 0 $'1:1:één twee\n2:6:drie één' find één f
check 'find in several' 0 $'f:2:1:drie één\nf:2:1:drie één' find drie f f
check 'the n-th' 0 '1:8:één twee' find --nth 2 e f
check 'not so many' 1 '' find --nth 9 één f
check 'the last' 0 '4:3:vier' find --last e f
check 'count' 0 4 find -c e f
check 'count none' 1 0 find -c q f
check 'colour' 0 $'\e[32m4:1:\e[m\e[1;31mvi\e[mer' find --color always vi f
check 'extract' 0 '<één><één>' extract --prefix '<' --suffix '>' één f
check 'extract nothing' 1 '' extract zes f
head -c 1000000 /dev/zero | tr '\0' x >long
equal 'only a part of a very long line' 322 \
  "$("$quill" find --nth 500000 x long | cut -d: -f3 | wc -c)"

# --- patterns ----------------------------------------------------------------
input='on 2024-02-29 "a-b" é1 x  y'
check 'repetitions' 0 'on D "a-b" é1 x  y' replace -p '\d{4}-\d{2}-\d{2}' D
check 'sets' 0 '"a-b"' extract -p '"[^"\n]*"'
check 'members and ranges' 0 2024-02-29 extract -p '[0-9-]{2,}'
check 'any case' 0 1 find -ip 'ON' -c
check 'the last run' 0 '1:27:on 2024-02-29 "a-b" é1 x  y' find -p '\w+' --last
input=''
while IFS=$'\t' read -r notation reason; do
  check "mistake in $notation" 2 "quill: pattern: $reason" find -p "$notation" f
done <<'END'
[a	unfinished pattern (at byte 2)
[]	empty set (at byte 1)
[z-a]	not a range (at byte 4)
*a	write \* for the character * (at byte 0)
(a|b)	write \( for the character ( (at byte 0)
a\	unfinished pattern (at byte 2)
\q	unknown escape (at byte 2)
a{3,2}	not a number of repetitions (at byte 6)
a{0}	not a number of repetitions (at byte 4)
a{x}	expected a number (at byte 2)
a{2	expected } (at byte 3)
END

# --- words, sort, fold, wrap-lines -------------------------------------------
printf '# spelling\nthe\ta\nthere\tyonder\nÉtÉ\tsummer\n' >table
input='The thesis, there: été the'
check 'words' 0 'The thesis, yonder: été a' words table
check 'words in any case' 0 $'(standard input):4\na thesis, yonder: summer a' \
  words -ic table
input='nothing of that'
check 'no word' 1 'nothing of that' words table
printf 'a\tb\nice cream\tdessert\n' >table
check 'mistake in a table' 2 \
  'quill: table: line 2: the first column is not one word' words table

input=$'b\n\nab\t\nab\né\n😀\nB'
check 'sort' 0 $'\nB\nab\nab\t\nb\né\n😀' sort
check 'sort in any case' 0 $'\nab\nab\t\nb\nB\né\n😀' sort -i
input='ÀÉÎ ß Ωmega'
check 'fold' 0 'àéî ß ωmega' fold
input=$'a b\ncccccccc\naaa bbb ccc\néééé'
check 'wrap lines' 0 $'a b\nccccc\nccc\naaa \nbbb \nccc\nééé\né' \
  wrap-lines --width 5
printf 'last line' >f
check 'sorting ends the last line' 0 '' sort f
equal 'sorting ends the last line: text' 10 "$(wc -c <f)"
: >empty
check 'empty text' 0 '' fold empty
check 'nothing in an empty text' 1 '' replace a b empty
input=''

# --- interruption ------------------------------------------------------------
# The run is stopped while it searches the last files, long before it could be
# done, when a changed file is waiting for its renaming.
yes 'a fine mess of words, and more' | head -c 300000000 >big
cp good other
before=$(cksum big other)
for signal in INT TERM; do
  env --default-signal=$signal "$quill" replace -iw dog cat other big{,,,,,,,} &
  sleep 0.5
  kill -$signal $!
  started=$(date +%s%N)
  wait $!
  status=$?
  equal "stopped by $signal" $((128 + $(kill -l $signal))) $status
  equal "stopped by $signal in time" 1 \
    $((($(date +%s%N) - started) / 1000000 < 1000))
done
equal 'stopped: every file is as it was' "$before" "$(cksum big other)"
equal 'no temporary file is left' '' "$(find . -name '.quill*')"

printf '%d failed\n' $failures
((failures == 0))
