// The npm package beside iconv-lite and the engine's own TextDecoder, in one run.
//
//   node bench/npm.mjs [MEGABYTES]
//
// after scripts/npm.sh. Prints MB of encoded text a second of the processor's time, the median of rounds
// in which all take turns; short texts are of some 60 bytes.
import { createRequire } from "node:module";

import * as encconv from "../npm/dist/node.js";

const iconv = createRequire(new URL("../npm/package.json", import.meta.url))("iconv-lite");
const kSize = Number(process.argv[2] ?? 4) * 1e6;
const kRounds = 11;
const kShort = 60;

const kTexts = {
  japanese: "吾輩は猫である。名前はまだ無い。どこで生れたか、とんと見当がつかぬ（Tokyo, 1905）。\n",
  chinese: "我们的家乡，在希望的田野上，炊烟在新建的住房上飘荡，小河在美丽的村庄旁流淌 (2024)。\n",
  traditional: "我們的家鄉，在希望的田野上，炊煙在新建的住房上飄蕩，小河在美麗的村莊旁流淌 (2024)。\n",
  korean: "동해 물과 백두산이 마르고 닳도록 하느님이 보우하사 우리나라 만세. (Seoul 1948)\n",
  russian: "Съешь ещё этих мягких французских булок, да выпей же чаю (GOST 2024).\n",
  french: "Portez ce vieux whisky au juge blond qui fume sur son île intérieure, à côté.\n",
  english: "The quick brown fox jumps over the lazy dog, 1234567890 times a day.\n",
};
const kCases = [
  ["shift_jis", "japanese"], ["euc-jp", "japanese"], ["iso-2022-jp", "japanese"],
  ["gbk", "chinese"], ["gb18030", "chinese"], ["big5", "traditional"], ["euc-kr", "korean"],
  ["windows-1251", "russian"], ["windows-1252", "french"], ["utf-16le", "japanese"],
  ["utf-8", "japanese"], ["utf-8", "english"], ["windows-1252", "english"], ["shift_jis", "english"],
];

// Words, or ideographs and syllables, in random order: a processor's branch prediction learns a
// sentence that repeats itself by heart.
function textOf(sentence, size, encoding) {
  const words = sentence.split(/(?<= )|(?<=[\u3000-\uFFFF])/);
  const count = Math.round((size / encconv.encode(sentence, encoding).length) * words.length);
  let random = 1;
  const text = Array.from({ length: Math.max(1, count) }, () => {
    random = (random * 48271) % 0x7fffffff;
    return words[random % words.length];
  });
  return text.join("").split("").join("");
}
// How much of the processor's time a call takes, in seconds: others that it is busy with do not count.
// What the call gives is looked at, as programs do.
function timeOf(call, times) {
  let seen = 0;
  const begin = process.cpuUsage();
  for (let i = 0; i < times; ++i) {
    const result = call();
    seen += typeof result === "string" ? result.charCodeAt(result.length >> 1) : result[result.length >> 1];
  }
  const { user, system } = process.cpuUsage(begin);
  if (Number.isNaN(seen)) throw new Error("nothing was converted");
  return (user + system) / 1e6 / times;
}
// Bytes a microsecond of each call; undefined where there is none.
function speedsOf(bytes, calls, times) {
  const rounds = Array.from({ length: kRounds }, () => calls.map((call) => call && timeOf(call, times)));
  return calls.map((call, i) => {
    if (call === undefined) return undefined;
    const sorted = rounds.map((round) => round[i]).sort((a, b) => a - b);
    return bytes / sorted[kRounds >> 1] / 1e6;
  });
}
function attempt(make) {
  try {
    const call = make();
    call();
    return call;
  } catch {
    return undefined;
  }
}

const kColumns = ["encconv", "iconv-lite", "TextDecoder"];
function row(name, bytes, calls, times) {
  const speeds = speedsOf(bytes, calls, times);
  const cell = (number) => (number === undefined ? "–" : number.toFixed(number < 10 ? 1 : 0));
  const ratio = (number) => (number === undefined ? "–" : (speeds[0] / number).toFixed(1));
  console.log(`| ${name} | ${speeds.map(cell).join(" | ")} | ${ratio(speeds[1])} | ${ratio(speeds[2])} |`);
}

await encconv.init();
console.log(`Node.js ${process.version}, texts of ${kSize / 1e6} MB and of ${kShort} bytes; MB/s`);
for (const [what, size] of [["long", kSize], ["short", kShort]]) {
  const times = size === kSize ? 1 : 4000;
  for (const direction of ["decode", "encode"]) {
    console.log(`\n| ${direction}, ${what} | ${kColumns.join(" | ")} | × iconv-lite | × TextDecoder |`);
    console.log("| --- | ---: | ---: | ---: | ---: | ---: |");
    for (const [encoding, language] of kCases) {
      const text = textOf(kTexts[language], size, encoding);
      const bytes = encconv.encode(text, encoding);
      const buffer = Buffer.from(bytes);
      const decoder = attempt(() => {
        const theirs = new TextDecoder(encoding);
        return () => theirs.decode(bytes);
      });
      const encoder = encoding === "utf-8" ? () => new TextEncoder().encode(text) : undefined;
      const calls =
        direction === "decode"
          ? [() => encconv.decode(bytes, encoding), attempt(() => () => iconv.decode(buffer, encoding)), decoder]
          : [() => encconv.encode(text, encoding), attempt(() => () => iconv.encode(text, encoding)), encoder];
      row(`${encoding}, ${language}`, bytes.length, calls, times);
    }
  }
}
