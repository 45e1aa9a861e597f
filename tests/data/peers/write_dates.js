// Writes each instant given as arguments (milliseconds since 1970) with
// JavaScript's Date, in the zone of TZ: "label<TAB>index<TAB>text" lines.
// Run by tests/data/gen_software_dates.py.
'use strict';

process.argv.slice(2).forEach((ms, i) => {
  const d = new Date(Number(ms));
  for (const method of ['toString', 'toUTCString', 'toISOString']) {
    console.log(`js.${method}\t${i}\t${d[method]()}`);
  }
});
