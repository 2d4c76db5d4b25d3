"""decode, encode, handlers, incremental codecs, files and the registry."""

import codecs
import csv
import email
import email.policy
import importlib
import io
import pickle
import random

import pytest

import encconv
from encconv import records

# A text of each kind of encoding that Python has too.
SAMPLES = {
    "cp932": "日本語テキストabc、ﾊﾝｶｸ\n",
    "cp936": "中文字符abc\n",
    "cp949": "한국어 텍스트 abc\n",
    "cp950": "中文字元abc\n",
    "euc_jp": "日本語テキストabc、ﾊﾝｶｸ\n",
    "euc_kr": "한국어 텍스트 abc\n",
    "gb18030": "aé日😀中\u1e3e\n",
    "big5hkscs": "中文字元abc\n",
    "iso2022_jp": "日本語テキストabc\n",
    "hz": "中文abc~\n",
    "utf-7": "a日本+x😀\n",
    "utf-8": "aé日😀\n",
    "utf-16le": "aé日😀\n",
    "utf-16be": "aé日😀\n",
    "utf-32le": "aé日😀\n",
    "latin1": "caféÿ\n",
    "cp1251": "Привет, мир\n",
    "cp1252": "café €abc\n",
    "cp037": "Hello, [world]\n",
    "koi8_r": "привет\n",
    "ascii": "plain\n",
}


@pytest.mark.parametrize("encoding", SAMPLES)
def test_texts_of_every_size_are_those_of_python(encoding):
    sample = SAMPLES[encoding]
    for count in (0, 1, 2, 9, 40, 300, 3000, 30000):
        text = sample * count
        data = text.encode(encoding)
        assert encconv.decode(data, encoding) == text
        if encoding != "utf-7":  # may be written in several ways
            assert encconv.encode(text, encoding) == data


def test_the_width_of_a_str_is_that_of_its_widest_character():
    # str of one width only compare, hash and slice rightly in the narrowest form.
    parts = ["a" * 5000, "é" * 5000, "日" * 5000, "😀" * 5000, "z" * 20000]
    for end in range(1, len(parts) + 1):
        for order in (parts[:end], parts[:end][::-1]):
            text = "".join(order)
            built = encconv.decode(text.encode("utf-8"), "utf-8")
            assert built == text and hash(built) == hash(text)
            assert built.__sizeof__() == text.__sizeof__()
    # After an error only narrow text is left.
    data = "日本".encode("iso2022_jp")[:-4] + b"\xff"
    assert encconv.decode(data, "iso2022_jp", "ignore") == "日"


def test_arguments():
    assert encconv.decode(data=b"a", encoding="cp500", errors="strict") == "/"
    assert encconv.decode(bytearray(b"\x81"), 37) == "a"
    assert encconv.decode(memoryview(b"abcdef")[1:3], "IBM-850", None) == "bc"
    for arguments, error in (
        ((b"a",), TypeError),
        ((b"a", "utf-8", "strict", 1), TypeError),
        (("a", "utf-8"), TypeError),
        ((memoryview(b"abcd")[::2], "utf-8"), BufferError),
        ((b"a", "no such encoding"), LookupError),
        ((b"a", 1 << 40), LookupError),
        ((b"a", None), TypeError),
        ((b"\xff", "utf-8", 7), TypeError),
        ((b"\xff", "utf-8", "no such handler"), LookupError),
    ):
        with pytest.raises(error):
            encconv.decode(*arguments)
    with pytest.raises(TypeError):
        encconv.encode(b"a", "utf-8")
    with pytest.raises(TypeError):
        encconv.encode("a", encoding="utf-8", wrong=1)
    with pytest.raises(LookupError):
        encconv.encode("a", "web:replacement")


def test_errors_have_the_fields_of_codecs():
    with pytest.raises(UnicodeDecodeError) as caught:
        encconv.decode(b"ab\x81 cd", "shift_jis")
    error = caught.value
    assert (error.encoding, error.object, error.start, error.end) == (
        "shift_jis", b"ab\x81 cd", 2, 3,
    )  # fmt: skip
    assert error.reason == "illegal multibyte sequence"
    with pytest.raises(UnicodeDecodeError) as caught:
        encconv.decode(b"abc\x83", "shift_jis")
    assert (caught.value.end, caught.value.reason) == (4, "incomplete multibyte sequence")
    with pytest.raises(UnicodeEncodeError) as caught:
        encconv.encode("a€日本b", "iso-8859-15")
    error = caught.value
    assert (error.object, error.start, error.end) == ("a€日本b", 2, 4)
    # Nothing is written as something similar in silence.
    with pytest.raises(UnicodeEncodeError):
        encconv.encode("\u301c", "shift_jis")


HANDLERS = ["ignore", "replace", "backslashreplace", "surrogateescape", "xmlcharrefreplace",
            "namereplace", "surrogatepass"]  # fmt: skip


@pytest.mark.parametrize("errors", HANDLERS)
def test_handlers_write_what_they_write_for_python(errors, builtin_replaced):
    texts = ["ab\u20acé日😀\ud800z", "日本", "é" * 500 + "\u0416" + "é" * 500, "\udcff"]
    datas = [b"ab\xff\xfe\x81", b"\x80\x20", b"a" * 3000 + b"\xff" + b"a" * 3000 + b"\x81\x20"]
    for encoding in ("iso8859_3", "cp874", "shift_jis", "big5", "cp949", "gb2312"):
        codec = codecs.lookup(encoding)
        own = __import__(f"encodings.{codec.name.replace('-', '_')}", fromlist=["x"])
        python = own.getregentry()
        for texts_or_datas, ours, theirs in (
            (texts, codec.encode, python.encode),
            (datas, codec.decode, python.decode),
        ):
            for item in texts_or_datas:
                results = []
                for function in (ours, theirs):
                    try:
                        results.append(function(item, errors))
                    except UnicodeError as error:
                        results.append((type(error), error.start, error.end, error.reason))
                    except TypeError:
                        results.append(TypeError)
                if encoding == "cp874" and theirs == python.decode:
                    continue  # other characters
                assert results[0] == results[1], (encoding, item)


def _outcome(decode, *arguments):
    try:
        return decode(*arguments)
    except UnicodeDecodeError as error:
        return error.start, error.end, error.reason


# Those of Python without a state. euc_jp has control characters in front of its leads here.
@pytest.mark.parametrize(
    "name",
    [
        "big5", "cp932", "cp949", "euc_jis_2004", "euc_jp", "euc_kr", "gb18030", "gb2312", "gbk", "johab",
        "shift_jis", "shift_jis_2004",
    ],
)  # fmt: skip
def test_bad_bytes_are_those_of_python(name, builtin_replaced):
    own = importlib.import_module(f"encodings.{name}").getregentry()
    ours = codecs.lookup(name)
    leads = [0x8E, 0x8F, *range(0xA0 if name == "euc_jp" else 0x80, 0x100)]
    tails = [b"", b"0", b"9", b"A", b"\x7f", b"\x80", b"\xd4", b"\xff", b"0\x81", b"0\xff0", b"\x00\xa1"]
    for text in [bytes([lead]) + tail for lead in leads for tail in tails]:
        expected = _outcome(own.decode, text)
        if len(expected) == 3:
            assert _outcome(ours.decode, text) == expected, text
        steps = [codec.incrementaldecoder() for codec in (own, ours)]
        for byte in text:
            expected, found = (_outcome(step.decode, bytes([byte])) for step in steps)
            assert found == expected, text
            if not isinstance(expected, str):
                break
            assert steps[0].getstate()[0] == steps[1].getstate()[0], text


def test_handlers_of_the_user_say_where_to_go_on():
    positions = {"back": lambda e: 0, "ahead": lambda e: e.end + 1, "negative": lambda e: -1,
                 "end": lambda e: len(e.object)}  # fmt: skip
    seen = []

    def handler(error):
        seen.append((error.start, error.end))
        return "<>", positions[kind](error) if len(seen) < 3 else len(error.object)

    def outcome(convert):
        seen.clear()
        return convert(), list(seen)

    codecs.register_error("encconv.test", handler)
    for kind in positions:
        data, text = b"ab\xffcd\xffe", "ab\xffcd\xff\xfee"
        assert outcome(lambda: encconv.decode(data, "ascii", "encconv.test")) == outcome(
            lambda: data.decode("ascii", "encconv.test")
        )
        assert outcome(lambda: encconv.encode(text, "ascii", "encconv.test")) == outcome(
            lambda: text.encode("ascii", "encconv.test")
        )
    positions["out"] = lambda e: len(e.object) + 1
    kind = "out"
    seen.clear()
    with pytest.raises(IndexError):
        encconv.decode(b"\xff", "ascii", "encconv.test")
    # In the middle of a shifted run, the state is that of the place.
    kind = "ahead"
    seen.clear()
    shifted = "日本語".encode("iso2022_jp")
    broken = shifted[:5] + b"\xff\xff" + shifted[5:]
    assert encconv.decode(broken, "iso-2022-jp-1", "encconv.test") == "日<>本語"

    codecs.register_error("encconv.bytes", lambda e: (b"\x00\xff", e.end))
    assert encconv.encode("a😀b", "cp500", "encconv.bytes") == b"\x81\x00\xff\x82"
    codecs.register_error("encconv.bad", lambda e: 1)
    with pytest.raises(TypeError):
        encconv.encode("😀", "cp500", "encconv.bad")
    # What a handler gives must be in the encoding, and is written in its state.
    codecs.register_error("encconv.japanese", lambda e: ("本", e.end))
    assert encconv.encode("日é日", "iso-2022-jp", "encconv.japanese") == "日本日".encode("iso2022_jp")
    with pytest.raises(UnicodeEncodeError):
        encconv.encode("é", "ascii", "encconv.japanese")


def test_pieces_give_the_text_of_the_whole():
    choose = random.Random(5)
    for encoding, sample in {**SAMPLES, "ibm939": "漢字 kana ", "scsu": "aéПриветж日本😀",
                             "utf-16": "日本😀", "iso-2022-kr": "한국 abc\n"}.items():  # fmt: skip
        text = sample * 7
        data = encconv.encode(text, encoding)
        decoder, encoder = encconv.Decoder(encoding), encconv.Encoder(encoding)
        decoded, encoded = "", b""
        at = 0
        while at < len(data):
            step = choose.randint(1, 4)
            decoded += decoder.decode(data[at : at + step])
            at += step
            # The state can go to another object at any time.
            state, decoder = decoder.getstate(), encconv.Decoder(encoding)
            decoder.setstate(state)
        decoded += decoder.decode(b"", True)
        for character in text:
            encoded += encoder.encode(character)
            state, encoder = encoder.getstate(), encconv.Encoder(encoding)
            encoder.setstate(state)
        encoded += encoder.encode("", True)
        assert decoded == text, encoding
        assert encoded == data, encoding
        decoder.reset()
        assert decoder.getstate() == (b"", 0)
    decoder = encconv.Decoder("shift_jis")
    assert decoder.decode(b"\x83") == ""
    with pytest.raises(UnicodeDecodeError):
        decoder.decode(b"", True)


def test_states_that_are_none():
    choose = random.Random(31)
    refused = 0
    for name in ("utf-7", "scsu", "bocu-1", "gsm-packed", "iso-2022-jp", "iso-2022-jp-2", "hz",
                 "iso-2022-kr", "iso-2022-cn-ext", "marc-8", "ibm939", "x-iscii-be", "compound_text",
                 "python:iso2022_jp", "euc-jp"):  # fmt: skip
        decoder, encoder = encconv.Decoder(name, "ignore"), encconv.Encoder(name, "ignore")
        data = encconv.encode("aé日 क Ж", name, "ignore")
        ways = (
            (decoder, lambda number: (b"", number), lambda: decoder.decode(data)),
            # Of an encoder, the lowest bytes say that nothing is pending.
            (encoder, lambda number: number << 32, lambda: encoder.encode("aé日 क Ж")),
        )
        for codec, state_of, convert in ways * 200:
            codec.reset()
            whole = convert()
            before = codec.getstate()
            try:
                codec.setstate(state_of(choose.getrandbits(choose.randint(1, 44 * 8))))
            except OverflowError:
                pass
            except UnicodeError as error:
                assert str(error) == "the state is none of this encoding"
                assert codec.getstate() == before
                refused += 1
            convert()
            codec.reset()
            assert convert() == whole, name
    assert refused > 2000


def test_files(tmp_path):
    path = tmp_path / "text"
    for encoding in ("ibm1047", "iso-2022-jp", "utf-16", 930):
        with encconv.open(path, "w", encoding=encoding, newline="") as file:
            file.write("日本語\n" * 3 if encoding != "ibm1047" else "ABC\n" * 3)
        with encconv.open(path, encoding=encoding) as file:
            line = file.readline()
            place = file.tell()
            rest = file.read()
            file.seek(place)
            assert file.read() == rest == line * 2
    path.write_bytes("Съешь ещё этих мягких французских булок".encode("koi8-r"))
    with encconv.open(path, encoding="auto") as file:
        assert file.read().startswith("Съешь")
    path.write_bytes(bytes(range(256)) * 3)
    with pytest.raises(LookupError):
        encconv.open(path, encoding="auto")
    with encconv.open(path, "rb") as file:
        assert file.read(2) == b"\0\1"


def test_registered_names_serve_the_library_of_python():
    encconv.register()
    encconv.register()
    assert b"\xc1".decode("ibm1047") == "A"
    assert "é".encode("encconv_utf_8") == "é".encode()
    assert codecs.lookup("latin1").name == "iso8859-1"  # Python's own stays
    with pytest.raises(LookupError):
        codecs.lookup("encconv_no_such")
    rows = list(csv.reader(io.TextIOWrapper(io.BytesIO("A,B\n1,2\n".encode("ibm1047")), "ibm1047")))
    assert rows == [["A", "B"], ["1", "2"]]
    message = email.message_from_bytes(
        b"Content-Type: text/plain; charset=ibm1047\nContent-Transfer-Encoding: base64\n\nwsHD\n",
        policy=email.policy.default,
    )
    assert message.get_content().strip() == "BAC"
    writer = codecs.getwriter("iso-2022-cn")(stream := io.BytesIO())
    writer.write("中")
    writer.write("文")
    writer.reset()
    assert codecs.getreader("iso-2022-cn")(io.BytesIO(stream.getvalue())).read() == "中文"


def test_names_of_python_are_replaced_and_given_back():
    before = codecs.lookup("cp932").encode
    encconv.replace_builtin()
    assert codecs.lookup("cp932").encode is not before
    assert codecs.lookup("ms-kanji").name == "cp932"
    assert codecs.lookup("utf-8").encode is codecs.utf_8_encode
    with pytest.raises(UnicodeDecodeError, match="'charmap' codec can't decode byte 0xff"):
        b"\xff".decode("iso8859-11")
    encconv.restore_builtin()
    assert type(codecs.lookup("cp932").encode).__name__ == type(before).__name__
    assert codecs.lookup("cp932").incrementaldecoder.__module__ == "encodings.cp932"


# Each with a character that waits for what follows: with that it may be one code.
WAITING = [("euc_jisx0213", "\u00e6"), ("big5hkscs", "\u00ca"), ("shift_jis_2004", "\u02e9"),
           ("iso2022_jp_2004", "\u00e6"), ("encconv_iso-2022-jp-3", "\u304b")]  # fmt: skip


@pytest.mark.parametrize("encoding, first", WAITING)
def test_characters_that_wait_are_not_lost_at_errors(encoding, first, builtin_replaced):
    encconv.register()
    codecs.register_error("encconv.waiting", lambda e: (first, e.end))
    codecs.register_error("encconv.nothing", lambda e: ("", e.end))
    lacking = "\u0e01"
    marks = "\u0300\u0304\u02e5\u309a"  # some of which have codes of their own
    alone = marks.encode(encoding, "ignore").decode(encoding)
    for text, errors, written in (
        (f"a{lacking}", "encconv.waiting", f"a{first}"),
        (f"日{lacking}本", "encconv.waiting", f"日{first}本"),
        (f"{lacking}{lacking}日", "encconv.waiting", f"{first}{first}日"),
        (f"日{first}{lacking}日本", "encconv.nothing", f"日{first}日本"),
        (f"{first}{lacking}日", "replace", f"{first}?日"),
        (f"{first}{lacking}日", "xmlcharrefreplace", f"{first}&#3585;日"),
        (f"{first}{lacking}", "ignore", first),
        (f"{first}\udc00{marks}", "ignore", first + alone),
    ):
        data = text.encode(encoding, errors)
        assert data.decode(encoding) == written, (text, errors)
        encoder = codecs.getincrementalencoder(encoding)(errors)
        pieces = b"".join(encoder.encode(character) for character in text) + encoder.encode("", True)
        assert pieces.decode(encoding) == written, (text, errors)


def test_what_is_left_of_a_buffer_is_counted_in_bytes():
    decoder = encconv.Decoder("utf-32le")
    pieces = memoryview("AB".encode("utf-32-le")[:6]).cast("H"), b"\0\0"
    assert [decoder.decode(piece) for piece in pieces] == ["A", "B"]


def test_text_that_waits_is_a_part_of_the_state():
    for text in ("\x1b" * 40, "\x1b\u0e01" * 200):
        encoder = encconv.Encoder("iso-2022-jp", "ignore")
        data = b""
        for character in text:
            data += encoder.encode(character)
            state, encoder = encoder.getstate(), encconv.Encoder("iso-2022-jp", "ignore")
            encoder.setstate(state)
        assert data + encoder.encode("", True) == encconv.encode(text, "iso-2022-jp", "ignore")


@pytest.mark.parametrize(
    "encoding, letter, expected",
    [
        ("utf-8-sig", "é", "éaaéaa".encode("utf-8-sig")),
        ("iso-2022-kr", "가", b"\x1b$)C" + 2 * b"\x0e0!\x0faa"),
    ],
)
def test_what_a_text_begins_with_is_written_once_a_file(tmp_path, encoding, letter, expected):
    path = tmp_path / "text"
    for mode in "wa":
        with encconv.open(path, mode, encoding=encoding) as file:
            file.write(letter + "a")
            file.seek(0, io.SEEK_END)
            file.write("a")
    assert path.read_bytes() == expected


def test_streams_find_lines_and_keep_the_beginning():
    encconv.register()
    for encoding in ("ibm297", "encconv_utf-16", "encconv_utf-7", "encconv_hz"):
        stream = io.BytesIO()
        file = codecs.StreamReaderWriter(stream, codecs.getreader(encoding), codecs.getwriter(encoding))
        lines = ["aé\n", "\n", "é"] if encoding != "encconv_hz" else ["~\n", "本~\n", "本"]
        file.writelines(lines)
        file.seek(0)
        assert list(file) == lines, encoding
        file.seek(0)
        assert [file.readline(), file.read()] == [lines[0], "".join(lines[1:])], encoding
        # What a shift back is written for stands where the text ended.
        assert encconv.decode(stream.getvalue(), encoding.removeprefix("encconv_")) == "".join(lines)
    reader = codecs.getreader("encconv_utf-16")(io.BytesIO(b"a\0b"))
    with pytest.raises(UnicodeDecodeError):
        reader.read()


def test_numbers_and_errors_are_looked_at_as_a_whole():
    for number in (2**32 + 932, 932 - 2**32):
        with pytest.raises(LookupError):
            encconv.decode(b"a", number)
    for errors, exception in ((5, TypeError), ("ignore\0", ValueError)):
        with pytest.raises(exception):
            encconv.decode(b"a", "utf-8", errors)


def test_exceptions_can_go_to_other_processes():
    with pytest.raises(encconv.ConversionError) as caught:
        encconv.convert(b"a\xff", "utf-8", "latin1")
    copy = pickle.loads(pickle.dumps(caught.value))
    assert (str(copy), copy.problem, copy.output) == (str(caught.value), caught.value.problem, b"a")
    damaged = records.RecordError(records.RecordProblem("cut", 1, 2, 3, b"a", "", "cut short"))
    assert str(pickle.loads(pickle.dumps(damaged))) == str(damaged)
