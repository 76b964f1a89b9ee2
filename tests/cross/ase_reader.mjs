// Our ASE files read by an independent reader from the npm registry (ase-utils), and its files read by
// us through `kro convert`. Each direction compares names, colour values, spaces, types and groups.
// usage: node palette_readers.mjs KRO NODE_MODULES_DIR WORK_DIR
import { execFileSync } from 'node:child_process';
import { readFileSync, writeFileSync, mkdirSync } from 'node:fs';
import { createRequire } from 'node:module';
import path from 'node:path';

const [kro, modules, work] = process.argv.slice(2);
const require = createRequire(path.join(modules, 'node_modules', 'x.js'));
let ase;
try {
  ase = require('ase-utils');
} catch {
  console.error('ase-utils is not installed (the npm registry could not be reached): skipped');
  process.exit(77);
}
mkdirSync(work, { recursive: true });

let failures = 0;
function check(condition, message) {
  if (!condition) {
    failures++;
    console.error('FAIL: ' + message);
  }
}
const near = (a, b, tolerance) => a.length === b.length && a.every((v, i) => Math.abs(v - b[i]) <= tolerance);
const convert = (input, output) => execFileSync(kro, ['convert', input, output], { stdio: ['ignore', 'pipe', 'inherit'] });
const readJSON = (file) => JSON.parse(readFileSync(file, 'utf8'));

// A palette with global colours, a group, every space ASE holds, spot and normal types, and names with
// non-ASCII letters. One group only: ase-utils misreads a file with a second group (so does GIMP 3), so
// a second group would test its limits rather than our writer.
const ours = {
  name: 'Cross check',
  colors: [
    { name: 'Rouge vif', colorSpace: 'RGB', colorComponents: [1, 0, 0.25] },
    { name: 'Cyan encre', colorSpace: 'CMYK', colorComponents: [1, 0, 0, 0.2], colorType: 'spot' },
  ],
  groups: [
    {
      name: 'Grays, Lab and more',
      colors: [
        { name: 'Mid gray', colorSpace: 'Gray', colorComponents: [0.5] },
        { name: 'Lab orange', colorSpace: 'LAB', colorComponents: [70, 40, 60], colorType: 'normal' },
        { name: 'Ünïcode ✓', colorSpace: 'RGB', colorComponents: [0.2, 0.4, 0.6] },
      ],
    },
  ],
};
const source = path.join(work, 'ours.jsoncolorpalette');
writeFileSync(source, JSON.stringify(ours));

// ASE written by us, read by ase-utils.
{
  const file = path.join(work, 'ours.ase');
  convert(source, file);
  const read = ase.decode(readFileSync(file));
  const models = { RGB: 'RGB', CMYK: 'CMYK', Gray: 'Gray', LAB: 'LAB' };
  const expectColor = (theirs, mine, where) => {
    check(theirs.name === mine.name, `${where}: name ${theirs.name} != ${mine.name}`);
    check(theirs.model.trim() === models[mine.colorSpace], `${where}: model ${theirs.model} for ${mine.colorSpace}`);
    check(theirs.type === (mine.colorType ?? 'global'), `${where}: type ${theirs.type} != ${mine.colorType ?? 'global'}`);
    // The file holds Lab's L as a fraction of 100; ase-utils hands the stored values back as they are.
    const stored = mine.colorSpace === 'LAB' ? [mine.colorComponents[0] / 100, ...mine.colorComponents.slice(1)] : mine.colorComponents;
    check(near(theirs.color, stored, 1e-6), `${where}: values ${theirs.color} != ${stored}`);
  };
  // ase-utils lists every colour in `colors`, grouped ones included, and each group's again in the group.
  const all = [...ours.colors, ...ours.groups.flatMap((g) => g.colors)];
  check(read.colors.length === all.length, `ASE colours: ${read.colors.length}`);
  all.forEach((c, i) => read.colors[i] && expectColor(read.colors[i], c, `ASE colour ${i}`));
  check(read.groups.length === ours.groups.length, `ASE groups: ${read.groups.length}`);
  ours.groups.forEach((g, gi) => {
    const theirs = read.groups[gi];
    if (!theirs) return;
    check(theirs.name === g.name, `ASE group ${gi} name ${theirs.name}`);
    check(theirs.colors.length === g.colors.length, `ASE group ${gi} size ${theirs.colors.length}`);
    g.colors.forEach((c, i) => theirs.colors[i] && expectColor(theirs.colors[i], c, `ASE group ${gi} colour ${i}`));
  });
}

// ASE written by ase-utils, read by us.
{
  const file = path.join(work, 'theirs.ase');
  const colors = [
    { name: 'Their red', model: 'RGB', color: [1, 0, 0], type: 'global' },
    { name: 'Their ink', model: 'CMYK', color: [0, 1, 0, 0.1], type: 'spot' },
    { name: 'Their gray', model: 'Gray', color: [0.25], type: 'normal' },
  ];
  writeFileSync(file, ase.encode({ version: '1.0', groups: [], colors }));
  const out = path.join(work, 'theirs-from-ase.jsoncolorpalette');
  convert(file, out);
  const read = readJSON(out).colors;
  check(read.length === colors.length, `ase-utils file: ${read.length} colours`);
  colors.forEach((c, i) => {
    const mine = read[i];
    if (!mine) return;
    check(mine.name === c.name, `ase-utils colour ${i} name ${mine.name}`);
    check(mine.colorSpace === { RGB: 'RGB', CMYK: 'CMYK', Gray: 'Gray' }[c.model], `ase-utils colour ${i} space ${mine.colorSpace}`);
    check((mine.colorType ?? 'global') === c.type, `ase-utils colour ${i} type ${mine.colorType}`);
    check(near(mine.colorComponents, c.color, 1e-6), `ase-utils colour ${i} values ${mine.colorComponents}`);
  });
}

if (failures) {
  console.error(`${failures} difference(s) between Kro and ase-utils`);
  process.exit(1);
}
console.log('palette readers: ASE agrees both ways with ase-utils');
