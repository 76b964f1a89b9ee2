// How long ase-utils (the independent ASE codec of the cross-check) takes to decode a file, to set beside
// our decoder's figure on the same file (bench/compare-exchange). A timing, not a test.
// usage: node ase_decode_timing.mjs NODE_MODULES_DIR FILE [RUNS]
import { readFileSync } from 'node:fs';
import { createRequire } from 'node:module';
import path from 'node:path';

const [modules, file, runsText] = process.argv.slice(2);
const runs = Number(runsText ?? 10);
const ase = createRequire(path.join(modules, 'node_modules', 'x.js'))('ase-utils');
const bytes = readFileSync(file);

const times = [];
for (let i = 0; i < runs; i++) {
  const start = process.hrtime.bigint();
  ase.decode(bytes);
  times.push(Number(process.hrtime.bigint() - start) / 1e6);
}
times.sort((a, b) => a - b);
console.log(`ase-utils decode median ${times[runs >> 1].toFixed(1)} ms, fastest ${times[0].toFixed(1)} ms (${runs} runs)`);
