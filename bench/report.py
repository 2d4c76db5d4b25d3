"""What is made of the results: JSON, Markdown tables, and a plot."""

import html
import json
import math
import re
import statistics

PEERS = ("iconv", "icu", "encoding_rs", "SIMD", "iconv(1)", "uconv")
SMALLER_IS_BETTER = ("Short", "Unconvertible", "First use", "Start", "Memory")
# The ways that are held against EncConvert, and where that passes 8,000 MB/s.
WHOLE = {**dict.fromkeys(("convert", "stream", "C", "C stream"), (0.85, 0.6)),
         **dict.fromkeys(("into", "C into"), (0.95, 0.95))}
DOTS = ("EncConvert", "convert", *PEERS[:4], "memcpy")  # of the plot
PLOTTED = ("Main", "Markup", "Real", "Further", "Stream", "Web")
TITLES = {"Main": "Pairs with goals of their own (MB/s)",
          "Markup": "The same pairs, mostly ASCII (MB/s)", "Real": "Real text (MB/s)",
          "Further": "Other pairs (MB/s)",
          "Stream": "Encodings that only streams convert (MB/s)",
          "Web": "The encodings of the web (MB/s)",
          "Web bad": "The same, one character in a hundred malformed or unmappable (MB/s)",
          "Short": "Short strings (ns a text)",
          "Unconvertible": "One character in a hundred unconvertible (ns each, beyond clean text)",
          "Unmappable": "Text that the target lacks, dropped (MB/s)",
          "Large": "Texts of 64 MiB (times the speed of 4 MiB)",
          "Memory": "Memory beside input and output, 64 MiB of text (KiB)",
          "First use": "The first text of a process (ms)",
          "Tool": "The tools, a file of 4 MiB (MB/s)", "Start": "The tools, a file of 20 bytes (ms)",
          "Pipe": "The tools, 300 MiB through a pipe (MB/s, and the memory of the process)"}
SHORT = {"convert": 60, "names": 100, "stream": 200, "again": 80, "C": 60, "C stream": 200}
# At most so much, in the unit of the group; of Short only for 20 bytes.
ABSOLUTE = {"Short": SHORT, "First use": {"convert": 5}, "Start": {"encconv --version": 3},
            "Unconvertible": dict.fromkeys(("drop", "substitute", "hex", "alternate", "raw",
                                            "stream, drop", "C, drop"), 30)}


def peers(values, way=""):
    """The results of the peers, used in the same way: "anew", where that makes a difference."""
    anew = way.endswith(" anew") * " anew"
    return [values[name] for peer in PEERS
            if (name := peer if peer in ("encoding_rs", "SIMD") else peer + anew) in values]


def judge(result):
    """Each goal: the contestant, what it is held against, the ratio reached, and the ratio wanted."""
    group, values = result["group"], result["results"]
    small = group in SMALLER_IS_BETTER
    goals = []

    def hold(name, against, others, limit):
        if name in values and others and limit:
            mine, other = max(values[name], 1e-9), (min if small else max)(others)
            goals.append((name, against, other / mine if small else mine / other, limit))

    there = result["orientation"]
    for name, limit in (("EncConvert", result["goal"]), ("EncConvert anew", 1),
                        ("encconv", result["goal"])):
        hold(name, "the best peer", peers(values, name), limit)
        if name == "EncConvert" and there and goals and goals[-1][2] < goals[-1][3]:
            reached = there / values[name] if small else values[name] / there
            if reached >= 1:  # then the speed counts that was the goal where the peers were slower
                goals[-1] = (name, "the best peer", reached, 1)
    for name, most in ABSOLUTE.get(group, {}).items():
        if group != "Short" or result["bytes"] == 20:
            hold(name, f"at most {most}", [most], 1)
    if small or group == "Pipe":
        return goals
    for name in ("EncConvert", *WHOLE) if group == "Large" else ():
        hold(name, "4 MiB", [1], 0.8)
    if group == "Web bad":
        hold("substitute", "encoding_rs", [values[name] for name in ("encoding_rs",)
                                           if name in values], result["goal"])
    if group in ("Large", "Tool", "Web bad"):
        return goals
    if "EncConvert" not in values:
        others = [values["encoding_rs"]] if group == "Web" and "encoding_rs" in values \
            else peers(values)
        for name in WHOLE:
            hold(name, "the best peer", others, result["goal"])
        return goals
    for name, limits in WHOLE.items():
        hold(name, "EncConvert", [values["EncConvert"]], limits[values["EncConvert"] > 8000])
        hold(name, "the best peer", peers(values), 1)
    return goals


def show(value):
    return f"{value:,.0f}" if value >= 20 else f"{value:.2g}"


def unmet(result):
    """The goals that are not met, in words; an empty text when all are. To leave the race is one."""
    words = [note for note in result["notes"]
             if not note.startswith(PEERS) and not note.endswith("differs")]
    for name, against, reached, limit in judge(result):
        if reached < limit:
            value = f"{reached:.2f} of" if not against.startswith("at") else result["results"][name]
            value = value if isinstance(value, str) else show(value) + ","
            words.append(f"{name} {value} {against}" + (f" ({limit:g})" if limit != 1 else ""))
    return "; ".join(words)


def line(result):
    values = "  ".join(f"{name} {show(value)}" for name, value in result["results"].items())
    failed = unmet(result)
    return "  ".join([f"{result['group']}: {result['row']}", values,
                      f"UNMET: {failed}" if failed else "", "; ".join(result["notes"])]).rstrip()


def table(results):
    columns = list(dict.fromkeys(name for result in results for name in result["results"]))
    columns.sort(key=lambda name: name == "memcpy")
    lines = ["| | " + " | ".join(columns) + " | goals |", "|---|" + "--:|" * len(columns) + "---|"]
    for result in results:
        cells = [show(result["results"][name]) if name in result["results"] else "-"
                 for name in columns]
        met = unmet(result) or ("met" if judge(result) else "-")
        lines.append("| " + " | ".join([result["row"], *cells, met]) + " |")
    return lines


def family_table(results):
    ways = [("EncConvert", "the best peer"), *((name, "EncConvert") for name in WHOLE
                                               if any(name in r["results"] for r in results))]
    lines = ["| | rows | " + " | ".join(f"{name} / {against.removeprefix('the ')}"
                                        for name, against in ways) + " | rows with all goals met |",
             "|---|--:|" + "--:|" * (len(ways) + 1)]
    for family in dict.fromkeys(result["group"] for result in results):
        rows = [r for r in results if r["group"] == family]
        cells = []
        for way in ways:
            ratios = [reached for r in rows for *of, reached, _ in judge(r) if tuple(of) == way]
            cells.append(f"{statistics.median(ratios):.2f}, {min(ratios):.2f}" if ratios else "-")
        lines.append(f"| {family} | {len(rows)} | " + " | ".join(cells)
                     + f" | {sum(not unmet(r) for r in rows)} |")
    return lines


def goal_table(results):
    """How many rows meet each goal."""
    counts = {}
    for result in results:
        family = result["group"] if result["group"] in ABSOLUTE else ""
        for name, against, reached, limit in judge(result):
            key = f"{name}, {family.lower()}" if family else name, against
            met, of, least = counts.get(key, (0, 0, math.inf))
            counts[key] = met + (reached >= limit), of + 1, min(least, reached)
    return ["| way | held against | rows | goal met | least × |", "|---|---|--:|--:|--:|",
            *(f"| {name} | {against} | {of} | {met} | {least:.2f} |"
              for (name, against), (met, of, least) in counts.items())]


def markdown(results):
    judged = [r for r in results if judge(r)]
    lines = [f"{sum(not unmet(r) for r in judged)} of {len(judged)} rows meet all of their goals. What "
             "is not met is shown as so many times what the way is held against, and in brackets the "
             "multiple that is wanted, if it is not 1.", "", *goal_table(results)]
    absent = [peer for peer in PEERS if not any(peer in r["results"] for r in results)]
    if absent:
        lines += ["", f"Not measured here: {', '.join(absent)}."]
    for group, title in TITLES.items():
        of_group = [r for r in results if r["group"] == group]
        if of_group:
            lines += ["", f"### {title}", "", *table(of_group)]
    families = [r for r in results if r["group"] not in TITLES]
    if families:
        lines += ["", "### Single-byte pages, to and from UTF-8 and from UTF-16 (median and least ×)",
                  "", *family_table(families)]
        failed = [f"- {r['row']}: {unmet(r)}" for r in families if unmet(r)]
        lines += ["", "Their unmet goals:", "", *failed] if failed else []
    notes = [f"- {r['group']}: {r['row']}: {note}"
             for r in results if r["group"] in TITLES for note in r["notes"]]
    if notes:
        lines += ["", "Whose output differs, or who left the race:", "", *notes]
    return "\n".join(lines) + "\n"


def plot(results):
    """Dots on a logarithmic scale of MB/s, a line a pair; readable on light and dark ground."""
    shown = [r for group in PLOTTED for r in results if r["group"] == group]
    left, width, step, top = 330, 560, 17, 46
    height = top + step * (len(shown) + len(PLOTTED)) + 10

    def x(value):
        return left + width * (math.log10(min(max(value, 20), 20000)) - math.log10(20)) / 3

    parts = [f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {left + width + 30} {height}" '
             'font-family="sans-serif" font-size="11"><style>text{fill:#222}.grid{stroke:#8885}'
             '.memcpy{fill:#888}.EncConvert{fill:#d1242f}.convert{fill:#8250df}.SIMD{fill:#bc4c8b}.iconv{fill:#1a7f37}.icu{fill:#0969da}'
             '.encoding_rs{fill:#bf8700}@media(prefers-color-scheme:dark){text{fill:#ddd}'
             '.EncConvert{fill:#ff7b72}.convert{fill:#d2a8ff}.SIMD{fill:#f778ba}.iconv{fill:#56d364}.icu{fill:#79c0ff}.encoding_rs{fill:#e3b341}}'
             '</style>']
    for number, name in enumerate(DOTS):
        parts.append(f'<circle cx="{left + 110 * number}" cy="12" r="5" class="{name}"/>'
                     f'<text x="{left + 9 + 110 * number}" y="16">{name}</text>')
    for value in (20, 50, 100, 200, 500, 1000, 2000, 5000, 10000, 20000):
        parts.append(f'<path d="M{x(value):.1f} {top - 8}V{height}" class="grid"/>'
                     f'<text x="{x(value):.1f}" y="{top - 12}" text-anchor="middle">{value:,}</text>')
    y, group = top - step / 2, None
    for result in shown:
        if result["group"] != group:
            group, y = result["group"], y + step
            parts.append(f'<text x="4" y="{y:.0f}" font-weight="bold">{group}, MB/s</text>')
        y += step
        parts.append(f'<text x="{left - 12}" y="{y:.0f}" text-anchor="end">'
                     f'{html.escape(result["row"])}</text>')
        for name in reversed(DOTS):
            if name in result["results"]:
                radius = 5.5 if name == "EncConvert" else 4
                parts.append(f'<circle cx="{x(result["results"][name]):.1f}" cy="{y - 4:.1f}" '
                             f'r="{radius}" class="{name}"/>')
    return "\n".join(parts) + "\n</svg>\n"


def to_json(items):
    lines = ",\n".join(json.dumps(item, ensure_ascii=False) for item in items)
    return f"[\n{lines}\n]\n"


def write(results, folder):
    (folder / "results.json").write_text(to_json(results))
    (folder / "results.md").write_text(markdown(results))
    (folder / "results.svg").write_text(plot(results))


def publish(old, new, root):
    """Puts new results over the old ones, and all of them into docs/."""
    merged = {(r["group"], r["row"]): r for r in old} | {(r["group"], r["row"]): r for r in new}
    results = list(merged.values())
    (root / "bench/results.json").write_text(to_json(results))
    (root / "docs/performance.svg").write_text(plot(results))
    page = root / "docs/performance.md"
    mark = "<!-- {}: written by bench/run.sh --publish -->"
    begin, end = mark.format("results"), mark.format("end of results")
    page.write_text(re.sub(f"{begin}.*{end}", lambda _: f"{begin}\n{markdown(results)}{end}",
                           page.read_text(), flags=re.S))
    publish_readme(results, root / "README.md")


def publish_readme(results, page):
    """The speeds of the interface and its peers in the table of the README, by the row's title."""
    text = page.read_text()
    for result in results:
        unit = {"Main": "MB/s", "Short": "ns (less is better)"}.get(result["group"])
        cells = " | ".join(show(result["results"][name]) if name in result["results"] else "no"
                           for name in ("convert", "iconv", "icu", "encoding_rs"))
        start = re.escape(f"| {result['row']}, {unit} |")
        text = re.sub(f"^({start})" + r"(?: [^|\n]* \|){4}", lambda m: f"{m[1]} {cells} |", text,
                      flags=re.M)
    page.write_text(text)


def write_instructions(counted, folder):
    (folder / "instructions.json").write_text(to_json(counted))
    rows = [f"| {c['row']} | {c['instructions per byte']:.2f} |" for c in counted]
    head = ["Instructions for each byte of input, counted by bench/instructions.sh.", "",
            "| pair and text | instructions |", "|---|--:|"]
    (folder / "instructions.md").write_text("\n".join(head + rows) + "\n")
