"""Threads, buffers, large inputs and references."""

import gc
import sys
import threading
import time
import tracemalloc

import pytest

import encconv


def test_ten_threads_on_one_codec():
    text = "日本語テキスト、漢字かな混じり文\n" * 20000  # large enough to go without the lock
    bad = ("日本\ud800語" * 40000, "replace")
    expected = {e: text.encode(e) for e in ("cp932", "euc_jp", "iso2022_jp")}
    faults = []

    def work(number):
        for encoding, data in expected.items():
            for _ in range(3):
                if encconv.decode(data, encoding) != text or encconv.encode(text, encoding) != data:
                    faults.append((number, encoding))
                if encconv.decode(data[:21], encoding, "ignore") != text[:3000].encode(
                    encoding
                )[:21].decode(encoding, "ignore"):
                    faults.append((number, encoding, "short"))
            if encconv.encode(*bad[:1], encoding, bad[1]).count(b"?") != 40000:
                faults.append((number, encoding, "bad"))

    threads = [threading.Thread(target=work, args=(i,)) for i in range(10)]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    assert not faults


def test_other_threads_run_during_a_large_conversion():
    data = "日本語テキスト".encode("iso2022_jp")[:-3] * 400000
    counted, done = 0, threading.Event()

    def count():
        nonlocal counted
        while not done.is_set():
            counted += 1

    thread = threading.Thread(target=count)
    sys.setswitchinterval(10)  # nobody is asked to give up the lock
    try:
        thread.start()
        before = after = counted
        deadline = time.monotonic() + 60  # a busy machine may let the other one wait
        while after == before and time.monotonic() < deadline:
            encconv.decode(data, "iso-2022-jp", "replace")
            after = counted
    finally:
        sys.setswitchinterval(0.005)
        done.set()
        thread.join()
    assert after > before


def test_a_buffer_cannot_change_while_it_is_used():
    data = bytearray(b"ab\xff")
    failures = []

    def handler(error):
        for change in (lambda: data.append(1), view.release):
            try:
                change()
            except BufferError as failure:
                failures.append(failure)
        return "?", error.end

    import codecs

    view = memoryview(data)
    codecs.register_error("encconv.buffer", handler)
    assert encconv.decode(view, "ascii", "encconv.buffer") == "ab?"
    assert len(failures) == 2
    view.release()
    data.append(1)
    with pytest.raises(ValueError):
        encconv.decode(view, "ascii")


def test_large_inputs():
    size = 80 << 20
    assert encconv.decode(bytes(size), "utf-8") == "\0" * size
    text = "ж" * (size // 4)
    assert encconv.decode(encconv.encode(text, "cp1251"), "cp1251") == text
    assert encconv.decode(encconv.encode(text, "utf-16le"), "utf-16le") == text


def everything():
    for encoding in ("utf-8", "cp932", "cp1252", "iso-2022-jp", "ibm939", "utf-16", "gb18030"):
        data = encconv.encode("日本é" * 300 if encoding != "cp1252" else "é" * 900, encoding, "ignore")
        encconv.decode(data, encoding)
        encconv.decode(bytearray(data + b"\xff"), encoding, "backslashreplace")
        encconv.encode("a\ud800b" * 50, encoding, "xmlcharrefreplace")
        decoder, encoder = encconv.Decoder(encoding), encconv.Encoder(encoding)
        for at in range(0, len(data), 7):
            decoder.decode(data[at : at + 7])
        encoder.encode("日", False) if encoding != "cp1252" else None
        encoder.setstate(encoder.getstate())
        for wrong in (lambda: encconv.decode(data + b"\xff", encoding), lambda: encconv.encode("\ud800", encoding)):
            try:
                wrong()
            except UnicodeError:
                pass
    encconv.decode_report(b"\xff" * 50, "utf-8")
    encconv.detect("größer".encode("cp1252") * 20)
    try:
        encconv.convert(b"\xff", "utf-8", "ascii")
    except ValueError:
        pass
    encconv.codec_info("cp500")


def test_nothing_is_kept():
    for _ in range(3):
        everything()
    gc.collect()
    if hasattr(sys, "gettotalrefcount"):
        before = sys.gettotalrefcount()
        for _ in range(50):
            everything()
        gc.collect()
        assert sys.gettotalrefcount() - before < 50
    # A leak shows in every round, with hundreds of objects; the interpreter's own lists of free
    # tuples take some kilobytes until they are full.
    tracemalloc.start()
    try:
        grown = []
        for _ in range(4):
            before = tracemalloc.get_traced_memory()[0]
            for _ in range(10):
                everything()
            gc.collect()
            grown.append(tracemalloc.get_traced_memory()[0] - before)
        assert min(grown) < 16000, grown
    finally:
        tracemalloc.stop()
