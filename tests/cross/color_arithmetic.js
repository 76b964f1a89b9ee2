// Cross-checks Kro's colour arithmetic against colour libraries someone else wrote (Debian's node-color and
// node-color-convert), over a grid of colours: HSL, HWB, CMYK, and the WCAG contrast ratio.
// usage: node color_arithmetic.js PATH_TO_KRO
'use strict';
const { execFileSync } = require('child_process');
const Color = require('color');
const convert = require('color-convert');

const kro = process.argv[2];
const steps = [0, 17, 51, 102, 128, 153, 204, 238, 255];
const grid = [];
for (const r of steps) for (const g of steps) for (const b of steps) grid.push([r, g, b]);
const hex = ([r, g, b]) => [r, g, b].map((v) => v.toString(16).padStart(2, '0')).join('').toUpperCase();

let failures = 0;
const check = (what, color, ours, theirs, tolerance) => {
  if (!(Math.abs(ours - theirs) <= tolerance)) {
    failures++;
    if (failures <= 20) console.error(`${what} of #${hex(color)}: kro ${ours}, reference ${theirs}`);
  }
};

// One kro process for the whole grid: one line per colour.
const template = '[hue] css[saturation] css[lightness] css[hue] css[whiteness] css[blackness] ' +
                 'css[cyan] css[magenta] css[yellow] css[black]';
const lines = execFileSync(kro, ['format', '--template', template, ...grid.map(hex)], { encoding: 'utf8' })
  .trim().split('\n');
if (lines.length !== grid.length) throw new Error(`kro format gave ${lines.length} lines for ${grid.length} colours`);

grid.forEach((color, i) => {
  const [hue, sat, light, hwbHue, white, black, c, m, y, k] = lines[i].split(' ').map(Number);
  const hsl = Color.rgb(color).hsl().array();
  const chromatic = Math.max(...color) !== Math.min(...color);
  if (chromatic) check('HSL hue', color, hue * 360, hsl[0], 0.01);
  check('HSL saturation', color, sat, Math.round(hsl[1]), 1);
  check('HSL lightness', color, light, Math.round(hsl[2]), 1);
  const hwb = convert.rgb.hwb(color);
  // The format's HWB hue is not wrapped into 0…360: a red-led colour with more blue than green is negative.
  if (chromatic) check('HWB hue', color, (hwbHue + 360) % 360, hwb[0] % 360, 1);
  check('HWB whiteness', color, white, hwb[1], 1);
  check('HWB blackness', color, black, hwb[2], 1);
  const cmyk = convert.rgb.cmyk(color);
  check('CMYK cyan', color, c, cmyk[0], 1);
  check('CMYK magenta', color, m, cmyk[1], 1);
  check('CMYK yellow', color, y, cmyk[2], 1);
  check('CMYK black', color, k, cmyk[3], 1);
});

// Contrast against white and black: "RATIO LABEL" with two decimals.
for (const color of grid.filter((_, i) => i % 7 === 0)) {
  for (const against of ['FFFFFF', '000000']) {
    const out = execFileSync(kro, ['contrast', hex(color), against], { encoding: 'utf8' }).trim();
    const ratio = Number(out.split(' ')[0]);
    check(`contrast with #${against}`, color, ratio, Color.rgb(color).contrast(Color('#' + against)), 0.011);
  }
}

console.log(`${grid.length} colours checked, ${failures} differences`);
process.exit(failures === 0 ? 0 : 1);
