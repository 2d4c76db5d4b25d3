#include <string>

#include "apps/encconv/chart_command.h"
#include "apps/encconv/error_report.h"
#include "encoding/code_page_list.h"

namespace tool {
namespace {

constexpr char kDigits[] = "0123456789ABCDEF";

constexpr const char* kStyle = R"(
:root { color-scheme: light; --paper: #fdfdfb; --ink: #1d1f21; --soft: #6b7076; --line: #d8dadd;
  --head: #eef0f2; --control: #7a4fb5; --private: #e4f0fb; --oneway: #fdf0d5; --hit: #ffdf4d; }
:root.dark { color-scheme: dark; --paper: #16181b; --ink: #e8e8e6; --soft: #9aa0a6;
  --line: #34383d; --head: #22262a; --control: #c3a5f0; --private: #17324a; --oneway: #46360f;
  --hit: #8a6d00; }
* { box-sizing: border-box; }
body { margin: 0; background: var(--paper); color: var(--ink);
  font: 15px/1.4 system-ui, "Noto Sans", sans-serif; }
header { position: sticky; top: 0; z-index: 1; padding: .6rem 1rem; background: var(--paper);
  border-bottom: 1px solid var(--line); display: flex; flex-wrap: wrap; gap: .5rem 1rem;
  align-items: center; }
h1 { font-size: 1.1rem; margin: 0; flex: 1 1 16rem; }
h1 small { color: var(--soft); font-weight: normal; margin-left: .5em; }
input, button { font: inherit; color: inherit; background: var(--head);
  border: 1px solid var(--line); border-radius: .3rem; padding: .3rem .6rem; }
input { width: 17rem; max-width: 100%; }
output { color: var(--soft); min-width: 6rem; }
main { padding: 1rem; }
section { content-visibility: auto; contain-intrinsic-size: auto 60rem; margin-bottom: 1.5rem; }
h2 { font-size: 1rem; margin: 0 0 .4rem; }
.wide { overflow-x: auto; }
table { border-collapse: collapse; }
th { background: var(--head); color: var(--soft); font: 12px ui-monospace, monospace;
  padding: .2rem .4rem; border: 1px solid var(--line); }
td { width: 3.6rem; min-width: 3.6rem; height: 3.6rem; padding: .1rem; text-align: center;
  border: 1px solid var(--line); vertical-align: middle; line-height: 1.15; }
td u, td s { display: block; text-decoration: none; font: 10px ui-monospace, monospace;
  color: var(--soft); }
td b { font-weight: normal; font-size: 1.35rem; unicode-bidi: isolate; }
td em { font: 11px ui-monospace, monospace; color: var(--control); display: block;
  padding: .35rem 0; }
td.p { background: var(--private); }
td.r { background: var(--oneway); }
td.hit u, td.hit s, td.hit em { color: inherit; }
td.hit, li.hit { background: var(--hit); outline: 2px solid var(--ink); outline-offset: -2px; }
.key { display: inline-block; padding: 0 .5em; border: 1px solid var(--line); margin-right: .3em; }
.key.p { background: var(--private); }
.key.r { background: var(--oneway); }
.legend { color: var(--soft); margin: 0 0 1rem; }
ul { columns: 14rem; padding-left: 1.2rem; }
li u, li s { text-decoration: none; font-family: ui-monospace, monospace; }
li b { font-weight: normal; font-size: 1.2rem; }
li em { font-style: normal; color: var(--control); }
)";

// Finds a character, a code point ("U+4E00", "4e00"), or bytes ("81 40", "8140"); also one that
// stands behind "#" in the address.
constexpr const char* kScript = R"(
const root = document.documentElement;
const setDark = dark => root.classList.toggle('dark', dark);
const system = matchMedia('(prefers-color-scheme: dark)');
setDark(system.matches);
system.addEventListener('change', event => setDark(event.matches));
document.getElementById('theme').onclick = () => setDark(!root.classList.contains('dark'));

const box = document.getElementById('find'), found = document.getElementById('found');
let entries = null, hits = [], at = 0;
function index() {
  entries = [];
  for (const cell of document.querySelectorAll('td[class], li')) {
    entries.push({ cell, bytes: cell.querySelector('u').textContent,
      point: cell.querySelector('s').textContent,
      text: (cell.querySelector('b') || cell.querySelector('em') || {}).textContent || '' });
  }
}
function show() {
  found.textContent = hits.length ? (at + 1) + ' of ' + hits.length : box.value ? 'nothing' : '';
  if (hits.length) hits[at].scrollIntoView({ block: 'center', inline: 'center' });
}
function find() {
  if (!entries) index();
  for (const cell of hits) cell.classList.remove('hit');
  const query = box.value.trim(), upper = query.toUpperCase();
  const point = upper.replace(/^U\+|^0X/, '').padStart(4, '0');
  const bytes = upper.replace(/^0X/, '').replace(/ /g, '');
  hits = !query ? [] : entries.filter(entry => entry.text === query || entry.text === '\u25CC' + query
    || entry.point === point || entry.bytes === bytes || entry.text === upper)
    .map(entry => entry.cell);
  for (const cell of hits) cell.classList.add('hit');
  at = 0;
  show();
}
box.oninput = find;
box.onkeydown = event => {
  if (event.key !== 'Enter' || !hits.length) return;
  at = (at + (event.shiftKey ? hits.length - 1 : 1)) % hits.length;
  show();
};
if (location.hash) {
  box.value = decodeURIComponent(location.hash.slice(1));
  find();
}
)";

std::string escape(std::string_view text) {
  std::string escaped;
  for (const char c : text) {
    switch (c) {
      case '&':
        escaped += "&amp;";
        break;
      case '<':
        escaped += "&lt;";
        break;
      case '>':
        escaped += "&gt;";
        break;
      default:
        escaped += c;
    }
  }
  return escaped;
}

std::string compactHex(const std::string& bytes) {
  std::string text = hexBytes(bytes);
  std::erase(text, ' ');
  return text;
}

// What stands for a text: itself, or its name.
std::string glyph(const std::u32string& text) {
  const char* const name = text.size() == 1 ? invisibleName(text[0]) : nullptr;
  if (name != nullptr) return std::string("<em>") + name + "</em>";
  const std::string circle = isCombining(text[0]) ? "\u25CC" : "";
  return "<b>" + circle + escape(toUtf8(text)) + "</b>";
}

std::string codePoints(const std::u32string& text) {
  std::string points;
  for (const char32_t c : text) {
    if (!points.empty()) points += ' ';
    points += describeCharacter(c).substr(2);
  }
  return points;
}

std::string cellHtml(const ChartGrid& grid, std::size_t code) {
  const ChartCell& cell = grid.cells[code];
  if (cell.text.empty()) return "<td>";
  const char* kind = cell.isReadOnly ? "r" : isPrivateUse(cell.text[0]) ? "p" : "c";
  return std::string("<td class=") + kind + "><u>" +
         compactHex(grid.lead + static_cast<char>(code)) + "</u>" + glyph(cell.text) + "<s>" +
         codePoints(cell.text) + "</s>";
}

std::string gridHtml(const ChartGrid& grid) {
  const std::string lead = hexBytes(grid.lead);
  const char* const heading = grid.lead.size() > 1 ? "Lead bytes " : "Lead byte ";
  std::string html = "<section><h2>" +
                     (lead.empty() ? std::string("Single bytes") : heading + lead) +
                     "</h2><div class=wide><table><tr><th>";
  for (int column = 0; column < 16; ++column) html += std::string("<th>_") + kDigits[column];
  html += '\n';
  for (std::size_t row = 0; row < 16; ++row) {
    bool hasAny = false;
    std::string line = "<tr><th>" + (lead.empty() ? lead : lead + " ") + kDigits[row] + "_";
    for (std::size_t column = 0; column < 16; ++column) {
      hasAny = hasAny || !grid.cells[16 * row + column].text.empty();
      line += cellHtml(grid, 16 * row + column);
    }
    if (hasAny || lead.empty()) html += line + "\n";
  }
  return html + "</table></div></section>\n";
}

std::string writeOnlyHtml(const Chart& chart) {
  if (chart.writeOnly.empty()) return {};
  std::string html = "<section><h2>Written, but read as something else</h2><ul>\n";
  for (const WriteOnlyEntry& entry : chart.writeOnly) {
    html += "<li>" + glyph({entry.character}) + " U+<s>" + codePoints({entry.character}) +
            "</s> as <u>" + compactHex(entry.bytes) + "</u>\n";
  }
  return html + "</ul></section>\n";
}

}  // namespace

std::string chartAsHtml(const Chart& chart) {
  const CharsetNames* names = findCodePage(chart.codePage);
  const std::string title = escape(describeCodePage(chart.codePage));
  const std::string description = names == nullptr ? "" : escape(names->description);
  std::string html =
      "<!DOCTYPE html>\n<html lang=en><meta charset=utf-8>\n"
      "<meta name=viewport content=\"width=device-width\">\n<title>" +
      title + "</title>\n<style>" + kStyle + "</style>\n<header><h1>" + title + "<small>" +
      description +
      "</small></h1>\n"
      "<input id=find type=search aria-label=Search "
      "placeholder=\"Character, U+20AC, or bytes\">"
      "<output id=found></output><button id=theme>Light / dark</button></header>\n"
      "<main><p class=legend><span class=\"key r\">amber</span>one-way: read but "
      "not written back to this code &nbsp; <span class=\"key p\">blue</span>"
      "private use &nbsp; empty: no character";
  if (chart.hasShifts) html += " &nbsp; codes of two bytes stand between SO and SI";
  if (chart.leavesOutLongest) html += " &nbsp; the codes of four bytes are not shown";
  html += "</p>\n";
  for (const ChartGrid& grid : chart.grids) html += gridHtml(grid);
  return html + writeOnlyHtml(chart) + "</main>\n<script>" + kScript + "</script>\n</html>\n";
}

}  // namespace tool
