"""The built library, by its C interface."""

import ctypes
import sys

from peers import OneByOne


class Options(ctypes.Structure):
    _fields_ = [("struct_size", ctypes.c_size_t), ("on_error", ctypes.c_char_p),
                ("byte_order_mark", ctypes.c_int), ("pdf_passthrough", ctypes.c_int)]


class Result(ctypes.Structure):
    _fields_ = [("struct_size", ctypes.c_size_t), ("first_problem", ctypes.c_void_p),
                ("problem_count", ctypes.c_uint64), ("first_approximation", ctypes.c_void_p),
                ("approximation_count", ctypes.c_uint64)]


class CodePage(ctypes.Structure):
    _fields_ = [("struct_size", ctypes.c_size_t), ("number", ctypes.c_int),
                ("name", ctypes.c_char_p), ("aliases", ctypes.c_char_p), ("kind", ctypes.c_char_p),
                ("description", ctypes.c_char_p), ("can_read", ctypes.c_int),
                ("can_write", ctypes.c_int)]


class Library:
    def __init__(self, path):
        self.lib = ctypes.CDLL(path)

    def find(self, name):
        """The number of an encoding; 0: it is not known."""
        return self.lib.encconv_find_code_page(name.encode())

    def number(self, name):
        number = self.find(name)
        if number == 0:
            sys.exit(f"{name} is not known")
        return number

    def code_pages(self):
        """Each encoding, in ascending order of number."""
        for index in range(self.lib.encconv_code_page_count()):
            page = CodePage(ctypes.sizeof(CodePage))
            self.lib.encconv_code_page_at(ctypes.c_size_t(index), ctypes.byref(page))
            yield page

    def convert(self, source, target, data, on_error=b"substitute"):
        """The output, and how many pieces could not be converted."""
        options = Options(ctypes.sizeof(Options), on_error, 0, 0)
        output, size = ctypes.c_void_p(), ctypes.c_size_t()
        result = Result(ctypes.sizeof(Result), None, 0, None, 0)
        status = self.lib.encconv_convert(source, target, data, ctypes.c_size_t(len(data)),
                                          ctypes.byref(options), ctypes.byref(output),
                                          ctypes.byref(size), ctypes.byref(result))
        if status != 0:
            sys.exit(f"{source} to {target}: status {status} for {data.hex()}")
        text = ctypes.string_at(output, size.value)
        self.lib.encconv_free(output)
        return text, result.problem_count


class Ours(OneByOne):
    """One encoding of the library, asked as its peers are."""
    name = "here"
    _UTF32 = 12000

    def __init__(self, library, number):
        self._library, self._number = library, number

    def read(self, text):
        values, problems = self._library.convert(self._number, self._UTF32, text)
        return None if problems else values.decode("utf-32-le", "surrogatepass")

    def write(self, text):
        data, problems = self._library.convert(self._UTF32, self._number, text.encode("utf-32-le"))
        return None if problems else data

    def _write_some(self, text):
        return self._library.convert(self._UTF32, self._number, text.encode("utf-32-le"), b"drop")[0]
