"""What is made of the results: JSON, Markdown tables, and a plot."""

import html
import json
import math
import re
import statistics

PEERS = ("iconv", "icu", "encoding_rs")
PAIRS = {"Unconvertible": ("clean", "1 % bad"), "Large": ("4 MiB", "64 MiB")}
PLOTTED = ("Main", "Markup", "Further")
TITLES = {"Main": "Pairs with goals of their own", "Markup": "The same pairs, mostly ASCII",
          "Further": "Other pairs", "Short": "Short strings, converter reused (ns a call)",
          "Reopened": "Short strings, converter made anew (ns a call)",
          "Unconvertible": "One character in a hundred unconvertible, error action 1",
          "Large": "Texts of 64 MiB", "Memory": "Memory beside input and output (KiB)"}


def ratio(result):
    """How many times the speed of what the goal compares with, or None without that."""
    values = result["results"]
    if result["group"] in PAIRS:
        return values["second"] / values["first"]
    peers = [values[peer] for peer in PEERS if peer in values]
    if result["group"] == "Memory" or "encconv" not in values or not peers:
        return None
    return min(peers) / values["encconv"] if result["unit"] == "ns" else values["encconv"] / max(peers)


def is_met(result):
    """By the ratio, or by the speed that was the goal where the peers were slower."""
    mine, there = result["results"].get("encconv"), result["orientation"]
    absolute = there and (mine <= there if result["unit"] == "ns" else mine >= there)
    return ratio(result) is None or ratio(result) >= result["goal"] or bool(absolute)


def line(result):
    values = "  ".join(f"{name} {value:.4g}" for name, value in result["results"].items())
    times = f"  {ratio(result):.2f} x of {result['goal']:g}" if ratio(result) else ""
    return f"{result['group']}: {result['row']}  {values}{times}  {'; '.join(result['notes'])}"


def table(group, results):
    columns = list(PEERS) + ["memcpy"]
    if group in PAIRS:
        head, names = PAIRS[group], ("first", "second")
    elif group == "Memory":
        head = names = ("4 MiB", "64 MiB")
    else:
        if results[0]["unit"] == "ns":
            columns.remove("memcpy")
        head = names = ["encconv", *columns]
    lines = ["| " + " | ".join(["", *head, "×", "goal", "met"]) + " |",
             "|---|" + "--:|" * (len(head) + 2) + ":-:|"]
    for result in results:
        scale = 1024 if group == "Memory" else 1
        cells = [f"{result['results'][name] / scale:,.0f}" if name in result["results"] else "-"
                 for name in names]
        times = ratio(result)
        goal = f"{result['goal']:g}" + (f" or {there:,.0f}" if (there := result["orientation"]) else "")
        cells += [f"{times:.2f}", goal, "yes" if is_met(result) else "**no**"] if times else ["-"] * 3
        lines.append("| " + " | ".join([result["row"], *cells]) + " |")
    return lines


def family_table(results):
    lines = ["| | rows | median × | least × | where | goal | met |", "|---|--:|--:|--:|---|--:|--:|"]
    for family in dict.fromkeys(result["group"] for result in results):
        known = [r for r in results if r["group"] == family and ratio(r)]
        if known:
            least = min(known, key=ratio)
            lines.append(f"| {family} | {len(known)} | {statistics.median(map(ratio, known)):.2f} | "
                         f"{ratio(least):.2f} | {least['row'].split(',')[0]} | {least['goal']:g} | "
                         f"{sum(map(is_met, known))} of {len(known)} |")
    return lines


def markdown(results):
    judged = [r for r in results if ratio(r)]
    lines = [f"{sum(map(is_met, judged))} of {len(judged)} rows meet their goals. Speeds are input "
             "MB/s; × is the speed over the best peer's (or over the first column's, where there are "
             "two)."]
    absent = [peer for peer in PEERS if not any(peer in r["results"] for r in results)]
    if absent:
        lines += ["", f"Not measured here: {', '.join(absent)}."]
    for group, title in TITLES.items():
        of_group = [r for r in results if r["group"] == group]
        if of_group:
            lines += ["", f"### {title}", "", *table(group, of_group)]
    families = [r for r in results if r["group"] not in TITLES]
    if families:
        lines += ["", "### Single-byte pages, to and from UTF-8 and from UTF-16", "",
                  *family_table(families)]
    notes = [f"- {r['row']}: {note}" for r in results if r["group"] in TITLES for note in r["notes"]]
    if notes:
        lines += ["", "Peers whose output differs, or that left the race:", "", *notes]
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
             '.memcpy{fill:#888}.encconv{fill:#d1242f}.iconv{fill:#1a7f37}.icu{fill:#0969da}'
             '.encoding_rs{fill:#bf8700}@media(prefers-color-scheme:dark){text{fill:#ddd}'
             '.encconv{fill:#ff7b72}.iconv{fill:#56d364}.icu{fill:#79c0ff}.encoding_rs{fill:#e3b341}}'
             '</style>']
    for number, name in enumerate(("encconv", *PEERS, "memcpy")):
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
        for name in ("memcpy", *PEERS, "encconv"):
            if name in result["results"]:
                radius = 5.5 if name == "encconv" else 4
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


def write_instructions(counted, folder):
    (folder / "instructions.json").write_text(to_json(counted))
    rows = [f"| {c['row']} | {c['instructions per byte']:.2f} |" for c in counted]
    head = ["Instructions for each byte of input, counted by bench/instructions.sh.", "",
            "| pair and text | instructions |", "|---|--:|"]
    (folder / "instructions.md").write_text("\n".join(head + rows) + "\n")
