"""Text from and to more than four hundred character encodings.

    >>> import encconv
    >>> encconv.decode(b'\\x83e\\x83X\\x83g', 'shift_jis')
    'テスト'
    >>> encconv.encode('Grüße', 'ibm273')
    b'\\xc7\\x99\\xd0\\xa1\\x85'
    >>> encconv.convert(b'caf\\xe9', 'windows-1252', 'utf-8')
    b'caf\\xc3\\xa9'

Encodings have names, in which case and punctuation do not matter, or numbers (``932``).
Functions may be called from any thread; objects belong to one thread at a time.
"""

from ._codecs import (
    IncrementalDecoder as Decoder,
    IncrementalEncoder as Encoder,
    StreamReader,
    StreamWriter,
    codec_info,
    open,
    register,
    replace_builtin,
    restore_builtin,
)
from ._conversion import (
    Candidate,
    ConversionError,
    Converter,
    DecodeReport,
    Detection,
    Encoding,
    Misreading,
    Origin,
    Problem,
    convert,
    decode_report,
    detect,
    encodings,
    find_cut,
    find_encoding,
    trace,
)
from ._native import decode, encode
from ._native import version as __version__

__all__ = [
    "Candidate",
    "ConversionError",
    "Converter",
    "DecodeReport",
    "Decoder",
    "Detection",
    "Encoder",
    "Encoding",
    "Misreading",
    "Origin",
    "Problem",
    "StreamReader",
    "StreamWriter",
    "__version__",
    "codec_info",
    "convert",
    "decode",
    "decode_report",
    "detect",
    "encode",
    "encodings",
    "find_cut",
    "find_encoding",
    "open",
    "register",
    "replace_builtin",
    "restore_builtin",
    "trace",
]
