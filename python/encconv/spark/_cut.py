def find_cut(data, encoding, offset=0, *, position=0, at_cut=False, behind_line=False):
    n = b"\n\0" if encoding == "UTF-16LE" else b"\n"
    while True:
        i = data.find(n, max(0, offset - len(n)))
        if i < 0 or i + len(n) >= len(data): return None
        if (position + i) % len(n) == 0: return i + len(n)
        offset += 1
