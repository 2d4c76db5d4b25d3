#!/usr/bin/env python3
"""Uses the C interface from Python.

    python_ctypes.py [LIBRARY]

LIBRARY is the shared library, by default libencconv.so.2 where the system finds it.
"""

import ctypes
import sys


class Sized(ctypes.Structure):
    """The structures of the interface begin with their size."""

    def __init__(self, **fields):
        super().__init__(ctypes.sizeof(self), **fields)


class Options(Sized):
    _fields_ = [
        ("struct_size", ctypes.c_size_t),
        ("on_error", ctypes.c_char_p),
        ("byte_order_mark", ctypes.c_int),
        ("pdf_passthrough", ctypes.c_int),
    ]


class Problem(Sized):
    _fields_ = [
        ("struct_size", ctypes.c_size_t),
        ("offset", ctypes.c_uint64),
        ("line", ctypes.c_uint64),
        ("length", ctypes.c_uint32),
        ("code_point", ctypes.c_int32),
        ("malformed", ctypes.c_int),
        ("byte_count", ctypes.c_uint32),
        ("bytes", ctypes.c_ubyte * 16),
        ("approximated", ctypes.c_int),
        ("written", ctypes.c_char * 16),
    ]


class Result(Sized):
    _fields_ = [
        ("struct_size", ctypes.c_size_t),
        ("first_problem", ctypes.POINTER(Problem)),
        ("problem_count", ctypes.c_uint64),
    ]


class Encconv:
    """The functions of the library that this example needs, with their types."""

    def __init__(self, path):
        lib = ctypes.CDLL(path)
        lib.encconv_find_code_page.argtypes = [ctypes.c_char_p]
        lib.encconv_describe.restype = ctypes.c_char_p
        lib.encconv_convert.argtypes = [
            ctypes.c_int,
            ctypes.c_int,
            ctypes.c_char_p,
            ctypes.c_size_t,
            ctypes.POINTER(Options),
            ctypes.POINTER(ctypes.POINTER(ctypes.c_ubyte)),
            ctypes.POINTER(ctypes.c_size_t),
            ctypes.POINTER(Result),
        ]
        lib.encconv_free.argtypes = [ctypes.POINTER(ctypes.c_ubyte)]
        self.lib = lib

    def convert(self, data, source, target, on_error="stop"):
        """Returns the converted bytes and the first problem, or None where there was none."""
        output = ctypes.POINTER(ctypes.c_ubyte)()
        size = ctypes.c_size_t()
        problem = Problem()
        options = Options(on_error=on_error.encode())
        result = Result(first_problem=ctypes.pointer(problem))
        status = self.lib.encconv_convert(
            self.code_page(source),
            self.code_page(target),
            data,
            len(data),
            ctypes.byref(options),
            ctypes.byref(output),
            ctypes.byref(size),
            ctypes.byref(result),
        )
        converted = ctypes.string_at(output, size.value) if size.value else b""
        self.lib.encconv_free(output)
        if status != 0:
            raise ValueError(self.lib.encconv_describe(status).decode())
        return converted, problem if result.problem_count else None

    def code_page(self, name):
        number = self.lib.encconv_find_code_page(name.encode())
        if number == 0:
            raise LookupError("unknown encoding: " + name)
        return number


def main():
    encconv = Encconv(sys.argv[1] if len(sys.argv) > 1 else "libencconv.so.2")
    text, _ = encconv.convert(b"\xc8\x85\x93\x93\x96", "ibm037", "utf-8")
    print(text.decode())
    text, problem = encconv.convert("z\u0142oty".encode(), "utf-8", "windows-1252", "hex")
    print(text.decode("cp1252"), "- the first problem is at byte", problem.offset)


if __name__ == "__main__":
    main()
