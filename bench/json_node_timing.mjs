// Node's own JSON reading and writing of a file, to set beside palette_timing's figures on the same file
// (bench/compare-exchange): JSON.parse of its text, and JSON.stringify of the result with two-space indents.
// usage: node json_node_timing.mjs FILE [RUNS]
import { readFileSync } from 'node:fs';

const [file, runsText] = process.argv.slice(2);
const runs = Number(runsText ?? 10);
const text = readFileSync(file, 'utf8');

function report(what, body) {
  const times = [];
  let result;
  for (let i = 0; i < runs; i++) {
    const start = process.hrtime.bigint();
    result = body();
    times.push(Number(process.hrtime.bigint() - start) / 1e6);
  }
  times.sort((a, b) => a - b);
  console.log(`${what} median ${times[runs >> 1].toFixed(1)} ms, fastest ${times[0].toFixed(1)} ms (${runs} runs)`);
  return result;
}

const parsed = report('JSON.parse', () => JSON.parse(text));
report('JSON.stringify', () => JSON.stringify(parsed, null, 2));
