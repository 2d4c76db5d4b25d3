#!/usr/bin/env python3
"""Speed of the Python package beside bytes.decode, str.encode, PyICU and charset-normalizer, in one
run of one interpreter; wants the package, and what of the others is to be compared.

    bench/python.py [--check]

Each figure is the best of several runs, and a ratio says how often ours goes into theirs. --check
ends with an error where a goal is missed by more than a fifth, which is what a busy machine may cost.
"""

import importlib.util
import pathlib
import random
import sys
import time
import timeit

import encconv
import texts

MIB = 1 << 20
CJK_JP = "日本語テキストと漢字かな混じり文、カタカナ。Python 3\n"
NATIONAL = {
    "cp932": CJK_JP,
    "cp936": "中文字符测试文本，包括标点。Python 3\n",
    "cp949": "한국어 텍스트를 시험합니다, 구두점. Python 3\n",
    "cp950": "中文字元測試文本，包括標點。Python 3\n",
    "euc_jp": CJK_JP,
    "cp1250": "Příliš žluťoučký kůň úpěl ďábelské ódy. ",
    "cp1251": "Съешь ещё этих мягких французских булок. ",
    "cp1252": "Voix ambiguë d’un cœur qui préfère les jattes de kiwis. ",
    "cp1253": "Ξεσκεπάζω την ψυχοφθόρα βδελυγμία. ",
    "koi8_r": "Съешь ещё этих мягких французских булок. ",
    "iso8859_2": "Příliš žluťoučký kůň úpěl ďábelské ódy. ",
    "cp437": "Größe, façade, naïve, año. ",
    "cp037": "CUSTOMER NAME AND ADDRESS, 1234.50 ",
}
GOALS = {"cp932": 5, "cp936": 5, "cp949": 5, "cp950": 5, "euc_jp": 5}
LANGUAGES = {"cp932": "Japanese", "cp936": "Chinese-simplified", "cp949": "Korean",
             "cp950": "Chinese-traditional", "euc_jp": "Japanese"}  # fmt: skip
SHORT = ["utf-8", "latin-1", "ascii", "cp1252", "cp1251", "cp932", "cp936", "cp949", "euc_jp"]


def best(*functions, rounds=25):
    """The shortest time of a call of each, in seconds. They take turns, so that a busy machine is as
    busy for one as for another."""
    shortest = [float("inf")] * len(functions)
    for _ in range(rounds):
        for i, function in enumerate(functions):
            begin = time.perf_counter()
            function()
            shortest[i] = min(shortest[i], time.perf_counter() - begin)
    return shortest


misses = []


def has(encoding, letter):
    try:
        return bool(letter.encode(encoding))
    except UnicodeError:
        return False


def long_text(encoding):
    """About a MiB in the encoding. A text that repeats itself would be learned by heart by a
    processor's branch prediction: words stand in random order, and of ideographs and syllables, one
    in eight is any that is in use."""
    chance = random.Random(1)
    words, letters = NATIONAL[encoding].split(" "), []
    if encoding in LANGUAGES:
        samples = texts.read_samples(pathlib.Path(__file__).with_name("samples.txt"))
        (first, last, page), words = samples[LANGUAGES[encoding]]
        page = {"50220": "iso2022_jp"}.get(page, f"cp{page}")
        letters = [c for c in map(chr, range(int(first, 16), int(last, 16))) if has(page, c)]
    pieces, size, known = [], 0, set(letters)
    while size < MIB:
        word = list(chance.choice(words))
        for i in range(0, len(word) if letters else 0, 8):
            if word[i] in known:
                word[i] = chance.choice(letters)
        pieces.append("".join(word))
        size += len(pieces[-1].encode(encoding)) + 1
    return " ".join(pieces)


def row(what, times, names, goal=None):
    ours, theirs = times[0], times[1:]
    cells = "".join(f"  {name} {t / ours:6.1f}x" for name, t in zip(names, theirs))
    mark = ""
    if goal is not None:
        is_missed = theirs[0] / ours < goal
        mark = f"   goal {goal:.2g}x{' MISSED' if is_missed else ''}"
        if theirs[0] / ours < goal / 1.2:
            misses.append(what)
    print(f"{what:<26} {ours * 1e6:12.2f} us{cells}{mark}", flush=True)


def long_texts():
    icu = __import__("icu") if importlib.util.find_spec("icu") else None
    names = ["Python"] + ["PyICU"] * (icu is not None)
    for encoding in NATIONAL:
        text = long_text(encoding)
        data = text.encode(encoding)
        assert encconv.decode(data, encoding) == text
        assert encconv.encode(text, encoding) == data
        goal = GOALS.get(encoding, 3)
        # ICU's "cp949" is another one.
        converter = "windows-949" if encoding == "cp949" else encoding.replace("_", "-")
        decoders = [lambda: encconv.decode(data, encoding), lambda: data.decode(encoding)]
        encoders = [lambda: encconv.encode(text, encoding), lambda: text.encode(encoding)]
        if icu is not None:
            unicode = icu.UnicodeString(text)
            decoders.append(lambda: str(icu.UnicodeString(data, converter)))
            encoders.append(lambda: unicode.encode(converter))
        row(f"decode {encoding}", best(*decoders), names, goal)
        row(f"encode {encoding}", best(*encoders), names, goal)
    data = b"The quick brown fox jumps over the lazy dog. " * (MIB // 45)
    text = data.decode()
    for encoding in ("ascii", "utf-8", "latin-1", "cp1252", "cp932", "euc_jp"):
        decoders = [lambda: encconv.decode(data, encoding), lambda: data.decode(encoding)]
        encoders = [lambda: encconv.encode(text, encoding), lambda: text.encode(encoding)]
        row(f"decode {encoding}, ASCII", best(*decoders, rounds=80), names, 1)
        row(f"encode {encoding}, ASCII", best(*encoders, rounds=80), names, 1)


def short_texts():
    for encoding in SHORT:
        sample = NATIONAL.get(encoding, "a text of 20 bytes..")
        data = sample.encode(encoding)[:20].decode(encoding, "ignore").encode(encoding)
        scope = {"d": encconv.decode, "e": encconv.encode, "b": data, "t": data.decode(encoding)}
        count = 2000
        for what, ours, theirs in (
            ("decode", f"d(b, '{encoding}')", f"b.decode('{encoding}')"),
            ("encode", f"e(t, '{encoding}')", f"t.encode('{encoding}')"),
        ):
            timers = [timeit.Timer(code, globals=scope) for code in (ours, theirs)]
            times = best(*(lambda t=t: t.timeit(count) for t in timers), rounds=60)
            row(f"{what} {encoding}, {len(data)} bytes", [t / count for t in times], ["Python"], 1 / 1.3)


def columns():
    if not importlib.util.find_spec("pyarrow"):
        return
    import encconv.arrow
    import pyarrow

    for encoding in ("cp1252", "cp1251", "cp932", "cp037"):
        word = NATIONAL[encoding][:12]
        values = [f"{word} {i % 1000}".encode(encoding) for i in range(1_000_000)]
        column = pyarrow.array(values, pyarrow.binary())
        times = best(lambda: encconv.arrow.decode(column, encoding),
                     lambda: [b.decode(encoding) for b in values], rounds=3)  # fmt: skip
        row(f"Arrow, 1e6 of {encoding}", times, ["list of bytes.decode"], 5)


def detection():
    if not importlib.util.find_spec("charset_normalizer"):
        return
    import charset_normalizer

    cases = {**NATIONAL, "utf-8": CJK_JP, "utf-16": CJK_JP, "gb18030": NATIONAL["cp936"],
             "iso2022_jp": CJK_JP}  # fmt: skip
    hits, took = {"encconv": 0, "charset-normalizer": 0}, {"encconv": 0.0, "charset-normalizer": 0.0}
    for encoding, sample in cases.items():
        data = (sample * 20).encode(encoding)
        text = data.decode(encoding)
        for name, find in (
            ("encconv", lambda: encconv.detect(data).encoding),
            ("charset-normalizer", lambda: getattr(charset_normalizer.from_bytes(data).best(), "encoding", None)),
        ):
            begin = time.perf_counter()
            found = find()
            took[name] += time.perf_counter() - begin
            try:
                read = encconv.decode(data, found) if name == "encconv" else data.decode(found)
                hits[name] += read == text
            except (LookupError, TypeError, UnicodeError):
                pass
    for name in hits:
        print(f"detect: {name:<20} {hits[name]} of {len(cases)} read rightly, {took[name] * 1e3:.1f} ms")
    if hits["encconv"] < hits["charset-normalizer"]:
        misses.append("hits of detect")


if __name__ == "__main__":
    bytes(24 * MIB)  # memory of this size is kept from now on, and not fetched anew for each result
    long_texts()
    short_texts()
    columns()
    detection()
    if misses:
        print("goals missed:", ", ".join(misses))
    sys.exit(1 if misses and "--check" in sys.argv else 0)
