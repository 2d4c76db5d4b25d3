"""Files of differences, found once and looked through: heads, and lines "read CODE..." and "write
VALUE..." of what is different, neighbours as a range."""

import textwrap


def ranges(keys, different, text):
    """The different ones among keys, in order, neighbours as a range."""
    result, run = [], []
    for key in [*keys, None]:
        if key is not None and key in different:
            run.append(text(key))
        elif run:
            result.append(run[0] if len(run) == 1 else f"{run[0]}-{run[-1]}")
            run = []
    return " ".join(result) or "none"


def lines_of(codes, different_codes, values, different_values):
    """Two lines: which of the codes, and of the values, are different."""
    return [
        "read " + ranges(sorted(codes, key=lambda code: (len(code), code)), different_codes,
                         lambda code: code.hex().upper()),
        "write " + ranges(sorted(values), different_values,
                          lambda several: "+".join(f"{value:04X}" for value in several)),
    ]


def load(path):
    """{head: lines}"""
    record = {}
    for line in path.read_text(encoding="ascii").splitlines() if path.exists() else []:
        if line.startswith("    "):
            record[head][-1] += " " + line.strip()
        elif line.startswith("read ") or line.startswith("write "):
            record[head].append(line)
        elif line and not line.startswith("#"):
            head = line
            record[head] = []
    return record


def save(path, record, comment):
    lines = [f"# {line}" for line in comment.splitlines()]
    for head in sorted(record):
        lines += ["", head, *record[head]]
    lines = [part for line in lines for part in textwrap.wrap(line, 100, subsequent_indent="    ",
                                                             break_on_hyphens=False) or [""]]
    path.write_text("\n".join(lines) + "\n", encoding="ascii")
