#!/usr/bin/env python3
"""Makes the samples in older encodings from the UTF-8 masters beside them.

The converters used are independent of this project: Python's codecs, the C library's iconv, ICU's
uconv (package icu-devtools), nkf and yaz. Run it only to add a sample; the results are committed.
"""

import pathlib
import subprocess
import unicodedata

HERE = pathlib.Path(__file__).parent


def python(codec):
    return lambda text: text.encode(codec)


def program(*command):
    return lambda text: subprocess.run(
        command, input=text.encode("utf-8"), capture_output=True, check=True
    ).stdout


def iconv(name):
    return program("iconv", "-f", "UTF-8", "-t", name)


def next_line(converter):
    """Lines end with the NEL control, as EBCDIC systems end them."""
    return lambda text: converter(text.replace("\n", "\x85"))


def line_by_line(converter):
    """For what is a text of its own in each line."""
    return lambda text: b"".join(converter(line) + b"\n" for line in text.splitlines())


def packed_turkish(text):
    """GSM 03.38 in packed septets, with the Turkish tables, as 3GPP TS 23.038 describes them."""
    alphabet = "@£$¥€éùıòÇ\nĞğ\rÅåΔ_ΦΓΛΩΠΨΣΘΞ\x1bŞşßÉ" + " !\"#¤%&'()*+,-./0123456789:;<=>?"
    alphabet += "İABCDEFGHIJKLMNOPQRSTUVWXYZÄÖÑÜ§" + "çabcdefghijklmnopqrstuvwxyzäöñüà"
    septets = [alphabet.index(character) for character in text]
    spare = -7 * len(septets) % 8
    number = sum(septet << 7 * i for i, septet in enumerate(septets))
    if spare == 7:
        number |= 0x0D << 7 * len(septets)
    return number.to_bytes((7 * len(septets) + spare) // 8, "little")


def in_864(character):
    try:
        return bool(character.encode("cp864"))
    except UnicodeEncodeError:
        return False


def presentation_forms(text):
    """Shapes Arabic text as DOS programs stored it: a form for each letter, as far as 864 has it."""
    forms = {}  # letter -> {"isolated": form, ...}
    for code in range(0xFE80, 0xFEFD):
        kind, *letters = unicodedata.decomposition(chr(code)).split()
        if len(letters) == 1 and in_864(chr(code)):
            forms.setdefault(chr(int(letters[0], 16)), {})[kind[1:-1]] = chr(code)
    non_joining = set("اأآإدذرزوؤىةء")
    letters = text.replace("إ", "ا")
    shaped = ""
    for i, letter in enumerate(letters):
        before = i > 0 and letters[i - 1] in forms and letters[i - 1] not in non_joining
        after = letter not in non_joining and letters[i + 1 : i + 2] in forms
        wanted = {
            (False, False): ("isolated", "final"),
            (False, True): ("initial", "medial", "isolated"),
            (True, False): ("final", "isolated", "medial"),
            (True, True): ("medial", "initial", "final", "isolated"),
        }[before, after]
        known = forms.get(letter, {"isolated": letter})
        shaped += next((known[kind] for kind in wanted if kind in known), letter)
    return shaped


def plane(codec, leads, trails):
    """Every character with a two-byte code, a line for each lead byte, but for private ones."""

    def character(*code):
        try:
            text = bytes(code).decode(codec)
        except UnicodeDecodeError:
            return ""
        return "" if "\ue000" <= text <= "\uf8ff" else text

    seen = set()
    text = ""
    for lead in leads:
        row = [c for c in (character(lead, trail) for trail in trails) if c and c not in seen]
        seen.update(row)
        text += "".join(row) + "\n" if row else ""
    return text


PLANE = range(0xA1, 0xFF)
IN_936 = {ord("・"): "·", ord("―"): "—"}  # what code page 936 has at two positions of GB 2312
IN_GB2312 = {ord("·"): "・", ord("—"): "―"}
MASTERS = {
    "plane-japanese": lambda: (
        plane("cp932", [*range(0x81, 0xA0), *range(0xE0, 0xFD)], range(0x40, 0xFD))
        + bytes(range(0xA1, 0xE0)).decode("cp932")
        + "\n"
    ),
    "plane-korean": lambda: plane("euc_kr", PLANE, PLANE),
    "plane-chinese": lambda: plane("gb2312", PLANE, PLANE).translate(IN_936),
}

SAMPLES = [
    ("english", "1252", python("cp1252")),
    ("french", "1252", python("cp1252")),
    ("invoice", "28605", python("iso8859_15")),
    ("german", "1252", python("cp1252")),
    ("russian", "1251", python("cp1251")),
    ("russian", "10007", python("mac_cyrillic")),
    ("russian-plain", "866", python("cp866")),
    ("russian-plain", "20866", python("koi8_r")),
    ("greek", "1253", python("cp1253")),
    ("arabic", "1256", python("cp1256")),
    ("arabic", "708", python("iso8859_6")),
    ("arabic-forms", "864", python("cp864")),
    ("mac-arabic", "10004", python("mac_arabic")),
    ("hebrew", "1255", python("cp1255")),
    ("hebrew", "862", python("cp862")),
    ("thai", "874", python("cp874")),
    ("japanese", "932", python("cp932")),
    ("japanese", "51932", python("euc_jp")),
    ("mail", "50220", program("nkf", "-W", "--oc=CP50221", "-x", "-m0")),
    ("chinese-simplified", "936", python("gbk")),
    ("chinese-traditional", "950", python("cp950")),
    ("korean", "949", python("cp949")),
    ("korean", "51949", python("euc_kr")),
    ("korean", "1361", python("johab")),
    ("vietnamese", "1258", iconv("CP1258")),
    ("record", "37", next_line(python("cp037"))),
    ("listing", "1047", next_line(iconv("IBM1047"))),
    ("listing", "500", next_line(python("cp500"))),
    ("invoice", "1140", next_line(python("cp1140"))),
    ("sms", "55000", program("uconv", "-f", "UTF-8", "-t", "gsm-03.38")),
    ("sms-turkish", "200821", packed_turkish),
    ("folders", "200804", line_by_line(program("uconv", "-f", "UTF-8", "-t", "IMAP-mailbox-name"))),
    ("hong-kong", "200706", python("big5hkscs")),
    ("minorities", "54936", program("uconv", "-f", "UTF-8", "-t", "gb18030")),
    ("catalogue", "200866", line_by_line(program("yaz-iconv", "-f", "utf-8", "-t", "marc8"))),
    ("header", "65000", python("utf_7")),
    ("emoji", "1200", python("utf_16")),
    ("emoji", "1201", lambda text: b"\xfe\xff" + text.encode("utf_16_be")),
    ("plane-japanese", "50220", program("nkf", "-W", "--oc=CP50221", "-x", "-m0")),
    ("plane-korean", "50225", iconv("ISO-2022-KR")),
    ("plane-chinese", "hz", lambda text: text.translate(IN_GB2312).encode("hz")),
]

# Short texts, a line each in multi_byte_peers.txt: where a mapping was made from one converter, these
# are by another one.
SIMPLIFIED = "简体中文：你好，世界 2024"
TRADITIONAL = "繁體中文：「臺灣」"
HONG_KONG = "香港：㗎嘅咗 𠝹 \u00ca\u0304\u00ea\u030c \u00ca"
KANA_PAIRS = "か\u309aき\u309a \u31f7\u309a 𠮟る \u02e9\u02e5 \u00e6\u0300 か"
MULTI_BYTE = [
    (54936, "简体，ḿ 䶵 彝 ꀀꒌ བོད་ཡིག 𠀀𪛖 é€\U0010fffd", program("uconv", "-f", "UTF-8", "-t", "gb18030")),
    (200700, "简体，ḿ 䶵 彝 ꀀꒌ བོད་ཡིག 𠀀𪛖 é€\U0010fffd", iconv("GB18030")),
    (200701, SIMPLIFIED, python("gb2312")),
    (200702, SIMPLIFIED + "龍㎎镕", python("gbk")),
    (1383, SIMPLIFIED, python("gb2312")),
    (1386, SIMPLIFIED + "镕", python("gbk")),
    (20936, SIMPLIFIED, python("gb2312")),
    (200703, TRADITIONAL, iconv("BIG5")),
    (200704, TRADITIONAL + "碁銹裏墻恒粧嫺", python("cp950")),
    (200706, HONG_KONG, python("big5hkscs")),
    (100950, TRADITIONAL, python("cp950")),
    (51950, TRADITIONAL + "乂丨𠂆𠃑乁𠁕𠀂", program("uconv", "-f", "UTF-8", "-t", "euc-tw-2014")),
    (200721, "日本語｡ﾊﾝｶｸ ¥5 ‾", python("shift_jis")),
    (200723, KANA_PAIRS, python("shift_jis_2004")),
    (200730, KANA_PAIRS, python("euc_jis_2004")),
    (200731, "日本語｡ 鷗丂侄", python("euc_jp")),
    (943, "日本語 ㈱ 髙", program("iconv", "-f", "UTF-8", "-t", "IBM943")),
    (200740, "한국어 韓國語", python("euc_kr")),
    (200741, "한국어 똠방각하 韓", python("johab")),
    (200743, "한국어 똠방각하", iconv("UHC")),
    (970, "한국어 韓國語", iconv("EUC-KR")),
    (20949, "한국어 韓國語", iconv("EUC-KR")),
]


def main():
    arabic = (HERE / "arabic.txt").read_text("utf-8")
    (HERE / "arabic-forms.txt").write_text(presentation_forms(arabic), "utf-8")
    for master, make in MASTERS.items():
        (HERE / f"{master}.txt").write_text(make(), "utf-8")
    for master, code_page, converter in SAMPLES:
        text = (HERE / f"{master}.txt").read_text("utf-8")
        (HERE / f"{master}.{code_page}").write_bytes(converter(text))
    lines = (f"{number} {convert(text).hex()} {text}\n" for number, text, convert in MULTI_BYTE)
    (HERE / "multi_byte_peers.txt").write_text("".join(lines), "utf-8")


if __name__ == "__main__":
    main()
