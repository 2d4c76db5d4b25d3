"""The list that make_multibyte_mappings.py works through."""

import sys
from dataclasses import dataclass
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent.parent / "tools"))
from peers import PEERS, Iso2022Peer, Structure
from mapping_resolve import Resolved

PAIRS = Structure("00-FF", "80-FF,00-FF")
GB18030 = Structure("00-FF", "80-FF,00-FF", "81-84,30-39,81-FE,30-39")
EUC = Structure("00-FF", "80-FF,80-FF")
EUC_JP = Structure("00-FF", "80-FF,80-FF", "8F,A1-FE,A1-FE")
EUC_TW = Structure("00-FF", "80-FF,80-FF", "8E,A1-B0,A1-FE,A1-FE")
PURE_PAIRS = Structure("00-FF,00-FF")
PLANE = Structure("21-7E,21-7E")
BYTES = Structure("00-FF")
HOST = Structure("00-FF", "40-FE,40-FE", shifts=True)



@dataclass
class MultiByte:
    """One mapping. Peers are named "Python: big5"; behind the name of a charset, the designation
    of a set within it may stand. The first is what it is made from; without one, the file itself is
    the source. part: only codes of this length."""
    name: str
    words: str
    structure: Structure
    first: str
    others: list
    over: str = None
    part: int = None
    adjustments: list = ()
    has_rest: bool = False  # of GB 18030, whose other codes follow by rule

    def comment(self):
        return (f"{self.words}\nMade by scripts/make_multibyte_mappings.py from {self.first}"
                + (f",\ncompared with {', '.join(self.others)}." if self.others else "."))


def open_peer(title):
    peer, _, charset = title.partition(": ")
    charset, *designation = charset.split()
    if designation:
        return Iso2022Peer(charset, bytes.fromhex(designation[0]))
    return PEERS[peer](charset)


# ---- Adjustments: what no user of the encoding wants as the converter has it. ----

def pc_controls(peer):
    """ASCII's controls are themselves. IBM's tables for PCs exchange three of them, and write the
    signs that the screen shows for controls as these."""
    controls = [bytes([byte]) for byte in [*range(0x20), 0x7F]]
    result = Resolved(peer.read, {v: c for v, c in peer.write.items() if c not in controls})
    for code in controls:
        result.read[code] = (code[0],)
        result.write[code[0],] = code
    return result


def written_as_read(peer):
    """What is read is written, as the lowest code: the peer writes most of it in another set."""
    write = {}
    for code in sorted(peer.read, reverse=True):
        write[peer.read[code]] = code
    return Resolved(peer.read, write)


def in_euc(peer):
    """Pairs of seven bits with the high bits of EUC, so that the mapping can lie over another."""
    def high(code):
        return bytes(byte | 0x80 for byte in code)
    return Resolved({high(code): values for code, values in peer.read.items()},
                    {values: high(code) for values, code in peer.write.items()})


def hosts(name, words, first, others, single, double):
    """Both parts of an encoding with shifts, and what each lies over."""
    return [MultiByte(f"{name}-{part}", f"IBM's {name[3:]}, {words}: the {what}.", HOST, first, others,
                      over, length)
            for part, what, over, length in (("single", "bytes outside the shifts", single, 1),
                                             ("double", "pairs inside the shifts", double, 2))]


# ---- The list. ----

MAPPINGS = [
    # Chinese, simplified.
    MultiByte("gb18030", "GB 18030 of 2022: one and two bytes, and the codes of four bytes that later editions\n"
              "exchanged with these.",
              GB18030, "JDK: GB18030", ["ICU: gb18030", "C library: GB18030", "Python: gb18030"],
              over="936", has_rest=True),
    MultiByte("gb18030-2005", "GB 18030 of 2005; the codes of four bytes as in gb18030.",
              GB18030, "ICU: gb18030", ["C library: GB18030", "Python: gb18030"],
              over="gb18030", has_rest=True),
    MultiByte("gb2312", "GB 2312 in EUC (EUC-CN).", EUC, "C library: EUC-CN",
              ["Python: gb2312", "JDK: GB2312"]),
    MultiByte("gbk", "GBK as the standard has it, without user-defined characters.", PAIRS,
              "C library: GBK", ["Python: gbk", "JDK: GBK"], over="936"),
    MultiByte("ibm1381", "IBM's 1381, GB 2312 for PCs.", PAIRS, "JDK: x-IBM1381", [],
              over="gb2312", adjustments=[pc_controls]),
    MultiByte("ibm1383", "IBM's 1383, GB 2312 in EUC.", EUC, "ICU: ibm-1383", ["JDK: x-IBM1383"],
              over="gb2312"),
    MultiByte("ibm1386", "IBM's 1386, GBK for PCs.", PAIRS, "ICU: ibm-1386", ["JDK: x-mswin-936"],
              over="936", adjustments=[pc_controls]),
    MultiByte("iso-ir-165", "ISO-IR-165, the CCITT's Chinese set, in seven bits.", PLANE,
              "C library behind: ISO-2022-CN-EXT 1B2429450E", ["Perl: iso-ir-165"],
              adjustments=[written_as_read]),

    MultiByte("gb12345", "GB 12345, in EUC: GB 2312 in traditional characters.", PLANE,
              "Perl: gb12345-raw", [], over="gb2312", adjustments=[in_euc]),

    # Chinese, traditional.
    MultiByte("big5-unicode", "Big5 as the Unicode Consortium has it.", PAIRS, "Python: big5",
              ["JDK: Big5", "C library: BIG5"]),
    MultiByte("big5-eten", "Big5 with the extensions of ETEN.", PAIRS, "Perl: big5-eten",
              ["C library: BIG5", "Python: cp950"], over="950"),
    MultiByte("big5-gnu", "Big5 of the C library.", PAIRS, "C library: BIG5",
              ["Python: big5", "JDK: Big5"], over="big5-unicode"),
    MultiByte("big5-solaris", "Big5 of Solaris.", PAIRS, "JDK: x-Big5-Solaris", ["JDK: Big5"],
              over="big5-unicode"),
    MultiByte("big5-hkscs", "Big5 with the Hong Kong Supplementary Character Set of 2008.", PAIRS,
              "C library: BIG5-HKSCS", ["Python: big5hkscs", "JDK: Big5-HKSCS", "ICU: ibm-1375"],
              over="950"),
    MultiByte("big5-hkscs-2001", "Big5 with the Hong Kong Supplementary Character Set of 2001.",
              PAIRS, "JDK: x-Big5-HKSCS-2001", ["JDK: Big5-HKSCS"], over="big5-hkscs"),
    MultiByte("ms950-hkscs", "Windows's Big5 with the Hong Kong Supplementary Character Set.", PAIRS,
              "JDK: x-MS950-HKSCS", ["ICU: ibm-1375"], over="big5-hkscs"),
    MultiByte("ms950-hkscs-xp", "The same as Windows XP had it, in private use.", PAIRS,
              "JDK: x-MS950-HKSCS-XP", ["ICU: ibm-5471"], over="950"),
    MultiByte("ibm950", "IBM's 950, Big5 for PCs.", PAIRS, "ICU: ibm-950", ["JDK: x-IBM950"],
              over="950", adjustments=[pc_controls]),
    MultiByte("ibm1373", "IBM's 1373, Windows's Big5.", PAIRS, "ICU: ibm-1373",
              ["JDK: x-windows-950"], over="950", adjustments=[pc_controls]),
    MultiByte("ibm1375", "IBM's 1375, Big5-HKSCS of 2008.", PAIRS, "ICU: ibm-1375",
              ["C library: BIG5-HKSCS", "JDK: Big5-HKSCS"], over="ms950-hkscs",
              adjustments=[pc_controls]),
    MultiByte("ibm5471", "IBM's 5471, Big5-HKSCS of 2001.", PAIRS, "ICU: ibm-5471",
              ["JDK: x-Big5-HKSCS-2001"], over="big5-hkscs-2001", adjustments=[pc_controls]),
    MultiByte("ibm948", "IBM's 948, traditional Chinese for PCs.", PAIRS, "JDK: x-IBM948", [],
              adjustments=[pc_controls]),
    MultiByte("euc-tw", "CNS 11643 in EUC: plane 1 in two bytes, and planes 1 to 7 and 15 in four.",
              EUC_TW, "C library: EUC-TW", ["JDK: x-EUC-TW", "ICU: euc-tw-2014"]),
    MultiByte("euc-tw-2014", "CNS 11643 in EUC as ICU has it, with planes 12 and 13.", EUC_TW,
              "ICU: euc-tw-2014", ["JDK: x-EUC-TW"], over="euc-tw"),
    MultiByte("ibm964", "IBM's 964, CNS 11643 in EUC.", EUC_TW, "ICU: ibm-964", ["JDK: x-IBM964"]),

    # Japanese.
    MultiByte("sjis", "Shift_JIS of JIS X 0208, the single bytes of JIS X 0201.", PAIRS,
              "C library: SJIS", ["Python: shift_jis", "Perl: shiftjis"], over="932"),
    MultiByte("sjis-ascii", "Shift_JIS of JIS X 0208, the single bytes ASCII.", PAIRS,
              "JDK: Shift_JIS", ["Python: shift_jis"], over="sjis"),
    MultiByte("shift-jisx0213", "Shift_JIS of JIS X 0213:2004.", PAIRS, "C library: SHIFT_JISX0213",
              ["JDK: x-SJIS_0213", "Python: shift_jis_2004"], over="sjis"),
    MultiByte("ms932-0213", "Windows's Shift_JIS with JIS X 0213:2004.", PAIRS, "JDK: x-MS932_0213",
              ["JDK: x-SJIS_0213"], over="shift-jisx0213"),
    MultiByte("pck", "Shift_JIS of Solaris.", PAIRS, "JDK: x-PCK", ["JDK: windows-31j"], over="932"),
    MultiByte("ibm932", "IBM's 932, Shift_JIS of 1978.", PAIRS, "C library: IBM932",
              ["JDK: x-IBM942C", "ICU: ibm-942"], over="932", adjustments=[pc_controls]),
    MultiByte("ibm942", "IBM's 942, with yen sign and overline.", PAIRS, "JDK: x-IBM942",
              ["ICU: ibm-942"], over="ibm932", adjustments=[pc_controls]),
    MultiByte("ibm942c", "IBM's 942 over ASCII.", PAIRS, "ICU: ibm-942",
              ["JDK: x-IBM942C", "C library: IBM932"], over="ibm932", adjustments=[pc_controls]),
    MultiByte("ibm943", "IBM's 943, with yen sign and overline.", PAIRS, "ICU: ibm-943_P130-1999",
              ["JDK: x-IBM943", "C library: IBM943"], over="932", adjustments=[pc_controls]),
    MultiByte("ibm943c", "IBM's 943 over ASCII, as Windows has it.", PAIRS,
              "ICU: ibm-943_P15A-2003", ["JDK: x-IBM943C", "C library: CP932"],
              over="ibm943", adjustments=[pc_controls]),
    MultiByte("euc-jisx0213", "JIS X 0213:2004 in EUC.", EUC_JP, "C library: EUC-JISX0213",
              ["Python: euc_jis_2004"]),
    MultiByte("euc-jp-ms", "EUC-JP with Windows's extensions, JIS X 0212 and user-defined rows.",
              EUC_JP, "C library: EUC-JP-MS", ["JDK: x-eucJP-Open", "ICU: euc-jp-2007"]),
    MultiByte("euc-jp-open", "EUC-JP of Solaris.", EUC_JP, "JDK: x-eucJP-Open",
              ["C library: EUC-JP-MS"], over="euc-jp-ms"),
    MultiByte("euc-jp-2007", "EUC-JP as browsers of 2007 read it.", EUC_JP, "ICU: euc-jp-2007",
              ["C library: EUC-JP-MS", "C library: EUC-JP"], over="euc-jp-ms"),
    MultiByte("euc-jp-linux", "EUC-JP without JIS X 0212, as the JDK has it for Linux.", EUC_JP,
              "JDK: x-euc-jp-linux", ["C library: EUC-JP"], over="euc-jp-ms"),
    MultiByte("euc-jp", "EUC-JP with JIS X 0212.", EUC_JP, "C library: EUC-JP",
              ["Python: euc_jp", "ICU: euc-jp-2007"], over="euc-jp-2007"),
    MultiByte("ibm954", "IBM's 954, EUC-JP with JIS X 0212.", EUC_JP, "ICU: ibm-954",
              ["C library: EUC-JP"], over="euc-jp-ms"),
    MultiByte("ibm33722", "IBM's 33722, EUC-JP with yen sign and overline.", EUC_JP,
              "ICU: ibm-33722_P120-1999", ["JDK: x-IBM33722"], over="ibm954"),
    MultiByte("ibm33722c", "IBM's 33722 over ASCII (IBM-eucJP).", EUC_JP,
              "ICU: ibm-33722_P12A_P12A-2009_U2", ["JDK: x-IBM29626C"], over="ibm33722"),

    # Korean.
    MultiByte("euc-kr", "KS X 1001 in EUC.", EUC, "C library: EUC-KR",
              ["Python: euc_kr", "JDK: EUC-KR"]),
    MultiByte("johab", "Johab of KS X 1001.", PAIRS, "C library: JOHAB",
              ["Python: johab", "JDK: x-Johab"], over="1361"),
    MultiByte("ibm949", "IBM's 949, with won sign.", PAIRS, "ICU: ibm-949_P110-1999",
              ["JDK: x-IBM949"], over="euc-kr", adjustments=[pc_controls]),
    MultiByte("ibm949c", "IBM's 949 over ASCII.", PAIRS, "ICU: ibm-949_P11A-1999",
              ["JDK: x-IBM949C"], over="ibm949", adjustments=[pc_controls]),
    MultiByte("ibm970", "IBM's 970, KS X 1001 in EUC.", EUC, "ICU: ibm-970", ["JDK: x-IBM970"],
              over="euc-kr"),
    MultiByte("ibm1363", "IBM's 1363, Unified Hangul with won sign.", PAIRS,
              "ICU: ibm-1363_P110-1997", ["JDK: x-windows-949"], over="949",
              adjustments=[pc_controls]),
    MultiByte("ibm1363c", "IBM's 1363 over ASCII.", PAIRS, "ICU: ibm-1363_P11B-1998",
              ["JDK: x-windows-949"], over="ibm1363", adjustments=[pc_controls]),

    # EBCDIC with shifts: the bytes and the pairs of each, and what they share.
    *hosts("ibm930", "Japanese, katakana", "ICU: ibm-930", ["C library: IBM930", "JDK: x-IBM930"],
           "20290", None),
    *hosts("ibm939", "Japanese, Latin; pairs as ibm930", "ICU: ibm-939",
           ["C library: IBM939", "JDK: x-IBM939"], None, "ibm930-double"),
    *hosts("ibm1390", "Japanese, katakana, with euro and JIS X 0213", "ICU: ibm-1390",
           ["C library: IBM1390"], "ibm930-single", "ibm930-double"),
    *hosts("ibm1399", "Japanese, Latin, with euro and JIS X 0213; pairs as ibm1390",
           "ICU: ibm-1399", ["C library: IBM1399"], "ibm939-single", "ibm1390-double"),
    MultiByte("ibm300", "IBM's 300, the Japanese pairs without single bytes.", PURE_PAIRS,
              "JDK: x-IBM300", [], over="ibm930-double"),
    MultiByte("ibm16684", "IBM's 16684, the pairs of 1390 without single bytes.", PURE_PAIRS,
              "ICU: ibm-16684", [], over="ibm1390-double"),
    *hosts("ibm933", "Korean; the pairs are 834", "ICU: ibm-933",
           ["C library: IBM933", "JDK: x-IBM933"], None, None),
    *hosts("ibm1364", "Korean, Unified Hangul; the bytes are those of 933", "ICU: ibm-1364",
           ["C library: IBM1364", "JDK: x-IBM1364"], "ibm933-single", "ibm933-double"),
    *hosts("ibm935", "simplified Chinese; the pairs are 837", "ICU: ibm-935",
           ["C library: IBM935", "JDK: x-IBM935"], None, None),
    *hosts("ibm1388", "simplified Chinese, GB 18030; the bytes are those of 935", "ICU: ibm-1388",
           ["C library: IBM1388"], "ibm935-single", "ibm935-double"),
    *hosts("ibm937", "traditional Chinese; the pairs are 835", "ICU: ibm-937",
           ["C library: IBM937", "JDK: x-IBM937"], "ibm935-single", None),
    *hosts("ibm1371", "traditional Chinese with euro", "ICU: ibm-1371", ["C library: IBM1371"],
           "ibm937-single", "ibm937-double"),

    # Code pages that Windows publishes: the file is the source.
    *(MultiByte(f"cp{number}", "", structure, None, others) for number, structure, others in (
        (10001, PAIRS, ["Perl: MacJapanese"]), (10002, PAIRS, ["Perl: MacChineseTrad"]),
        (10003, PAIRS, ["Perl: MacKorean"]),
        *((number, PAIRS, []) for number in range(20000, 20006)),
        (20833, BYTES, ["JDK: x-IBM833"]), (20932, PAIRS, []),
        (20936, PAIRS, ["C library: EUC-CN"]), (20949, PAIRS, ["C library: EUC-KR"]),
        (21027, BYTES, []))),
]
