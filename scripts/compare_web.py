#!/usr/bin/env python3
"""Compares the web's encodings with what a browser, or Node, makes of the same bytes and characters.

    compare_web.py [--library build/release/libencconv.so] [--peer chromium|node] [--show N] [NAME...]

Decoders read every text of one byte and of two, samples of three and four bytes, and random mixes of
good and bad text, under the treatment "substitute", as TextDecoder. Encoders (of browsers only, which
show them in the query of a URL) write every character of the BMP, and one in 64 of those beyond.
Prints the differences by encoding and ends with 1 if there are any.
"""

import argparse
import base64
import ctypes
import json
import os
import random
import subprocess
import sys
import tempfile

NAMES = """utf-8 ibm866 iso-8859-2 iso-8859-3 iso-8859-4 iso-8859-5 iso-8859-6 iso-8859-7 iso-8859-8
iso-8859-8-i iso-8859-10 iso-8859-13 iso-8859-14 iso-8859-15 iso-8859-16 koi8-r koi8-u macintosh
windows-874 windows-1250 windows-1251 windows-1252 windows-1253 windows-1254 windows-1255 windows-1256
windows-1257 windows-1258 x-mac-cyrillic gbk gb18030 big5 euc-jp iso-2022-jp shift_jis euc-kr utf-16be
utf-16le x-user-defined""".split()
# No page is in these: one that declares x-user-defined is windows-1252 to a browser.
ONLY_READ = ("utf-16be", "utf-16le", "x-user-defined")
SINGLE = [name for name in NAMES[1:29]] + ["x-user-defined"]

# Bytes at the borders of what the decoders tell apart.
BORDERS = bytes.fromhex(
    "00 0A 0E 0F 1B 20 21 24 28 30 39 3A 40 41 42 49 4A 5C 5F 60 7E 7F 80 81 84 8E 8F 90 9F A0 A1 A2 A3"
    "AD B0 C2 C6 D8 DB DC DF E0 E3 E4 EA ED EF F0 F4 F8 FC FD FE FF"
)


class Options(ctypes.Structure):
    _fields_ = [("struct_size", ctypes.c_size_t), ("on_error", ctypes.c_char_p),
                ("byte_order_mark", ctypes.c_int), ("pdf_passthrough", ctypes.c_int)]


class Result(ctypes.Structure):
    _fields_ = [("struct_size", ctypes.c_size_t), ("first_problem", ctypes.c_void_p),
                ("problem_count", ctypes.c_uint64), ("first_approximation", ctypes.c_void_p),
                ("approximation_count", ctypes.c_uint64)]


class Library:
    def __init__(self, path):
        self.lib = ctypes.CDLL(path)
        self.options = Options(ctypes.sizeof(Options), b"substitute", 0, 0)

    def number(self, name):
        number = self.lib.encconv_find_code_page(name.encode())
        if number == 0:
            sys.exit(f"{name} is not known")
        return number

    def convert(self, source, target, data):
        """The output, and how many pieces could not be converted."""
        output, size = ctypes.c_void_p(), ctypes.c_size_t()
        result = Result(ctypes.sizeof(Result), None, 0, None, 0)
        status = self.lib.encconv_convert(source, target, data, ctypes.c_size_t(len(data)),
                                          ctypes.byref(self.options), ctypes.byref(output),
                                          ctypes.byref(size), ctypes.byref(result))
        if status != 0:
            sys.exit(f"{source} to {target}: status {status} for {data.hex()}")
        text = ctypes.string_at(output, size.value)
        self.lib.encconv_free(output)
        return text, result.problem_count


def texts_for(name):
    """What the decoder of an encoding is to read."""
    texts = [bytes([a]) for a in range(256)]
    if name in SINGLE:
        return texts
    rng = random.Random(name)
    texts += [bytes([a, b]) for a in range(256) for b in range(256)]
    if name == "iso-2022-jp":
        sets = [b"\x1b(B", b"\x1b(J", b"\x1b(I", b"\x1b$@", b"\x1b$B"]
        texts += [one + bytes([a, b]) for one in sets for a in range(128) for b in range(128)]
        pieces = sets + [b"\x1b", b"\x1b(", b"\x1b$", b"\x1b$(B", b"\x1b(X", b"ab", b"\x30\x21", b"\x24\x22",
                         b"\n", b"\x0e", b"\x0f", b"\x80", b"\xa1", b"\\~", b"\x7e\x7e", b"\x21"]
        texts += [b"".join(rng.choices(pieces, k=rng.randint(1, 7))) for _ in range(40000)]
    if name in ("gb18030", "gbk"):
        texts += [bytes([a, b, c, d]) for a in (0x81, 0x82, 0x83, 0x84, 0x8F, 0x90, 0x95, 0xE3, 0xE4, 0xFE)
                  for b in range(0x2F, 0x3B) for c in (0x80, 0x81, 0xA2, 0xD0, 0xFE, 0xFF)
                  for d in range(0x2F, 0x3B)]
        texts += [bytes([0x81 + i // 12600, 0x30 + i // 1260 % 10, 0x81 + i // 10 % 126, 0x30 + i % 10])
                  for i in range(0, 39500)]
    texts += [bytes(rng.choices(BORDERS, k=rng.randint(3, 4))) for _ in range(40000)]
    for _ in range(5000):
        high = bytes(rng.randrange(0xA1, 0xFF) for _ in range(rng.randint(0, 12)))
        text = bytearray(high + bytes(rng.choices(BORDERS, k=rng.randint(0, 6))) + high + b"end")
        for _ in range(rng.randint(0, 3)):
            text[rng.randrange(len(text))] = rng.randrange(256)
        texts.append(bytes(text))
    return texts


def characters():
    """What encoders are to write, but what URLs have other uses for."""
    bmp = [c for c in range(0x21, 0x10000) if not 0xD800 <= c < 0xE000 and c != 0x23]
    return bmp + list(range(0x10000, 0x110000, 64)) + list(range(0x20000, 0x20400))


DECODE = """
const blob = atob("%s"), lengths = %s, results = [];
let at = 0;
for (const length of lengths) {
  const bytes = new Uint8Array(length);
  for (let i = 0; i < length; ++i) bytes[i] = blob.charCodeAt(at + i);
  at += length;
  results.push(new TextDecoder("%s").decode(bytes));
}
const output = JSON.stringify(results);
"""
ENCODE = """
const link = document.createElement("a"), results = [];
for (const c of %s) {
  link.href = "http://x/?" + String.fromCodePoint(c);
  results.push(link.search.slice(1));
}
const output = JSON.stringify(results);
"""


def run_browser(program, script, charset):
    with tempfile.TemporaryDirectory() as folder:
        page = os.path.join(folder, "page.html")
        with open(page, "w", encoding="ascii") as file:
            file.write(f'<!DOCTYPE html><html><head><meta charset="{charset}"></head><body><pre id="out"></pre>'
                       f'<script>{script}const utf8 = new TextEncoder().encode(output); let text = "";'
                       'for (const byte of utf8) text += String.fromCharCode(byte);'
                       'document.getElementById("out").textContent = btoa(text);</script></body></html>')
        done = subprocess.run([program, "--headless=new", "--no-sandbox", "--disable-gpu",
                               f"--user-data-dir={folder}/profile", "--virtual-time-budget=100000", "--dump-dom",
                               "file://" + page], capture_output=True, check=True)
    text = done.stdout.decode()
    return json.loads(base64.b64decode(text[text.index('id="out">') + 9:text.index("</pre>")]))


def run_node(program, script):
    done = subprocess.run([program, "-"], input=(script + "process.stdout.write(output);").encode(),
                          capture_output=True, check=True)
    return json.loads(done.stdout)


def percent_encoded(data):
    return "".join(chr(b) if 0x21 <= b <= 0x7E and b not in b"\"#'<>" else f"%{b:02X}" for b in data)


def write_samples(path, name, texts, theirs, differing):
    """One line a text: the encoding, the bytes, and the UTF-8 of what the peer reads, but where it errs."""
    if name in SINGLE:
        chosen = [(b"".join(texts[0x80:]), "".join(theirs[0x80:]))]
    else:
        chosen = [(text, their) for text, their in zip(texts, theirs)
                  if "\ufffd" in their and text not in differing and 3 <= len(text) <= 24]
        chosen = random.Random(name).sample(chosen, 40)
    with open(path, "a", encoding="ascii") as file:
        for text, their in chosen:
            file.write(f"{name}|{text.hex(' ').upper()}|{their.encode().hex(' ').upper()}\n")


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--library", default="build/release/libencconv.so")
    parser.add_argument("--peer", default="chromium")
    parser.add_argument("--show", type=int, default=8)
    parser.add_argument("--samples", help="a file for some of what the peer reads, for the tests")
    parser.add_argument("names", nargs="*", default=NAMES)
    arguments = parser.parse_args()
    library = Library(arguments.library)
    utf8 = library.number("utf-8")
    is_node = os.path.basename(arguments.peer) == "node"
    total = 0
    for name in arguments.names or NAMES:
        number = library.number("web:" + name)
        texts = texts_for(name)
        script = DECODE % (base64.b64encode(b"".join(texts)).decode(), json.dumps([len(t) for t in texts]), name)
        theirs = run_node(arguments.peer, script) if is_node else run_browser(arguments.peer, script, "utf-8")
        differences = []
        for text, their in zip(texts, theirs, strict=True):
            our = library.convert(number, utf8, text)[0].decode()
            if our != their:
                differences.append((text, our, their))
        if arguments.samples:
            differing = {text for text, _, _ in differences}
            write_samples(arguments.samples, name, texts, theirs, differing)
        print(f"{name}: {len(texts)} texts read, {len(differences)} differ")
        for text, our, their in differences[:arguments.show]:
            print("   ", text.hex(" "), "here", ascii(our), "there", ascii(their))
        total += len(differences)
        if is_node or name in ONLY_READ:
            continue
        all_characters = characters()
        theirs = run_browser(arguments.peer, ENCODE % json.dumps(all_characters), name)
        differences = []
        for c, their in zip(all_characters, theirs, strict=True):
            # Behind another character, since a mark that begins a text is none of its characters.
            data, problems = library.convert(utf8, number, ("a" + chr(c)).encode())
            our = f"%26%23{c}%3B" if problems else percent_encoded(data[1:])
            if our != their:
                differences.append((c, our, their))
        print(f"{name}: {len(all_characters)} characters written, {len(differences)} differ")
        for c, our, their in differences[:arguments.show]:
            print(f"    U+{c:04X} here {our} there {their}")
        total += len(differences)
    return 1 if total else 0


if __name__ == "__main__":
    sys.exit(main())
