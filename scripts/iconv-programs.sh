#!/bin/bash
# Runs programs of Debian on libencconv_iconv, which they know nothing of.
#
#   scripts/iconv-programs.sh LIBRARY
#
# Each task is done by the program as it is and again with LIBRARY in front of the C library. Most are
# compared: both must do the same. Some use an encoding that the C library lacks, so that they fail
# without us; these are compared with what they have to give. The programs are installed where
# they are missing.
set -u
export LC_ALL=C.UTF-8 TERM=dumb

"$(dirname "$0")/setup.sh" iconv
library=$(realpath "${1:?the library to put in front}")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export HOME=$work
failures=0

# How a task starts its program: as it is (theirs), or on the library (ours).
mode=theirs
run() {
  if [ "$mode" = ours ]; then
    LD_PRELOAD=$library command "$@"
  else
    command "$@"
  fi
}

# fresh TASK: its output, in a folder of its own.
fresh() {
  rm -rf "$work/task"
  mkdir "$work/task"
  (cd "$work/task" && "$1") 2>&1
}

fail() {
  echo "FAILED $1: $2"
  failures=$((failures + 1))
}

# same TASK: gives the same with and without the library, and something.
same() {
  local theirs ours
  mode=theirs
  theirs=$(fresh "$1" | od -An -tx1)
  mode=ours
  ours=$(fresh "$1" | od -An -tx1)
  if [ -z "$theirs" ]; then
    fail "$1" "the program gives nothing"
  elif [ "$theirs" != "$ours" ]; then
    fail "$1" "the library gives something else"
    diff <(echo "$theirs") <(echo "$ours") | head -6
  else
    echo "same   $1"
  fi
}

# only TASK TEXT: gives the text with the library and not without it.
only() {
  local theirs ours
  mode=theirs
  theirs=$(fresh "$1")
  mode=ours
  ours=$(fresh "$1")
  if [ "$ours" != "$2" ]; then
    fail "$1" "gives '$ours'"
  elif [ "$theirs" = "$ours" ]; then
    fail "$1" "the C library can do it as well"
  else
    echo "only   $1"
  fi
}

# text UTF-8 ENCODING: the text in the encoding, by neither of the two.
text() { python3 -c 'import sys; sys.stdout.buffer.write(sys.argv[1].encode(sys.argv[2]))' "$1" "$2"; }

# ---- PHP. ----

# Debian's PHP loads its modules so that they find the C library in front of what is preloaded. What
# is preloaded for others is linked to a copy of the module here.
modules=$(php -r 'echo ini_get("extension_dir");')
mkdir "$work/theirs" "$work/ours"
cp "$modules/iconv.so" "$work/theirs"
cp "$modules/iconv.so" "$work/ours"
patchelf --add-needed "$library" "$work/ours/iconv.so"
run_php() { command php -n -d extension_dir="$work/$mode" -d extension=iconv "$@"; }

php_functions() {
  run_php -r '
    foreach (["SHIFT_JIS", "EUC-JP", "ISO-2022-JP", "GB18030", "UTF-16", "UTF-7", "EUC-KR"] as $name) {
      $text = iconv("UTF-8", $name, $name == "EUC-KR" ? "한글 text" : "日本語 text");
      echo $name, " ", bin2hex($text), " ", iconv($name, "UTF-8", $text), "\n";
    }
    echo iconv_strlen("日本語", "UTF-8"), iconv_strpos("日本語", "語", 0, "UTF-8"),
         iconv_strrpos("語本語", "語", "UTF-8"), "\n";
    echo iconv_substr("日本語テキスト", 2, 3, "UTF-8"), "\n";
    echo iconv_mime_decode("=?ISO-2022-JP?B?GyRCRnxLXBsoQg==?= =?UTF-8?Q?caf=C3=A9?=", 0, "UTF-8"), "\n";
    echo iconv_mime_encode("Subject", "日本語のとても長い件名でありますよ、本当に",
         ["output-charset" => "ISO-2022-JP", "scheme" => "B"]), "\n";
    print_r(iconv_mime_decode_headers("Subject: =?EUC-JP?B?xvzL3A==?=\nTo: a@b\n", 0, "UTF-8"));
    var_dump(@iconv("UTF-8", "ASCII", "né"), @iconv("UTF-8", "ASCII//IGNORE", "n\xFFe"));
    var_dump(@iconv("UTF-8", "NO-SUCH", "x"));'
}
php_filters() {
  run_php -r '
    $in = fopen("php://memory", "w+");
    fwrite($in, str_repeat(iconv("UTF-8", "EUC-JP", "文字コードの変換。"), 3000));
    rewind($in);
    stream_filter_append($in, "convert.iconv.EUC-JP/UTF-16LE", STREAM_FILTER_READ);
    echo md5(stream_get_contents($in)), "\n";
    $out = fopen("php://memory", "w+");
    stream_filter_append($out, "convert.iconv.UTF-8.ISO-2022-JP", STREAM_FILTER_WRITE);
    for ($i = 0; $i < 500; ++$i) fwrite($out, "日本\n語 and\n");
    rewind($out);
    echo md5(stream_get_contents($out)), "\n";'
}
php_transliterates() { run_php -r 'echo iconv("UTF-8", "ASCII//TRANSLIT", "Привет – 5 €"), "\n";'; }
php_bocu() { run_php -r 'echo bin2hex(iconv("UTF-8", "BOCU-1", "été")), "\n";'; }

# ---- Perl's Text::Iconv. ----

perl_text_iconv() {
  run perl -MText::Iconv -e '
    for my $name ("ISO-8859-1", "UTF-16BE", "UCS-4LE", "KOI8-R", "CP1252", "MACINTOSH") {
      my $there = Text::Iconv->new("UTF-8", $name);
      my $back = Text::Iconv->new($name, "UTF-8");
      my $text = $there->convert($name eq "KOI8-R" ? "\xd0\x96" : "caf\xc3\xa9");
      print $name, " ", unpack("H*", $text), " ", $back->convert($text), "\n";
      $there->raise_error(0);
      my $none = $there->convert("\xe4\xb8");
      print defined $none ? "text" : "undef", " ", defined $there->retval ? $there->retval : "-", "\n";
    }
    print eval { Text::Iconv->new("no", "such"); 1 } ? "opened" : "refused", "\n";
    Text::Iconv->raise_error(1);
    my $strict = Text::Iconv->new("UTF-8", "ASCII");
    eval { $strict->convert("caf\xc3\xa9") };
    print $@ ? "died\n" : "lived\n";
    my $one = Text::Iconv->new("UTF-8", "ISO-2022-JP");
    my $two = Text::Iconv->new("ISO-2022-JP", "UTF-8");
    for my $i (1 .. 50) { print $two->convert($one->convert("\xe6\x97\xa5 $i ")); }
    print "\n";'
}
perl_scsu() {
  run perl -MText::Iconv -e 'print unpack("H*", Text::Iconv->new("UTF-8", "SCSU")->convert("caf\xc3\xa9")), "\n"'
}

# ---- git. ----

git_identity() {
  git init -q -b main .
  git config user.name "A U Thor" && git config user.email a@example.org
}
git_commit_encoding() {
  git_identity
  git config i18n.commitEncoding SHIFT_JIS
  text "日本語の説明" shift_jis | GIT_AUTHOR_DATE=@0 GIT_COMMITTER_DATE=@0 run git commit -q --allow-empty -F -
  run git log --format="%s %e" --encoding=UTF-8
  run git log --format="%s" --encoding=EUC-JP
  run git log --format="%s" --encoding=ISO-2022-JP
}
git_working_tree() {
  git_identity
  echo "*.txt working-tree-encoding=UTF-16 eol=lf" >.gitattributes
  text $'été\nнить\n' utf-16 >a.txt
  run git add .gitattributes a.txt
  run git cat-file -p :a.txt
  rm a.txt
  run git checkout -q -- a.txt
  cat a.txt
  run git status --short
}
git_scsu() {
  git_identity
  echo "*.txt working-tree-encoding=SCSU" >.gitattributes
  printf 'caf\xe9\n' >a.txt
  run git add a.txt && run git cat-file -p :a.txt
}

# ---- xmllint. ----

xml() { text "<?xml version='1.0' encoding='$1'?><text>$2</text>" "$3" >in.xml; }
xml_shift_jis() { xml SHIFT_JIS "日本語" shift_jis && run xmllint --encode UTF-8 in.xml; }
xml_gb18030() { xml GB18030 "中文 é" gb18030 && run xmllint --encode UTF-8 in.xml; }
xml_ebcdic() { xml IBM037 "Café" cp037 && run xmllint --encode UTF-8 in.xml; }
xml_writes() {
  xml UTF-8 "日本 é ツ" utf-8
  for name in EUC-JP SHIFT_JIS ISO-8859-15 UTF-16 ISO-2022-JP; do run xmllint --encode $name in.xml; done
}
xml_mac() { xml x-mac-romanian "Café" mac_romanian && run xmllint --encode UTF-8 in.xml; }

# ---- vim. ----

vim_detects() {
  text $'日本語\nテキスト\n' euc_jp >euc.txt
  text $'中文\n' gb18030 >gb.txt
  text $'Привет\n' koi8_r >koi.txt
  for pair in "euc-jp euc.txt" "gb18030 gb.txt" "koi8-r koi.txt"; do
    set -- $pair
    run vim -es -u NONE -N --cmd "set encoding=utf-8 fileencodings=ucs-bom,utf-8,$1" "$2" \
      -c "w! ++enc=utf-8 out.txt" -c "q!" </dev/null
    cat out.txt
    run vim -es -u NONE -N --cmd "set encoding=utf-8 fileencodings=ucs-bom,utf-8,$1" "$2" \
      -c "w! ++enc=iso-2022-jp back.txt" -c "q!" </dev/null
    cat back.txt 2>/dev/null || echo "not written"
  done
}
vim_writes_mac() {
  text $'été\n' utf-8 >in.txt
  run vim -es -u NONE -N --cmd "set encoding=utf-8" in.txt -c "w! ++enc=x-mac-romanian out.txt" -c "q!" </dev/null
  [ -e out.txt ] && od -An -tx1 out.txt | tr -d ' \n'
}

# ---- man. ----

man_pages() {
  local page
  for pair in "ja euc_jp EUC-JP 名前" "ru koi8_r KOI8-R ИМЯ" "zh gb18030 GB18030 名称" "ja shift_jis SHIFT_JIS 名前"; do
    set -- $pair
    page=$1-$2.1
    text ".TH TEST 1
.SH $4
test - $4
" "$2" >"$page"
    run /usr/libexec/man-db/manconv -f "$3" -t UTF-8 "$page"
    run man --encoding=UTF-8 -l "$page" 2>/dev/null | head -3
  done
}

# ---- Archives. ----

names_in_zip() {
  python3 - <<'END'
import zipfile
class Raw(zipfile.ZipInfo):
    def _encodeFilenameFlags(self): return self.filename.encode("cp932"), 0
with zipfile.ZipFile("names.zip", "w") as archive:
    archive.writestr(Raw("日本語.txt", (2000, 1, 1, 0, 0, 0)), "text")
END
}
unzip_names() { names_in_zip && run unzip -q -O CP932 names.zip && ls; }
bsdtar_names() {
  touch "日本語.txt" "été.txt"
  run bsdtar --format=pax --options hdrcharset=BINARY -cf a.tar ./*.txt && run bsdtar -tf a.tar
  run bsdtar --format=ustar --options hdrcharset=EUC-JP -cf b.tar "日本語.txt" && tar --quoting-style=escape -tf b.tar
  run bsdtar --options hdrcharset=EUC-JP -tf b.tar
  names_in_zip && run bsdtar --options hdrcharset=CP932 -tf names.zip
}
bsdtar_mac() {
  touch "été.txt"
  run bsdtar --format=ustar --options hdrcharset=x-mac-romanian -cf b.tar "été.txt" && tar --quoting-style=escape -tf b.tar
}

# ---- mutt. ----

mutt_mailbox() {
  python3 - >mailbox <<'END'
import base64, sys
texts = [("ISO-2022-JP", "日本語の手紙"), ("KOI8-R", "Привет"), ("GB18030", "中文"), ("ISO-8859-15", "10 €"),
         ("EUC-KR", "한글")]
for name, text in texts:
    raw = text.encode(name)
    word = base64.b64encode(raw).decode()
    sys.stdout.write(f"From a@example.org Thu Jan  1 00:00:00 1970\nFrom: a@example.org\n"
                     f"Subject: =?{name}?B?{word}?=\nMIME-Version: 1.0\n"
                     f"Content-Type: text/plain; charset={name}\n"
                     f"Content-Transfer-Encoding: base64\n\n"
                     f"{base64.b64encode(raw + chr(10).encode()).decode()}\n\n")
END
  cat >rc <<'END'
set charset=utf-8 pipe_decode=yes wait_key=no sort=mailbox-order pipe_sep="" confirmappend=no delete=no
set mbox_type=mbox folder=. spoolfile=mailbox
END
  # It wants a terminal; what it shows there is not looked at.
  cat >keys <<'END'
push "<tag-pattern>.<enter><tag-prefix><pipe-message>cat >decoded<enter><exit>"
END
  TERM=vt100 run script -qec "mutt -F rc -R -f mailbox -e 'source keys'" /dev/null </dev/null >/dev/null 2>&1
  cat decoded
}

# ---- glib. ----

glib_tests() {
  local test
  for test in convert utf8-misc utf8-validate utf8-pointer converter-stream; do
    run /usr/libexec/installed-tests/glib/$test | grep -E "^(ok|not ok)" | sed 's/ .* # / /'
  done
}

same php_functions
same php_filters
only php_transliterates "Privet - 5 EUR"
only php_bocu "d0764ff4d076"
same perl_text_iconv
only perl_scsu "636166e9"
same git_commit_encoding
same git_working_tree
only git_scsu "café"
same xml_shift_jis
same xml_gb18030
same xml_ebcdic
same xml_writes
only xml_mac "<?xml version=\"1.0\" encoding=\"UTF-8\"?>
<text>Café</text>"
same vim_detects
only vim_writes_mac "8e748e0a"
same man_pages
same unzip_names
same bsdtar_names
only bsdtar_mac "\216t\216.txt"
same mutt_mailbox
same glib_tests

[ "$failures" -eq 0 ] || { echo "$failures tasks failed"; exit 1; }
