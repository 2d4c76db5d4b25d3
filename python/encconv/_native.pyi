# What the module behind the package has; the package's own functions are what to use.
from collections.abc import Callable
from typing import Any

from typing_extensions import Buffer

version: str

def decode(data: Buffer, encoding: str | int, errors: str | None = "strict") -> str: ...
def encode(text: str, encoding: str | int, errors: str | None = "strict") -> bytes: ...
def codec_functions(
    encoding: str | int, label: str, python_spans: bool
) -> tuple[
    Callable[..., tuple[bytes, int]],
    Callable[..., tuple[str, int]],
    Callable[[str, str | None, bool, int], tuple[bytes, int, int]],
    Callable[[Buffer, str | None, bool, int], tuple[str, int, int]],
]: ...
def encodings() -> list[tuple[int, str, tuple[str, ...], str, str, bool, bool]]: ...
def detect(data: Buffer, is_beginning: bool) -> tuple[str, tuple[Any, ...], str]: ...
def convert(
    data: Buffer,
    source: str | int,
    target: str | int | None,
    on_error: str,
    byte_order_mark: bool,
    most: int,
) -> tuple[Any, bool, int, int, tuple[Any, ...]]: ...
def code_page(encoding: str | int) -> int: ...
def properties(encoding: str | int) -> tuple[str, bool, bool]: ...
