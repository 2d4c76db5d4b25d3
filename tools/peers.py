"""The converters that compare_peers sets beside the engine: ICU, the C library, Python, nkf.

Each peer has decode(code) and encode(unit), for one code (bytes) and one UTF-16 code unit (int).
They give the text as a string, or the bytes, and None where the peer refuses.
"""

import ctypes
import ctypes.util
import glob
import re
import subprocess


class PythonPeer:
    name = "Python"

    def __init__(self, charset):
        self._charset = charset

    def decode(self, code):
        try:
            return code.decode(self._charset)
        except UnicodeDecodeError:
            return None

    def encode(self, unit):
        try:
            return chr(unit).encode(self._charset)
        except UnicodeEncodeError:
            return None


class IconvPeer:
    name = "C library"
    _libc = ctypes.CDLL(None)
    _libc.iconv_open.restype = ctypes.c_void_p
    _libc.iconv.restype = ctypes.c_size_t

    def __init__(self, charset):
        self._decoder = self._open("UTF-16BE", charset)
        self._encoder = self._open(charset, "UTF-16BE")

    def _open(self, to, source):
        descriptor = self._libc.iconv_open(to.encode(), source.encode())
        if descriptor == ctypes.c_void_p(-1).value:
            raise LookupError(f"iconv does not convert {source} to {to}")
        return ctypes.c_void_p(descriptor)

    def _convert(self, descriptor, data):
        self._libc.iconv(descriptor, None, None, None, None)
        source = ctypes.create_string_buffer(data, len(data))
        target = ctypes.create_string_buffer(32)
        source_at = ctypes.c_char_p(ctypes.addressof(source))
        target_at = ctypes.c_char_p(ctypes.addressof(target))
        source_left = ctypes.c_size_t(len(data))
        target_left = ctypes.c_size_t(32)
        room = (ctypes.byref(target_at), ctypes.byref(target_left))
        failed = ctypes.c_size_t(-1).value
        if self._libc.iconv(descriptor, ctypes.byref(source_at), ctypes.byref(source_left),
                            *room) == failed:
            return None
        self._libc.iconv(descriptor, None, None, *room)  # what a composing converter held back
        return target.raw[:32 - target_left.value]

    def decode(self, code):
        result = self._convert(self._decoder, code)
        return None if result is None else result.decode("utf-16-be", "surrogatepass")

    def encode(self, unit):
        return self._convert(self._encoder, unit.to_bytes(2, "big"))


class IcuPeer:
    name = "ICU"
    _path = max(glob.glob("/usr/lib/*/libicuuc.so.*"), key=len, default=None) or \
        ctypes.util.find_library("icuuc")
    _version = re.search(r"\.so\.(\d+)", _path).group(1)
    _library = ctypes.CDLL(_path)

    def _function(self, name):
        return getattr(self._library, f"{name}_{self._version}")

    def __init__(self, charset):
        error = ctypes.c_int(0)
        opener = self._function("ucnv_open")
        opener.restype = ctypes.c_void_p
        converter = opener(charset.encode(), ctypes.byref(error))
        if error.value > 0 or not converter:
            raise LookupError(f"ICU has no converter {charset}")
        self._converter = ctypes.c_void_p(converter)
        for kind in ("TO", "FROM"):
            setter = self._function("ucnv_setToUCallBack" if kind == "TO"
                                    else "ucnv_setFromUCallBack")
            setter(self._converter, self._function(f"UCNV_{kind}_U_CALLBACK_STOP"), None, None,
                   None, ctypes.byref(error))
        self._to_units = self._function("ucnv_toUChars")
        self._from_units = self._function("ucnv_fromUChars")

    def decode(self, code):
        error = ctypes.c_int(0)
        target = (ctypes.c_uint16 * 16)()
        count = self._to_units(self._converter, target, 16, code, len(code), ctypes.byref(error))
        if error.value > 0:
            return None
        return b"".join(u.to_bytes(2, "big") for u in target[:count]).decode("utf-16-be")

    def encode(self, unit):
        error = ctypes.c_int(0)
        source = (ctypes.c_uint16 * 1)(unit)
        target = ctypes.create_string_buffer(16)
        count = self._from_units(self._converter, target, 16, source, 1, ctypes.byref(error))
        return None if error.value > 0 or count == 0 else target.raw[:count]


class NkfPeer:
    """Writes only, and whole texts: a line for each character."""
    name = "nkf"

    def __init__(self, charset):
        self._charset = charset

    def encode_lines(self, characters):
        text = "\n".join(characters).encode()
        result = subprocess.run(["nkf", "-W", f"--oc={self._charset}", "-x", "-m0"], input=text,
                                capture_output=True, check=True)
        lines = result.stdout.split(b"\n")
        if len(lines) != len(characters):
            raise ValueError(f"nkf made {len(lines)} lines of {len(characters)}")
        return lines
