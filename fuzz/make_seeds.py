#!/usr/bin/env python3
"""Writes the seeds of the fuzz targets into fuzz/corpus/TARGET. Inputs that once showed a fault
stay there under names of their own and are not touched."""
import base64
import bz2
import pathlib
import re
import struct

HERE = pathlib.Path(__file__).resolve().parent
SUPPORT = (HERE / "fuzz_support.h").read_text()
PAGES = [
    int(number)
    for number in re.findall(
        r"-?\d+", re.search(r"kFuzzCodePages\[\] = \{(.*?)\}", SUPPORT, re.S).group(1))
]
page = PAGES.index


def write(target, name, data):
    directory = HERE / "corpus" / target
    directory.mkdir(parents=True, exist_ok=True)
    (directory / name).write_bytes(data)


def convert(name, source, to, action, alternate, flags, substitute, text):
    settings = [page(source), page(to), action, page(alternate), flags, len(substitute)]
    write("convert", name, bytes(settings) + substitute + text)


MIXED = "Grüße, привет, 日本語 한국어 €😀"
convert("utf8-932", 65001, 932, 1, 0, 0, b"?", MIXED.encode())
convert("932-utf8", 932, 65001, 2, 0, 0, b"", "日本語 ascii ｶﾅ".encode("cp932") + b"\xff\x81")
convert("936-950", 936, 950, 7, 0, 4, b"", "中文文本".encode("gbk") + b"\xfe\xfe")
convert("949-50225", 949, 50225, 6, 1252, 0, b"", "한국어 text".encode("cp949") + b"\xc9\xff")
convert("50220-65000", 50220, 65000, 1, 0, 0, b"\xfd\xef\x01",
        "日本語 mail".encode("iso-2022-jp") + b"\x1b$B\x22")
convert("50225-1201", 50225, 1201, 0, 0, 0, b"", "한국어".encode("iso-2022-kr"))
convert("1252-1201", 1252, 1201, 8, 0, 4, b"", b"caf\xe9 \x81\x8d")
convert("1200-1258", 1200, 1258, 2, 0, 0, b"", "Tiếng Việt".encode("utf-16"))
convert("1201-37", 1201, 37, 6, 65001, 0, b"", "Hello é あ".encode("utf-16-be"))
convert("12000-55000", 12000, 55000, 1, 0, 0, b"!", "GSM €{}".encode("utf-32"))
convert("65000-1256", 65000, 1256, 2, 0, 0, b"", "Hi ١٢٣ مرحبا".encode("utf-7"))
convert("10004-864", 10004, 864, 1, 0, 0, b"ab?", b"\xc7\xb1\xb2\xc8 \xa1\xa2")
convert("pdf", 5, 99, 0, 0, 0, b"", b"%PDF-1.4")
convert("10001-verbose", 10001, 65001, 1, 0, 3, b"\xd8A", b"\x86\x9b\x81\x00\xa0\xfd")
convert("1252-long", 1252, 65001, 1, 0, 0, b"?", b"long enough for vector loops \xe9" * 9)
convert("65001-65005", 65001, 65005, 2, 0, 1, b"",
        b"\xed\xa0\xbd\xed\xb8\x80\xed\xa0\x80\xc0\x80\xf0\x9f")


def step(name, number, codepage, source, to, action, flags, substitute, text):
    settings = [number, page(codepage), page(source), page(to), action, flags, len(substitute)]
    write("pivot_steps", name, bytes(settings) + substitute + text)


step("decode-932", 0, 932, 932, 65001, 7, 1, b"", "日本語".encode("cp932") + b"\xfe")
step("decode-1253", 0, 1253, 1253, 1200, 8, 1, b"", b"\xd2\xff\xaa text")
step("encode-949", 1, 949, 65001, 949, 1, 2, b"??", MIXED.encode("utf-16-le") + b"\xfd\xef\x02ab")
step("encode-1258", 1, 1258, 65001, 1258, 2, 2, b"", "Tiếng ễ 日".encode("utf-16-le"))
step("utf8-utf16", 2, 0, 65001, 1252, 1, 5, b"?", MIXED.encode() + b"\xe6\x97")
step("utf16-utf8", 3, 0, 932, 65001, 7, 6, b"",
    MIXED.encode("utf-16-le") + b"\x00\xd8A\x00\xfd\xef\x02ab")
step("handlers", 4, 0, 932, 65001, 2, 1, b"x", b"\xe6\x97\x41")
step("unknown", 5, 0, 936, 65001, 6, 0, b"", b"\x81\x30")


def table(name, form, backwards, buckets, base, data):
    write("table", name, bytes([form, backwards, buckets, len(base)]) + base + data)


ASCII = bytes.fromhex("617520A000000000")
COMPLETE = (b"au" + bytes([0xA1, 0xA1, 0]) + b"\x01\x01\x00" * 40 + b"\0" +
            struct.pack("<HH", 0x8140, 0x4E00) + struct.pack("<HH", 1, 1) * 60 + b"\0\0")
DIFFERENCES = (b"ad" + struct.pack("<HHH", 0x4E00, 0x4E01, 0) + b"\x80\x02\x4e" + b"\0" +
               b"\x81\x50\x03\x4e" + b"\0\0")
CONTAINER = struct.pack("<II", 0xB394A7E1, len(COMPLETE)) + bz2.compress(COMPLETE, 3)
table("text-stored", 0, 0, 100, b"", b"x" + base64.b64encode(ASCII))
table("text-compressed", 0, 0, 9, b"", b"c" + base64.b64encode(CONTAINER))
table("image-compressed", 1, 1, 20, b"", COMPLETE)
table("image-stored", 2, 0, 3, b"", COMPLETE)
table("image-unterminated", 2, 0, 1, b"", COMPLETE[:150])
table("differences", 2, 0, 140, COMPLETE[:80] + b"\0\0", DIFFERENCES)
table("container", 3, 0, 9, b"", CONTAINER)
table("container-cut", 3, 1, 9, b"", CONTAINER[:-9])


def codec(name, number, step, text):
    write("codec", name, number.to_bytes(3, "little") + bytes([step]) + text)


GSM_UTF8 = 0  # the first of those that no encoding names; with UTF-32
codec("jp-read", 50220, 2, "日本語 mail".encode("iso-2022-jp") + b"\x1b(I1\x0e2\x0f\x1b$(D0!")
codec("jp-write", 50220, 0, "日本語 mail ｶﾅ".encode("cp932") + b"\xfa\x5c\xff\x81")
codec("kr-read", 50225, 3, "한국어 text".encode("iso-2022-kr"))
codec("kr-write", 50225, 1, "한국어 text\n한".encode("cp949") + b"\x81\x41")
codec("hz-read", 1052936, 0, "汉字 ~ text".encode("hz") + b"~\n~~~{V")
codec("hz-write", 1052936, 0, "汉字 ~ text".encode("gbk") + b"\x81\x40")
codec("utf7-pieces", 65000, 1, "Hi +é 日本 - 😀!".encode("utf-7") + b"+AOn-+A-+\x80")
codec("gsm-pieces", 55000, 1, b"\x00\x1b\x65abc\x1b\x1b\x7f\x80")
codec("gsm-utf8", GSM_UTF8, 2, "a€日😀".encode() + b"\xe2\x82")
codec("utf7", 65000, 0, "Hi +é 日本 - 😀!".encode("utf-7"))
codec("utf7-units", 65000, 0, "a日 b".encode("utf-16-le"))
codec("utf32", GSM_UTF8, 0, MIXED.encode("utf-32-le"))
codec("gsm", 55000, 0, b"\x00\x1b\x65abc\x1b\x1b\x7f")

for number, charset in enumerate([
        "utf-8", "ISO_8859-1", "cp0000932", "hz-gb-2312", "x-mac-japanese", "windows-1252\0",
        "ebcdic", "-", "0", "csISOLatin1", "iso-8859-8-i", "99999999999"
]):
    write("names", f"name-{number}", charset.encode())


def stream(name, source, to, treatment, alternate, flags, step, substitute, text):
    settings = [page(source), page(to), treatment, page(alternate), flags, step, len(substitute)]
    write("stream", name, bytes(settings) + substitute + text)


stream("utf8-932", 65001, 932, 2, 0, 16, 2, b"?", MIXED.encode())
stream("932-utf8", 932, 65001, 3, 0, 0, 0, b"", "日本語 ascii".encode("cp932") + b"\xff\x81")
stream("50220-50225", 50220, 50225, 1, 0, 0, 1, b"", "日本語 mail".encode("iso-2022-jp"))
stream("hz-65000", 0, 65000, 5, 0, 1, 2, b"", "汉字 ~ text".encode("hz"))
stream("1252-hz", 936, 0, 4, 1252, 2, 3, b"", "中文".encode("gbk") + b"\xfe")
stream("12000-1201", 12000, 1201, 2, 0, 4, 4, b"", MIXED.encode("utf-32"))
stream("65000-10004", 65000, 10004, 3, 0, 0, 5, b"", "Hi ١٢٣ مرحبا".encode("utf-7"))
stream("10004-1256", 10004, 1256, 3, 0, 0, 0, b"", b"\xc7\xb1\xb2\xc8 \xa1\xa2")
stream("55000-37", 55000, 37, 2, 0, 48, 1, b"ab", b"\x00\x1b\x65abc\x1b\x80")
stream("pdf", 1252, 65001, 0, 0, 8, 2, b"", b"%PDF-1.4 \xe9")

DECLARED = {"xml": "<?xml version='1.0' encoding='%s'?>", "html": "<meta charset=%s>",
            "mail": "Content-Type: text/plain; charset=\"%s\"\n\n", "python": "# coding: %s\n",
            "vim": "vim: set fenc=%s:\n", "emacs": "-*- coding: %s -*-\n"}
for name, form in DECLARED.items():
    write("detect", name, b"\0" + (form % "koi8-r").encode() + "текст и ещё текст".encode("koi8-r"))
for codec in ["utf-8", "utf-16", "utf-16-be", "utf-32-le", "utf-7", "hz", "iso2022_jp", "gb18030",
              "cp932", "cp1251", "cp1253", "cp949", "cp037", "cp875"]:
    for part, text in enumerate(["Ein Satz, 日本語 и русский\n", "καλημέρα 한국어 中文，"]):
        write("detect", f"{codec}-{part}", b"\0" + text.encode(codec, "ignore") * 2)
write("detect", "png", b"\x01\x89PNG\r\n\x1a\n")

for number, line in enumerate([
        "-f 1252 -t utf-8 a.txt", "--from=auto --to=shift_jis --on-error=substitute=0x3F -",
        "--list greek --json", "--chart 932 --html out.html", "--detect a b c", "--help errors",
        "-f 37 -t 1252 --record-length 80 --trim --ebcdic-newline nl --in-place=.bak x",
        "-f 37 -t utf-8 --records bdw:27998 --fields @layout --as json x",
        "-f utf-16 -t 1201 --bom --strict -q -v --output-dir d -j 4 a b", "--version"
]):
    write("options", f"line-{number}", line.replace(" ", "\n").encode())


def records(name, form, layout, table, text):
    write("records", name, bytes([form, layout, table, 2]) + text)


RECORD = bytes.fromhex("C1C2C3C4 12345C F1F2D3 FFFE 82A0B12020".replace(" ", ""))
records("rdw", 0, 0, 0, b"\x00\x15\x00\x00" + RECORD + b"\x00\x08\x00\x00ABCD")
records("spanned", 0, 0, 1, b"\x00\x09\x01\x00" + RECORD[:5] + b"\x00\x10\x02\x00" + RECORD[5:])
records("bdw", 1, 0, 2, b"\x00\x19\x00\x00\x00\x15\x00\x00" + RECORD)
records("bdw-extended", 1, 1, 2, b"\x80\x00\x00\x19\x00\x15\x00\x00" + RECORD)
records("bdw-damaged", 1, 0, 0, b"\x00\x19\x00\x00\x00\x03\x00\x00" + RECORD)
records("fixed", 3, 2, 0, RECORD * 3)
records("csv", 3, 0, 0, b'a,c\r\n"x, ""y""",1\r\n,-2.5\n"",\n')
records("json", 3, 0, 1, b'{"a": "\\u00e9\\ud83d\\ude00", "c": -1.5e1, "b": null}\n{}\n')
records("layout", 3, 0, 1, b"id 1 5 zoned:unsigned # number\nname + 20 text:encoding=932, n 3 2 binary")


ICONV = re.findall(r'"([^"]+)"', re.search(r"kNames\[\] = \{(.*?)\};", (HERE / "iconv_fuzz.cpp").read_text(),
                                           re.S).group(1))


def iconv(name, source, to, suffix, text):
    settings = [ICONV.index(source), ICONV.index(to), suffix, 0]
    write("iconv", name, bytes(settings) + bytes([0x0A, 0x39, 0x1B, 0x02, 0x83, 0x14, 0x46, 0x0D]) + text)


iconv("japanese-in-pieces", "UTF-8", "ISO-2022-JP", 0, "日本 ア z日".encode())
iconv("waits-for-a-mark", "UTF-8", "EUC-JISX0213", 0, "か゚か".encode())
iconv("transliterated", "UTF-8", "ISO-8859-1", 2, "“fi” ﬁ € 日".encode())
iconv("left-out", "ISO-2022-KR", "UTF-8", 3, b"\x1b$)Ca\x0eGQ\xff\x0f\xffb")
iconv("base64", "UTF-7", "UTF-16", 0, b"a+ZeVnLA-+2D3eAA-z")
