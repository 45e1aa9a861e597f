// Writes instants as people's software shows them, with Node's Intl (full
// ICU): toLocaleString, toLocaleDateString and Intl.DateTimeFormat's styles
// and zone names, in four locales, and in French the offsets ICU writes with
// U+2212 ("UTC−5"). Reads [[milliseconds, IANA zone], ...] as JSON on
// stdin; writes one JSON object a line: the instant's index, the writer, the
// locale, the text and the parts formatToParts gives for the same options.
// V8's format() writes a plain space where ICU writes U+202F (before AM/PM);
// the parts keep ICU's bytes, so a text joined from them is written too,
// where it differs, as a program that renders the parts writes it.
// Run by tests/data/gen_people_dates.py.
'use strict';

const LOCALES = ['en-US', 'en-GB', 'de-DE', 'ja-JP', 'fr-FR'];
// The writers of a locale beyond the four (null: all).
const ONLY = { 'fr-FR': ['toLocaleString timeZoneName=shortOffset', 'toLocaleString timeZoneName=longOffset'] };
const STYLES = ['full', 'long', 'medium', 'short'];
// toLocaleString's and toLocaleDateString's defaults, spelled out for formatToParts.
const DATE = { year: 'numeric', month: 'numeric', day: 'numeric' };
const DATE_TIME = { ...DATE, hour: 'numeric', minute: 'numeric', second: 'numeric' };

// [writer, method or null, options] ; null: Intl.DateTimeFormat(...).format
const WRITERS = [
  ['toLocaleString', 'toLocaleString', {}, DATE_TIME],
  ['toLocaleDateString', 'toLocaleDateString', {}, DATE],
];
for (const zoneName of ['short', 'shortOffset', 'longOffset']) {
  const o = { timeZoneName: zoneName };
  WRITERS.push([`toLocaleString timeZoneName=${zoneName}`, 'toLocaleString', o, { ...DATE_TIME, ...o }]);
}
for (const s of STYLES) {
  WRITERS.push([`dateStyle=${s}`, null, { dateStyle: s }]);
  WRITERS.push([`dateStyle=${s} timeStyle=${s}`, null, { dateStyle: s, timeStyle: s }]);
}
for (const [d, t] of [['full', 'long'], ['long', 'short'], ['medium', 'short'], ['short', 'medium']]) {
  WRITERS.push([`dateStyle=${d} timeStyle=${t}`, null, { dateStyle: d, timeStyle: t }]);
}

// Without full ICU, Intl falls back to en-US for the other locales.
if (Intl.DateTimeFormat.supportedLocalesOf(LOCALES).length !== LOCALES.length) {
  throw new Error(`Node lacks full ICU: ${Intl.DateTimeFormat.supportedLocalesOf(LOCALES)}`);
}

let input = '';
process.stdin.on('data', (chunk) => { input += chunk; });
process.stdin.on('end', () => {
  const out = [];
  JSON.parse(input).forEach(([ms, timeZone], i) => {
    const date = new Date(ms);
    for (const locale of LOCALES) {
      for (const [writer, method, options, partsOptions] of WRITERS) {
        if (ONLY[locale] && !ONLY[locale].includes(writer)) continue;
        const zoned = { ...options, timeZone };
        const text = method ? date[method](locale, zoned)
                            : new Intl.DateTimeFormat(locale, zoned).format(date);
        const parts = new Intl.DateTimeFormat(locale, { ...(partsOptions || options), timeZone })
          .formatToParts(date).map((p) => [p.type, p.value]);
        out.push(JSON.stringify({ i, writer: `node ${writer}`, locale, text, parts }));
        const joined = parts.map(([, value]) => value).join('');
        if (joined !== text) {
          out.push(JSON.stringify({ i, writer: `node ${writer} formatToParts`, locale, text: joined, parts }));
        }
      }
    }
  });
  process.stdout.write(out.join('\n') + '\n');
});
